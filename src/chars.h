#ifndef VARNEL_SRC_CHARS_H
#define VARNEL_SRC_CHARS_H

#include <string_view>

#include "byte_blocks.h"

namespace VARNEL_COMMON {

/// isspace() of the "C" locale, for any byte.
constexpr bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// toupper() of the "C" locale, for any byte.
constexpr char ToUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// tolower() of the "C" locale, for any byte.
constexpr char ToLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether two characters differ in case only.
constexpr bool SameNoCase(char a, char b) {
  return ToUpper(a) == ToUpper(b);
}

/// Number of white-space characters at the front of a text.
inline size_t LeadingBlanks(std::string_view text) {
  size_t count = 0;
  for (; text.size() - count >= BLOCK; count += BLOCK) {
    const uint32_t others = ~FindBlanks(text.data() + count).blank & WHOLE_BLOCK;
    if (others != 0) return count + LowestBit(others);
  }
  while (count < text.size() && IsBlank(text[count]))
    ++count;
  return count;
}

/// Number of characters up to the last one that is not white space.
inline size_t LengthWithoutTrailingBlanks(std::string_view text) {
  size_t length = text.size();
  for (; length >= BLOCK; length -= BLOCK) {
    const uint32_t others = ~FindBlanks(text.data() + length - BLOCK).blank & WHOLE_BLOCK;
    if (others != 0) return length - BLOCK + HighestBit(others) + 1;
  }
  while (length > 0 && IsBlank(text[length - 1]))
    --length;
  return length;
}

}  // namespace VARNEL_COMMON

#endif
