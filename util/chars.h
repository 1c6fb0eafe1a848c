#ifndef VARNEL_UTIL_CHARS_H
#define VARNEL_UTIL_CHARS_H

#include <algorithm>
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
inline std::string_view TrimmedLeft(std::string_view text) {
  const auto begin = std::find_if_not(text.begin(), text.end(), [](char c) { return IsBlank(c); });
  return text.substr(static_cast<size_t>(begin - text.begin()));
}

/// A text without its trailing white space.
inline std::string_view TrimmedRight(std::string_view text) {
  const auto end = std::find_if_not(text.rbegin(), text.rend(), [](char c) { return IsBlank(c); });
  return text.substr(0, static_cast<size_t>(text.rend() - end));
}

/// A text without leading and trailing white space.
inline std::string_view Trimmed(std::string_view text) {
  return TrimmedLeft(TrimmedRight(text));
}

}  // namespace VARNEL_UTIL

#endif
