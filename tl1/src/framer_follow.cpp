#include <algorithm>

#include "chars.h"
#include "framer_machine.h"

// The bytes after a line, if the kind of the line depends on them.

namespace VARNEL_TL1 {

// The identification line of a header, which up to two blank lines may precede.
Answer FramerMachine::FindIdentification(size_t begin, bool unindented, FoundIdentification& found) {
  constexpr int MAX_BLANK_LINES = 2;
  for (int blankLines = 0; blankLines <= MAX_BLANK_LINES; ++blankLines) {
    const Line line = FindLine(begin);
    const std::string_view content = View(line);
    if (!WithoutIndent(content).empty()) {
      found.line = line;
      const bool identifies = ReadIdentification(content, true, found.parts) && (!unindented || IsUnindented(content));
      if (!line.whole && !(identifies && found.parts.ended) && content.size() <= MAX_LINE) return Answer::Unknown;
      return identifies ? Answer::Yes : Answer::No;
    }
    if (line.next == m_text.Size()) return m_text.finished ? Answer::No : Answer::Unknown;
    begin = line.next;
  }
  return Answer::No;
}

// The "<" of an acknowledgement, after a limited number of CR and LF.
Answer FramerMachine::FindAcknowledgementEnd(const Line& line, size_t maxLineEnds, size_t& end) const {
  size_t place = line.end;
  while (place < m_text.Size() && place < line.end + maxLineEnds && IsLineEnd(m_text[place]))
    ++place;
  if (place == m_text.Size()) return m_text.finished ? Answer::No : Answer::Unknown;
  end = place + 1;
  return m_text[place] == '<' ? Answer::Yes : Answer::No;
}

// Whether a line of text outside quotes and comments begins something else, and where that begins.
Answer FramerMachine::CutsBody(const Line& line, size_t& cut) {
  const std::string_view content = View(line);
  if (IsBlank(content.front()) && content.back() == '"') return Answer::No;  // nearly every line
  HeaderLine header;
  if (ReadHeader(content, header)) {
    FoundIdentification found;
    cut = HeaderBegin(line.begin);
    return FindIdentification(line.next, true, found);
  }
  if (!IsUnindented(content)) return Answer::No;
  cut = line.begin;
  Identification identification;
  if (ReadIdentification(content, false, identification)) return Answer::Yes;
  AcknowledgementLine acknowledgement;
  size_t end = 0;
  return ReadAcknowledgement(content, acknowledgement) ? FindAcknowledgementEnd(line, 2, end) : Answer::No;
}

// Whether something new begins, which makes a ";" before it the end of a message.
Answer FramerMachine::BeginsSomething(size_t begin) {
  if (begin == m_text.Size()) return m_text.finished ? Answer::Yes : Answer::Unknown;
  const Line line = FindLine(begin);
  const std::string_view content = View(line);
  if (m_text[begin] == ';') return Answer::No;  // the end of the message
  if (m_text[begin] == '>') {                   // the end as well, but "> " and ">>" are prompts
    if (content.size() == 1) return line.whole ? Answer::No : Answer::Unknown;
    return IsBlank(content[1]) || content[1] == '>' ? Answer::Yes : Answer::No;
  }
  if (IsUnindented(content) && PromptLength(content) > 0) return Answer::Yes;
  if (!line.whole) return content.size() > MAX_LINE ? Answer::No : Answer::Unknown;
  if (Trimmed(content).empty()) return Answer::Yes;
  HeaderLine header;
  FoundIdentification found;
  if (ReadHeader(content, header)) return FindIdentification(line.next, true, found);
  return IsUnindented(content) ? BeginsUnindented(line) : Answer::No;
}

Answer FramerMachine::BeginsUnindented(const Line& line) const {
  Identification identification;
  if (IsCommand(View(line)) || ReadIdentification(View(line), false, identification)) return Answer::Yes;
  AcknowledgementLine acknowledgement;
  size_t end = 0;
  return ReadAcknowledgement(View(line), acknowledgement) ? FindAcknowledgementEnd(line, 2, end) : Answer::No;
}

// Where a header begins: at line ends before it.
size_t FramerMachine::HeaderBegin(size_t lineBegin) const {
  const size_t from = std::max(m_lastEnd, lineBegin - std::min<size_t>(lineBegin, 4));
  return lineBegin - HeaderLead(m_text.Between(from, lineBegin));
}

}  // namespace VARNEL_TL1
