// Three numbers and a text: slots written and read, compared with plain versions.

#include <publicdata.h>
#include <str.h>
#include <zepv2data.h>

#include <cstdio>
#include <cstring>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <tuple>

#include "check.h"
#include "exact_text.h"
#include "input.h"
#include "replay.h"
#include "string_references.h"

using VARNEL_TEST::ExactText;

// Plain slot functions, with streams and sprintf().
namespace Reference {
namespace {

struct ParsedSlot {
  bool found;
  unsigned short shelf;
  unsigned short slot;
};

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

bool operator==(const ParsedSlot& a, const ParsedSlot& b) {
  return std::tie(a.found, a.shelf, a.slot) == std::tie(b.found, b.shelf, b.slot);
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

ParsedSlot ParseTl1Slot(const char* text, unsigned short shelf, unsigned short slot) {
  const char* found = text == nullptr ? nullptr : std::strstr(text, "SLOT-");
  if (found == nullptr) return {false, shelf, slot};
  return ParseMmlSlot(found + 5, shelf, slot);
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

// Absent if the sum of shelf and slot exceeds the range of an int.
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

}  // namespace
}  // namespace Reference

namespace {

using Reference::ParsedSlot;

void CheckWriting(unsigned short word, unsigned int generation, int board) {
  const std::string decimal = VARNEL_COMMON::WSlotIDi2str(word);
  FUZZ_CHECK(decimal == Reference::DecimalText(word));
  FUZZ_CHECK(VARNEL_COMMON::WSlotIDstr2i(decimal) == word);
  FUZZ_CHECK(VARNEL_COMMON::WSlotIDi2Hexstr(word) == Reference::HexadecimalText(word));
  for (const unsigned int code : {generation, 52099U, 52100U, 0x80000000U}) {
    FUZZ_CHECK(VARNEL_COMMON::convertSlot2strDC(code, board) == Reference::DcText(code, board));
    FUZZ_CHECK(VARNEL_COMMON::convertSlot2strDC(code, word) == Reference::DcText(code, word));
  }
  FUZZ_CHECK(VARNEL_COMMON::GetNESlotID(word) == Reference::NeSlotId(word));
}

ParsedSlot Parsed(bool (*parse)(const char*, unsigned short&, unsigned short&), const char* text, ParsedSlot before) {
  before.found = parse(text, before.shelf, before.slot);
  return before;
}

void CheckParsing(const char* text, unsigned short shelf, unsigned short slot) {
  const ParsedSlot before{false, shelf, slot};
  FUZZ_CHECK(Parsed(VARNEL_COMMON::ParseTL1SlotID, text, before) == Reference::ParseTl1Slot(text, shelf, slot));
  FUZZ_CHECK(Parsed(VARNEL_COMMON::ParseMMLSlotID, text, before) == Reference::ParseMmlSlot(text, shelf, slot));
}

void CheckReading(const std::string& text) {
  FUZZ_CHECK(VARNEL_COMMON::WSlotIDstr2i(text) == Reference::ReadWord(text));
  FUZZ_CHECK(VARNEL_COMMON::HexStr2Int(text) == Reference::ReadHex(text));
  FUZZ_CHECK(VARNEL_COMMON::HexStr2Int("0x" + text) == Reference::ReadHex("0x" + text));
  const auto dc = Reference::ReadDcText(text);
  if (dc) FUZZ_CHECK(VARNEL_COMMON::convertSlotDC(text) == *dc);  // the sum of others ends the process
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  const auto word = static_cast<unsigned short>(input.Number());
  const unsigned int generation = input.Word();
  const auto board = static_cast<int>(input.Word());
  const std::string text = input.Rest();
  CheckWriting(word, generation, board);
  CheckParsing(ExactText(text), word, static_cast<unsigned short>(generation));
  CheckReading(text);
  return 0;
}

void VARNEL_FUZZ::RunGenerated(Runner run) {
  using VARNEL_TEST::AllTexts;
  for (unsigned int word = 0; word <= 0xFFFF; ++word)
    run({static_cast<char>(word >> 8), static_cast<char>(word & 0xFF)});

  const std::string numbers(10, 'n');
  const auto runAll = [&](const std::string& start, const std::vector<std::string>& texts) {
    for (const std::string& text : texts)
      run(numbers + start + text);
  };
  runAll("", AllTexts("0123456789-+ S\t,", 4));
  runAll("", AllTexts("259-+ x", 5));
  runAll("", AllTexts("0123456789", 5));
  runAll("", AllTexts(std::string("29- x\0", 6), 5));
  runAll("SLOT-", AllTexts("259-+ x", 4));
  runAll("", AllTexts({"SLOT-", "SLOT", "S", "-", "7"}, 5));
  runAll("", AllTexts("0xX9aFg -", 4));
  runAll("0x", AllTexts("0123456789abcdefABCDEFgG", 3));
}
