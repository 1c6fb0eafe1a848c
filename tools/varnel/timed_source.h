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

/// False when nothing came in time or a signal came first. A descriptor in error is ready: reading it tells the error.
bool WaitReadable(int descriptor, Milliseconds most);

/// What all sources share: the order of opening, waiting and reading, and the time limit on them.
class TimedSource : public ByteSource {
 public:
  TimedSource(const SourceOptions& options, Limit limit, Milliseconds tick);

  Status Read(std::string& bytes) final;

 protected:
  /// Data, or what Read() is to return. The deadline must be kept here.
  virtual Status Open() = 0;
  /// Waits until there is something to receive, for `most` at most; false when it cannot tell that there is.
  virtual bool Await(Milliseconds most) = 0;
  /// As read(); EAGAIN says that nothing is there yet.
  virtual ssize_t Receive(char* buffer, size_t size) = 0;

  Status Fail(const std::string& error);
  Status FailWithErrno();
  Status TimeOut(const std::string& error);

  Deadline m_deadline;

 private:
  Status ReadOpen(std::string& bytes);

  Limit m_limit;
  double m_seconds;
  Milliseconds m_tick;
  bool m_open = false;
  bool m_restart = false;
};

/// Standard input, a file, a pipe or a terminal line, up to its end; with `follow` a regular file that others write to,
/// which is read from its start if it has become shorter.
std::unique_ptr<ByteSource> MakeFileSource(const SourceOptions& options, Limit limit, Milliseconds tick);

/// What is wrong with a text that must be HOST:PORT, or nothing. An IPv6 address is written in brackets.
std::string CheckAddress(const std::string& text);

/// A TCP connection to options.address.
///
/// @throw CLI::ValidationError  for an address that CheckAddress() refuses
std::unique_ptr<ByteSource> MakeConnectionSource(const SourceOptions& options, Limit limit, Milliseconds tick);

#endif
