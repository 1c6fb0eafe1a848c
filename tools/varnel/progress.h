#ifndef VARNEL_TOOLS_PROGRESS_H
#define VARNEL_TOOLS_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "deadline.h"

/// A bar and a text on one line, "[====    ] 3/12 files". A line that is too narrow for 10 columns of bar contains only
/// the text, cut to its width. The bar is full if `done` is more than `total`, which is not 0.
std::string BarText(size_t done, size_t total, const std::string& text, size_t columns);

/// A line on standard error that is redrawn. A disabled one shows nothing.
class LiveLine {
 public:
  explicit LiveLine(bool enabled) : m_enabled(enabled) {}
  ~LiveLine() { Hide(); }
  LiveLine(const LiveLine&) = delete;
  LiveLine& operator=(const LiveLine&) = delete;

  bool Enabled() const { return m_enabled; }
  /// True if the line was not drawn yet, or at least a tenth of a second ago.
  bool IsDue() const { return m_enabled && (!m_drawn || m_nextDrawing.Passed()); }

  void Draw(size_t done, size_t total, const std::string& text);
  /// Removes the line from the screen, so that a result can be printed.
  void Hide();

 private:
  bool m_enabled;
  bool m_drawn = false;
  bool m_visible = false;
  Deadline m_nextDrawing{std::chrono::milliseconds(100)};
};

/// Counts files on standard error, if that is a terminal.
class FileProgress {
 public:
  explicit FileProgress(size_t total);

  void Advance();
  /// Removes the bar; Advance() shows it again.
  void Hide() { m_line.Hide(); }

 private:
  LiveLine m_line;
  size_t m_total;
  size_t m_done = 0;
};

/// The progress of a load or run.
struct Progress {
  const char* event;  ///< "package" or "script"
  unsigned int done, total, percent;
  std::string name;  ///< name of the load or run, for display; may be empty
};

/// "package 3/12 25%  NE-WEST 41".
std::string ToText(const Progress& progress);

/// Shows a progress with the elapsed time on standard error.
class LiveProgress {
 public:
  explicit LiveProgress(bool enabled) : m_line(enabled) {}

  bool Enabled() const { return m_line.Enabled(); }

  void Show(const Progress& progress);
  /// Updates the elapsed time.
  void ShowTime();
  void Hide() { m_line.Hide(); }

 private:
  LiveLine m_line;
  std::optional<Progress> m_progress;
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

#endif
