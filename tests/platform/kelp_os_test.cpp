#include "platform/kelp_os.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "temp_folder.h"
#include "unprivileged.h"

namespace VARNEL_TEST {
namespace {

struct Close {
  void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, Close>;

File Open(const std::string& path, const char* mode) {
  errno = 0;
  return File(KELP_OS::fopen(path.c_str(), mode, "UTF-8"));
}

int StatusFlags(const File& file) {
  return fcntl(fileno(file.get()), F_GETFL);
}

std::string ReadAll(const File& file) {
  char buffer[64];
  return {buffer, std::fread(buffer, 1, sizeof buffer, file.get())};
}

bool Write(const File& file, const char* text) {
  return std::fputs(text, file.get()) >= 0 && std::fflush(file.get()) == 0;
}

// A call that waits instead of refusing ends the test process.
class KelpOs : public ::testing::Test {
 protected:
  KelpOs() { alarm(20); }
  ~KelpOs() override { alarm(0); }

  std::string MakeFifo(const std::string& name) const {
    const std::string path = folder.Path(name);
    EXPECT_EQ(mkfifo(path.c_str(), 0666), 0);
    return path;
  }

  void ExpectRefusal(const std::string& path, int error) const {
    for (const char* mode : {"r", "rb", "r+", "w", "w+", "a", "a+"}) {
      const size_t open = OpenDescriptors();
      EXPECT_EQ(Open(path, mode), nullptr) << mode;
      EXPECT_EQ(errno, error) << mode;
      EXPECT_EQ(OpenDescriptors(), open) << mode;
    }
  }

  const TempFolder folder;
};

TEST_F(KelpOs, ReadOnly) {
  const std::string path = folder.Write("file", "old");
  for (const char* mode : {"r", "rb", "re", "rbe"}) {
    const File file = Open(path, mode);
    ASSERT_NE(file, nullptr) << mode;
    EXPECT_EQ(ReadAll(file), "old") << mode;
    EXPECT_FALSE(Write(file, "new")) << mode;
  }
  EXPECT_EQ(ReadWhole(path), "old");
}

TEST_F(KelpOs, ReadAndWrite) {
  const std::string path = folder.Write("file", "oldest");
  for (const char* mode : {"r+", "rb+", "r+b", "r+be"}) {
    const File file = Open(path, mode);
    ASSERT_NE(file, nullptr) << mode;
    EXPECT_TRUE(Write(file, "new")) << mode;
    EXPECT_EQ(ReadAll(file), "est") << mode;
  }
  EXPECT_EQ(ReadWhole(path), "newest");
}

TEST_F(KelpOs, WriteTruncatesAndCreates) {
  for (const std::string& path : {folder.Write("file", "a long old text"), folder.Path("fresh")}) {
    const File file = Open(path, "w");
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(Write(file, "new"));
    EXPECT_EQ(ReadWhole(path), "new");
    EXPECT_EQ(ReadAll(file), "");
  }
}

TEST_F(KelpOs, WriteAndReadTruncates) {
  const File file = Open(folder.Write("file", "old"), "w+b");
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(Write(file, "new text"));
  std::rewind(file.get());
  EXPECT_EQ(ReadAll(file), "new text");
}

TEST_F(KelpOs, AppendGoesToTheEnd) {
  for (const std::string& path : {folder.Write("file", "old"), folder.Write("empty", ""), folder.Path("fresh")}) {
    const std::string before = access(path.c_str(), F_OK) == 0 ? ReadWhole(path) : "";
    const File file = Open(path, "a");
    ASSERT_NE(file, nullptr);
    EXPECT_NE(StatusFlags(file) & O_APPEND, 0);
    std::rewind(file.get());
    EXPECT_TRUE(Write(file, "new"));
    EXPECT_EQ(ReadWhole(path), before + "new");
  }
}

TEST_F(KelpOs, AppendAndReadReadsFromTheStart) {
  const std::string path = folder.Write("file", "old");
  const File file = Open(path, "a+");
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(ReadAll(file), "old");
  EXPECT_TRUE(Write(file, "new"));
  EXPECT_EQ(ReadWhole(path), "oldnew");
}

TEST_F(KelpOs, ExclusiveCreationRefusesAnExistingFile) {
  const std::string path = folder.Path("file");
  EXPECT_NE(Open(path, "wx"), nullptr);
  for (const char* mode : {"wx", "wbx", "w+x", "ax"}) {
    EXPECT_EQ(Open(path, mode), nullptr) << mode;
    EXPECT_EQ(errno, EEXIST) << mode;
  }
}

TEST_F(KelpOs, CreatedFilesFollowTheFileModeMask) {
  const mode_t before = umask(027);
  const std::string path = folder.Path("file");
  EXPECT_NE(Open(path, "w"), nullptr);
  umask(before);
  struct ::stat status;
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST_F(KelpOs, UnknownModeIsRefused) {
  const std::string path = folder.Write("file", "old");
  for (const char* mode : {"", "q", "b", "+", "x", "R", " r"}) {
    EXPECT_EQ(Open(path, mode), nullptr) << mode;
    EXPECT_EQ(errno, EINVAL) << mode;
  }
  EXPECT_EQ(ReadWhole(path), "old");
}

TEST_F(KelpOs, NullArgumentsAreRefused) {
  const std::string path = folder.Write("file", "old");
  EXPECT_EQ(Open(path, nullptr), nullptr);
  EXPECT_EQ(errno, EINVAL);
  errno = 0;
  EXPECT_EQ(KELP_OS::fopen(nullptr, "r", "UTF-8"), nullptr);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_NE(File(KELP_OS::fopen(path.c_str(), "r", nullptr)), nullptr) << "the encoding is ignored";
}

TEST_F(KelpOs, DescriptorsAreNotInherited) {
  const std::string path = folder.Write("file", "old");
  for (const char* mode : {"r", "r+", "w", "w+", "a", "a+", "rb", "re"}) {
    const File file = Open(path, mode);
    ASSERT_NE(file, nullptr) << mode;
    EXPECT_NE(fcntl(fileno(file.get()), F_GETFD) & FD_CLOEXEC, 0) << mode;
  }
}

TEST_F(KelpOs, FifoWithoutAnotherEndIsRefused) {
  ExpectRefusal(MakeFifo("fifo"), ENXIO);
}

TEST_F(KelpOs, FifoWithAnotherEndIsRefused) {
  const std::string path = MakeFifo("fifo");
  const int otherEnd = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  ASSERT_EQ(write(otherEnd, "data", 4), 4);
  ExpectRefusal(path, ENXIO);
  char left[8];
  EXPECT_EQ(read(otherEnd, left, sizeof left), 4) << "nothing was taken from it";
  close(otherEnd);
}

TEST_F(KelpOs, LinkToAFifoIsRefused) {
  MakeFifo("fifo");
  const std::string link = folder.Path("link");
  ASSERT_EQ(symlink("fifo", link.c_str()), 0);
  ExpectRefusal(link, ENXIO);
}

TEST_F(KelpOs, SocketIsRefused) {
  const std::string path = folder.Path("socket");
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  std::strcpy(address.sun_path, path.c_str());
  const int server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(server, 1), 0);
  ExpectRefusal(path, ENXIO);
  close(server);
}

// A process that holds a write lease on a file, writes to it when another process wants to open it, and then ends.
class LeaseHolder {
 public:
  explicit LeaseHolder(const std::string& path) {
    int ready[2];
    EXPECT_EQ(pipe2(ready, O_CLOEXEC), 0);
    m_child = fork();
    if (m_child == 0) Hold(path, ready[1]);
    close(ready[1]);
    char held = 0;
    EXPECT_EQ(read(ready[0], &held, 1), 1) << "no lease";
    close(ready[0]);
  }
  ~LeaseHolder() { waitpid(m_child, nullptr, 0); }
  LeaseHolder(const LeaseHolder&) = delete;
  LeaseHolder& operator=(const LeaseHolder&) = delete;

 private:
  [[noreturn]] static void Hold(const std::string& path, int ready) {
    alarm(20);
    sigset_t wanted;
    sigemptyset(&wanted);
    sigaddset(&wanted, SIGIO);
    sigprocmask(SIG_BLOCK, &wanted, nullptr);
    const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
    int signal = 0;
    const bool done = fcntl(file, F_SETLEASE, F_WRLCK) == 0 && write(ready, "x", 1) == 1 &&
                      sigwait(&wanted, &signal) == 0 && write(file, "new", 3) == 3;
    _exit(done ? 0 : 1);
  }

  pid_t m_child = -1;
};

TEST_F(KelpOs, LeaseOfAnotherProcessIsWaitedFor) {
  const std::string path = folder.Write("file", "old");
  for (const char* mode : {"r", "r+", "a+"}) {
    const LeaseHolder holder(path);
    const File file = Open(path, mode);
    ASSERT_NE(file, nullptr) << mode << ' ' << std::strerror(errno);
    EXPECT_EQ(ReadAll(file), "new") << mode;
  }
}

TEST_F(KelpOs, FolderOpensOnlyForReadingAsInTheCLibrary) {
  const File file = Open(folder.Path(), "r");
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(ReadAll(file), "");
  EXPECT_EQ(errno, EISDIR);
  for (const char* mode : {"r+", "w", "a"}) {
    EXPECT_EQ(Open(folder.Path(), mode), nullptr) << mode;
    EXPECT_EQ(errno, EISDIR) << mode;
  }
}

TEST_F(KelpOs, MissingFile) {
  for (const char* mode : {"r", "r+"}) {
    EXPECT_EQ(Open(folder.Path("absent"), mode), nullptr) << mode;
    EXPECT_EQ(errno, ENOENT) << mode;
  }
  EXPECT_EQ(Open("", "r"), nullptr);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(KelpOs, FileWithoutRights) {
  const std::string path = folder.Write("file", "old");
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  EXPECT_TRUE(HoldsUnprivileged([&] {
    for (const char* mode : {"r", "r+", "w", "a"}) {
      if (Open(path, mode) != nullptr || errno != EACCES) return false;
    }
    return true;
  }));
}

TEST_F(KelpOs, NamesAreBytes) {
  for (const char* name : {"\xFF\xFE\x80", "\xC3", "tab\tline\nfeed", " ", "*"}) {
    const std::string path = folder.Write(name, name);
    const File file = Open(path, "r");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(ReadAll(file), name);
    struct ::stat status;
    EXPECT_EQ(KELP_OS::stat(path.c_str(), &status, "UTF-8"), 0);
  }
}

TEST_F(KelpOs, StatDescribesTheTargetOfALink) {
  folder.Write("file", "12345");
  const std::string link = folder.Path("link");
  ASSERT_EQ(symlink("file", link.c_str()), 0);
  struct ::stat status;
  ASSERT_EQ(KELP_OS::stat(link.c_str(), &status, "UTF-8"), 0);
  EXPECT_TRUE(S_ISREG(status.st_mode));
  EXPECT_EQ(status.st_size, 5);
}

TEST_F(KelpOs, StatOfAFifoDoesNotWait) {
  struct ::stat status;
  ASSERT_EQ(KELP_OS::stat(MakeFifo("fifo").c_str(), &status, "UTF-8"), 0);
  EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST_F(KelpOs, StatOfAMissingFile) {
  const std::string link = folder.Path("link");
  ASSERT_EQ(symlink("absent", link.c_str()), 0);
  for (const std::string& path : {folder.Path("absent"), link, std::string()}) {
    struct ::stat status;
    errno = 0;
    EXPECT_EQ(KELP_OS::stat(path.c_str(), &status, "UTF-8"), -1);
    EXPECT_EQ(errno, ENOENT);
  }
}

TEST_F(KelpOs, StatOfNull) {
  struct ::stat status;
  errno = 0;
  EXPECT_EQ(KELP_OS::stat(nullptr, &status, "UTF-8"), -1);
  EXPECT_EQ(std::exchange(errno, 0), EINVAL);
  EXPECT_EQ(KELP_OS::stat(folder.Path().c_str(), nullptr, "UTF-8"), -1);
  EXPECT_EQ(errno, EINVAL);
}

}  // namespace
}  // namespace VARNEL_TEST
