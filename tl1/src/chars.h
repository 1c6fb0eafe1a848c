#ifndef VARNEL_TL1_CHARS_H
#define VARNEL_TL1_CHARS_H

#include <algorithm>
#include <string_view>

namespace VARNEL_TL1 {

inline bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\0';
}
inline bool IsLineEnd(char c) {
  return c == '\r' || c == '\n';
}
inline bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
inline bool IsUpper(char c) {
  return c >= 'A' && c <= 'Z';
}
inline bool IsLetter(char c) {
  return IsUpper(c) || (c >= 'a' && c <= 'z');
}

template <typename Predicate>
bool AllOf(std::string_view text, Predicate predicate) {
  return !text.empty() && std::all_of(text.begin(), text.end(), predicate);
}
template <typename Predicate>
bool AnyOf(std::string_view text, Predicate predicate) {
  return std::any_of(text.begin(), text.end(), predicate);
}

inline std::string_view WithoutIndent(std::string_view line) {
  while (!line.empty() && IsBlank(line.front()))
    line.remove_prefix(1);
  return line;
}
inline std::string_view WithoutBlankEnd(std::string_view line) {
  while (!line.empty() && IsBlank(line.back()))
    line.remove_suffix(1);
  return line;
}

/// How many backslashes are directly before `pos`. In East Asian encodings a backslash can be the second byte of a
/// character, which does not count:
///
///     \"  ->  1      \\"  ->  2      95 \"  ->  0      E6 9D B1 \"  ->  1, as such bytes are a character of UTF-8
size_t BackslashesBefore(std::string_view text, size_t pos);

/// Whether a text is cut within a two-byte character.
bool EndsInsideCharacter(std::string_view text);

/// The first quote from `begin` on that no backslash escapes; the size of the text if there is none.
size_t FindQuote(std::string_view text, size_t begin);

}  // namespace VARNEL_TL1

#endif
