#ifndef VARNEL_UTIL_CHARS_H
#define VARNEL_UTIL_CHARS_H

#include <string_view>

namespace VARNEL_UTIL {

/// isspace() of the "C" locale, for any byte.
constexpr bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// isdigit() of the "C" locale, for any byte.
constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// toupper() of the "C" locale, for any byte.
constexpr char ToUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// tolower() of the "C" locale, for any byte.
constexpr char ToLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether two characters are equal or differ in case only.
constexpr bool SameNoCase(char a, char b) {
  return ToUpper(a) == ToUpper(b);
}

/// A text without its leading white space.
constexpr std::string_view TrimmedLeft(std::string_view text) {
  while (!text.empty() && IsBlank(text.front()))
    text.remove_prefix(1);
  return text;
}

/// A text without its trailing white space.
constexpr std::string_view TrimmedRight(std::string_view text) {
  while (!text.empty() && IsBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

/// A text without leading and trailing white space.
constexpr std::string_view Trimmed(std::string_view text) {
  return TrimmedLeft(TrimmedRight(text));
}

}  // namespace VARNEL_UTIL

#endif
