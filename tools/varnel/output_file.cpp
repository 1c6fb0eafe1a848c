#include "output_file.h"

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

OutputFile::OutputFile(const std::string& name) : m_name(name) {
  if (name == "-") {
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
  m_temporary = m_name.substr(0, m_name.rfind('/') + 1) + ".varnel.XXXXXX";  // beside it, and never too long a name
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
