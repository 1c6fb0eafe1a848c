#include "byte_source.h"

#include <poll.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <sstream>

#include "arguments.h"
#include "timed_source.h"

namespace {

constexpr size_t CHUNK_SIZE = 65536;
constexpr double MAX_TIMEOUT = 31536000;  // a year of seconds

std::string CheckTimeout(const std::string& text) {
  double seconds = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, seconds);
  const bool valid = error == std::errc() && stop == end && seconds > 0 && seconds <= MAX_TIMEOUT;
  return valid ? "" : "is not a number of seconds above 0 and up to a year";
}

std::string InSeconds(double seconds) {
  std::ostringstream text;
  text << seconds << (seconds == 1 ? " second" : " seconds");
  return text.str();
}

}  // namespace

void AddSourceOptions(CLI::App& command, SourceOptions& options) {
  CLI::Option* file = TakePaths(command.add_option("FILE", options.file));
  CLI::Option* connect = command.add_option("--connect", options.address)->check(CheckAddress)->excludes(file);
  command.add_flag("--follow", options.follow)->excludes(connect);
  command.add_option("--timeout", options.timeout)->check(CheckTimeout);
}

std::unique_ptr<ByteSource> MakeByteSource(const SourceOptions& options, Limit limit, Milliseconds tick) {
  if (options.follow && options.file == "-") throw CLI::ValidationError("--follow", "requires a FILE");
  if (options.address.empty()) return MakeFileSource(options, limit, tick);
  return MakeConnectionSource(options, limit, tick);
}

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
