#include "slot_references.h"

#include <cstdio>
#include <cstring>
#include <limits>
#include <locale>
#include <sstream>
#include <tuple>

namespace VARNEL_TEST::Reference {

namespace {

std::stringstream Stream(const std::string& text) {
  std::stringstream stream(text);
  stream.imbue(std::locale::classic());
  return stream;
}

std::string Decimal(int number) {
  char buffer[16];
  std::sprintf(buffer, "%d", number);
  return buffer;
}

std::string Hexadecimal(int number) {
  char buffer[16];
  std::sprintf(buffer, "%x", static_cast<unsigned int>(number));
  return buffer;
}

std::string TwoDigits(int number) {
  char buffer[16];
  std::sprintf(buffer, "%02d", number);
  return buffer;
}

std::string SlotText(std::string (*text)(int), unsigned short word) {
  if (word == 0) return "0";
  if (word >> 8 == 0) return text(word);
  return text(word >> 8) + "-" + text(word & 0xFF);
}

template <typename Number>
Number ReadNumber(const std::string& text) {
  Number number = 0;
  Stream(text) >> number;
  return number;
}

std::string UpToNul(const std::string& text) {
  return text.c_str();
}

}  // namespace

bool operator==(const ParsedSlot& a, const ParsedSlot& b) {
  return std::tie(a.found, a.shelf, a.slot) == std::tie(b.found, b.shelf, b.slot);
}

std::ostream& operator<<(std::ostream& out, const ParsedSlot& parsed) {
  return out << (parsed.found ? "found" : "not found") << ", shelf " << parsed.shelf << ", slot " << parsed.slot;
}

ParsedSlot ParseTl1Slot(const char* text, unsigned short shelf, unsigned short slot) {
  const char* found = text == nullptr ? nullptr : std::strstr(text, "SLOT-");
  if (found == nullptr) return {false, shelf, slot};
  return ParseMmlSlot(found + 5, shelf, slot);
}

ParsedSlot ParseMmlSlot(const char* text, unsigned short shelf, unsigned short slot) {
  if (text == nullptr) return {false, shelf, slot};
  std::stringstream stream = Stream(text);
  if (std::strchr(text, '-') == nullptr) {
    stream >> slot;
  } else {
    char separator;
    stream >> shelf >> separator >> slot;
  }
  return {true, shelf, slot};
}

std::string DecimalText(unsigned short word) {
  return SlotText(Decimal, word);
}

std::string HexadecimalText(unsigned short word) {
  return SlotText(Hexadecimal, word);
}

unsigned short ReadWord(const std::string& text) {
  std::stringstream stream = Stream(text);
  unsigned short shelf = 0, slot = 0;
  if (text.find('-') != std::string::npos) {
    char separator;
    stream >> shelf;
    stream >> separator;
  }
  stream >> slot;
  return static_cast<unsigned short>(shelf * 256 + slot);
}

std::string DcText(unsigned int generation, int board) {
  const bool isSecondGeneration = generation > 52099 && generation <= 0x7FFFFFFF;
  if (board <= 511 || isSecondGeneration) return DecimalText(static_cast<unsigned short>(board));
  return Decimal(board / 256 % 65536) + TwoDigits(board % 256);
}

std::optional<unsigned int> ReadDcText(const std::string& text) {
  const unsigned short plain = ReadWord(UpToNul(text));
  if (UpToNul(text).find('-') != std::string::npos) return plain;
  if (text.size() < 3 || text.size() > 11) return plain;
  if (plain <= 199) return plain;
  const auto shelf = ReadNumber<unsigned int>(UpToNul(text.substr(0, text.size() - 2)));
  const auto slot = ReadNumber<int>(UpToNul(text.substr(text.size() - 2)));
  const long long sum = static_cast<long long>(static_cast<int>(shelf << 8)) + slot;
  if (sum < std::numeric_limits<int>::min() || sum > std::numeric_limits<int>::max()) return std::nullopt;
  return static_cast<unsigned int>(sum);
}

unsigned int ReadHex(std::string text) {
  if (text.size() >= 10) text.erase(10);
  if (text.size() < 3) return 0;
  if (text[0] != '0' || (text[1] != 'x' && text[1] != 'X')) return 0;
  const std::string digits = text.substr(2);
  for (const char c : digits)
    if (std::strchr("0123456789abcdefABCDEF", c) == nullptr || c == '\0') return 0;
  unsigned int number = 0;
  std::stringstream stream = Stream(digits);
  stream >> std::hex >> number;
  return number;
}

unsigned int NeSlotId(unsigned short number) {
  const std::string text = Decimal(number);
  if (text.size() != 3) return number;
  return static_cast<unsigned int>(text[0]) * 32 | static_cast<unsigned int>(text[1]);
}

}  // namespace VARNEL_TEST::Reference
