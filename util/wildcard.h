#ifndef VARNEL_UTIL_WILDCARD_H
#define VARNEL_UTIL_WILDCARD_H

#include <algorithm>
#include <string_view>
#include <vector>

#include "util/chars.h"
#include "util/find.h"

namespace VARNEL_UTIL {

/// The position of the first of two characters from `from` on. In a short text, such as a name, comparing each
/// character takes less time than two calls. A longer one is searched window by window: the search for an absent
/// character never goes far beyond the other one.
inline size_t FindEither(std::string_view text, char a, char b, size_t from) {
  constexpr size_t SHORT = 16, WINDOW = 256;
  for (; text.size() <= SHORT && from < text.size(); ++from)
    if (text[from] == a || text[from] == b) return from;
  for (; from < text.size(); from += WINDOW) {
    const std::string_view window = text.substr(from, WINDOW);
    const size_t found = window.find(a);
    const size_t other = window.substr(0, found).find(b);
    if (std::min(found, other) != std::string_view::npos) return from + std::min(found, other);
  }
  return std::string_view::npos;
}

/// Finds a literal in any case, in linear time: a long one, which may almost match everywhere, by the algorithm of
/// Knuth, Morris and Pratt.
inline size_t FindNoCase(std::string_view text, std::string_view literal, size_t from) {
  if (literal.size() <= PLAIN_SEARCH_LIMIT) {
    const char upper = ToUpper(literal[0]), lower = ToLower(literal[0]);
    const std::string_view starts = text.substr(0, std::max(text.size() + 1, literal.size()) - literal.size());
    for (size_t at = from; (at = FindEither(starts, lower, upper, at)) != std::string_view::npos; ++at)
      if (std::equal(literal.begin(), literal.end(), text.begin() + static_cast<std::ptrdiff_t>(at), SameNoCase))
        return at;
    return std::string_view::npos;
  }
  // For each prefix of the literal, the length of its longest proper prefix that is also its suffix.
  std::vector<size_t> fallback(literal.size(), 0);
  const auto advance = [&](size_t matched, char next) {
    while (matched > 0 && !SameNoCase(literal[matched], next))
      matched = fallback[matched - 1];
    return matched + (SameNoCase(literal[matched], next) ? 1 : 0);
  };
  for (size_t i = 1; i < literal.size(); ++i)
    fallback[i] = advance(fallback[i - 1], literal[i]);
  size_t matched = 0;
  for (size_t i = from; i < text.size(); ++i) {
    matched = advance(matched, text[i]);
    if (matched == literal.size()) return i + 1 - matched;
  }
  return std::string_view::npos;
}

/// Matches a text with a pattern of "*" and "?", ignoring case. Simpler than a shell's matcher:
///
///     "abab"   "*ab"  no   the literal after a "*" counts at its first occurrence only
///     "abaab"  "a?b"  yes  a mismatch after a "?" goes on from the last "*", or the pattern's start, at that character
///     "a"      "a*?"  no   a "?" next to a "*" consumes no character
///     ""       "*"    no   nothing matches an empty text
class NoCaseMatcher {
 public:
  NoCaseMatcher(std::string_view text, std::string_view pattern) : m_text(text), m_pattern(pattern) {}

  bool Matches() {
    if (m_text.empty()) return false;
    while (!PatternAtEnd() && !TextAtEnd()) {
      const char next = m_pattern[m_p];
      if (!(next == '*' ? TakeStar() : next == '?' ? TakeAny() : TakeOne())) return false;
    }
    return TextAtEnd() && m_pattern.find_first_not_of('*', m_p) == std::string_view::npos;
  }

 private:
  static bool IsMeta(char c) { return c == '*' || c == '?'; }
  bool TextAtEnd() const { return m_t == m_text.size(); }
  bool PatternAtEnd() const { return m_p == m_pattern.size(); }

  bool TakeOne() {
    if (!SameNoCase(m_pattern[m_p], m_text[m_t])) return false;
    ++m_t;
    ++m_p;
    return true;
  }

  // A "?" and the literal after it. After a mismatch only the position in the pattern moves back, not that in the text.
  bool TakeAny() {
    ++m_t;
    ++m_p;
    while (!PatternAtEnd() && !IsMeta(m_pattern[m_p]) && !TextAtEnd()) {
      if (TakeOne()) continue;
      if (!m_literal.empty()) return TakeLiteral();
      m_p = 0;
      return true;
    }
    return true;
  }

  bool TakeStar() {
    while (!PatternAtEnd() && IsMeta(m_pattern[m_p]))
      ++m_p;
    const size_t start = m_p;
    while (!PatternAtEnd() && !IsMeta(m_pattern[m_p]))
      ++m_p;
    m_literal = m_pattern.substr(start, m_p - start);
    m_literalEnd = m_p;
    if (!m_literal.empty()) return TakeLiteral();
    m_t = m_text.size();
    return true;
  }

  bool TakeLiteral() {
    const size_t found = FindNoCase(m_text, m_literal, m_t);
    if (found == std::string_view::npos) return false;
    m_t = found + m_literal.size();
    m_p = m_literalEnd;
    return true;
  }

  std::string_view m_text;
  std::string_view m_pattern;
  size_t m_t = 0;
  size_t m_p = 0;
  std::string_view m_literal;  // after the last "*", and where it ends in the pattern
  size_t m_literalEnd = 0;
};

}  // namespace VARNEL_UTIL

#endif
