#include "framer_machine.h"

#include <algorithm>
#include <array>
#include <utility>

#include "line_kinds.h"

namespace VARNEL_TL1 {

namespace {

// Longer lines between messages are no headers, and more is not looked at behind a terminator inside quotes.
constexpr size_t MAX_LINE = 4096;
constexpr size_t MAX_LEAD = 4;

// Bytes of a text that can neither end a line nor open or close anything.
constexpr std::array<bool, 256> MakeOrdinary() {
  std::array<bool, 256> ordinary{};
  for (size_t byte = 0; byte < 0x80; ++byte)
    ordinary[byte] = true;
  for (const char c : {'\r', '\n', '\0', '"', '\\', '/', '*'})
    ordinary[static_cast<unsigned char>(c)] = false;
  return ordinary;
}
constexpr auto ORDINARY = MakeOrdinary();

bool IsTerminator(char c) {
  return c == ';' || c == '>';
}

}  // namespace

void FramerMachine::Feed(std::string_view bytes) {
  while (!bytes.empty() && !tooLong) {
    size_t taken = TakeRun(bytes);
    if (taken == 0) {
      TakeByte(bytes.front());
      taken = 1;
    }
    bytes.remove_prefix(taken);
  }
}

// Takes the ordinary bytes in front, where nothing but the next other byte matters; gives how many.
size_t FramerMachine::TakeRun(std::string_view bytes) {
  if (m_state != State::Body || m_atLineStart || m_candidate.active || !m_telnet.InText()) return 0;
  const auto end =
      std::find_if_not(bytes.begin(), bytes.end(), [](char c) { return ORDINARY[static_cast<unsigned char>(c)]; });
  const auto count = static_cast<size_t>(end - bytes.begin());
  if (count == 0) return 0;
  tooLong = count > m_limit - m_buffer.size();
  if (tooLong) return count;
  m_buffer.append(bytes.data(), count);
  m_scanner.TakeOrdinary();
  m_offset += count;
  return count;
}

void FramerMachine::TakeByte(char byte) {
  const uint64_t offset = m_offset++;
  if (m_candidate.active) m_candidate.bytesBehind.push_back(byte);
  switch (m_telnet.Take(byte)) {
    case TelnetFilter::Verdict::Data:
      TakeData(byte, byte == TelnetFilter::IAC ? offset - 1 : offset);
      break;
    case TelnetFilter::Verdict::DataAfter:
      TakeData(TelnetFilter::IAC, offset - 1);
      TakeData(byte, offset);
      break;
    case TelnetFilter::Verdict::End:
      ++skipped.telnet;
      break;
    case TelnetFilter::Verdict::Taken:
      break;
  }
  if (m_candidate.bytesBehind.size() > MAX_LINE) m_candidate = {};
}

void FramerMachine::TakeData(char byte, uint64_t offset) {
  if (tooLong) return;
  const bool sameEnd = m_afterCr && (byte == '\n' || byte == '\0');
  if (sameEnd) {
    m_afterCr = byte == '\0';
    AddLead(byte, offset);
    if (m_state != State::Between) Append(byte);
    m_lineStart = m_buffer.size();
    return;
  }
  m_afterCr = byte == '\r';
  if (IsLineEnd(byte)) {
    EndLine(byte, offset);
  } else {
    TakeText(byte, offset);
    m_atLineStart = m_atLineStart && m_state == State::Between && m_line.Text().empty();
  }
}

void FramerMachine::TakeText(char c, uint64_t offset) {
  if (m_state == State::Acknowledgement) {
    if (c == '<') {
      Append(c);
      Emit(true);
      return;
    }
    Abandon();
  }
  if (m_state == State::Body) {
    TakeTextOfBody(c);
  } else if (m_state == State::Opening) {
    TakeTextOfOpening(c, offset);
  } else {
    HoldText(c, offset);
    TakeTextBetween(c);
  }
}

void FramerMachine::HoldText(char c, uint64_t offset) {
  if (m_line.Text().size() < MAX_LINE) {
    m_line.Add(c, offset);
  } else {
    m_lineTooLong = true;
  }
}

void FramerMachine::TakeTextBetween(char c) {
  if (m_lineTooLong) {
    BeginBareText();
    if (m_state == State::Body) TakeTextOfBody(c);
  } else if (c == ';' && !std::exchange(m_semicolonSeen, true)) {
    const std::string_view line = m_line.Text().substr(0, m_line.Text().size() - 1);
    if (!IsSureIdentification(line) || !CanEndMessage(line)) return;
    Begin(State::Body, 0);
    if (!tooLong) Emit(true);
  }
}

void FramerMachine::TakeTextOfOpening(char c, uint64_t offset) {
  const bool doubtful = c == '<' || (IsTerminator(c) && m_tentative);
  if (m_atLineStart && doubtful) {
    Abandon();
    HoldText(c, offset);
    return;
  }
  const bool endsLine = c == ';' && !std::exchange(m_semicolonSeen, true) && CanEndMessage(m_line.Text());
  const bool ends = endsLine || (m_atLineStart && IsTerminator(c));
  HoldText(c, offset);
  Append(c);
  if (ends && !tooLong) Emit(true);
}

void FramerMachine::TakeTextOfBody(char c) {
  const bool terminator = m_atLineStart && IsTerminator(c);
  Append(c);
  m_atLineStart = false;
  if (tooLong) return;
  if (terminator && m_scanner.Plain()) {
    Emit(true);
    return;
  }
  m_scanner.Take(c);
  if (terminator) NoteCandidate();
}

void FramerMachine::EndLine(char c, uint64_t offset) {
  const bool text = !m_line.Text().empty();
  if (m_state == State::Between) JudgeLine();
  if (m_state == State::Opening) EndLineOfOpening();
  if (text) m_lead.Clear();
  m_line.Clear();
  m_lineTooLong = m_semicolonSeen = false;
  m_atLineStart = true;
  AddLead(c, offset);
  if (m_state == State::Acknowledgement && m_buffer.size() > MAX_LINE) Abandon();
  if (m_state == State::Between) return;
  Append(c);
  if (m_state == State::Body && !tooLong) EndLineOfBody(c);
}

void FramerMachine::EndLineOfBody(char c) {
  m_scanner.Take(c);
  if (m_candidate.active) {
    JudgeCandidate();
    if (m_state != State::Body) return;
  }
  m_lineStart = m_buffer.size();
}

void FramerMachine::AddLead(char c, uint64_t offset) {
  if (m_lead.Text().size() >= MAX_LEAD) m_lead.DropFront(1);
  m_lead.Add(c, offset);
}

void FramerMachine::EndLineOfOpening() {
  if (Trimmed(m_line.Text()).empty()) return;
  if (!m_lineTooLong && IsIdentification(m_line.Text())) {
    m_state = State::Body;
    m_scanner = {};
  } else if (m_tentative || ReadHeader(m_line.Text())) {
    Abandon();
    JudgeLine();
  }
}

// What seemed to be a message is none. The line held is judged anew.
void FramerMachine::Abandon() {
  ++skipped.lines;
  m_buffer.clear();
  m_state = State::Between;
}

void FramerMachine::Append(char c) {
  tooLong = tooLong || m_buffer.size() >= m_limit;
  if (!tooLong) m_buffer.push_back(c);
}

void FramerMachine::Emit(bool complete) {
  Message message;
  message.bytes = std::move(m_buffer);
  message.offset = m_start;
  message.length = m_offset - m_start;
  message.complete = complete;
  message.bareText = m_bareText;
  if (m_state != State::Acknowledgement) m_moreToCome = message.bytes.back() == '>';
  skipped.bytes += m_start - m_lastEnd;
  m_lastEnd = m_offset;
  messages.push_back(std::move(message));
  ToBetween();
}

void FramerMachine::ToBetween() {
  m_state = State::Between;
  m_buffer.clear();
  m_lead.Clear();
  m_line.Clear();
  m_atLineStart = true;
  m_afterCr = m_lineTooLong = m_semicolonSeen = m_bareText = false;
  m_candidate = {};
}

}  // namespace VARNEL_TL1
