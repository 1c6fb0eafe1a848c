#ifndef VARNEL_TOOLS_TL1_RUN_H
#define VARNEL_TOOLS_TL1_RUN_H

#include <atags.h>
#include <framer.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>

#include "byte_source.h"
#include "tl1_output.h"

/// The options of all subcommands that read TL1.
struct Tl1Options {
  SourceOptions source;
  std::string encoding = "UTF-8";
  size_t limit = VARNEL_TL1::DEFAULT_LIMIT;
  bool json = false;
};

/// Adds these options to a command.
void AddTl1Options(CLI::App& command, Tl1Options& options);

/// Reads all sources of a command line, one after the other, and passes their messages to Take(). Reports messages that
/// are incomplete or too long, sources without TL1, and unreadable sources on standard error.
class Tl1Run {
 public:
  /// @param verbose  report what was skipped, and which time limit ended the run
  Tl1Run(const Tl1Options& options, bool verbose) : m_options(options), m_verbose(verbose) {}
  virtual ~Tl1Run() = default;
  Tl1Run(const Tl1Run&) = delete;
  Tl1Run& operator=(const Tl1Run&) = delete;

  /// @return EXIT_BAD if Fail() was called, else EXIT_DONE
  int Run();

 protected:
  /// StartStream() also follows when a followed file was replaced or truncated; its old stream is finished before.
  virtual void StartSource() {}
  virtual void StartStream() {}
  virtual void Take(const VARNEL_TL1::Message& message) = 0;
  virtual void FinishStream() {}
  /// Whether no further message is needed.
  virtual bool IsDone() const { return false; }

  /// Reports a message that is incomplete.
  void Examine(const VARNEL_TL1::Message& message);
  /// Reports an error of the current source.
  void Fail(const std::string& what);

  /// The current source, and the time of the last received bytes if it is live.
  const std::string& Source() const { return m_source; }
  const std::string& Received() const { return m_received; }

 private:
  bool ReadSource(TimeLimits& limits);
  void BeginStream();
  void Append(const std::string& bytes);
  void EndStream();
  void TakeMessages();
  void ReportSkipped() const;

  const Tl1Options& m_options;
  const bool m_verbose;
  std::string m_source;
  std::string m_received;
  std::optional<VARNEL_TL1::Framer> m_framer;
  bool m_found = false;  // a message, in this source
  bool m_failed = false;
};

#endif
