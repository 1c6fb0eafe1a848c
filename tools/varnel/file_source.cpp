#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "files.h"
#include "timed_source.h"

namespace {

constexpr auto RECHECK_INTERVAL = Milliseconds(1000);

class FileSource : public TimedSource {
 public:
  FileSource(std::string name, TimeLimits& limits, Milliseconds tick)
      : TimedSource(limits, tick), m_name(std::move(name)) {}

 protected:
  Status Open() override {
    if (m_name == "-") return Status::Data;
    // Not blocking, since opening a pipe without a writer would wait without limit.
    m_file.Reset(open(m_name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (m_file.Get() < 0 || fstat(m_file.Get(), &m_status) != 0) return FailWithErrno();
    return S_ISDIR(m_status.st_mode) ? Fail("is a folder") : Status::Data;
  }

  bool Await(Milliseconds most) override { return WaitReadable(Number(), most); }
  ssize_t Receive(char* buffer, size_t size) override { return read(Number(), buffer, size); }

  int Number() const { return m_file.Get() < 0 ? STDIN_FILENO : m_file.Get(); }

  std::string m_name;
  Descriptor m_file;
  struct ::stat m_status = {};
};

class GrowingFileSource final : public FileSource {
 public:
  using FileSource::FileSource;

 private:
  Status Open() override {
    const Status status = FileSource::Open();
    if (status != Status::Data) return status;
    if (!S_ISREG(m_status.st_mode)) return Fail("--follow reads regular files only");
    Watch();
    return Status::Data;
  }

  // Some file systems send no notifications, therefore the file is also checked regularly.
  void Watch() {
    m_notices.Reset(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (m_notices.Get() >= 0) inotify_add_watch(m_notices.Get(), m_name.c_str(), IN_MODIFY | IN_MOVE_SELF | IN_ATTRIB);
  }

  bool Await(Milliseconds most) override {
    if (HasChanged()) return true;
    if (WaitReadable(m_notices.Get(), std::min(most, RECHECK_INTERVAL))) DropNotices();
    return HasChanged();
  }

  bool HasChanged() { return (fstat(Number(), &m_status) == 0 && m_status.st_size != m_position) || IsReplaced(); }

  // True if the name now refers to another regular file.
  bool IsReplaced() const {
    struct ::stat named;
    return stat(m_name.c_str(), &named) == 0 && S_ISREG(named.st_mode) &&
           (named.st_ino != m_status.st_ino || named.st_dev != m_status.st_dev);
  }

  // 0 at the end of a file that became shorter or lost its name.
  ssize_t Receive(char* buffer, size_t size) override {
    if (m_status.st_size < m_position) return 0;
    const ssize_t count = pread(Number(), buffer, size, m_position);
    if (count > 0) m_position += count;
    if (count != 0 || IsReplaced()) return count;
    errno = EAGAIN;
    return -1;
  }

  Status Ended() override {
    m_position = 0;
    if (!IsReplaced()) return Status::Restarted;
    const Status status = Open();
    return status == Status::Data ? Status::Restarted : status;
  }

  void DropNotices() const {
    char notices[4096];
    while (read(m_notices.Get(), notices, sizeof notices) > 0) {
    }
  }

  Descriptor m_notices;
  off_t m_position = 0;
};

}  // namespace

std::unique_ptr<ByteSource> MakeFileSource(const std::string& name, TimeLimits& limits, Milliseconds tick) {
  return std::make_unique<FileSource>(name, limits, tick);
}

std::unique_ptr<ByteSource> MakeGrowingFileSource(const std::string& name, TimeLimits& limits, Milliseconds tick) {
  return std::make_unique<GrowingFileSource>(name, limits, tick);
}
