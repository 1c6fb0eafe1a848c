#ifndef VARNEL_TOOLS_BYTE_SOURCE_H
#define VARNEL_TOOLS_BYTE_SOURCE_H

#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "deadline.h"

/// A source of bytes that may still be written or sent.
class ByteSource {
 public:
  enum class Status {
    Data,       ///< `bytes` is what arrived; empty only when a tick is due
    Restarted,  ///< the growing file was replaced or became shorter; the next bytes are from its start
    End,        ///< nothing more will come
    TimedOut,   ///< a time limit has passed; Error() returns which
    Failed,     ///< Error() returns why
  };

  ByteSource() = default;
  virtual ~ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  /// Waits for bytes and replaces `bytes` by them; empty for every status but Data.
  virtual Status Read(std::string& bytes) = 0;

  /// The error message; empty after Data, Restarted and End.
  const std::string& Error() const { return m_error; }

 protected:
  std::string m_error;
};

/// The part of the command line that describes the sources.
struct SourceOptions {
  std::vector<std::string> files = {"-"};  ///< "-" is standard input
  std::string address;                     ///< HOST:PORT to connect to, instead of files
  bool follow = false;                     ///< continue as the file grows
  double timeout = 0;                      ///< limit of the whole run in seconds; 0 for none
  double idle = 0;                         ///< limit of the time without input in seconds; 0 for none

  /// The names of all sources, as messages use them.
  std::vector<std::string> Names() const { return address.empty() ? files : std::vector<std::string>{address}; }

  /// True if bytes of this source arrive as they are written or sent.
  bool IsLive(const std::string& name) const;
};

/// "1 second", "0.5 seconds".
std::string InSeconds(double seconds);

enum class Operands { One, Several };

/// Adds FILE, --connect, --follow, --timeout and --idle to a command.
void AddSourceOptions(CLI::App& command, SourceOptions& options, Operands files);

/// A time limit, which begins at construction.
struct TimeLimit {
  explicit TimeLimit(double limit);

  double seconds;
  Deadline deadline;
};

/// The limits of a run. Both include connecting and the look-up of the name.
struct TimeLimits {
  explicit TimeLimits(const SourceOptions& options) : run(options.timeout), idle(options.idle) {}

  TimeLimit run;   ///< of all sources together
  TimeLimit idle;  ///< of each wait for bytes
};

/// Makes one of the sources that the options name. It is opened by the first Read(), which also reports a failure.
///
/// @param name    one of options.Names()
/// @param limits  must outlive the source
/// @param tick    the time after which Read() returns without bytes; 0 for none
/// @throw CLI::ValidationError  if the options contradict each other
std::unique_ptr<ByteSource> MakeByteSource(const SourceOptions& options, const std::string& name, TimeLimits& limits,
                                           std::chrono::milliseconds tick = std::chrono::milliseconds(0));

#endif
