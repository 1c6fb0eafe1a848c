#ifndef VARNEL_TOOLS_TIMED_SOURCE_H
#define VARNEL_TOOLS_TIMED_SOURCE_H

#include <sys/types.h>

#include <chrono>
#include <memory>
#include <string>

#include "byte_source.h"
#include "deadline.h"

using Milliseconds = std::chrono::milliseconds;

constexpr auto LONGEST_WAIT = Milliseconds(60000);  // then it is waited again

/// False if nothing came in time or a signal came first. A descriptor in error is ready: reading it returns the error.
bool WaitReadable(int descriptor, Milliseconds most);

/// What all sources share: the order of opening, waiting and reading, and the time limits on them.
class TimedSource : public ByteSource {
 public:
  TimedSource(TimeLimits& limits, Milliseconds tick) : m_limits(limits), m_tick(tick) {}

  Status Read(std::string& bytes) final;

 protected:
  /// Data, or what Read() is to return. The limits must be kept here.
  virtual Status Open() = 0;
  /// Waits until there is something to receive, for `most` at most; false if it cannot tell that there is.
  virtual bool Await(Milliseconds most) = 0;
  /// As read(); EAGAIN if nothing is there yet.
  virtual ssize_t Receive(char* buffer, size_t size) = 0;
  /// What it means that Receive() returned 0.
  virtual Status Ended() { return Status::End; }

  Status Fail(const std::string& error);
  Status FailWithErrno();

  /// Of both limits.
  bool HasPassed() const;
  Milliseconds Left(Milliseconds most) const;
  /// Fails with the limit that has passed: the error ends in its number of seconds.
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

/// A regular file that others write to. If it becomes shorter or another file gets its name, reading goes on at the
/// start of what then has the name; the old file is read to its end before.
std::unique_ptr<ByteSource> MakeGrowingFileSource(const std::string& name, TimeLimits& limits, Milliseconds tick);

/// A TCP connection, with keep-alive, to an address that CheckAddress() accepts.
std::unique_ptr<ByteSource> MakeConnectionSource(const std::string& address, TimeLimits& limits, Milliseconds tick);

#endif
