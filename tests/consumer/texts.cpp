#include <varnel_common/str.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "families.h"

using namespace VARNEL_COMMON;

namespace {

void Trim() {
  std::string left = "  a ";
  std::string right = left;
  std::string both = left;
  std::string inside = "  a \t b ";
  StrTrimLeft(left);
  StrTrimRight(right);
  StrTrim(both);
  StrCollapse(inside);
  std::cout << '[' << left << "][" << right << "][" << both << "][" << inside << "]\n";
}

void Change() {
  std::string text = "a--b";
  ReplaceString(text, "--", "-");
  toUpperCase(text);
  std::cout << text << " [" << replaceEnterWithBlank("a\r\nb") << "]\n";
}

void Extract() {
  std::string value;
  const bool found = GetTL1AttrbuteString("X=1,TOTAL=7,Y=2", "TOTAL=", value);
  std::vector<std::string> fields;
  SplitStringByChar("a, b", ',', fields);
  std::cout << found << value << ' ' << fields.size() << fields.back() << '\n';

  unsigned int number = 0;
  unsigned short small = 0;
  char character = 0;
  ConvertFromString("42", number);
  ConvertFromString("70000", small);
  ConvertFromString(" x", character);
  std::cout << number << ' ' << small << ' ' << character << '\n';
}

void FreeArray() {
  auto** blocks = static_cast<void**>(std::calloc(2, sizeof(void*)));
  blocks[0] = std::malloc(1);
  freeArray(blocks);
}

}  // namespace

void UseTexts() {
  Trim();
  Change();
  Extract();
  FreeArray();
  std::cout << (strmcmp("abc", "a*c") != 0) << strmcmpnocase("abc", "A?C") << '\n';
}
