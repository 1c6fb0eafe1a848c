#include "watch_output.h"

#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>

namespace {

constexpr int EMPTY_PIPE_MILLISECONDS = 5;  // between two checks whether a pipe is empty
constexpr size_t WRITTEN_KEPT = 65536;      // written bytes at the front of the queue before the rest is moved

}  // namespace

WatchSignals::WatchSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP})
    sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  m_descriptor.Reset(signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
  if (m_descriptor.Get() < 0) throw std::system_error(errno, std::generic_category(), "signalfd");
}

void WatchSignals::Read() {
  signalfd_siginfo signal;
  while (read(m_descriptor.Get(), &signal, sizeof signal) == sizeof signal)
    (signal.ssi_signo == SIGHUP ? reload : stop) = true;
}

WatchOutput::WatchOutput(WatchSignals& signals)
    : m_signals(signals), m_capacity(static_cast<size_t>(std::max(fcntl(STDOUT_FILENO, F_GETPIPE_SZ), 0))) {}

void WatchOutput::Add(const std::string& line) {
  if (!HasRoom(line.size())) Flush();
  const Time begin = std::chrono::steady_clock::now();
  while (!HasRoom(line.size()) && !m_signals.stop && !m_failed) {
    if (AwaitOutput(-1)) Flush();
  }
  m_waited += std::chrono::steady_clock::now() - begin;
  if (HasRoom(line.size()) && !m_failed) {
    m_queue += line;
  } else {
    ++m_dropped;
  }
}

void WatchOutput::Flush() {
  while (Size() > 0 && !m_failed && AwaitOutput(0) && Write()) {
  }
  if (m_written < WRITTEN_KEPT && Size() > 0) return;
  m_queue.erase(0, m_written);
  m_written = 0;
}

void WatchOutput::FlushUntil(Time end) {
  using Milliseconds = std::chrono::milliseconds;
  for (;;) {
    Flush();
    const auto left = std::chrono::ceil<Milliseconds>(end - std::chrono::steady_clock::now());
    if (Size() == 0 || m_failed || left.count() <= 0) return;
    AwaitOutput(static_cast<int>(left.count()));
  }
}

size_t WatchOutput::Dropped() const {
  const auto begin = m_queue.begin() + static_cast<std::ptrdiff_t>(m_written);
  return m_dropped + static_cast<size_t>(std::count(begin, m_queue.end(), '\n'));
}

// Waits until the next piece can be written without blocking, a signal arrives or the time has passed; -1 waits without
// limit.
bool WatchOutput::AwaitOutput(int milliseconds) {
  const bool needsEmpty = m_capacity > 0 && PieceLength() > PIPE_BUF;
  const bool full = needsEmpty && !IsPipeEmpty();
  if (full) milliseconds = milliseconds == 0 ? 0 : EMPTY_PIPE_MILLISECONDS;
  pollfd waiting[] = {{m_signals.Descriptor(), POLLIN, 0}, {full ? -1 : STDOUT_FILENO, POLLOUT, 0}};
  if (poll(waiting, 2, milliseconds) <= 0) return false;
  if (waiting[0].revents != 0) m_signals.Read();
  return waiting[1].revents != 0;
}

// False if nothing was written.
bool WatchOutput::Write() {
  const ssize_t count = write(STDOUT_FILENO, &m_queue[m_written], PieceLength());
  if (count < 0) m_failed = errno != EAGAIN && errno != EINTR;
  m_written += static_cast<size_t>(std::max<ssize_t>(count, 0));
  return count > 0;
}

// The whole lines that fit into PIPE_BUF bytes, or one longer line, or PIPE_BUF bytes of a line that exceeds the size
// of the pipe.
size_t WatchOutput::PieceLength() const {
  const std::string_view left = std::string_view(m_queue).substr(m_written);
  if (left.size() <= PIPE_BUF) return left.size();
  const size_t lastEnd = left.rfind('\n', PIPE_BUF - 1);
  if (lastEnd != std::string_view::npos) return lastEnd + 1;
  const size_t length = left.find('\n') + 1;
  return length <= m_capacity ? length : PIPE_BUF;
}

bool WatchOutput::IsPipeEmpty() const {
  int bytes = 0;
  return ioctl(STDOUT_FILENO, FIONREAD, &bytes) == 0 && bytes == 0;
}
