#ifndef VARNEL_TOOLS_SIGNALS_H
#define VARNEL_TOOLS_SIGNALS_H

#include <poll.h>

#include <chrono>
#include <cstddef>
#include <optional>

#include "files.h"

/// The signals that ask a process to end, as something to wait for. From the making of this object on, SIGINT, SIGTERM
/// and, unless it is ignored, SIGHUP do not end the process. Threads that start later do not receive them either.
class Signals {
 public:
  /// @throw std::system_error  if there is no descriptor left
  Signals();

  /// To be waited for: readable if a signal has arrived since Arrived() was called.
  int Waiting() const { return m_descriptor.Get(); }

  /// The number of the first signal that has arrived, or 0.
  int Arrived();

 private:
  Descriptor m_descriptor;
  int m_first = 0;
};

using MonotonicTime = std::chrono::steady_clock::time_point;

/// poll() up to a time; without one, up to an event. What has not happened has no `revents`.
void PollUntil(pollfd* waiting, size_t count, std::optional<MonotonicTime> end);

#endif
