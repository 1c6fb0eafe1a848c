#include "framer_machine.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "chars.h"

namespace VARNEL_TL1 {

namespace {

constexpr size_t NONE = std::string_view::npos;

// The bytes beyond the limit that may be needed to find the end of a message within it: a header and an identification
// line.
constexpr size_t FORESIGHT = 3 * MAX_LINE;

// The most bytes before a line that may belong to a header.
constexpr size_t MAX_LEAD = 4;

}  // namespace

FramerMachine::FramerMachine(size_t limit) : m_limit(std::min(limit, std::numeric_limits<size_t>::max() / 4)) {}

void FramerMachine::Append(std::string_view bytes) {
  const size_t between = std::max(m_lastEnd, m_pos - std::min(m_pos, MAX_LEAD));
  const bool inMessage = m_state != State::Between && m_state != State::InLine;
  Change([&] {
    Shift(buffer.DropFront(inMessage ? m_begin : between));
    buffer.Append(bytes);
  });
}

void FramerMachine::Finish() {
  Change([&] { buffer.Finish(); });
  m_text.finished = !m_broken;
}

template <typename Operation>
void FramerMachine::Change(Operation change) {
  if (m_broken || m_text.finished) return;
  KeepPart();
  try {
    m_broken = true;
    change();
    m_broken = false;
  } catch (...) {
    buffer.Truncate(m_text.Size());
    m_text.bytes = buffer.Bytes();
    throw;
  }
  m_text.bytes = buffer.Bytes();
  skipped.telnet = buffer.Sequences();
}

bool FramerMachine::Next(Message& message) {
  m_message = &message;
  Step step = Step::Again;
  while (step == Step::Again)
    step = DoStep();
  return step == Step::Message;
}

FramerMachine::Step FramerMachine::DoStep() {
  switch (m_state) {
    case State::Between:
      return StepBetween();
    case State::InLine:
      return StepInLine();
    case State::Body:
      return StepBody();
    case State::Open:
      return StepOpen();
    case State::Rest:
      return StepRest();
    default:
      return StepSemicolon();
  }
}

FramerMachine::Step FramerMachine::GoTo(State state, size_t position) {
  m_state = state;
  m_pos = position;
  return Step::Again;
}

FramerMachine::Step FramerMachine::StepInLine() {
  const Line line = FindLine(m_pos);
  if (line.whole) return GoTo(State::Between, line.next);
  m_pos = line.end;
  return Step::NeedBytes;
}

FramerMachine::Step FramerMachine::StepBody() {
  if (m_pos == m_text.Size()) return m_text.finished ? Cut(m_pos) : Step::NeedBytes;
  if (m_text[m_pos] == ';' || m_text[m_pos] == '>') return End(m_pos, m_pos + 1);
  const Line line = FindLine(m_pos);
  if (!line.whole) {
    const bool longText = line.end - line.begin > MAX_LINE && line.end - m_begin > m_limit;
    return longText ? TooLong() : Step::NeedBytes;
  }
  const std::string_view text = WithoutIndent(View(line));
  if (text.empty()) return CloseLine(line, line.end);
  const size_t begin = line.end - text.size();
  const bool quotation = text.front() == '"';
  m_comment = text.substr(0, 2) == "/*";
  if (!quotation && !m_comment) return StepThroughText(line, line.begin);
  m_openFrom = begin + (quotation ? 1 : 2);
  const size_t closing = quotation ? FindQuote(text, 1) : text.find("*/", 2);
  if (closing >= text.size()) return GoTo(State::Open, m_openFrom);
  return quotation ? StepThroughText(line, begin + closing + 1) : CloseLine(line, begin + closing + 2);
}

// A line outside quotes and comments, or with a quotation that is closed on it.
FramerMachine::Step FramerMachine::StepThroughText(const Line& line, size_t restBegin) {
  size_t cut = 0;
  const Answer cuts = CutsBody(line, cut);
  if (cuts == Answer::Unknown) return Step::NeedBytes;
  return cuts == Answer::Yes ? Cut(cut) : CloseLine(line, restBegin);
}

// The end of a line of text; its bytes from `restBegin` on are outside quotes and comments.
FramerMachine::Step FramerMachine::CloseLine(const Line& line, size_t restBegin) {
  const size_t maybeOfHeader = line.begin == line.end ? MAX_LEAD : 0;
  if (line.end - m_begin > m_limit + maybeOfHeader) return TooLong();
  const std::string_view rest = WithoutBlankEnd(m_text.Between(restBegin, line.end));
  if (rest.empty() || rest.back() != ';') return GoTo(State::Body, line.next);
  m_semicolon = restBegin + rest.size() - 1;
  return GoTo(State::Semicolon, line.next);
}

FramerMachine::Step FramerMachine::StepSemicolon() {
  const Answer ends = BeginsSomething(m_pos);
  if (ends == Answer::Unknown) return Step::NeedBytes;
  return ends == Answer::Yes ? End(m_semicolon, m_semicolon + 1) : GoTo(State::Body, m_pos);
}

size_t FramerMachine::FindClosing(size_t from) {
  if (!m_comment) return m_quotes.Find(m_text.bytes, from);
  const size_t found = m_commentEnds.Find(m_text.bytes, from);
  return found == NONE ? NONE : found + 1;
}

FramerMachine::Step FramerMachine::StepOpen() {
  const size_t size = m_text.Size();
  const size_t closing = FindClosing(m_openFrom);
  size_t header = 0;
  const Answer strict = m_strictHeaders.Find(m_text, m_openFrom, std::min(closing, size), header);
  if (strict == Answer::Unknown && size - m_begin <= m_limit + FORESIGHT) return Step::NeedBytes;
  const size_t end = strict == Answer::Yes ? HeaderBegin(header) : closing;
  if (end != NONE && end - m_begin <= m_limit)
    return strict == Answer::Yes ? EndOpen(end) : GoTo(State::Rest, closing + 1);
  if (end != NONE || size - m_begin > m_limit + FORESIGHT) return EndOpen(m_begin + m_limit + 1);
  return m_text.finished ? EndOpen(size) : Step::NeedBytes;
}

// The quotation or comment is not closed before a position: it was opened by a stray mark, or the message is cut there.
FramerMachine::Step FramerMachine::EndOpen(size_t to) {
  const size_t terminator = FindLoneTerminator(m_loneLines, m_text, m_openFrom, std::min(to, m_begin + m_limit));
  if (terminator != NONE) return End(terminator, terminator + 1);
  return Cut(to);
}

FramerMachine::Step FramerMachine::StepRest() {
  const Line line = FindLine(m_pos);
  if (line.whole) return CloseLine(line, line.begin);
  const bool longText = line.end - line.begin > MAX_LINE && line.end - m_begin > m_limit;
  return longText ? TooLong() : Step::NeedBytes;
}

// The message exceeds the limit.
FramerMachine::Step FramerMachine::TooLong() {
  return Cut(m_begin + m_limit + 1);
}

FramerMachine::Step FramerMachine::End(size_t textEnd, size_t end) {
  GoTo(State::Between, end);
  return end - m_begin > m_limit ? Emit(m_begin + m_limit, m_begin + m_limit, false, true) : Emit(textEnd, end, true);
}

FramerMachine::Step FramerMachine::Cut(size_t end) {
  GoTo(State::Between, end);
  if (end - m_begin <= m_limit) return Emit(end, end, false);
  GoTo(State::InLine, m_begin + m_limit);
  return Emit(m_pos, m_pos, false, true);
}

// Delivers the message from m_begin to `end`.
FramerMachine::Step FramerMachine::Emit(size_t textEnd, size_t end, bool complete, bool tooLong) {
  Message& message = *m_message;
  if (m_bare) {
    message = m_part;
  } else {
    const bool autonomous = m_fields.type == MessageType::Autonomous;
    message.type = m_fields.type;
    message.sid = ViewOf(m_fields.sid);
    message.date = ViewOf(m_fields.date);
    message.time = ViewOf(m_fields.time);
    message.atag = ViewOf(autonomous ? m_fields.tag : Span());
    message.ctag = ViewOf(autonomous ? Span() : m_fields.tag);
    message.code = ViewOf(m_fields.code);
    message.verb = ViewOf(m_fields.verb);
  }
  message.text = m_text.Between(std::min(m_textBegin, textEnd), textEnd);
  message.bytes = m_text.Between(m_begin, end);
  message.offset = buffer.Offset(m_begin);
  const uint64_t endOffset = end == m_begin ? message.offset : buffer.Offset(end - 1) + 1;
  message.length = endOffset - message.offset;
  message.complete = complete;
  message.tooLong = tooLong;
  message.bare = m_bare;
  const bool more = complete && m_text[end - 1] == '>';
  message.continues = more || (message.type == MessageType::Response && message.code == "RTRV");
  skipped.bytes += message.offset - m_lastEndOffset;
  m_lastEnd = end;
  m_lastEndOffset = endOffset;
  if (message.type == MessageType::Response || message.type == MessageType::Autonomous) {
    m_moreToCome = more;
    if (more) RememberPart();
  }
  m_bare = false;
  return Step::Message;
}

void FramerMachine::RememberPart() {
  m_part = *m_message;
  m_part.date = m_part.time = {};
  m_partKept = false;
}

// The buffer changes: the fields that a following bare text needs are copied.
void FramerMachine::KeepPart() {
  if (!m_moreToCome || m_partKept) return;
  std::string_view* const fields[] = {&m_part.sid, &m_part.ctag, &m_part.atag, &m_part.code, &m_part.verb};
  std::string text;
  for (const std::string_view* field : fields)
    text += *field;
  m_partText = std::move(text);
  const char* at = m_partText.data();
  for (std::string_view* field : fields) {
    *field = {at, field->size()};
    at += field->size();
  }
  m_partKept = true;
}

FramerMachine::Span FramerMachine::SpanOf(std::string_view view) const {
  if (view.empty()) return {};
  return {static_cast<size_t>(view.data() - m_text.bytes.data()) - m_begin, view.size()};
}

std::string_view FramerMachine::ViewOf(const Span& span) const {
  return m_text.bytes.substr(m_begin + span.begin, span.length);
}

void FramerMachine::Shift(size_t dropped) {
  for (size_t* position : {&m_pos, &m_lastEnd, &m_begin, &m_textBegin, &m_openFrom, &m_semicolon})
    *position -= std::min(*position, dropped);
  m_lines.Shift(dropped);
  m_loneLines.Shift(dropped);
  m_quotes.Shift(dropped);
  m_commentEnds.Shift(dropped);
  m_strictHeaders.Shift(dropped);
}

}  // namespace VARNEL_TL1
