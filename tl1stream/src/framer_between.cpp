#include <algorithm>
#include <utility>

#include "framer_machine.h"
#include "line_kinds.h"

// What the framer makes of the lines between messages.

namespace VARNEL_TL1 {

namespace {

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

void FramerMachine::FinishBetween() {
  const bool begun = !m_lineTooLong && BeginsHeader(m_lead.Text(), m_line.Text());
  if (begun && !Trimmed(m_line.Text()).empty()) {
    Begin(State::Opening, HeaderLeadLength(m_lead.Text()));
    m_tentative = false;
  } else {
    JudgeLine();
  }
}

}  // namespace VARNEL_TL1
