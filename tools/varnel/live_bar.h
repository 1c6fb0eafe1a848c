#ifndef VARNEL_TOOLS_LIVE_BAR_H
#define VARNEL_TOOLS_LIVE_BAR_H

#include <chrono>
#include <optional>
#include <string>

#include "deadline.h"

/// How far a load or run has come.
struct Progress {
  const char* event;  ///< "package" or "script"
  unsigned int done, total, percent;
};

/// "package 3/12 25%".
std::string ToText(const Progress& progress);

/// A bar with counts and elapsed time on standard error.
class LiveBar {
 public:
  /// One that is not enabled shows nothing.
  explicit LiveBar(bool enabled) : m_enabled(enabled) {}
  ~LiveBar() { Hide(); }
  LiveBar(const LiveBar&) = delete;
  LiveBar& operator=(const LiveBar&) = delete;

  bool Enabled() const { return m_enabled; }

  void Show(const Progress& progress);
  /// Brings the elapsed time up to date.
  void ShowTime();
  void Hide();

 private:
  void Draw();

  static constexpr auto INTERVAL = std::chrono::milliseconds(100);

  bool m_enabled;
  bool m_visible = false;
  std::optional<Progress> m_progress;
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
  Deadline m_nextDrawing{INTERVAL};
};

#endif
