#include "progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

namespace {

constexpr auto REDRAW_INTERVAL = std::chrono::milliseconds(100);
constexpr size_t BAR_WIDTH = 40;

}  // namespace

std::string BarText(size_t done, size_t total) {
  const size_t filled = std::min(done, total) * BAR_WIDTH / total;
  return '[' + std::string(filled, '=') + std::string(BAR_WIDTH - filled, ' ') + ']';
}

ProgressBar::ProgressBar(size_t total) : m_total(total), m_enabled(total > 0 && isatty(STDERR_FILENO) != 0) {}

ProgressBar::~ProgressBar() {
  Hide();
}

void ProgressBar::Advance() {
  ++m_done;
  if (!m_enabled) return;
  const auto now = std::chrono::steady_clock::now();
  if (now - m_lastDrawn < REDRAW_INTERVAL) return;
  m_lastDrawn = now;
  Draw();
}

void ProgressBar::Hide() {
  if (!m_visible) return;
  std::cerr << "\r\033[K" << std::flush;
  m_visible = false;
}

void ProgressBar::Draw() {
  std::cout.flush();
  std::cerr << '\r' << BarText(m_done, m_total) << ' ' << m_done << '/' << m_total << " files" << std::flush;
  m_visible = true;
}
