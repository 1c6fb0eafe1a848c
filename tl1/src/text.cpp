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

// True for the \" that opens or closes a value, false for \\\" inside one.
bool IsValueMark(std::string_view text, size_t quote) {
  return BackslashesBefore(text, quote) % 4 == 1;
}

// The first ":", "," or "=" from `begin` on, outside quoted values; the size of the text without one.
size_t FindSeparator(std::string_view text, size_t begin) {
  bool quoted = false;
  for (size_t at = begin; (at = FindAny(text, at, ':', ',', '=', '"')) < text.size(); ++at) {
    if (text[at] == '"') {
      quoted = quoted != IsValueMark(text, at);
    } else if (!quoted) {
      return at;
    }
  }
  return text.size();
}

size_t FindAidEnd(std::string_view text) {
  size_t end = FindSeparator(text, 0);
  while (end < text.size() && text[end] != ':')
    end = FindSeparator(text, end + 1);
  return end;
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
  size_t end = FindAidEnd(text);
  m_aid = text.substr(0, end);
  while (end < text.size()) {
    if (text[end] == ':') ++m_blocks;
    end = ReadParameter(text, end + 1);
  }
  return true;
}

// Returns the end of the parameter. "A::B" has no parameter between the colons.
size_t QuotedText::ReadParameter(std::string_view text, size_t begin) {
  Parameter parameter{m_blocks - 1, {}, {}};
  size_t value = begin;
  size_t end = FindSeparator(text, begin);
  if (end > begin && end < text.size() && text[end] == '=') {
    parameter.name = text.substr(begin, end - begin);
    value = end + 1;
  }
  while (end < text.size() && text[end] == '=')
    end = FindSeparator(text, end + 1);
  parameter.value = text.substr(value, end - value);
  const bool blockIsEmpty = end == begin && text[begin - 1] == ':' && (end == text.size() || text[end] == ':');
  if (!blockIsEmpty) m_parameters.push_back(parameter);
  return end;
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

std::string_view Severity(const QuotedText& text) {
  const auto& parameters = text.Parameters();
  const auto first = std::find_if(parameters.begin(), parameters.end(),
                                  [](const QuotedText::Parameter& parameter) { return parameter.name.empty(); });
  if (first == parameters.end()) return {};
  const auto isFirst = [&first](std::string_view severity) { return first->value == severity; };
  constexpr std::string_view SEVERITIES[] = {"CR", "MJ", "MN", "CL"};
  return std::any_of(std::begin(SEVERITIES), std::end(SEVERITIES), isFirst) ? first->value : std::string_view();
}

std::string_view Severity(const Message& message) {
  QuotedText text;
  LineReader lines(message.text);
  for (std::string_view line; lines.Next(line);)
    if (text.Read(lines.Quoted())) break;
  return Severity(text);
}

}  // namespace VARNEL_TL1
