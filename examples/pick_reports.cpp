// Selects the lines that match a pattern, without regard to case, and reads an attribute and the slot from each.

#include <varnel_common/str.h>

#include <iostream>
#include <string>
#include <vector>

using namespace VARNEL_COMMON;

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: pick_reports PATTERN ATTRIBUTE < REPORTS\n";
    return 2;
  }
  std::string attribute = argv[2];
  StrTrim(attribute);
  toUpperCase(attribute);
  bool found = false;
  for (std::string line; std::getline(std::cin, line);) {
    if (strmcmpnocase(line.c_str(), argv[1]) == 0) continue;
    StrCollapse(line);
    std::string value;
    if (!GetTL1AttrbuteString(line.c_str(), attribute + '=', value)) continue;
    found = true;

    unsigned int number = 0;
    ConvertFromString(value.c_str(), number);
    unsigned short shelf = 0, slot = 0;
    const bool hasSlot = ParseTL1SlotID(line.c_str(), shelf, slot);
    std::vector<std::string> fields;
    SplitStringByChar(line.c_str(), ',', fields);
    std::cout << attribute << ' ' << number << ", slot " << (hasSlot ? std::to_string(slot) : "unknown") << ", "
              << fields.size() << " fields in " << line << '\n';
  }
  return found ? 0 : 1;
}
