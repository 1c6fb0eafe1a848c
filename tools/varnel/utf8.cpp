#include "utf8.h"

#include <cstdint>
#include <cstring>

bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

size_t CharacterLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  const size_t length = first < 0x80   ? 1
                        : first < 0xC2 ? 0
                        : first < 0xE0 ? 2
                        : first < 0xF0 ? 3
                        : first < 0xF5 ? 4
                                       : 0;
  if (length > text.size()) return 0;
  for (size_t i = 1; i < length; ++i) {
    if (!IsContinuation(text[i])) return 0;
  }
  if (length < 3) return length;
  const auto second = static_cast<unsigned char>(text[1]);
  const bool valid = (first != 0xE0 || second >= 0xA0) && (first != 0xED || second < 0xA0) &&
                     (first != 0xF0 || second >= 0x90) && (first != 0xF4 || second < 0x90);
  return valid ? length : 0;
}

bool IsUtf8(std::string_view text) {
  constexpr uint64_t HIGH_BITS = 0x8080808080808080;
  while (!text.empty()) {
    uint64_t block = HIGH_BITS;
    if (text.size() >= sizeof block) std::memcpy(&block, text.data(), sizeof block);
    const size_t length = (block & HIGH_BITS) == 0 ? sizeof block : CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

char32_t CodePoint(std::string_view character) {
  const auto first = static_cast<unsigned char>(character[0]);
  char32_t point = character.size() == 1 ? first : first & (0x7FU >> character.size());
  for (const char c : character.substr(1))
    point = point << 6 | (static_cast<unsigned char>(c) & 0x3FU);
  return point;
}

bool IsHarmless(char32_t point) {
  const bool control = point < 0x20 || (point >= 0x7F && point < 0xA0);
  const bool turnsDirection = point == 0x61C || point == 0x200E || point == 0x200F ||
                              (point >= 0x202A && point <= 0x202E) || (point >= 0x2066 && point <= 0x2069);
  return !control && !turnsDirection;
}
