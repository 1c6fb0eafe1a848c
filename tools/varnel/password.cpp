#include "password.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "files.h"

namespace {

bool IsUnnamedPipe(int file) {
  struct ::statfs system;
  return fstatfs(file, &system) == 0 && system.f_type == PIPEFS_MAGIC;
}

// Returns why a file is refused as a password file; else empty.
std::string CheckFile(int file, mode_t mode) {
  const bool isPipe = S_ISFIFO(mode) && (file == STDIN_FILENO || IsUnnamedPipe(file));
  if (!S_ISREG(mode) && !isPipe) return "is not a regular file or unnamed pipe";
  const bool othersMay = (mode & (S_IRWXG | S_IRWXO)) != 0;
  return othersMay ? "other users have access to this password file (expected: chmod 600)" : "";
}

// A terminal without echo, until the end of the object.
class Silence {
 public:
  explicit Silence(int terminal) : m_terminal(terminal), m_silent(tcgetattr(terminal, &m_before) == 0) {
    if (!m_silent) return;
    termios silent = m_before;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
    silent.c_lflag |= ICANON | ISIG;
    m_silent = tcsetattr(m_terminal, TCSAFLUSH, &silent) == 0;
  }
  ~Silence() {
    if (m_silent) tcsetattr(m_terminal, TCSAFLUSH, &m_before);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

  bool IsSilent() const { return m_silent; }

 private:
  int m_terminal;
  termios m_before = {};
  bool m_silent;
};

bool Write(int file, std::string_view text) {
  return write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

// False if the interrupt came first.
bool Await(int file, int interrupt) {
  pollfd waiting[] = {{file, POLLIN, 0}, {interrupt, POLLIN, 0}};
  while (poll(waiting, 2, -1) < 0 && errno == EINTR) {
  }
  return waiting[1].revents == 0;
}

}  // namespace

std::string Password::ReadFile(const std::string& path, int interrupt) {
  Wipe();
  // Not blocking, since opening a named pipe without a writer would wait without limit.
  const bool opens = path != "-";
  const Descriptor opened(opens ? open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC) : -1);
  const int file = opens ? opened.Get() : STDIN_FILENO;
  struct ::stat status;
  if (file < 0 || fstat(file, &status) != 0) return std::strerror(errno);
  m_isFromFile = opens && S_ISREG(status.st_mode);
  std::string error = CheckFile(file, status.st_mode);
  if (error.empty()) error = ReadLine(file, interrupt);
  if (!error.empty()) Wipe();
  return error;
}

std::string Password::Ask(const std::string& prompt, int interrupt) {
  Wipe();
  const Descriptor terminal(open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC));
  if (terminal.Get() < 0) return "there is no terminal to ask for it";
  const Silence silence(terminal.Get());
  if (!silence.IsSilent() || !Write(terminal.Get(), prompt)) return std::strerror(errno);
  std::string error = ReadLine(terminal.Get(), interrupt);
  Write(terminal.Get(), "\n");
  if (!error.empty()) Wipe();
  return error;
}

void Password::Wipe() {
  explicit_bzero(m_text.data(), m_text.size());
  m_length = 0;
}

// One byte at a time: the bytes after the line remain for other readers.
std::string Password::ReadLine(int file, int interrupt) {
  while (m_length < m_text.size()) {
    if (!Await(file, interrupt)) return "interrupted";
    const ssize_t count = read(file, &m_text[m_length], 1);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count < 0) return std::strerror(errno);
    if (count == 0 || m_text[m_length] == '\n') break;
    ++m_length;
  }
  if (m_length > 0 && m_text[m_length - 1] == '\r') --m_length;
  if (m_length > MAX_LENGTH) return "the password is longer than 1024 bytes";
  return m_length == 0 ? "the password is empty" : "";
}
