#ifndef VARNEL_TOOLS_TIMED_SOURCE_H
#define VARNEL_TOOLS_TIMED_SOURCE_H

#include <sys/types.h>

#include <chrono>
#include <memory>
#include <string>

#include "byte_source.h"
#include "deadline.h"

using Milliseconds = std::chrono::milliseconds;

constexpr auto LONGEST_WAIT = Milliseconds(60000);  // a longer wait is repeated

/// False if the time passed or a signal arrived first. A descriptor with an error is ready: reading it returns the
/// error.
bool WaitReadable(int descriptor, Milliseconds most);

/// The common part of all sources: the order of opening, waiting and reading, and the time limits.
class TimedSource : public ByteSource {
 public:
  TimedSource(TimeLimits& limits, Milliseconds tick) : m_limits(limits), m_tick(tick) {}

  Status Read(std::string& bytes) final;

 protected:
  /// Returns Data, or the status that Read() returns. It must observe the limits.
  virtual Status Open() = 0;
  /// Waits for input, for `most` at most; false if there may be none.
  virtual bool Await(Milliseconds most) = 0;
  /// As read(); EAGAIN if there is no input yet.
  virtual ssize_t Receive(char* buffer, size_t size) = 0;
  /// The status after Receive() returned 0.
  virtual Status Ended() { return Status::End; }

  Status Fail(const std::string& error);
  Status FailWithErrno();

  /// The time left of both limits.
  bool HasPassed() const;
  Milliseconds Left(Milliseconds most) const;
  /// Fails because a limit has passed: appends its number of seconds to the error.
  Status FailInTime(const std::string& error);

 private:
  Status TimeOut(const std::string& error, const TimeLimit& limit);
  Status ReadOpen(std::string& bytes);

  TimeLimits& m_limits;
  Milliseconds m_tick;
  bool m_open = false;
  bool m_restart = false;
};

/// Standard input, a file, a pipe or a terminal line, up to its end.
std::unique_ptr<ByteSource> MakeFileSource(const std::string& name, TimeLimits& limits, Milliseconds tick);

/// A regular file that other processes write to. If it becomes shorter, reading continues at its start. If it is
/// replaced, the old file is read to its end, then the new one from its start.
std::unique_ptr<ByteSource> MakeGrowingFileSource(const std::string& name, TimeLimits& limits, Milliseconds tick);

/// A TCP connection, with keep-alive, to an address accepted by CheckAddress().
std::unique_ptr<ByteSource> MakeConnectionSource(const std::string& address, TimeLimits& limits, Milliseconds tick);

#endif
