#ifndef VARNEL_TOOLS_WATCH_OUTPUT_H
#define VARNEL_TOOLS_WATCH_OUTPUT_H

#include <chrono>
#include <cstddef>
#include <string>

#include "files.h"

/// A descriptor for SIGTERM, SIGINT and SIGHUP. Threads that start later do not receive them.
class WatchSignals {
 public:
  /// @throw std::system_error  if no descriptor is available
  WatchSignals();

  int Descriptor() const { return m_descriptor.Get(); }

  /// Reads the signals that have arrived.
  void Read();

  bool stop = false;    ///< SIGTERM or SIGINT has arrived
  bool reload = false;  ///< SIGHUP has arrived

 private:
  ::Descriptor m_descriptor;
};

/// A queue of lines for standard output. If it is full, Add() waits for the reader and stops a clock. The program must
/// do nothing else meanwhile: memory is then limited to this queue.
///
/// One call writes whole lines to a pipe: up to PIPE_BUF bytes, which a pipe accepts entirely or not at all, or a
/// single longer line when the pipe is empty. Only a line longer than the pipe is written in pieces.
class WatchOutput {
 public:
  using Time = std::chrono::steady_clock::time_point;

  static constexpr size_t MOST = 262144;  ///< bytes in the queue, unless a single line is longer

  explicit WatchOutput(WatchSignals& signals);

  /// Adds a line. It is dropped if the queue is full and the program must stop.
  void Add(const std::string& line);

  /// Writes as much as possible without waiting.
  void Flush();

  /// Writes up to a time.
  void FlushUntil(Time end);

  size_t Size() const { return m_queue.size() - m_written; }

  /// True if standard output cannot be written.
  bool HasFailed() const { return m_failed; }

  /// The number of lines that are lost if nothing more is written.
  size_t Dropped() const;

  /// The time without the waits of Add().
  Time Now() const { return std::chrono::steady_clock::now() - m_waited; }

 private:
  bool HasRoom(size_t size) const { return Size() == 0 || Size() + size <= MOST; }
  bool Write();
  bool AwaitOutput(int milliseconds);
  size_t PieceLength() const;
  bool IsPipeEmpty() const;

  WatchSignals& m_signals;
  std::string m_queue;
  size_t m_written = 0;  // bytes at the front of the queue
  size_t m_capacity;     // of a pipe; 0 for other files
  size_t m_dropped = 0;
  bool m_failed = false;
  std::chrono::steady_clock::duration m_waited{};
};

#endif
