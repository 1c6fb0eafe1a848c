#include "report_splitter.h"

#include <algorithm>
#include <utility>

#include "util/chars.h"

namespace {

constexpr size_t NONE = std::string::npos;

bool BeginsWith(std::string_view text, std::string_view head) {
  return text.substr(0, head.size()) == head;
}

bool IsFrameEnd(std::string_view line) {
  return line.size() >= 6 && BeginsWith(line, "---") && line.substr(line.size() - 3) == "END";
}

}  // namespace

std::unique_ptr<ReportCutter> MakeReportCutter(const std::string& separator, Language language) {
  if (language == Language::Tl1 && separator.empty()) return std::make_unique<Tl1ReportCutter>();
  return std::make_unique<ReportSplitter>(separator);
}

ReportSplitter::ReportSplitter(std::string separator) : m_separator(std::move(separator)) {}

void ReportSplitter::Feed(std::string_view bytes) {
  if (m_tooLong) return;
  m_bytes.erase(0, m_begin);
  m_lineBegin -= std::min(m_lineBegin, m_begin);
  m_scanned -= m_begin;
  m_begin = 0;
  const size_t old = m_bytes.size();
  m_bytes.append(bytes);
  std::replace(m_bytes.begin() + static_cast<std::ptrdiff_t>(old), m_bytes.end(), '\0', ' ');
}

std::optional<Report> ReportSplitter::Next() {
  if (m_tooLong) return std::nullopt;
  const std::optional<Ends> ends = m_separator.empty() ? FindEnd() : FindSeparator();
  m_tooLong = (ends ? ends->whole : m_bytes.size()) - m_begin > MAX_LENGTH;
  if (m_tooLong) return std::nullopt;
  if (ends) return Take(*ends);
  if (!m_finished || m_begin == m_bytes.size()) return std::nullopt;
  return Take({m_bytes.size(), m_bytes.size()});
}

std::optional<ReportSplitter::Ends> ReportSplitter::FindSeparator() {
  const size_t found = m_bytes.find(m_separator, m_scanned);
  if (found != NONE) return Ends{found, found + m_separator.size()};
  const size_t beginning = m_bytes.size() - std::min(m_bytes.size(), m_separator.size() - 1);
  m_scanned = std::max(m_scanned, beginning);
  return std::nullopt;
}

std::optional<ReportSplitter::Ends> ReportSplitter::FindEnd() {
  for (size_t newline; (newline = m_bytes.find('\n', m_scanned)) != NONE;) {
    const size_t lineBegin = std::exchange(m_lineBegin, newline + 1);
    m_scanned = m_lineBegin;
    const std::optional<Ends> ends = EndAtLine(lineBegin, m_lineBegin);
    if (ends) return ends;
  }
  m_scanned = m_bytes.size();
  return std::nullopt;
}

// The ends of the report if it ends because of this line.
std::optional<ReportSplitter::Ends> ReportSplitter::EndAtLine(size_t begin, size_t end) {
  const std::string_view line = VARNEL_UTIL::Trimmed(std::string_view(m_bytes).substr(begin, end - begin));
  const bool opensFrame = BeginsWith(line, "+++");
  if (m_started && (opensFrame || (line.empty() && !m_framed))) return Ends{begin, begin};
  if (!m_started && line.empty()) m_begin = end;
  if (line.empty()) return std::nullopt;
  m_started = true;
  m_framed = m_framed || opensFrame;
  const bool ends = IsFrameEnd(line) || (!m_framed && (line == ";" || line == ">" || line == "<"));
  return ends ? std::optional<Ends>({begin, end}) : std::nullopt;
}

Report ReportSplitter::Take(const Ends& ends) {
  Report report{m_bytes.substr(m_begin, ends.whole - m_begin), ends.body - m_begin};
  m_begin = m_lineBegin = m_scanned = ends.whole;
  m_started = m_framed = false;
  return report;
}

std::optional<Report> Tl1ReportCutter::Next() {
  VARNEL_TL1::Message message;
  if (m_tooLong || !m_framer.Next(message)) return std::nullopt;
  m_tooLong = message.tooLong;
  if (m_tooLong) return std::nullopt;
  std::string text(message.bytes);
  std::replace(text.begin(), text.end(), '\0', ' ');
  return Report{std::move(text), message.bytes.size()};
}
