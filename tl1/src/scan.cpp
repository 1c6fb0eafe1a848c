#include "scan.h"

#include "lines.h"

namespace VARNEL_TL1 {

Answer StrictHeaderFinder::Find(const Text& text, size_t from, size_t to, size_t& position) {
  if (from < m_from || from > m_next) {
    m_from = m_next = from;
    m_hit = false;
  }
  while (!m_hit && m_next < to) {
    const Line line = m_lines.Find(text, m_next);
    if (!line.whole) return line.end - line.begin > MAX_LINE ? Answer::No : Answer::Unknown;
    if (IsStrictHeader(text.Between(0, line.begin), text.Between(line.begin, line.end))) {
      const Line after = m_lines.Find(text, line.next);
      const std::string_view content = text.Between(after.begin, after.end);
      Identification identification;
      const bool identifies = ReadIdentification(content, true, identification) && IsUnindented(content);
      if (!after.whole && !identification.ended && content.size() <= MAX_LINE) return Answer::Unknown;
      m_hit = identifies;
    }
    if (!m_hit) m_next = line.next;
  }
  position = m_next;
  return m_hit && m_next < to ? Answer::Yes : Answer::No;
}

void StrictHeaderFinder::Shift(size_t dropped) {
  m_lines.Shift(dropped);
  m_hit = m_hit && m_next >= dropped;
  m_from -= std::min(m_from, dropped);
  m_next -= std::min(m_next, dropped);
}

size_t FindLoneTerminator(LineFinder& lines, const Text& text, size_t from, size_t to) {
  for (size_t begin = lines.Find(text, from).next; begin < to;) {
    const Line line = lines.Find(text, begin);
    if (!line.whole) break;
    if (line.end - line.begin == 1 && (text[begin] == ';' || text[begin] == '>')) return begin;
    begin = line.next;
  }
  return std::string_view::npos;
}

}  // namespace VARNEL_TL1
