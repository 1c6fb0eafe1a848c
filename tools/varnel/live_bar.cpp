#include "live_bar.h"

#include <iomanip>
#include <iostream>
#include <sstream>

#include "progress_bar.h"

std::string ToText(const Progress& progress) {
  std::ostringstream text;
  text << progress.event << ' ' << progress.done << '/' << progress.total << ' ' << progress.percent << '%';
  return text.str();
}

void LiveBar::Show(const Progress& progress) {
  m_progress = progress;
  if (!m_visible || m_nextDrawing.Passed()) Draw();
}

void LiveBar::ShowTime() {
  if (m_enabled && m_progress) Draw();
}

void LiveBar::Hide() {
  if (m_visible) std::cerr << "\r\033[K" << std::flush;
  m_visible = false;
}

void LiveBar::Draw() {
  if (!m_enabled) return;
  const auto elapsed = std::chrono::steady_clock::now() - m_start;
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
  std::cout.flush();
  std::cerr << "\r\033[K" << BarText(m_progress->percent, 100) << ' ' << ToText(*m_progress) << "  " << seconds / 60
            << ':' << std::setw(2) << std::setfill('0') << seconds % 60 << std::flush;
  m_visible = true;
  m_nextDrawing.Restart();
}
