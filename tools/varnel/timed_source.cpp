#include "timed_source.h"

#include <poll.h>

#include <cerrno>
#include <cstring>
#include <sstream>

namespace {

constexpr size_t CHUNK_SIZE = 65536;

std::string InSeconds(double seconds) {
  std::ostringstream text;
  text << seconds << (seconds == 1 ? " second" : " seconds");
  return text.str();
}

}  // namespace

bool WaitReadable(int descriptor, Milliseconds most) {
  pollfd waiting = {descriptor, POLLIN, 0};
  const int count = poll(&waiting, 1, static_cast<int>(most.count()));
  return count > 0 || (count < 0 && errno != EINTR);
}

TimedSource::TimedSource(const SourceOptions& options, Limit limit, Milliseconds tick)
    : m_deadline(std::chrono::ceil<Milliseconds>(std::chrono::duration<double>(options.timeout))),
      m_limit(limit),
      m_seconds(options.timeout),
      m_tick(tick) {}

ByteSource::Status TimedSource::Read(std::string& bytes) {
  bytes.clear();
  if (!m_open) {
    const Status status = Open();
    if (status != Status::Data) return status;
    m_open = m_restart = true;
  }
  if (m_restart && m_limit == Limit::Silence) m_deadline.Restart();
  m_restart = false;
  return ReadOpen(bytes);
}

ByteSource::Status TimedSource::Fail(const std::string& error) {
  m_error = error;
  return Status::Failed;
}

ByteSource::Status TimedSource::FailWithErrno() {
  return Fail(std::strerror(errno));
}

ByteSource::Status TimedSource::TimeOut(const std::string& error) {
  m_error = error + InSeconds(m_seconds);
  return Status::TimedOut;
}

ByteSource::Status TimedSource::ReadOpen(std::string& bytes) {
  const Deadline tick(m_tick);
  for (;;) {
    if (m_limit == Limit::WholeRun && m_deadline.Passed()) return TimeOut("the time is over after ");
    if (Await(m_deadline.Left(tick.Left(LONGEST_WAIT)))) {
      bytes.resize(CHUNK_SIZE);
      const ssize_t count = Receive(bytes.data(), bytes.size());
      bytes.resize(count > 0 ? static_cast<size_t>(count) : 0);
      m_restart = count > 0;
      if (count >= 0) return count > 0 ? Status::Data : Status::End;
      if (errno != EAGAIN && errno != EINTR) return FailWithErrno();
    }
    if (m_limit == Limit::Silence && m_deadline.Passed()) return TimeOut("nothing came for ");
    if (tick.Passed()) return Status::Data;
  }
}
