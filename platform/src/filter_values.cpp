// Values of keys and options, and passwords of TL1 commands, in one pass over the characters of a text.
//
// Texts in quotes can be nested, so a stack contains the open ones. After a sign a quote either opens the value or
// closes the text that ends in the key. It closes one if such a text is open and a separator follows:
//
//   PROMPT="Password:",PWD="x"   -> PROMPT="Password:",PWD="******"
//
// Outside of values a quote opens a text only if no word character precedes it and a quote that closes it follows. A
// value continues after its quotes up to a separator: PWD="a"'b c'd,x=1 -> PWD=******,x=1

#include "filter_values.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace LOG_FILTER {
namespace {

constexpr uint16_t INNER = 256;  // with the mark of a quote: written inside a text between such quotes, as in "a ""b"""

bool IsStrong(uint16_t quote) {
  return KindOf(quote) == DOUBLE || KindOf(quote) == SINGLE;
}

// The TL1 commands of one text: bit n is set if one has had n + 1 colons. A text in quotes has separate counts.
struct Commands {
  unsigned colons = 0;
  int lines = 0;         // since the last name
  size_t secret = NONE;  // start of the block to mask
  size_t line = NONE;    // the end of its first line
};

struct Open {
  uint16_t quote;       // of brackets NO_QUOTE
  size_t start;         // of the text, after the quote
  size_t brackets = 0;  // how many are open
  Commands outer;       // those of the text around it
};

struct Value {
  size_t start = NONE;
  size_t level = 0;          // how many texts are open around it
  bool keepsQuotes = false;  // if the same quote begins and ends it
  bool reachesEnd = false;   // of the text around it
  bool isArgument = false;   // of an option: a comma is a part of it
};

class Scanner {
 public:
  Scanner(const FilterText& text, bool isMarkup, Secrets& secrets)
      : m_text(text), m_secrets(secrets), m_isMarkup(isMarkup) {}

  void Scan() {
    for (m_at = 1; m_at < m_text.End(); ++m_at)
      Step();
    EndValueBelow(0);
    CloseDownTo(0);
    EndCommandSecret();
  }

 private:
  char At(size_t i) const { return m_text.At(i); }

  // --- Texts in quotes ---

  // Index in the stack. A quote cannot close a text across a double quote of smaller depth: in `\'a "b\'c"` the second
  // `\'` belongs to the text "b\'c".
  size_t Find(uint16_t quote) const {
    for (size_t i = m_open.size(); i-- > 0;) {
      if (m_open[i].quote == quote) return i;
      if (KindOf(m_open[i].quote) == DOUBLE && DepthOf(m_open[i].quote) < DepthOf(quote)) return NONE;
    }
    return NONE;
  }

  // Whether the character after a quote lets the quote close a text. Fewer do after backticks and typographic quotes,
  // which are also found in passwords.
  bool IsSeparator(size_t i) const {
    const uint16_t quote = m_text[i - 1].quote;
    const bool isLoose = KindOf(quote) >= BACKTICK && KindOf(quote) <= CURLY_SINGLE;
    if (m_text.IsQuote(i)) return Find(m_text[i].quote) != NONE && !(isLoose && m_text[i].quote == quote);
    return isLoose ? EndsPlainValue(i) : IsWhite(At(i)) || IsOneOf(At(i), ",;:)]}><=/\\?.!&|");
  }

  // Whether the quote after a sign closes the text around it.
  bool ClosesText(size_t i) const {
    return Find(m_text[i].quote) != NONE && IsSeparator(i + std::max<size_t>(m_text.InnerQuote(i), 1));
  }

  bool IsInQuotedValue() const { return m_value.start != NONE && m_open.size() > m_value.level; }
  bool IsInPlainValue() const { return m_value.start != NONE && m_open.size() == m_value.level; }
  bool IsValueAhead() const { return m_valueAt != NONE && m_valueAt >= m_at; }
  bool MayEndHere() const { return IsInPlainValue() && !m_value.reachesEnd && !IsValueAhead(); }

  bool MayOpen() const {
    const Character& quote = m_text[m_at];
    const bool isClosed = quote.next != NONE;
    if (IsInPlainValue())  // PWD=a"b c",d
      return isClosed && IsStrong(quote.quote) && (!quote.followsWord || IsSeparator(quote.next + 1));
    if (quote.followsWord) return false;
    if (m_commands.colons == 0) return isClosed;
    const QuoteKind kind = KindOf(quote.quote);
    return (kind == DOUBLE || kind == NAMED_DOUBLE) && (isClosed || m_commands.secret != NONE);
  }

  // Whether a text inside the one at that place of the stack is part of a command's password: in
  // `ACT-USER:NE1:bob:1::"a`b"; x` the second backtick is.
  bool IsInPassword(size_t place) const {
    return std::any_of(m_open.begin() + static_cast<std::ptrdiff_t>(place) + 1, m_open.end(),
                       [](const Open& open) { return open.outer.secret != NONE; });
  }

  // Whether a quote may close the text at that place of the stack. It may end a value that began inside the text.
  bool MayClose(size_t place) const {
    const uint16_t quote = m_text[m_at].quote;
    if (!IsStrong(quote) && (m_commands.colons != 0 || IsInPassword(place))) return false;
    if (m_value.start == NONE || place >= m_value.level) return true;
    const auto own = static_cast<uint16_t>(IsInQuotedValue() ? m_open[m_value.level].quote % INNER : NO_QUOTE);
    if (own == NO_QUOTE) return IsSeparator(m_at + 1);
    const bool isDeeper = DepthOf(quote) > DepthOf(own) && (KindOf(own) == DOUBLE || KindOf(own) == KindOf(quote));
    return IsStrong(quote) && !isDeeper;
  }

  void OpenText(uint16_t quote) {
    m_open.push_back({quote, m_at + 1, 0, m_commands});
    m_commands = {};
  }

  void CloseDownTo(size_t count) {
    while (m_open.size() > count) {
      if (m_open.back().quote != NO_QUOTE) {
        EndCommandSecret();
        m_commands = m_open.back().outer;
      }
      m_open.pop_back();
    }
  }

  void CloseText(size_t place) {
    EndValueBelow(place + 1);
    CloseDownTo(place);
    if (MayEndHere() && EndsValueHere()) EndValue(m_at + 1);
  }

  void Quote() {
    const Character& character = m_text[m_at];
    const size_t place = character.isApostrophe ? NONE : Find(character.quote);
    if (place == NONE) {
      if (MayOpen()) OpenText(character.quote);
    } else if (const size_t length = m_text.InnerQuote(m_at)) {
      m_at += length - 1;
      const size_t inner = Find(character.quote | INNER);
      if (inner != NONE) CloseText(inner);
    } else if (MayClose(place)) {
      CloseText(place);
    }
  }

  // --- Values ---

  bool EndsPlainValue(size_t i) const {
    return i >= m_text.End() || (IsWhite(At(i)) && At(i - 1) != '\\') || At(i) == ';' ||
           (At(i) == ',' && !m_value.isArgument) || EndsMask(i);
  }

  // Whether a value in brackets was masked before: {"pwd": ******}
  bool EndsMask(size_t i) const {
    constexpr size_t MASK = 6;
    if (m_value.start == NONE || i != m_value.start + MASK || !IsOneOf(At(i), ")]}<>")) return false;
    return std::all_of(&m_text[m_value.start], &m_text[i],
                       [](const Character& character) { return character.c == '*'; });
  }

  // Whether the quote or bracket here ends a value also without a separator: in "a"b the value goes on.
  bool EndsValueHere() const {
    const size_t after = m_at + 1;
    return At(after) == '\0' || IsOneOf(At(after), ")]}<>") || (IsOneOf(At(after), "/?") && At(after + 1) == '>') ||
           (DepthOf(m_text[m_at].quote) > 0 && m_text.IsEscapedWhite(after));
  }

  void LookForKey() {
    if (!m_text.IsKey(m_at)) return;
    const size_t afterSign = AfterSign(m_at);
    const size_t value = afterSign != NONE ? afterSign : Argument(m_at);
    if (value == NONE || (IsInQuotedValue() && !LeavesQuotedValue(value))) return;
    m_valueAt = value;
    m_isArgument = At(m_wordStart) == '-' && !m_text.IsQuote(m_at);
    m_keyText = BeginsText() && !m_text.IsQuote(m_at) ? m_wordStart : NONE;
  }

  bool BeginsText() const { return !m_open.empty() && m_open.back().start == m_wordStart; }

  // In a quoted value only a key at its end counts, whose value is outside: PWD="TOKEN":x, or PWD="TOKEN="x if the
  // first quote was misread.
  bool LeavesQuotedValue(size_t value) const {
    const auto isOwn = [&](uint16_t quote) { return quote != NO_QUOTE && Find(quote) == m_value.level; };
    return isOwn(m_text[m_at].quote) ||
           (isOwn(m_text[value].quote) && !ClosesText(value) && m_text.InnerQuote(value) == 0);
  }

  // Where the value of a key may begin. Line ends may surround the sign of a key in quotes, and of a value in quotes or
  // brackets: {"pwd": <line end> "x"}. Signs join if a blank, quote or bracket follows: in "PWD :=  x" the value is
  // "x", in "PWD:=x" it is "=x".
  size_t AfterSign(size_t key) const {
    const bool isQuotedKey = m_text.IsQuote(key);
    const size_t end = key + (isQuotedKey ? 1 : 0);
    const size_t sign = m_text.AfterWhite(end);
    if (!IsSign(At(sign))) return NONE;
    size_t value = sign + 1;
    for (size_t more = AfterSigns(m_text.AfterBlanks(value)); more > m_text.AfterBlanks(value) && BeginsValue(more);)
      more = AfterSigns(m_text.AfterBlanks(value = more));
    const size_t anyLine = m_text.AfterWhite(value);
    if (!isQuotedKey && m_text.IsQuote(anyLine) && ClosesText(anyLine) && IsSign(At(m_text.AfterWhite(anyLine + 1))))
      return AfterSign(anyLine);  // "password: ": "x"
    if (isQuotedKey || IsQuoteOrBracket(anyLine)) return anyLine;
    return sign == m_text.AfterBlanks(end) ? m_text.AfterBlanks(value) : NONE;
  }

  size_t AfterSigns(size_t i) const {
    while (IsSign(At(i)) || At(i) == '>')
      ++i;
    return i;
  }

  bool IsQuoteOrBracket(size_t i) const { return m_text.IsQuote(i) || IsOneOf(At(i), "([{"); }
  bool BeginsValue(size_t i) const { return IsWhite(At(i)) || IsQuoteOrBracket(i); }

  // The argument of an option: --password x, or "--password", "x".
  size_t Argument(size_t key) const {
    if (At(m_wordStart) != '-') return NONE;
    size_t value = m_text.AfterWhite(key);
    if (m_text.IsQuote(key)) {
      if (!BeginsText()) return NONE;
      value = m_text.AfterWhite(key + 1);
      if (At(value) == ',') value = m_text.AfterWhite(value + 1);
      if (!m_text.IsQuote(value)) return NONE;
    } else if (value == key || IsOneOf(At(m_text.AfterBlanks(key)), "\n\r")) {
      return NONE;
    }
    return At(value) == '-' && At(value + 1) == '-' ? NONE : value;
  }

  void BeginValue() {
    const uint16_t quote = m_text[m_at].quote;
    m_valueAt = NONE;
    const bool beginsText = !m_open.empty() && m_open.back().start == m_keyText;
    const bool isEmpty = quote != NO_QUOTE ? ClosesText(m_at) : !beginsText && EndsPlainValue(m_at);
    if (isEmpty) return Read();
    const size_t place = quote != NO_QUOTE ? Find(quote) : NONE;
    const size_t inner = place != NONE ? m_text.InnerQuote(m_at) : 0;
    if (m_value.start == NONE) {
      m_value.start = m_at;
      m_value.keepsQuotes = inner == 0;
    }
    if (place != NONE && inner == 0) CloseDownTo(place);  // it was no text
    m_value.level = m_open.size();
    m_value.reachesEnd = m_value.reachesEnd || beginsText;
    m_value.isArgument = m_isArgument;
    OpenValue(quote, inner);
  }

  void OpenValue(uint16_t quote, size_t inner) {
    if (inner > 0) {
      m_at += inner - 1;
      OpenText(quote | INNER);
    } else if (quote != NO_QUOTE) {
      OpenText(quote);
    } else if (IsOneOf(At(m_at), "([{")) {
      m_open.push_back({NO_QUOTE, m_at, 1, {}});
    } else {
      Read();
    }
  }

  void CountBrackets(char c) {
    size_t& count = m_open.back().brackets;
    if (IsOneOf(c, "([{")) ++count;
    if (!IsOneOf(c, ")]}") || --count > 0) return;
    m_open.pop_back();
    if (MayEndHere() && EndsValueHere()) EndValue(m_at + 1);
  }

  void EndValueBelow(size_t level) {
    if (m_value.start != NONE && level <= m_value.level) EndValue(m_at);
  }

  // A quote at the start and its counterpart at the end stay.
  void EndValue(size_t end) {
    size_t start = m_value.start;
    const uint16_t quote = m_value.keepsQuotes ? m_text[start].quote : uint16_t{NO_QUOTE};
    if (quote != NO_QUOTE && m_open.size() > m_value.level) {
      ++start;
    } else if (quote != NO_QUOTE && end - start >= 2 && m_text[end - 1].quote == quote) {
      ++start;
      --end;
    }
    AddSecret(start, end);
    m_value = {};
  }

  // --- Other forms ---

  void LookForCommand() {
    if (!m_text.IsCommand(m_at)) return;
    const size_t colon = m_text.AfterWhite(m_at);
    if (At(colon) == ':') m_firstColon = colon;
  }

  // A command ends at a ";", and before its password at the third line end that follows no colon. A password of several
  // lines ends in ";".
  void ReadCommand(char c) {
    if (c == ':') {
      EndCommandSecret();
      if (m_at == m_firstColon) m_commands.lines = 0;
      m_commands.colons = (m_commands.colons << 1 | (m_at == m_firstColon ? 1U : 0U)) & 0x1FU;
      if ((m_commands.colons & 0x10U) != 0) m_commands.secret = m_at + 1;
    } else if (c == ';') {
      m_commands.line = NONE;
      EndCommandSecret();
      m_commands = {};
    } else if (IsOneOf(c, "\n\r") && !IsOneOf(At(m_at - 1), "\n\r") && !IsOneOf(m_solid, ":,")) {
      m_commands.line = std::min(m_commands.line, m_at);
      if (m_commands.secret == NONE && ++m_commands.lines == 3) m_commands = {};
    }
  }

  void EndCommandSecret() {
    const size_t end = std::min(m_commands.line, m_at);
    if (m_commands.secret < end) AddSecret(m_commands.secret, end);
    m_commands.secret = m_commands.line = NONE;
  }

  // Outside of tags quotes are ordinary characters. What they opened ends at the next tag: in
  // <a>rock 'n roll</a><u pwd=' x'/> only the last two quotes belong together.
  void ReadMarkup() {
    const char c = At(m_at), next = At(m_at + 1);
    const bool isTag = c == '<' && m_text.Bytes(m_at) == 1 && (IsWord(next) || IsOneOf(next, "/!?"));
    if (isTag || (c == '>' && IsOneOf(At(m_at - 1), "]-"))) EndContent();
    if (isTag) m_isTag = true;
    if ((c == '<' && next == '!') || (c == '>' && m_isTag)) {
      m_isTag = c == '<';
      m_content = m_at;
    }
  }

  void EndContent() {
    size_t place = 0;
    while (place < m_open.size() && m_open[place].start <= m_content)
      ++place;
    if (m_value.start != NONE && m_value.start > m_content) EndValue(m_at);
    CloseDownTo(place);
    if (m_content < m_firstColon) {
      EndCommandSecret();
      m_commands = {};
    }
    if (m_content != NONE) m_valueAt = NONE;
    m_content = NONE;
  }

  // --- The pass ---

  void Step() {
    if (m_isMarkup) ReadMarkup();
    LookForKey();
    LookForCommand();
    if (m_at == m_valueAt) {
      BeginValue();
    } else {
      Read();
    }
    const char c = At(m_at);
    if (!IsWhite(c)) m_solid = c;
    if (IsWhite(c) || IsOneOf(c, "\",;=:([{<>)]}&|")) m_wordStart = m_at + 1;
  }

  void Read() {
    if (m_text.IsQuote(m_at)) return Quote();
    const char c = At(m_at);
    if (IsInQuotedValue() && m_open.back().quote == NO_QUOTE) {
      CountBrackets(c);
    } else if (MayEndHere() && EndsPlainValue(m_at)) {
      EndValue(m_at);
    }
    ReadCommand(c);
  }

  void AddSecret(size_t start, size_t end) { m_secrets.emplace_back(m_text[start].at, m_text[end].at); }

  const FilterText& m_text;
  Secrets& m_secrets;
  const bool m_isMarkup;
  size_t m_at = 0;
  size_t m_wordStart = 1;
  char m_solid = '\n';  // last character that is not white space
  std::vector<Open> m_open;
  size_t m_valueAt = NONE;  // where a value begins
  size_t m_keyText = NONE;  // start of the text that begins with its key
  bool m_isArgument = false;
  Value m_value;
  Commands m_commands;
  size_t m_firstColon = NONE;
  size_t m_content = NONE;  // the end of the last tag
  bool m_isTag = false;
};

}  // namespace

void FindValues(const FilterText& text, bool isMarkup, Secrets& secrets) {
  Scanner(text, isMarkup, secrets).Scan();
}

}  // namespace LOG_FILTER
