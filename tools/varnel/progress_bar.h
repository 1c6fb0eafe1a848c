#ifndef VARNEL_TOOLS_PROGRESS_BAR_H
#define VARNEL_TOOLS_PROGRESS_BAR_H

#include <chrono>
#include <cstddef>
#include <string>

/// A progress bar as text, "[====    ]"; full where `done` is more than `total`, which is not 0.
std::string BarText(size_t done, size_t total);

/// A bar on standard error, where that is a terminal; else nothing is shown.
class ProgressBar {
 public:
  explicit ProgressBar(size_t total);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Advance();
  /// Takes the bar off the screen, so that a result can be printed; Advance() shows it again.
  void Hide();

 private:
  void Draw();

  size_t m_total;
  size_t m_done = 0;
  bool m_enabled;
  bool m_visible = false;
  std::chrono::steady_clock::time_point m_lastDrawn;
};

#endif
