// Slots as texts.
#include <fmt/format.h>
#include <zepv2data.h>

#include <charconv>
#include <cstdio>
#include <sstream>
#include <string_view>

#include "bench.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

// Slot 5 of shelf 3, hidden from the compiler.
unsigned short Word() {
  unsigned short word = 0x0305;
  benchmark::DoNotOptimize(word);
  return word;
}

unsigned int ShelfOf(unsigned short word) {
  return word >> 8;
}

unsigned int SlotOf(unsigned short word) {
  return word & 0xFF;
}

std::string Printed(const char* format) {
  const unsigned short word = Word();
  char text[16];
  return {text, static_cast<size_t>(std::snprintf(text, sizeof text, format, ShelfOf(word), SlotOf(word)))};
}

std::string Formatted(const char* format) {
  const unsigned short word = Word();
  return fmt::format(fmt::runtime(format), ShelfOf(word), SlotOf(word));
}

std::string Streamed() {
  const unsigned short word = Word();
  std::ostringstream stream;
  stream << ShelfOf(word) << '-' << SlotOf(word);
  return stream.str();
}

std::string ToChars() {
  const unsigned short word = Word();
  char text[16];
  char* end = std::to_chars(text, text + sizeof text, ShelfOf(word)).ptr;
  *end++ = '-';
  return {text, std::to_chars(end, text + sizeof text, SlotOf(word)).ptr};
}

void WriteSlots() {
  Row("WSlotIDi2str", "3-5", [] { return WSlotIDi2str(Word()); })
      .Peer("fmt", [] { return Formatted("{}-{}"); })
      .Peer("snprintf", [] { return Printed("%u-%u"); })
      .Peer("std::ostringstream", Streamed)
      .Limit("to_chars", ToChars);
  Row("WSlotIDi2Hexstr", "3-5", [] {
    return WSlotIDi2Hexstr(Word());
  }).Peer("fmt", [] {
      return Formatted("{:x}-{:x}");
    }).Peer("snprintf", [] { return Printed("%x-%x"); });
  constexpr unsigned int FIRST_GENERATION = 50000;
  Row("convertSlot2strDC", "305", [] {
    return convertSlot2strDC(FIRST_GENERATION, Word());
  }).Peer("fmt", [] {
      return Formatted("{}{:02}");
    }).Peer("snprintf", [] { return Printed("%u%02u"); });
}

unsigned int Join(unsigned int shelf, unsigned int slot) {
  return (shelf << 8) + slot;
}

// Slots from 200 on are a shelf and two digits of a slot.
unsigned int FromPlain(unsigned int number) {
  return number < 200 ? number : Join(number / 100, number % 100);
}

unsigned int ByScanf(const std::string& text) {
  unsigned int shelf = 0;
  unsigned int slot = 0;
  return std::sscanf(text.c_str(), "%u-%u", &shelf, &slot) == 2 ? Join(shelf, slot) : FromPlain(shelf);
}

unsigned int ByFromChars(const std::string& text) {
  unsigned int shelf = 0;
  unsigned int slot = 0;
  const char* end = text.data() + text.size();
  const char* dash = std::from_chars(text.data(), end, shelf).ptr;
  if (dash == end || *dash != '-') return FromPlain(shelf);
  std::from_chars(dash + 1, end, slot);
  return Join(shelf, slot);
}

unsigned int ByStream(const std::string& text) {
  std::istringstream stream(text);
  unsigned int shelf = 0;
  unsigned int slot = 0;
  char dash;
  stream >> shelf;
  return stream >> dash >> slot ? Join(shelf, slot) : FromPlain(shelf);
}

template <typename Read>
void ReadSlot(const std::string& operation, const std::string& text, Read read) {
  Row(operation, text, [text, read]() -> unsigned int { return read(text); })
      .Peer("sscanf", [text] { return ByScanf(text); })
      .Peer("from_chars", [text] { return ByFromChars(text); })
      .Peer("std::istringstream", [text] { return ByStream(text); });
}

}  // namespace

void AddZepv2Data() {
  WriteSlots();
  ReadSlot("WSlotIDstr2i", "3-5", WSlotIDstr2i);
  ReadSlot("convertSlotDC", "3-5", convertSlotDC);
  ReadSlot("convertSlotDC", "305", convertSlotDC);
}

}  // namespace VARNEL_BENCH
