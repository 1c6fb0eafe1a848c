// A separator, two short texts and a long one: the string services against the plain ones.

#include <str.h>

#include <optional>
#include <sstream>
#include <vector>

#include "check.h"
#include "exact_text.h"
#include "input.h"
#include "string_references.h"

using VARNEL_TEST::ExactText;

namespace Reference = VARNEL_TEST::Reference;

namespace {

constexpr size_t LONGEST_TEXT = 2048;  // the plain versions erase from the front
constexpr size_t MOST_REPLACEMENTS = 2000;

void CheckInPlace(const std::string& text, void (*operation)(std::string&), void (*plain)(std::string&)) {
  std::string expected = text, actual = text;
  plain(expected);
  operation(actual);
  FUZZ_CHECK(actual == expected);
}

void CheckReplacing(const std::string& text, const std::string& from, const std::string& to) {
  const bool stays = from.empty() || to.find(from) != std::string::npos;
  const auto expected = stays ? text : Reference::Replace(text, from, to, MOST_REPLACEMENTS);
  if (!expected) return;  // may go on for ever
  std::string actual = text;
  VARNEL_COMMON::ReplaceString(actual, from, to);
  FUZZ_CHECK(actual == *expected);
}

void CheckSplitting(const std::string& text, char separator) {
  std::vector<std::string> expected{"first"}, fields{"first"};
  Reference::Split(text.c_str(), separator, expected);
  VARNEL_COMMON::SplitStringByChar(ExactText(text), separator, fields);
  FUZZ_CHECK(fields == expected);
}

void CheckAttribute(const std::string& text, const std::string& name) {
  std::string expected = "old", value = "old";
  const bool found = Reference::AttributeValue(text.c_str(), name, expected);
  FUZZ_CHECK(VARNEL_COMMON::GetTL1AttrbuteString(ExactText(text), name, value) == found);
  FUZZ_CHECK(value == expected);
}

template <typename Number>
void CheckConverting(const std::string& text) {
  Number expected = 77, value = 77;
  std::stringstream(text.c_str()) >> expected;
  VARNEL_COMMON::ConvertFromString(ExactText(text), value);
  FUZZ_CHECK(value == expected);
}

void CheckPaths(const std::string& path) {
  std::string folder, file, left, extension;
  VARNEL_COMMON::SplitFilePathAndFileName(path, folder, file);
  FUZZ_CHECK(file.find_first_of("/\\") == std::string::npos);
  FUZZ_CHECK(path.empty() ? folder.empty() : folder.back() == '/');
  FUZZ_CHECK(path.compare(path.size() - file.size(), file.size(), file) == 0);
  VARNEL_COMMON::GetFileLeftNameAndExName(file, left, extension);
  FUZZ_CHECK(left + extension == file);
  FUZZ_CHECK(VARNEL_COMMON::VerifyFilePathAndName(path) == (path.find("..") == std::string::npos));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  const auto separator = static_cast<char>(input.Byte());
  const std::string first = input.Field(), second = input.Field();
  const std::string text = input.Rest().substr(0, LONGEST_TEXT);

  CheckInPlace(text, VARNEL_COMMON::StrTrimLeft, Reference::TrimLeft);
  CheckInPlace(text, VARNEL_COMMON::StrTrimRight, Reference::TrimRight);
  CheckInPlace(text, VARNEL_COMMON::StrTrim, Reference::Trim);
  CheckInPlace(text, VARNEL_COMMON::StrCollapse, Reference::Collapse);
  CheckInPlace(text, VARNEL_COMMON::toUpperCase, Reference::UpperCase);
  FUZZ_CHECK(VARNEL_COMMON::replaceEnterWithBlank(ExactText(text)) == Reference::CleanLineEnds(text.c_str()));
  CheckReplacing(text, first, second);
  CheckSplitting(text, separator);
  CheckAttribute(text, first);
  CheckConverting<unsigned int>(text);
  CheckConverting<unsigned short>(text);
  CheckConverting<char>(text);
  CheckPaths(text);
  return 0;
}
