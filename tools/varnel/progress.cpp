#include "progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "output.h"
#include "utf8.h"

namespace {

constexpr size_t MAX_BAR = 40;
constexpr size_t MIN_BAR = 10;
constexpr size_t USUAL_COLUMNS = 80;

// Of the terminal, as it is now.
size_t Columns() {
  winsize size = {};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : USUAL_COLUMNS;
}

// The first characters of a text.
std::string FirstColumns(const std::string& text, size_t columns) {
  size_t end = 0;
  for (size_t width = 0; end < text.size(); ++end)
    if (!IsContinuation(text[end]) && ++width > columns) break;
  return text.substr(0, end);
}

std::string Counts(const Progress& progress) {
  std::ostringstream text;
  text << progress.event << ' ' << progress.done << '/' << progress.total << ' ' << progress.percent << '%';
  return text.str();
}

std::string Suffix(const Progress& progress) {
  return progress.name.empty() ? "" : "  " + progress.name;
}

}  // namespace

// The last column stays free: a character there makes some terminals start a new line.
std::string BarText(size_t done, size_t total, const std::string& text, size_t columns) {
  const size_t frame = 4;  // "[] " and the free column
  if (columns < frame + MIN_BAR + Width(text)) return FirstColumns(text, columns - 1);
  const size_t width = std::min(MAX_BAR, columns - frame - Width(text));
  const size_t filled = std::min(done, total) * width / total;
  return '[' + std::string(filled, '=') + std::string(width - filled, ' ') + "] " + text;
}

void LiveLine::Draw(size_t done, size_t total, const std::string& text) {
  std::cout.flush();
  std::cerr << "\r\033[K" << BarText(done, total, text, Columns()) << std::flush;
  m_drawn = m_visible = true;
  m_nextDrawing.Restart();
}

void LiveLine::Hide() {
  if (m_visible) std::cerr << "\r\033[K" << std::flush;
  m_visible = false;
}

FileProgress::FileProgress(size_t total) : m_line(total > 0 && isatty(STDERR_FILENO) != 0), m_total(total) {}

void FileProgress::Advance() {
  ++m_done;
  if (!m_line.IsDue()) return;
  m_line.Draw(m_done, m_total, std::to_string(m_done) + '/' + std::to_string(m_total) + " files");
}

std::string ToText(const Progress& progress) {
  return Counts(progress) + Suffix(progress);
}

void LiveProgress::Show(const Progress& progress) {
  m_progress = progress;
  if (m_line.IsDue()) ShowTime();
}

void LiveProgress::ShowTime() {
  if (!m_line.Enabled() || !m_progress) return;
  const auto elapsed = std::chrono::steady_clock::now() - m_start;
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
  std::ostringstream text;
  text << Counts(*m_progress) << "  " << seconds / 60 << ':' << std::setw(2) << std::setfill('0') << seconds % 60
       << Suffix(*m_progress);
  m_line.Draw(m_progress->percent, 100, text.str());
}
