#include "byte_source.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <sstream>

#include "address.h"
#include "arguments.h"
#include "timed_source.h"

namespace {

constexpr size_t CHUNK_SIZE = 65536;

}  // namespace

std::string InSeconds(double seconds) {
  std::ostringstream text;
  text << seconds << (seconds == 1 ? " second" : " seconds");
  return text.str();
}

bool SourceOptions::IsLive(const std::string& name) const {
  if (follow || !address.empty()) return true;
  struct ::stat status;
  return name == "-" && fstat(STDIN_FILENO, &status) == 0 && !S_ISREG(status.st_mode);
}

void AddSourceOptions(CLI::App& command, SourceOptions& options, Operands files) {
  const auto takeOne = [&options](const std::string& file) { options.files = {file}; };
  CLI::Option* file = files == Operands::One ? command.add_option_function<std::string>("FILE", takeOne)
                                             : command.add_option("FILE", options.files);
  TakePaths(file);
  CLI::Option* connect = command.add_option("--connect", options.address)->check(CheckAddress)->excludes(file);
  command.add_flag("--follow", options.follow)->excludes(connect);
  TakeSeconds(command.add_option("--timeout", options.timeout));
  TakeSeconds(command.add_option("--idle", options.idle));
}

TimeLimit::TimeLimit(double limit)
    : seconds(limit), deadline(std::chrono::ceil<Milliseconds>(std::chrono::duration<double>(limit))) {}

std::unique_ptr<ByteSource> MakeByteSource(const SourceOptions& options, const std::string& name, TimeLimits& limits,
                                           Milliseconds tick) {
  if (!options.address.empty()) return MakeConnectionSource(name, limits, tick);
  if (!options.follow) return MakeFileSource(name, limits, tick);
  if (options.files.size() != 1 || name == "-") throw CLI::ValidationError("--follow", "requires one FILE");
  return MakeGrowingFileSource(name, limits, tick);
}

bool WaitReadable(int descriptor, Milliseconds most) {
  pollfd waiting = {descriptor, POLLIN, 0};
  const int count = poll(&waiting, 1, static_cast<int>(most.count()));
  return count > 0 || (count < 0 && errno != EINTR);
}

ByteSource::Status TimedSource::Read(std::string& bytes) {
  bytes.clear();
  if (!m_open) {
    const Status status = Open();
    if (status != Status::Data) return status;
    m_open = m_restart = true;
  }
  if (m_restart) m_limits.idle.deadline.Restart();
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

ByteSource::Status TimedSource::TimeOut(const std::string& error, const TimeLimit& limit) {
  m_error = error + InSeconds(limit.seconds);
  return Status::TimedOut;
}

bool TimedSource::HasPassed() const {
  return m_limits.run.deadline.Passed() || m_limits.idle.deadline.Passed();
}

ByteSource::Status TimedSource::FailInTime(const std::string& error) {
  return Fail(error + InSeconds((m_limits.run.deadline.Passed() ? m_limits.run : m_limits.idle).seconds));
}

Milliseconds TimedSource::Left(Milliseconds most) const {
  return m_limits.run.deadline.Left(m_limits.idle.deadline.Left(most));
}

ByteSource::Status TimedSource::ReadOpen(std::string& bytes) {
  const Deadline tick(m_tick);
  for (;;) {
    if (m_limits.run.deadline.Passed()) return TimeOut("time limit reached after ", m_limits.run);
    if (Await(Left(tick.Left(LONGEST_WAIT)))) {
      bytes.resize(CHUNK_SIZE);
      const ssize_t count = Receive(bytes.data(), bytes.size());
      bytes.resize(count > 0 ? static_cast<size_t>(count) : 0);
      m_restart = count > 0;
      if (count >= 0) return count > 0 ? Status::Data : Ended();
      if (errno != EAGAIN && errno != EINTR) return FailWithErrno();
    }
    if (m_limits.idle.deadline.Passed()) return TimeOut("no input for ", m_limits.idle);
    if (tick.Passed()) return Status::Data;
  }
}
