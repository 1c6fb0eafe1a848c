#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "files.h"
#include "timed_source.h"

namespace {

constexpr auto RECHECK_INTERVAL = Milliseconds(1000);

class FileSource : public TimedSource {
 public:
  FileSource(const SourceOptions& options, Limit limit, Milliseconds tick)
      : TimedSource(options, limit, tick), m_path(options.file) {}

 protected:
  Status Open() override {
    if (m_path == "-") return Status::Data;
    // Not blocking, since opening a pipe that nobody writes to would wait without limit.
    m_file.Reset(open(m_path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (m_file.Get() < 0 || fstat(m_file.Get(), &m_status) != 0) return FailWithErrno();
    return S_ISDIR(m_status.st_mode) ? Fail("is a folder") : Status::Data;
  }

  bool Await(Milliseconds most) override { return WaitReadable(Number(), most); }
  ssize_t Receive(char* buffer, size_t size) override { return read(Number(), buffer, size); }

  int Number() const { return m_file.Get() < 0 ? STDIN_FILENO : m_file.Get(); }

  std::string m_path;
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
    m_notices.Reset(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (m_notices.Get() >= 0) inotify_add_watch(m_notices.Get(), m_path.c_str(), IN_MODIFY);
    return Status::Data;
  }

  // Looks at the file now and then even without a notice, as some file systems give none.
  bool Await(Milliseconds most) override {
    if (fstat(Number(), &m_status) == 0 && m_status.st_size != m_position) return true;
    if (WaitReadable(m_notices.Get(), std::min(most, RECHECK_INTERVAL))) DropNotices();
    return true;
  }

  ssize_t Receive(char* buffer, size_t size) override {
    if (m_status.st_size < m_position) m_position = 0;
    const ssize_t count = pread(Number(), buffer, size, m_position);
    if (count > 0) m_position += count;
    if (count == 0) errno = EAGAIN;
    return count == 0 ? -1 : count;
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

std::unique_ptr<ByteSource> MakeFileSource(const SourceOptions& options, Limit limit, Milliseconds tick) {
  if (options.follow) return std::make_unique<GrowingFileSource>(options, limit, tick);
  return std::make_unique<FileSource>(options, limit, tick);
}
