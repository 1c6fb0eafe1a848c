#include "files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace {

[[noreturn]] void Fail() {
  throw std::runtime_error(std::string("cannot write: ") + std::strerror(errno));
}

}  // namespace

void Descriptor::Reset(int number) {
  if (m_number >= 0) close(m_number);
  m_number = number;
}

InputFile::InputFile(const std::string& name) : m_name(name) {
  m_error = Open();
}

// Devices are not opened, since opening alone can have an effect. Returns why the file cannot be read; else empty.
std::string InputFile::Open() {
  struct ::stat status;
  const bool standardInput = m_name == "-";
  if ((standardInput ? fstat(STDIN_FILENO, &status) : stat(m_name.c_str(), &status)) != 0) return std::strerror(errno);
  if (S_ISDIR(status.st_mode)) return "is a folder";
  if (S_ISREG(status.st_mode)) m_size = static_cast<uint64_t>(status.st_size);
  if (standardInput) return "";
  if (!m_size && !S_ISFIFO(status.st_mode)) return "not a regular file";
  m_opened.Reset(open(m_name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  return m_opened.Get() < 0 ? std::strerror(errno) : "";
}

size_t InputFile::Read(char* buffer, size_t size) {
  ssize_t count = 0;
  if (!m_error.empty()) return 0;
  do {
    count = read(m_opened.Get() < 0 ? STDIN_FILENO : m_opened.Get(), buffer, size);
  } while (count < 0 && errno == EINTR);
  if (count < 0) m_error = std::strerror(errno);
  return count < 0 ? 0 : static_cast<size_t>(count);
}

void InputFile::StorePipe() {
  if (m_size || !m_error.empty()) return;
  const VARNEL_UTIL::FileHandle stored(std::tmpfile());
  const int descriptor = stored == nullptr ? -1 : fileno(stored.get());
  char buffer[65536];
  bool written = descriptor >= 0;
  for (size_t count; written && (count = Read(buffer, sizeof buffer)) > 0;)
    written = std::fwrite(buffer, 1, count, stored.get()) == count;
  if (!written || std::fflush(stored.get()) != 0 || lseek(descriptor, 0, SEEK_SET) != 0) {
    m_error = std::strerror(errno);
  }
  m_opened.Reset(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
}

OutputFile::OutputFile(const std::string& name) : m_name(name) {
  if (name == "-") {
    if (isatty(STDOUT_FILENO) != 0) throw std::runtime_error("is a terminal (expected a file or a pipe)");
    m_file.reset(fdopen(dup(STDOUT_FILENO), "wb"));
  } else {
    RefuseSpecialFiles();
    OpenTemporary();
  }
  if (m_file == nullptr) Fail();
}

OutputFile::~OutputFile() {
  if (!m_temporary.empty()) unlink(m_temporary.c_str());
}

void OutputFile::OpenTemporary() {
  m_temporary =
      m_name.substr(0, m_name.rfind('/') + 1) + ".varnel.XXXXXX";  // in the same folder; the name is never too long
  const int descriptor = mkostemp(m_temporary.data(), O_CLOEXEC);
  if (descriptor == -1) {
    m_temporary.clear();
    Fail();
  }
  m_file.reset(fdopen(descriptor, "wb"));
  if (m_file != nullptr) return;
  const int error = errno;
  close(descriptor);
  unlink(m_temporary.c_str());
  errno = error;
}

void OutputFile::Write(const void* data, size_t size) {
  if (size > 0 && std::fwrite(data, 1, size, m_file.get()) != size) Fail();
}

void OutputFile::Finish() {
  if (std::fflush(m_file.get()) != 0) Fail();
  if (m_temporary.empty()) return;
  const mode_t mask = umask(0);
  umask(mask);
  if (fchmod(fileno(m_file.get()), 0666 & ~mask) != 0) Fail();
  if (std::rename(m_temporary.c_str(), m_name.c_str()) != 0) Fail();
  m_temporary.clear();
}

void OutputFile::RefuseSpecialFiles() const {
  struct ::stat status;
  if (lstat(m_name.c_str(), &status) != 0 || S_ISREG(status.st_mode) || S_ISLNK(status.st_mode)) return;
  throw std::runtime_error(S_ISDIR(status.st_mode) ? "is a folder" : "not a regular file");
}
