#include <algorithm>
#include <utility>

#include "framer_machine.h"
#include "line_kinds.h"

// Ends of messages that show only later: a terminator behind a stray quote, and the end of the stream.

namespace VARNEL_TL1 {

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
