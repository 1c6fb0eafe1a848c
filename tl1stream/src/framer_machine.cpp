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

// How many of the line ends in front of a header belong to it: the end of the line before and one blank line.
size_t HeaderLeadLength(std::string_view lead) {
  for (const std::string_view end : {"\r\n\r\n", "\r\n\n", "\n\n", "\r\n", "\r\r", "\n", "\r"}) {
    if (lead.size() >= end.size() && lead.substr(lead.size() - end.size()) == end) return end.size();
  }
  return 0;
}

size_t LineEndLength(std::string_view lead) {
  const bool both = lead.size() >= 2 && lead.substr(lead.size() - 2) == "\r\n";
  return both ? 2 : std::min<size_t>(lead.size(), 1);
}

bool BeginsHeader(std::string_view lead, std::string_view line) {
  return HeaderLeadLength(lead) > LineEndLength(lead) && line.substr(0, 3) == "   ";
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
  if (m_state == State::Opening && !m_line.Text().empty()) EndLineOfOpening();
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

// Decides what a line between messages is.
void FramerMachine::JudgeLine() {
  if (m_lineTooLong) {
    ++skipped.lines;
    return;
  }
  if (Trimmed(m_line.Text()).empty() || EmitPrompt()) return;
  const size_t prompt = PromptLength(m_line.Text());
  if (prompt > 0) {
    ++skipped.prompts;
    m_line.DropFront(prompt);
  }
  if (m_line.Text().empty() || JudgeMessageLine(prompt)) return;
  ++(IsCommand(m_line.Text()) ? skipped.echoes : skipped.lines);
}

// Begins a message if the line is the first one of it.
bool FramerMachine::JudgeMessageLine(size_t prompt) {
  const std::string_view line = m_line.Text();
  if (const auto header = ReadHeader(line)) {
    m_tentative = !IsBlank(line.front());
    Begin(State::Opening, prompt > 0 ? 0 : HeaderLeadLength(m_lead.Text()));
    m_line.Clear();
    return true;
  }
  if (IsSureIdentification(line)) {
    Begin(State::Body, 0);
    return true;
  }
  if (ReadAcknowledgement(line)) {
    Begin(State::Acknowledgement, 0);
    return true;
  }
  return BeginBareText();
}

bool FramerMachine::BeginBareText() {
  const std::string_view line = m_line.Text();
  if (!m_moreToCome || line.empty() || !IsBlank(line.front())) return false;
  m_bareText = true;
  Begin(State::Body, 0);
  m_scanner.Take(m_buffer);
  return true;
}

// Begins a message with the line held and so many of the line ends in front of it.
void FramerMachine::Begin(State state, size_t leadLength) {
  m_lead.DropFront(m_lead.Text().size() - leadLength);
  m_start = leadLength > 0 ? m_lead.Offset() : m_line.Offset();
  m_buffer.assign(m_lead.Text()).append(m_line.Text());
  m_lineStart = m_buffer.size() - m_line.Text().size();
  m_state = state;
  m_scanner = {};
  tooLong = m_buffer.size() > m_limit;
}

bool FramerMachine::EmitPrompt() {
  const size_t lineEnd = LineEndLength(m_lead.Text());
  if (m_line.Text() != ">" || lineEnd == 0) return false;
  m_lead.DropFront(m_lead.Text().size() - lineEnd);
  Message prompt;
  prompt.bytes.append(m_lead.Text()).append(m_line.Text());
  prompt.offset = m_lead.Offset();
  const uint64_t end = m_line.Offset() + 1;
  prompt.length = end - prompt.offset;
  skipped.bytes += prompt.offset - m_lastEnd;
  m_lastEnd = end;
  messages.push_back(std::move(prompt));
  return true;
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

void FramerMachine::NoteCandidate() {
  if (m_candidate.active) return;
  m_candidate.active = m_candidate.onItsLine = true;
  m_candidate.size = m_buffer.size();
  m_candidate.end = m_offset;
  m_candidate.telnet = skipped.telnet;
}

void FramerMachine::JudgeCandidate() {
  std::string_view line = std::string_view(m_buffer).substr(m_lineStart);
  line = TakeLine(line);
  if (std::exchange(m_candidate.onItsLine, false)) {
    if (Trimmed(line).size() > 1) m_candidate = {};
  } else if (LooksLikeStart(line)) {
    CutAtCandidate();
  } else if (!Trimmed(line.substr(PromptLength(line))).empty()) {
    m_candidate = {};
  }
}

// Ends the message at the candidate and takes the bytes behind it once more.
void FramerMachine::CutAtCandidate() {
  const Candidate candidate = std::move(m_candidate);
  m_buffer.resize(candidate.size);
  m_offset = candidate.end;
  skipped.telnet = candidate.telnet;
  m_telnet = {};
  Emit(true);
  for (const char byte : candidate.bytesBehind)
    TakeByte(byte);
}

void FramerMachine::Finish() {
  if (tooLong) return;
  if (m_candidate.active) {
    const std::string_view line = std::string_view(m_buffer).substr(m_lineStart);
    if (!m_candidate.onItsLine || Trimmed(line).size() == 1) CutAtCandidate();
  }
  if (m_telnet.HoldsByte()) TakeData(TelnetFilter::IAC, m_offset - 1);
  if (m_state == State::Between) FinishBetween();
  if (tooLong) return;
  if (m_state != State::Between) FinishMessage();
  skipped.bytes += m_offset - m_lastEnd;
  m_lastEnd = m_offset;
}

void FramerMachine::FinishBetween() {
  const bool begun = !m_lineTooLong && BeginsHeader(m_lead.Text(), m_line.Text());
  if (begun && !Trimmed(m_line.Text()).empty() && m_state == State::Between) {
    Begin(State::Opening, HeaderLeadLength(m_lead.Text()));
    m_tentative = false;
  } else {
    JudgeLine();
  }
}

void FramerMachine::FinishMessage() {
  std::string_view text = m_buffer;
  text = text.substr(std::min(text.find_first_not_of("\r\n"), text.size()));
  const std::string_view line = TakeLine(text);
  if (m_state == State::Acknowledgement) {
    const auto acknowledgement = ReadAcknowledgement(line);
    if (!acknowledgement || !IsKnownAcknowledgement(acknowledgement->code)) return Abandon();
  }
  if (m_state == State::Opening && m_tentative) {
    const auto header = ReadHeader(line);
    if (header && header->sid.find(' ') != std::string_view::npos) return Abandon();
  }
  Emit(false);
}

}  // namespace VARNEL_TL1
