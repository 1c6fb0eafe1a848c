#ifndef VARNEL_TOOLS_DEADLINE_H
#define VARNEL_TOOLS_DEADLINE_H

#include <algorithm>
#include <chrono>

/// A point in time at which a wait ends.
class Deadline {
 public:
  using Milliseconds = std::chrono::milliseconds;

  /// @param limit  time from now on; 0 for a deadline that never comes
  explicit Deadline(Milliseconds limit) : m_limit(limit) { Restart(); }

  /// Restarts the time limit.
  void Restart() { m_end = Clock::now() + m_limit; }

  bool Exists() const { return m_limit.count() > 0; }
  bool Passed() const { return Exists() && Clock::now() >= m_end; }

  /// Time left, rounded up: after waiting for it the deadline has passed. At most `most`.
  Milliseconds Left(Milliseconds most) const {
    if (!Exists()) return most;
    const auto left = std::chrono::ceil<Milliseconds>(m_end - Clock::now());
    return std::clamp(left, Milliseconds(0), most);
  }

 private:
  using Clock = std::chrono::steady_clock;

  Milliseconds m_limit;
  Clock::time_point m_end;
};

#endif
