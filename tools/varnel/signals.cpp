#include "signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds LONGEST_POLL = std::chrono::minutes(1);

// -1 waits without limit.
int PollTime(std::optional<MonotonicTime> end) {
  if (!end) return -1;
  const auto left = std::chrono::ceil<Milliseconds>(*end - std::chrono::steady_clock::now());
  return static_cast<int>(std::clamp(left, Milliseconds::zero(), LONGEST_POLL).count());
}

}  // namespace

Signals::Signals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  struct sigaction hangUp;
  if (sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN) sigaddset(&signals, SIGHUP);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  m_descriptor.Reset(signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
  if (m_descriptor.Get() < 0) throw std::system_error(errno, std::generic_category(), "signalfd");
}

int Signals::Arrived() {
  signalfd_siginfo signal;
  while (read(m_descriptor.Get(), &signal, sizeof signal) == sizeof signal) {
    if (m_first == 0) m_first = static_cast<int>(signal.ssi_signo);
  }
  return m_first;
}

void PollUntil(pollfd* waiting, size_t count, std::optional<MonotonicTime> end) {
  for (;;) {
    const int ready = poll(waiting, count, PollTime(end));
    if (ready > 0) return;
    for (size_t i = 0; i < count; ++i)
      waiting[i].revents = 0;
    if (end && std::chrono::steady_clock::now() >= *end) return;
  }
}
