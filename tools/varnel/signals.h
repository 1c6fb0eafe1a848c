#ifndef VARNEL_TOOLS_SIGNALS_H
#define VARNEL_TOOLS_SIGNALS_H

#include <poll.h>

#include <chrono>
#include <cstddef>
#include <optional>

#include "files.h"

/// A descriptor for the signals that ask a process to end. While this object exists, SIGINT, SIGTERM and, unless it is
/// ignored, SIGHUP do not end the process. Threads that start later do not receive them either.
class Signals {
 public:
  /// @throw std::system_error  if no descriptor is available
  Signals();

  /// The descriptor to wait for: readable if a signal has arrived since the last call of Arrived().
  int Waiting() const { return m_descriptor.Get(); }

  /// The number of the first signal that has arrived, or 0.
  int Arrived();

 private:
  Descriptor m_descriptor;
  int m_first = 0;
};

using MonotonicTime = std::chrono::steady_clock::time_point;

/// poll() until a time or an event; without a time, until an event. `revents` is 0 for descriptors without an event.
void PollUntil(pollfd* waiting, size_t count, std::optional<MonotonicTime> end);

#endif
