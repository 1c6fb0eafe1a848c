#ifndef VARNEL_TOOLS_WATCH_OUTPUT_H
#define VARNEL_TOOLS_WATCH_OUTPUT_H

#include <chrono>
#include <cstddef>
#include <string>

#include "files.h"

/// SIGTERM, SIGINT and SIGHUP as something to wait for. Threads that start later do not receive them.
class WatchSignals {
 public:
  /// @throw std::system_error  if there is no descriptor left
  WatchSignals();

  int Descriptor() const { return m_descriptor.Get(); }

  /// Takes the signals that have arrived.
  void Read();

  bool stop = false;    ///< SIGTERM or SIGINT has arrived
  bool reload = false;  ///< SIGHUP has arrived

 private:
  ::Descriptor m_descriptor;
};

/// A queue of lines for standard output. If it is full, Add() waits for the reader, and a clock stops meanwhile;
/// the program is to do nothing else then, so that it keeps no more than this queue.
///
/// What is written to a pipe at once are whole lines: up to PIPE_BUF bytes, which a pipe takes entirely or not at all,
/// or a single longer line once the pipe is empty. Only a line that is longer than the pipe is written in pieces.
class WatchOutput {
 public:
  using Time = std::chrono::steady_clock::time_point;

  static constexpr size_t MOST = 262144;  ///< bytes in the queue, unless a single line is longer

  explicit WatchOutput(WatchSignals& signals);

  /// Adds a line. It is dropped if there is no room for it when the program is to stop.
  void Add(const std::string& line);

  /// Writes what can be written without waiting.
  void Flush();

  /// Writes up to a time.
  void FlushUntil(Time end);

  size_t Size() const { return m_queue.size() - m_written; }

  /// True if standard output cannot be written.
  bool HasFailed() const { return m_failed; }

  /// Lines that are lost if nothing more is written.
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
