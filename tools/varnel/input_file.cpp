#include "input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

std::string WhyUnreadable(const std::string& path) {
  struct ::stat status;
  if (stat(path.c_str(), &status) != 0) return std::strerror(errno);
  if (S_ISDIR(status.st_mode)) return "is a folder";
  if (!S_ISREG(status.st_mode)) return "not a regular file";
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor == -1) return std::strerror(errno);
  close(descriptor);
  return "";
}

bool CopyAll(FILE* from, FILE* to) {
  char buffer[65536];
  for (size_t read; (read = std::fread(buffer, 1, sizeof buffer, from)) > 0;) {
    if (std::fwrite(buffer, 1, read, to) != read) return false;
  }
  return std::ferror(from) == 0 && std::fflush(to) == 0;
}

}  // namespace

InputFile::InputFile(const std::string& name) : m_name(name), m_path(name) {
  m_error = name == "-" ? KeepStandardInput() : WhyUnreadable(name);
}

File InputFile::Open() const {
  return File(m_error.empty() ? std::fopen(m_path.c_str(), "rbe") : nullptr);
}

std::string InputFile::KeepStandardInput() {
  m_kept.reset(std::tmpfile());
  if (m_kept == nullptr || !CopyAll(stdin, m_kept.get())) return std::strerror(errno);
  m_path = "/proc/self/fd/" + std::to_string(fileno(m_kept.get()));
  return "";
}
