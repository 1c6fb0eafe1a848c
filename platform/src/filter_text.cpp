#include "filter_text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace LOG_FILTER {
namespace {

constexpr std::string_view KEYS[] = {"PASSWORD", "PASSWD", "PWD", "PSWD", "SECRET", "TOKEN"};
constexpr std::string_view COMMANDS[] = {"ACT-USER", "ED-PID", "ENT-USER-SECU", "ED-USER-SECU"};

struct Spelling {
  std::string_view bytes;
  QuoteKind kind;
  char c = '"';
};

constexpr Spelling SPELLINGS[] = {
    {"\"", DOUBLE},
    {"'", SINGLE},
    {"`", BACKTICK},
    {"\xE2\x80\x9C", CURLY_DOUBLE},
    {"\xE2\x80\x9D", CURLY_DOUBLE},
    {"\xE2\x80\x9E", CURLY_DOUBLE},
    {"\xE2\x80\x9F", CURLY_DOUBLE},
    {"\xC2\xAB", CURLY_DOUBLE},
    {"\xC2\xBB", CURLY_DOUBLE},
    {"\xE2\x80\x98", CURLY_SINGLE},
    {"\xE2\x80\x99", CURLY_SINGLE},
    {"\xE2\x80\x9A", CURLY_SINGLE},
    {"\xE2\x80\x9B", CURLY_SINGLE},
    {"\xE2\x80\xB9", CURLY_SINGLE},
    {"\xE2\x80\xBA", CURLY_SINGLE},
    {"&quot;", NAMED_DOUBLE},
    {"&#34;", NAMED_DOUBLE},
    {"&#x22;", NAMED_DOUBLE},
    {"&apos;", NAMED_SINGLE},
    {"&#39;", NAMED_SINGLE},
    {"&#x27;", NAMED_SINGLE},
    {"&lt;", NO_QUOTE, '<'},
    {"&gt;", NO_QUOTE, '>'},
};

constexpr unsigned DEEPEST = 31;

const Spelling* SpellingAt(std::string_view rest) {
  if (rest.empty() || std::string_view("\"'`&\xE2\xC2").find(rest[0]) == std::string_view::npos) return nullptr;
  const auto* const found = std::find_if(std::begin(SPELLINGS), std::end(SPELLINGS), [&](const Spelling& spelling) {
    return rest.substr(0, spelling.bytes.size()) == spelling.bytes;
  });
  return found == std::end(SPELLINGS) ? nullptr : found;
}

// The ASCII character of an escape such as "u0022", else 0.
char UnicodeAt(std::string_view rest) {
  constexpr std::string_view DIGITS = "0123456789abcdef";
  if (rest.size() < 5 || rest.substr(0, 3) != "u00") return 0;
  const size_t high = DIGITS.find(rest[3]);
  const size_t low = DIGITS.find(static_cast<char>(rest[4] | 0x20));
  return high >= 2 && high < 8 && low < 16 ? static_cast<char>(high * 16 + low) : '\0';
}

bool IsSingle(uint16_t quote) {
  return KindOf(quote) == SINGLE || KindOf(quote) == CURLY_SINGLE || KindOf(quote) == NAMED_SINGLE;
}

class Reader {
 public:
  explicit Reader(std::string_view text) : m_text(text) {}

  std::vector<Character> Read() {
    m_read.reserve(m_text.size() + 2);
    Add('\n', 0);
    while (m_at < m_text.size()) {
      const size_t end = std::min(m_text.find_first_not_of('\\', m_at), m_text.size());
      AfterBackslashes(end - m_at);
    }
    Add('\n', 0);
    LinkQuotes();
    return std::move(m_read);
  }

 private:
  void Add(char c, size_t length, uint16_t quote = NO_QUOTE) {
    m_read.push_back({m_at, c, quote});
    m_at += length;
  }

  // Each level of escaping doubles the backslashes before a quote and adds one: of 0, 1, 3 and 7 backslashes the depth
  // is 0, 1, 2 and 3. The others are part of the text: in `a\\"` the text ends in a backslash. `\u0022` is a quote of
  // depth 1, `\\u0022` one of depth 2.
  void AfterBackslashes(size_t count) {
    const std::string_view rest = m_text.substr(m_at + count);
    if (const Spelling* spelling = SpellingAt(rest)) {
      unsigned depth = 0;
      while (depth < DEEPEST && (count >> depth & 1) != 0)
        ++depth;
      AddEscaped(count, (size_t{1} << depth) - 1, depth, *spelling);
    } else if (const char c = count > 0 ? UnicodeAt(rest) : '\0') {
      unsigned depth = 0;
      while (depth < DEEPEST - 1 && (count >> depth & 1) == 0)
        ++depth;
      AddEscaped(count, size_t{1} << depth, depth + 1,
                 {"u0022",
                  c == '"'    ? NAMED_DOUBLE
                  : c == '\'' ? NAMED_SINGLE
                              : NO_QUOTE,
                  c});
    } else if (count > 0 && !rest.empty() && rest[0] == '/') {
      Add('/', count + 1);  // as in some JSON texts
    } else if (count > 0) {
      AddBackslashes(count);
    } else {
      Add(rest[0], 1);
    }
  }

  void AddEscaped(size_t count, size_t own, unsigned depth, const Spelling& spelling) {
    AddBackslashes(count - own);
    const size_t length = own + spelling.bytes.size();
    if (spelling.kind == NO_QUOTE) return Add(spelling.c, length);
    Add('"', length, QuoteMark(spelling.kind, depth));
  }

  void AddBackslashes(size_t count) {
    for (; count > 0; --count)
      Add('\\', 1);
  }

  // The "n" of `\n`.
  bool IsEscapedWhite(size_t i) const {
    return std::string_view("nrt").find(m_read[i].c) != std::string_view::npos && m_read[i - 1].c == '\\';
  }

  void LinkQuotes() {
    std::array<size_t, 256> next;
    next.fill(NONE);
    for (size_t i = m_read.size(); i-- > 0;) {
      Character& character = m_read[i];
      if (character.quote == NO_QUOTE) continue;
      character.next = next[character.quote];
      character.followsWord = IsWord(m_read[i - 1].c) && !IsEscapedWhite(i - 1);
      character.isApostrophe = IsSingle(character.quote) && character.followsWord && IsWord(m_read[i + 1].c);
      if (!character.isApostrophe) next[character.quote] = i;
    }
  }

  std::string_view m_text;
  size_t m_at = 0;
  std::vector<Character> m_read;
};

}  // namespace

bool IsOneOf(char c, std::string_view characters) {
  return characters.find(c) != std::string_view::npos;
}

bool IsWhite(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsWord(char c) {
  const auto byte = static_cast<unsigned char>(c);
  const unsigned char letter = byte | 0x20U;
  return (letter >= 'a' && letter <= 'z') || (byte >= '0' && byte <= '9') || byte == '_' || byte >= 0x80;
}

FilterText::FilterText(const std::string& text) : m_text(Reader(text).Read()) {}

bool FilterText::EndsWith(size_t end, std::string_view word) const {
  if (end <= word.size()) return false;
  for (size_t i = 0; i < word.size(); ++i) {
    const char c = At(end - word.size() + i);
    if ((c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) != word[i]) return false;
  }
  return true;
}

bool FilterText::IsKey(size_t end) const {
  return IsWord(At(end - 1)) && !IsWord(At(end)) &&
         std::any_of(std::begin(KEYS), std::end(KEYS), [&](std::string_view key) { return EndsWith(end, key); });
}

bool FilterText::IsCommand(size_t end) const {
  return IsWord(At(end - 1)) && !IsWord(At(end)) &&
         std::any_of(std::begin(COMMANDS), std::end(COMMANDS),
                     [&](std::string_view name) { return EndsWith(end, name); });
}

size_t FilterText::AfterBackslashes(size_t i) const {
  while (At(i) == '\\')
    ++i;
  return i;
}

size_t FilterText::AfterBlanks(size_t i) const {
  while (At(i) == ' ' || At(i) == '\t')
    ++i;
  return i;
}

bool FilterText::IsEscapedWhite(size_t i) const {
  return At(i) == '\\' && IsOneOf(At(AfterBackslashes(i)), "nrt\n\r");
}

size_t FilterText::AfterWhite(size_t i) const {
  while (i < End() && (IsWhite(At(i)) || IsEscapedWhite(i)))
    i = AfterBackslashes(i) + 1;
  return std::min(i, End());
}

size_t FilterText::InnerQuote(size_t i) const {
  const auto mark = [&](size_t k) { return m_text[std::min(k, End())].quote; };
  const uint16_t quote = mark(i);
  if (mark(i + 1) == quote) return 2;
  if (KindOf(quote) != SINGLE) return 0;
  const size_t escaped = AfterBackslashes(i + 1);
  if (KindOf(mark(escaped)) == SINGLE) return mark(escaped + 1) == quote ? escaped + 2 - i : 0;
  const bool isQuoted = KindOf(mark(i + 1)) == DOUBLE && mark(i + 2) == quote && mark(i + 3) == mark(i + 1);
  return isQuoted && mark(i + 4) == quote ? 5 : 0;
}

}  // namespace LOG_FILTER
