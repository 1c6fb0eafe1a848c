#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "chars.h"
#include "common.h"
#include "platform/annex_k.h"
#include "productdata.h"
#include "publicdata.h"
#include "str.h"
#include "zepv2data.h"

namespace VARNEL_COMMON {

namespace {

constexpr char MODULE[] = "publicdata";
constexpr size_t NUMBER_SIZE = 8;  // five digits at most, and a NUL
constexpr unsigned int LAST_MML_NE_ID = 0xFFFFFF;

// Copies digits to `buffer` and gives the code of the first character; 0 where there is none.
unsigned char FirstDigitCode(char (&buffer)[NUMBER_SIZE], const char* digits, size_t count, int line) {
  const int result = strncpy_s(buffer, sizeof buffer, digits, count);
  if (result != 0) ReportError({MODULE, "GetNESlotID", line}, result, "GetNESlotID.strncpy_s failed");
  char digit = '\0';
  ConvertFromString(buffer, digit);
  return static_cast<unsigned char>(digit);
}

// What strmcmpnocase() tells of a lower-case pattern that has no "*", or one at each end and none between.
bool IsNamedBy(std::string_view name, std::string_view pattern) {
  const auto same = [](char inName, char inPattern) { return ToLower(inName) == inPattern; };
  if (pattern.front() != '*') return std::equal(name.begin(), name.end(), pattern.begin(), pattern.end(), same);
  pattern = pattern.substr(1, pattern.size() - 2);
  return std::search(name.begin(), name.end(), pattern.begin(), pattern.end(), same) != name.end();
}

}  // namespace

unsigned int GetNESlotID(unsigned short slotNumber) {
  char number[NUMBER_SIZE] = {};
  if (snprintf_s(number, sizeof number, sizeof number - 1, "%d", slotNumber) == -1) {
    ReportError({MODULE, "GetNESlotID", 528}, -1, Compose("GetNESlotID.snprintf_s failed, SlotId", slotNumber));
  }
  if (std::strlen(number) != 3) return slotNumber;
  char digits[NUMBER_SIZE] = {};
  const unsigned int shelf = FirstDigitCode(digits, number, 1, 543);
  const unsigned int slot = FirstDigitCode(digits, number + 1, 2, 550);
  return shelf << 5 | slot;
}

bool IsTL1NeID(unsigned int neId) {
  return neId > LAST_MML_NE_ID;
}

bool IsKorvaneNE(int generation, const std::string& name) {
  return !IsZepv2(generation) && strmcmpnocase(name.c_str(), KORVANE_NAME) != 0;
}

bool IsSccBdName(const std::string& name) {
  const std::string_view text = name.c_str();
  return std::any_of(std::begin(SCC_BOARD_NAMES), std::end(SCC_BOARD_NAMES),
                     [text](std::string_view pattern) { return IsNamedBy(text, pattern); });
}

}  // namespace VARNEL_COMMON
