#include "zepv2data.h"

#include <cstring>
#include <string_view>

#include <ace/OS_NS_stdlib.h>

#include "common.h"
#include "platform/annex_k.h"
#include "util/checked_math.h"
#include "util/stream_reader.h"

namespace VARNEL_COMMON {

using namespace VARNEL_UTIL;

namespace {

constexpr char MODULE[] = "zepv2data";

// The highest codes of the earlier generations. Callers rely on them: they never change.
constexpr int BEFORE_ZEPV2 = 52099;
constexpr int BEFORE_ZEP08 = 50799;

constexpr size_t MAX_HEX_LENGTH = 2 + 8;  // "0x" and the digits of 32 bits

// The DC form; see docs/formats.md.
constexpr int LAST_DASHED_BOARD = 0x01FF;
constexpr unsigned short LAST_PLAIN_SLOT = 199;
constexpr size_t MIN_DC_LENGTH = 3;
constexpr size_t MAX_DC_LENGTH = 11;
constexpr size_t DC_SLOT_LENGTH = 2;
constexpr size_t DC_BUFFER = 12;

// Value of a hexadecimal digit, or -1.
int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string SlotText(unsigned short slotId, int radix) {
  char text[DC_BUFFER];
  char* slot = text;
  const int shelf = slotId >> 8;
  if (shelf != 0) {
    slot += std::strlen(ACE_OS::itoa_emulation(shelf, text, radix));
    *slot++ = '-';
  }
  ACE_OS::itoa_emulation(slotId & 0xFF, slot, radix);
  return text;
}

unsigned short ReadSlotText(std::string_view text) {
  unsigned short shelf = 0;
  unsigned short slot = 0;
  ReadDashed(text, shelf, slot);
  return static_cast<unsigned short>((shelf << 8) + slot);
}

// Reads a part of a DC text through `buffer`, which keeps its text if the copy fails.
template <typename Number>
Number ReadPart(char (&buffer)[DC_BUFFER], const char* part, size_t count, int line) {
  const int result = strncpy_s(buffer, sizeof buffer, part, count);
  if (result != 0) LogError({MODULE, "convertSlotDC", line}, result, "convertSlotDC.strncpy_s failed");
  Number number = 0;
  StreamReader(buffer).Read(number);
  return number;
}

}  // namespace

unsigned int HexStr2Int(const std::string& text) {
  const std::string_view looked = std::string_view(text).substr(0, MAX_HEX_LENGTH);
  if (looked.size() < 3 || looked[0] != '0' || (looked[1] != 'x' && looked[1] != 'X')) return 0;
  unsigned int number = 0;
  for (const char c : looked.substr(2)) {
    const int digit = DigitValue(c);
    if (digit < 0) return 0;
    number = number * 16 + static_cast<unsigned int>(digit);
  }
  return number;
}

bool IsZepv2(int generation) {
  return generation > BEFORE_ZEPV2;
}

bool IsZep08(int generation) {
  return generation > BEFORE_ZEP08;
}

bool IsExistShelfID(const char* text) {
  return std::strchr(text, '-') != nullptr;
}

std::string WSlotIDi2str(unsigned short slotId) {
  return SlotText(slotId, 10);
}

std::string WSlotIDi2Hexstr(unsigned short slotId) {
  return SlotText(slotId, 16);
}

unsigned short WSlotIDstr2i(const std::string& text) {
  return ReadSlotText(text);
}

std::string convertSlot2strDC(unsigned int neid, int bdid) {
  const auto slotId = static_cast<unsigned short>(bdid & 0xFFFF);
  if (bdid <= LAST_DASHED_BOARD || IsZepv2(static_cast<int>(neid))) return WSlotIDi2str(slotId);

  char part[DC_BUFFER] = {};
  std::string text = ACE_OS::itoa_emulation((bdid >> 8) & 0xFFFF, part, 10);
  if (snprintf_s(part, sizeof part, sizeof part - 1, "%02d", bdid & 0xFF) == -1) {
    LogError({MODULE, "convertSlot2strDC", 265}, -1,
             StrCat("convertSlot2strDC.snprintf_s failed, neid:", neid, ", Bdid:", bdid));
  }
  return text.append(part);
}

unsigned int convertSlotDC(const std::string& text) {
  const unsigned short slotId = ReadSlotText(text.c_str());
  const bool isDC = !IsExistShelfID(text.c_str()) && text.size() >= MIN_DC_LENGTH && text.size() <= MAX_DC_LENGTH &&
                    slotId > LAST_PLAIN_SLOT;
  if (!isDC) return slotId;

  char part[DC_BUFFER] = {};
  const size_t shelfLength = text.size() - DC_SLOT_LENGTH;
  const auto shelf = ReadPart<unsigned int>(part, text.c_str(), shelfLength, 228);
  const auto slot = ReadPart<int>(part, text.c_str() + shelfLength, sizeof part - 1, 236);
  return static_cast<unsigned int>(CheckedAdd(static_cast<int>(shelf << 8), slot));
}

}  // namespace VARNEL_COMMON
