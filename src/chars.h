#ifndef VARNEL_SRC_CHARS_H
#define VARNEL_SRC_CHARS_H

#include <string_view>

namespace VARNEL_COMMON {

/// isspace() of the "C" locale, for any byte.
constexpr bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// toupper() of the "C" locale, for any byte.
constexpr char ToUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Number of white-space characters at the front of a text.
constexpr size_t LeadingBlanks(std::string_view text) {
  size_t count = 0;
  while (count < text.size() && IsBlank(text[count]))
    ++count;
  return count;
}

}  // namespace VARNEL_COMMON

#endif
