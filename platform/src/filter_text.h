#ifndef VARNEL_PLATFORM_FILTER_TEXT_H
#define VARNEL_PLATFORM_FILTER_TEXT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace LOG_FILTER {

constexpr size_t NONE = SIZE_MAX;

enum QuoteKind : uint16_t {
  NO_QUOTE,
  DOUBLE,
  SINGLE,
  BACKTICK,
  CURLY_DOUBLE,
  CURLY_SINGLE,
  NAMED_DOUBLE,  ///< &quot; and \u0022
  NAMED_SINGLE
};

/// The mark of a quote: its kind and its depth of escaping. Two quotes can enclose a text if their marks are equal.
constexpr uint16_t QuoteMark(QuoteKind kind, unsigned depth) {
  return static_cast<uint16_t>(kind * 32U + depth);
}
constexpr QuoteKind KindOf(uint16_t mark) {
  return static_cast<QuoteKind>(mark / 32 % 8);
}
constexpr unsigned DepthOf(uint16_t mark) {
  return mark % 32;
}

/// One character as the languages of a text read it: `&lt;` and `\u003c` are "<", `\"` is a quote of depth 1.
struct Character {
  size_t at;                  ///< its first byte, which may be a backslash
  char c;                     ///< '"' for every quote
  uint16_t quote = NO_QUOTE;  ///< the mark of a quote
  bool followsWord = false;   ///< of a quote: a word character is before it
  bool isApostrophe = false;  ///< of a single quote: it is inside a word, as in "it's"
  size_t next = NONE;         ///< of a quote: index of the next one with its mark that is not an apostrophe
};

bool IsOneOf(char c, std::string_view characters);
bool IsWhite(char c);
bool IsWord(char c);
inline bool IsSign(char c) {
  return c == '=' || c == ':';
}
inline bool IsName(char c) {
  return IsWord(c) || IsOneOf(c, ".:-");
}

/// The characters of a text of any bytes, read in linear time. The first one has the index 1. A line end is at 0 and at
/// End().
class FilterText {
 public:
  explicit FilterText(const std::string& text);

  size_t End() const { return m_text.size() - 1; }
  const Character& operator[](size_t i) const { return m_text[i]; }
  char At(size_t i) const { return m_text[i].c; }
  bool IsQuote(size_t i) const { return m_text[i].quote != NO_QUOTE; }

  /// The bytes of the character in the text: 4 if it is written as "&lt;".
  size_t Bytes(size_t i) const { return m_text[i + 1].at - m_text[i].at; }

  /// Whether a key, or the name of a TL1 command with a password, ends before that index.
  bool IsKey(size_t end) const;
  bool IsCommand(size_t end) const;

  size_t AfterBackslashes(size_t i) const;
  size_t AfterBlanks(size_t i) const;

  /// Skips white space in any form: also `\n` as in JSON, and a backslash at the end of a line.
  size_t AfterWhite(size_t i) const;
  bool IsEscapedWhite(size_t i) const;

  /// The number of characters that write a quote inside a text between such quotes: "" and, in shells, '\'' and '"'"'.
  /// 0 if it is an ordinary quote.
  size_t InnerQuote(size_t i) const;

 private:
  bool EndsWith(size_t end, std::string_view word) const;

  std::vector<Character> m_text;
};

}  // namespace LOG_FILTER

#endif
