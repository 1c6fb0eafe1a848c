#include <algorithm>

#include "chars.h"
#include "framer_machine.h"

// Lines between messages.

namespace VARNEL_TL1 {

FramerMachine::Step FramerMachine::StepBetween() {
  while (m_pos < m_text.Size() && IsLineEnd(m_text[m_pos]))
    ++m_pos;
  if (m_pos == m_text.Size()) return m_text.finished ? FinishStream() : Step::NeedBytes;
  Line line = FindLine(m_pos);
  if (m_text[m_pos] == '>') {
    if (const auto step = JudgePrompt(line)) return *step;
  }
  const bool tooLong = line.end - line.begin > MAX_LINE;
  const size_t promptLength = PromptLength(View(line).substr(0, MAX_LINE));
  line.begin += promptLength;
  if (promptLength > 0 || IsUnindented(View(line))) {
    if (const auto step = JudgeUnindented(line)) return *step;
  }
  if (!line.whole && !tooLong) return Step::NeedBytes;
  if (!tooLong) {
    if (const auto step = JudgeLine(line)) return *step;
  }
  if (m_moreToCome && promptLength == 0 && IsTextOfPart(line)) return BeginBare(line.begin);
  return tooLong ? SkipLongLine(line) : SkipLine(line, promptLength);
}

// Kinds that are recognised by a whole line and the bytes after it.
std::optional<FramerMachine::Step> FramerMachine::JudgeLine(const Line& line) {
  if (const auto step = JudgeHeader(line)) return step;
  if (const auto step = JudgeAcknowledgement(line)) return step;
  return JudgeCutHeader(line);
}

// Neither blank nor an echo, nor the rest of the line that ended the part.
bool FramerMachine::IsTextOfPart(const Line& line) const {
  const bool echo = IsUnindented(View(line)) && IsCommand(View(line));
  return line.begin != m_lastEnd && !echo && !Trimmed(View(line)).empty();
}

// ">" alone after a line end is a message.
std::optional<FramerMachine::Step> FramerMachine::JudgePrompt(const Line& line) {
  if (View(line) != ">" || line.begin == m_lastEnd) return std::nullopt;
  if (!line.whole) return Step::NeedBytes;
  const bool both = line.begin - m_lastEnd >= 2 && m_text.Between(line.begin - 2, line.begin) == "\r\n";
  Begin(line.begin - (both ? 2U : 1U));
  m_fields.type = MessageType::Prompt;
  m_textBegin = line.end;
  return End(line.end, line.end);
}

// Kinds that are recognised by the line alone, even before its end.
std::optional<FramerMachine::Step> FramerMachine::JudgeUnindented(const Line& line) {
  FoundIdentification found;
  found.line = line;
  if (ReadIdentification(View(line), false, found.parts) && (line.whole || found.parts.ended)) {
    Begin(line.begin);
    return BeginIdentified(found);
  }
  const size_t mark = View(line).substr(0, MAX_LINE).find('<');
  AcknowledgementLine parts;
  if (mark == std::string_view::npos || !ReadAcknowledgement(View(line).substr(0, mark), parts)) return std::nullopt;
  return EmitAcknowledgement(parts, line.begin, line.begin + mark + 1, true);
}

std::optional<FramerMachine::Step> FramerMachine::JudgeHeader(const Line& line) {
  HeaderLine header;
  if (!ReadHeader(View(line), header)) return std::nullopt;
  FoundIdentification found;
  const Answer identified = FindIdentification(line.next, false, found);
  if (identified == Answer::Unknown) return Step::NeedBytes;
  if (identified == Answer::No) return std::nullopt;
  Begin(HeaderBegin(line.begin));
  SetHeader(header);
  return BeginIdentified(found);
}

// Without "<" an acknowledgement needs a ctag that looks like one: "OK then" is not one.
std::optional<FramerMachine::Step> FramerMachine::JudgeAcknowledgement(const Line& line) {
  constexpr size_t MAX_LINE_ENDS = 4;
  AcknowledgementLine parts;
  if (!ReadAcknowledgement(View(line), parts)) return std::nullopt;
  size_t end = 0;
  const Answer ended = FindAcknowledgementEnd(line, MAX_LINE_ENDS, end);
  if (ended == Answer::Unknown) return Step::NeedBytes;
  if (ended == Answer::Yes) return EmitAcknowledgement(parts, line.begin, end, true);
  if (!AnyOf(parts.ctag, IsDigit)) return std::nullopt;
  return EmitAcknowledgement(parts, line.begin, line.end, false);
}

// A header in the strict form, if the stream ends there or in the next line.
std::optional<FramerMachine::Step> FramerMachine::JudgeCutHeader(const Line& line) {
  if (!m_text.finished) return std::nullopt;
  const size_t size = m_text.Size();
  const bool isHeader = IsStrictHeader(m_text.Between(m_lastEnd, line.begin), View(line));
  const std::string_view rest = m_text.bytes.substr(isHeader ? line.next : line.end);
  const size_t text = std::min(rest.find_first_not_of("\r\n"), rest.size());
  const bool begun = isHeader || BeginsStrictHeader(m_text.Between(m_lastEnd, line.begin), View(line));
  if (!begun || rest.find_first_of("\r\n", text) != std::string_view::npos || (!isHeader && !rest.empty()))
    return std::nullopt;
  Begin(HeaderBegin(line.begin));
  HeaderLine header;
  if (ReadHeader(View(line), header)) SetHeader(header);
  m_textBegin = isHeader ? line.next : line.begin;
  return Cut(size);
}

FramerMachine::Step FramerMachine::SkipLine(const Line& line, size_t promptLength) {
  if (promptLength > 0) ++skipped.prompts;
  if (!Trimmed(View(line)).empty()) ++(IsCommand(View(line)) ? skipped.echoes : skipped.lines);
  return GoTo(State::Between, line.next);
}

FramerMachine::Step FramerMachine::SkipLongLine(const Line& line) {
  ++skipped.lines;
  return GoTo(State::InLine, line.end);
}

FramerMachine::Step FramerMachine::BeginIdentified(const FoundIdentification& found) {
  const Identification& parts = found.parts;
  m_fields.type = parts.type;
  m_fields.code = SpanOf(parts.code);
  m_fields.tag = SpanOf(parts.tag);
  m_fields.verb = SpanOf(parts.verb);
  m_textBegin = found.line.next;
  const size_t end = found.line.begin + parts.length;
  if (parts.ended) return End(end - 1, end);
  return GoTo(State::Body, found.line.next);
}

FramerMachine::Step FramerMachine::BeginBare(size_t begin) {
  Begin(begin);
  m_bare = true;
  return GoTo(State::Body, begin);
}

FramerMachine::Step FramerMachine::EmitAcknowledgement(const AcknowledgementLine& parts, size_t begin, size_t end,
                                                       bool complete) {
  Begin(begin);
  m_fields.type = MessageType::Acknowledgement;
  m_fields.code = SpanOf(parts.code);
  m_fields.tag = SpanOf(parts.ctag);
  m_textBegin = end;
  return complete ? End(end, end) : Cut(end);
}

void FramerMachine::Begin(size_t begin) {
  m_begin = m_textBegin = begin;
  m_fields = {};
  m_bare = false;
}

void FramerMachine::SetHeader(const HeaderLine& header) {
  m_fields.sid = SpanOf(header.sid);
  m_fields.date = SpanOf(header.date);
  m_fields.time = SpanOf(header.time);
}

FramerMachine::Step FramerMachine::FinishStream() {
  const uint64_t size = buffer.Offset(m_text.Size());
  skipped.bytes += size - m_lastEndOffset;
  m_lastEndOffset = size;
  return Step::NeedBytes;
}

}  // namespace VARNEL_TL1
