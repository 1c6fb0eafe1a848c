#include "text.h"

#include <algorithm>

#include "chars.h"

namespace VARNEL_TL1 {

namespace {

// Removes the first line of a text and returns it.
std::string_view TakeLine(std::string_view& text) {
  const size_t end = FindLineEnd(text, 0);
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end < text.size() ? AfterLineEnd(text, end) : end);
  return line;
}

// Without the blank lines at the end. The last line keeps its trailing blanks.
std::string_view WithoutBlankLinesAtEnd(std::string_view text) {
  size_t end = text.size(), lineEnd = end;
  for (; end > 0 && (IsBlank(text[end - 1]) || IsLineEnd(text[end - 1])); --end)
    if (IsLineEnd(text[end - 1])) lineEnd = end - 1;
  return text.substr(0, end == 0 ? 0 : lineEnd);
}

// The first position of one of two or three characters from `begin` on; the size of the text if there is none.
template <typename... Chars>
size_t FindAny(std::string_view text, size_t begin, Chars... chars) {
  while (begin < text.size() && ((text[begin] != chars) && ...))
    ++begin;
  return begin;
}

// True for the \" that opens or closes a value, false for \\\" inside one.
bool IsValueMark(std::string_view text, size_t quote) {
  return BackslashesBefore(text, quote) % 4 == 1;
}

// The first separator, outside quoted values; the size of the text if there is none.
size_t FindSeparator(std::string_view text, char separator) {
  bool quoted = false;
  for (size_t at = 0; (at = FindAny(text, at, separator, '"')) < text.size(); ++at) {
    if (text[at] == '"') {
      quoted = quoted != IsValueMark(text, at);
    } else if (!quoted) {
      return at;
    }
  }
  return text.size();
}

// Calls use() for each piece of a text between separators, an empty one too.
template <typename Use>
void ForEachPiece(std::string_view text, char separator, Use use) {
  for (bool more = true; more;) {
    const size_t end = FindSeparator(text, separator);
    more = end < text.size();
    use(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

// \"a, b\"  ->  a, b
std::string_view WithoutValueMarks(std::string_view raw) {
  constexpr std::string_view MARK = "\\\"";
  const bool marked = raw.size() >= 2 * MARK.size() && raw.substr(0, MARK.size()) == MARK && raw.back() == '"' &&
                      IsValueMark(raw, raw.size() - 1);
  return marked ? raw.substr(MARK.size(), raw.size() - 2 * MARK.size()) : raw;
}

}  // namespace

LineReader::LineReader(std::string_view text) : m_rest(WithoutBlankLinesAtEnd(text)) {
  size_t begin = 0;
  for (size_t at = 0; at < m_rest.size() && (IsBlank(m_rest[at]) || IsLineEnd(m_rest[at])); ++at)
    if (IsLineEnd(m_rest[at])) begin = at + 1;
  m_rest.remove_prefix(begin);
}

bool LineReader::Next(std::string_view& line) {
  if (m_rest.empty()) return false;
  m_fromLine = WithoutIndent(m_rest);
  m_line = line = WithoutIndent(TakeLine(m_rest));
  return true;
}

std::string_view LineReader::Quoted() {
  const bool folded = m_fromLine.size() > m_afterQuoted;
  if (folded || m_line.empty() || m_line.front() != '"') return {};
  const size_t end = FindQuote(m_fromLine, 1) + 1;
  if (end > m_fromLine.size()) return {};
  const std::string_view after = WithoutIndent(m_fromLine.substr(end));
  if (!after.empty() && !IsLineEnd(after.front())) return {};
  m_afterQuoted = m_fromLine.size() - end;
  return m_fromLine.substr(0, end);
}

bool QuotedText::Read(std::string_view quoted) {
  m_aid = {};
  m_blocks = 0;
  m_parameters.clear();
  if (quoted.size() < 2 || quoted.front() != '"' || quoted.back() != '"') return false;
  const std::string_view text = quoted.substr(1, quoted.size() - 2);
  const size_t aidEnd = FindSeparator(text, ':');
  m_aid = text.substr(0, aidEnd);
  if (aidEnd == text.size()) return true;
  ForEachPiece(text.substr(aidEnd + 1), ':', [this](std::string_view block) {
    if (!block.empty()) ForEachPiece(block, ',', [this](std::string_view parameter) { AddParameter(parameter); });
    ++m_blocks;
  });
  return true;
}

void QuotedText::AddParameter(std::string_view text) {
  const size_t sign = FindSeparator(text, '=');
  const bool named = sign > 0 && sign < text.size();
  Parameter parameter{m_blocks, {}, text};
  if (named) {
    parameter.name = text.substr(0, sign);
    parameter.value = text.substr(sign + 1);
  }
  m_parameters.push_back(parameter);
}

std::string_view QuotedText::Positional(size_t block, size_t index) const {
  for (const Parameter& parameter : m_parameters) {
    if (parameter.block == block && parameter.name.empty() && index-- == 0) return parameter.value;
  }
  return {};
}

// Few positions change; the text between them is copied as a whole.
void AppendUnescaped(std::string_view raw, std::string& text) {
  raw = WithoutValueMarks(raw);
  text.reserve(text.size() + raw.size());
  while (!raw.empty()) {
    const size_t mark = FindAny(raw, 0, '\\', '\r', '\n');
    text.append(raw.substr(0, mark));
    const std::string_view before = raw.substr(0, mark);
    raw.remove_prefix(mark);
    if (raw.empty()) break;
    if (IsLineEnd(raw.front())) {
      raw.remove_prefix(std::min(raw.find_first_not_of(std::string_view("\r\n\0", 3)), raw.size()));
      raw = WithoutIndent(raw);
      continue;
    }
    const bool escape = raw.size() > 1 && (raw[1] == '"' || raw[1] == '\\') && !EndsInsideCharacter(before);
    text += raw[escape ? 1 : 0];
    raw.remove_prefix(escape ? 2 : 1);
  }
}

std::string Unescaped(std::string_view raw) {
  std::string text;
  AppendUnescaped(raw, text);
  return text;
}

namespace {

std::string_view FirstPositional(std::string_view quoted) {
  QuotedText text;
  text.Read(quoted);
  for (const QuotedText::Parameter& parameter : text.Parameters()) {
    if (parameter.name.empty()) return parameter.value;
  }
  return {};
}

}  // namespace

std::string_view Severity(const Message& message) {
  LineReader lines(message.text);
  for (std::string_view line; lines.Next(line);) {
    const std::string_view quoted = lines.Quoted();
    if (quoted.empty()) continue;
    const std::string_view block = quoted.substr(std::min(FindSeparator(quoted.substr(1), ':') + 2, quoted.size()));
    std::string_view first = block.substr(0, FindAny(block, 0, ',', ':', '"'));
    if (first.find('=') != std::string_view::npos) first = FirstPositional(quoted);
    for (const std::string_view severity : {"CR", "MJ", "MN", "CL"})
      if (first == severity) return first;
    return {};
  }
  return {};
}

}  // namespace VARNEL_TL1
