// Numbers and slots in texts.
#include <absl/strings/numbers.h>
#include <fmt/format.h>
#include <publicdata.h>
#include <str.h>
#include <zepv2data.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <limits>
#include <sstream>
#include <string_view>

#include "inputs.h"
#include "row.h"
#include "services.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

constexpr bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front()))
    text.remove_prefix(1);
  return text;
}

// Reads from the front of a text and moves it on; an overflow gives the largest value.
template <typename Number>
Number Take(std::string_view& text) {
  Number number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  text.remove_prefix(static_cast<size_t>(end - text.data()));
  return error == std::errc::result_out_of_range ? std::numeric_limits<Number>::max() : number;
}

template <typename Number>
Number FromChars(const std::string& input) {
  std::string_view text = WithoutBlanks(input.c_str());
  return Take<Number>(text);
}

template <typename Number>
Number FromStream(const std::string& text) {
  std::stringstream stream(text);
  Number number = 0;
  stream >> number;
  return number;
}

template <typename Number>
Number FromAbseil(const std::string& text) {
  uint32_t number = 0;
  const bool fits = absl::SimpleAtoi(text.c_str(), &number) && number <= std::numeric_limits<Number>::max();
  return fits ? static_cast<Number>(number) : std::numeric_limits<Number>::max();
}

template <typename Value>
Value Converted(const std::string& text) {
  Value value = 0;
  ConvertFromString(text.c_str(), value);
  return value;
}

template <typename Number>
void Convert(const std::string& type, const std::string& text) {
  Row("ConvertFromString", type + " \"" + text + '"', 0, [text] { return Converted<Number>(text); })
      .Peer("from_chars", [text] { return FromChars<Number>(text); })
      .Peer("abseil", [text] { return FromAbseil<Number>(text); })
      .Obvious("std::stringstream", [text] { return FromStream<Number>(text); })
      .Limit("from_chars without blanks", [text, start = text.find_first_not_of(' ')] {
        Number number = 0;
        std::from_chars(text.data() + start, text.data() + text.size(), number);
        return number;
      });
}

void ConvertChar(const std::string& text) {
  Row("ConvertFromString", "char \"" + text + '"', 0, [text] { return Converted<char>(text); })
      .Peer("std::find_if_not", [text] { return *std::find_if_not(text.begin(), text.end(), IsBlank); })
      .Obvious("std::stringstream", [text] { return FromStream<char>(text); })
      .Limit("strspn", [text] { return text[std::strspn(text.c_str(), " ")]; });
}

template <typename Format>
std::string Printed(Format format) {
  char text[16];
  return {text, static_cast<size_t>(format(text, sizeof text))};
}

std::string ToChars(unsigned int slotId, int base) {
  char text[16];
  char* end = text;
  if (slotId >> 8 != 0) {
    end = std::to_chars(text, text + sizeof text, slotId >> 8, base).ptr;
    *end++ = '-';
  }
  return {text, std::to_chars(end, text + sizeof text, slotId & 0xFF, base).ptr};
}

template <typename Ours>
void SlotText(const std::string& service, unsigned short slotId, Ours ours, const char* dashed, const char* plain,
              const char* printfDashed, const char* printfPlain, int base) {
  const unsigned int shelf = slotId >> 8;
  const unsigned int slot = slotId & 0xFF;
  Row(service, ours(slotId), 0, [slotId, ours] { return ours(slotId); })
      .Peer("fmt",
            [=] {
              return shelf == 0 ? fmt::format(fmt::runtime(plain), slot)
                                : fmt::format(fmt::runtime(dashed), shelf, slot);
            })
      .Peer("snprintf",
            [=] {
              return Printed([=](char* text, size_t size) {
                return shelf == 0 ? std::snprintf(text, size, printfPlain, slot)
                                  : std::snprintf(text, size, printfDashed, shelf, slot);
              });
            })
      .Obvious("std::ostringstream",
               [=] {
                 std::ostringstream stream;
                 if (base == 16) stream << std::hex;
                 if (shelf != 0) stream << shelf << '-';
                 stream << slot;
                 return stream.str();
               })
      .Limit("to_chars", [=] { return ToChars(slotId, base); });
}

unsigned int Join(unsigned int shelf, unsigned int slot) {
  return (shelf << 8) + slot;
}

unsigned int SlotByScanf(const std::string& text) {
  unsigned int shelf = 0;
  unsigned int slot = 0;
  if (std::sscanf(text.c_str(), "%u-%u", &shelf, &slot) == 2) return Join(shelf, slot);
  return shelf;
}

unsigned int SlotByStream(const std::string& text) {
  std::istringstream stream(text);
  unsigned int shelf = 0;
  unsigned int slot = 0;
  char separator;
  if (text.find('-') != std::string::npos) stream >> shelf >> separator;
  stream >> slot;
  return Join(shelf, slot);
}

unsigned int SlotByFromChars(std::string_view text) {
  const unsigned int first = Take<unsigned short>(text);
  if (text.empty()) return first;
  text.remove_prefix(1);
  return Join(first, Take<unsigned short>(text));
}

void ReadSlot(const std::string& text) {
  Row("WSlotIDstr2i", text, 0, [text]() -> unsigned int { return WSlotIDstr2i(text); })
      .Peer("sscanf", [text] { return SlotByScanf(text); })
      .Peer("from_chars", [text] { return SlotByFromChars(WithoutBlanks(text)); })
      .Obvious("std::istringstream", [text] { return SlotByStream(text); })
      .Limit("from_chars without blanks", [text] { return SlotByFromChars(text); });
}

// Cuts a text of the DC form before its last two characters.
template <typename Read>
auto Halves(const std::string& text, Read read) {
  return [text, read]() -> unsigned int {
    if (text.find('-') != std::string::npos) return read(text);
    const unsigned int plain = read(text);
    if (plain < 200) return plain;
    return Join(read(text.substr(0, text.size() - 2)), read(text.substr(text.size() - 2)));
  };
}

unsigned int DcByFromChars(std::string_view text) {
  const unsigned int plain = SlotByFromChars(text);
  if (plain < 200 || text.find('-') != std::string_view::npos) return plain;
  std::string_view shelf = text.substr(0, text.size() - 2);
  text.remove_prefix(shelf.size());
  return Join(Take<unsigned int>(shelf), Take<unsigned int>(text));
}

void ReadDc(const std::string& text) {
  Row("convertSlotDC", text, 0, [text] { return convertSlotDC(text); })
      .Peer("sscanf", Halves(text, SlotByScanf))
      .Peer("from_chars", [text] { return DcByFromChars(WithoutBlanks(text)); })
      .Obvious("std::istringstream", Halves(text, SlotByStream))
      .Limit("from_chars without blanks", [text] { return DcByFromChars(text); });
}

// Of an element before the second generation and a board from shelf 2 on.
void WriteDc(int board) {
  constexpr unsigned int GENERATION = 50000;
  const unsigned int shelf = static_cast<unsigned int>(board) >> 8;
  const unsigned int slot = static_cast<unsigned int>(board) & 0xFF;
  Row("convertSlot2strDC", convertSlot2strDC(GENERATION, board), 0,
      [board] { return convertSlot2strDC(GENERATION, board); })
      .Peer("fmt", [=] { return fmt::format("{}{:02}", shelf, slot); })
      .Peer("snprintf",
            [=] {
              return Printed([=](char* text, size_t size) { return std::snprintf(text, size, "%u%02u", shelf, slot); });
            })
      .Obvious("std::ostringstream",
               [=] {
                 std::ostringstream stream;
                 stream << shelf << (slot < 10 ? "0" : "") << slot;
                 return stream.str();
               })
      .Limit("to_chars", [=] {
        char text[16];
        char* end = std::to_chars(text, text + sizeof text, shelf).ptr;
        if (slot < 10) *end++ = '0';
        return std::string(text, std::to_chars(end, text + sizeof text, slot).ptr);
      });
}

using ShelfAndSlot = std::pair<unsigned short, unsigned short>;

ShelfAndSlot Tl1SlotByScanf(const char* text) {
  ShelfAndSlot result;
  const char* found = std::strstr(text, "SLOT-");
  if (found != nullptr && std::sscanf(found, "SLOT-%hu-%hu", &result.first, &result.second) == 1) {
    std::swap(result.first, result.second);
  }
  return result;
}

ShelfAndSlot Tl1SlotByFromChars(std::string_view text) {
  const size_t found = text.find("SLOT-");
  if (found == std::string_view::npos) return {};
  text.remove_prefix(found + 5);
  const auto first = Take<unsigned short>(text);
  if (text.find('-') == std::string_view::npos) return {0, first};
  text.remove_prefix(1);
  return {first, Take<unsigned short>(text)};
}

ShelfAndSlot Tl1SlotByStream(const std::string& text) {
  ShelfAndSlot result;
  const size_t found = text.find("SLOT-");
  if (found == std::string::npos) return result;
  const std::string behind = text.substr(found + 5);
  std::istringstream stream(behind);
  char separator;
  if (behind.find('-') != std::string::npos) stream >> result.first >> separator;
  stream >> result.second;
  return result;
}

void ReadTl1Slot(const std::string& text) {
  Row("ParseTL1SlotID", text, 0,
      [text] {
        ShelfAndSlot result;
        ParseTL1SlotID(text.c_str(), result.first, result.second);
        return result;
      })
      .Peer("strstr and sscanf", [text] { return Tl1SlotByScanf(text.c_str()); })
      .Peer("find and from_chars", [text] { return Tl1SlotByFromChars(text.c_str()); })
      .Obvious("std::istringstream", [text] { return Tl1SlotByStream(text); })
      .Limit("from_chars at a known place", [text, start = text.find("SLOT-") + 5] {
        unsigned short shelf = 0;
        std::from_chars(text.data() + start, text.data() + text.size(), shelf);
        return shelf;
      });
}

template <typename Digits>
unsigned int Identifier(unsigned short number, Digits digits) {
  const auto text = digits(number);
  if (text.size() != 3) return number;
  return static_cast<unsigned int>(text[0]) << 5 | static_cast<unsigned int>(text[1]);
}

void NeSlot(unsigned short number) {
  Row("GetNESlotID", std::to_string(number), 0, [number] { return GetNESlotID(number); })
      .Peer("fmt", [=] { return Identifier(number, [](auto n) { return fmt::format("{}", n); }); })
      .Peer("snprintf",
            [=] {
              return Identifier(number, [](auto n) {
                return Printed([n](char* text, size_t size) { return std::snprintf(text, size, "%u", n); });
              });
            })
      .Obvious("std::ostringstream",
               [=] {
                 return Identifier(number, [](auto n) {
                   std::ostringstream stream;
                   stream << n;
                   return stream.str();
                 });
               })
      .Limit("to_chars", [=] { return Identifier(number, [](auto n) { return ToChars(n & 0xFFU, 10); }); });
}

}  // namespace

void AddNumbers() {
  for (const char* text : {"7", "  7860", "4294967295", "42949672960"})
    Convert<unsigned int>("unsigned int", text);
  for (const char* text : {"7", "  7860", "65536"})
    Convert<unsigned short>("unsigned short", text);
  for (const char* text : {"x", "    x"})
    ConvertChar(text);
  for (const unsigned short slotId : {0x0007, 0x0305, 0xFFFF}) {
    SlotText("WSlotIDi2str", slotId, WSlotIDi2str, "{}-{}", "{}", "%u-%u", "%u", 10);
    SlotText("WSlotIDi2Hexstr", slotId, WSlotIDi2Hexstr, "{:x}-{:x}", "{:x}", "%x-%x", "%x", 16);
  }
  for (const char* text : {"7", "3-5", "255-255"})
    ReadSlot(text);
  for (const char* text : {"7", "3-5", "305", "12034"})
    ReadDc(text);
  for (const int board : {0x0305, 0x7822})
    WriteDc(board);
  for (const char* text : {"SLOT-7", "SLOT-3-5", "the board in SLOT-12-34"})
    ReadTl1Slot(text);
  for (const unsigned short number : {7, 305})
    NeSlot(number);
}

}  // namespace VARNEL_BENCH
