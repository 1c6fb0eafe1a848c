#ifndef VARNEL_TOOLS_BYTE_SOURCE_H
#define VARNEL_TOOLS_BYTE_SOURCE_H

#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "deadline.h"

/// Where bytes come from while they are still being written or sent.
class ByteSource {
 public:
  enum class Status {
    Data,       ///< `bytes` is what arrived; empty only if there is a tick and it is time for it
    Restarted,  ///< the growing file was replaced or has become shorter; the next bytes are from the start of it
    End,        ///< nothing more will come
    TimedOut,   ///< a time limit has passed; Error() returns which
    Failed,     ///< Error() returns why
  };

  ByteSource() = default;
  virtual ~ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  /// Waits for bytes and replaces `bytes` by what arrived, nothing for any other status than Data.
  virtual Status Read(std::string& bytes) = 0;

  /// What went wrong, in words; empty after Data, Restarted and End.
  const std::string& Error() const { return m_error; }

 protected:
  std::string m_error;
};

/// The part of the command line that describes the sources.
struct SourceOptions {
  std::vector<std::string> files = {"-"};  ///< "-" is standard input
  std::string address;                     ///< HOST:PORT to connect to, instead of files
  bool follow = false;                     ///< go on as the file grows
  double timeout = 0;                      ///< limit of the whole run in seconds; 0 for none
  double idle = 0;                         ///< limit of each silence in seconds; 0 for none

  /// The names of all sources, as messages use them.
  std::vector<std::string> Names() const { return address.empty() ? files : std::vector<std::string>{address}; }

  /// True if bytes of this source arrive as they are written or sent.
  bool IsLive(const std::string& name) const;
};

/// What is wrong with a text that must be a number of seconds above 0 and up to a year, or nothing.
std::string CheckTimeout(const std::string& text);

/// "1 second", "0.5 seconds".
std::string InSeconds(double seconds);

enum class Operands { One, Several };

/// Adds FILE, --connect, --follow, --timeout and --idle to a command.
void AddSourceOptions(CLI::App& command, SourceOptions& options, Operands files);

/// A time limit, which begins to run when it is made.
struct TimeLimit {
  explicit TimeLimit(double limit);

  double seconds;
  Deadline deadline;
};

/// The limits of a run. Connecting, with the look-up of the name, counts in both.
struct TimeLimits {
  explicit TimeLimits(const SourceOptions& options) : run(options.timeout), idle(options.idle) {}

  TimeLimit run;   ///< of all sources together
  TimeLimit idle;  ///< of each wait for bytes
};

/// Makes one of the sources that the options name. It is opened by the first Read(), which also reports a failure.
///
/// @param name    one of options.Names()
/// @param limits  must outlive the source
/// @param tick    0, or the time after which Read() returns without bytes
/// @throw CLI::ValidationError  if the options contradict each other
std::unique_ptr<ByteSource> MakeByteSource(const SourceOptions& options, const std::string& name, TimeLimits& limits,
                                           std::chrono::milliseconds tick = std::chrono::milliseconds(0));

#endif
