#ifndef VARNEL_BENCH_PATTERNS_H
#define VARNEL_BENCH_PATTERNS_H

#include <re2/re2.h>

#include <string>

/// Peers of the wildcard matches: a plain loop and RE2.
namespace VARNEL_BENCH {

inline bool SameChar(char a, char b) {
  return a == b;
}

inline bool SameLetter(char a, char b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; };
  return lower(a) == lower(b);
}

/// Matches the whole text; at every mismatch it returns to the last "*".
template <bool (*Same)(char, char)>
bool PlainMatch(const char* text, const char* pattern) {
  const char* star = nullptr;
  const char* resume = text;
  while (*text != '\0') {
    if (*pattern == '*') {
      star = ++pattern;
      resume = text;
    } else if (*pattern != '\0' && Same(*pattern, *text)) {
      ++pattern;
      ++text;
    } else if (star != nullptr) {
      pattern = star;
      text = ++resume;
    } else {
      return false;
    }
  }
  while (*pattern == '*')
    ++pattern;
  return *pattern == '\0';
}

/// Options for texts of any bytes in which "." matches a line end too.
inline RE2::Options AnyBytes(bool caseSensitive = true) {
  RE2::Options options;
  options.set_encoding(RE2::Options::EncodingLatin1);
  options.set_dot_nl(true);
  options.set_case_sensitive(caseSensitive);
  return options;
}

/// The regular expression of a wildcard pattern, for a full match.
inline std::string Expression(const std::string& pattern) {
  std::string expression;
  for (const char c : pattern)
    expression += c == '*' ? ".*" : RE2::QuoteMeta(std::string(1, c));
  return expression;
}

}  // namespace VARNEL_BENCH

#endif
