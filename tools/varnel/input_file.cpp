#include "input_file.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

namespace {

bool CopyAll(FILE* from, FILE* to) {
  char buffer[65536];
  for (size_t read; (read = std::fread(buffer, 1, sizeof buffer, from)) > 0;) {
    if (std::fwrite(buffer, 1, read, to) != read) return false;
  }
  return std::ferror(from) == 0 && std::fflush(to) == 0;
}

}  // namespace

InputFile::InputFile(const std::string& name) : m_name(name), m_path(name) {
  m_error = Prepare();
}

File InputFile::Open() const {
  return File(m_error.empty() ? std::fopen(m_path.c_str(), "rbe") : nullptr);
}

// Gives the reason why the file cannot be read, or nothing.
std::string InputFile::Prepare() {
  if (m_name == "-") return Keep(stdin);
  struct ::stat status;
  if (stat(m_name.c_str(), &status) != 0) return std::strerror(errno);
  if (S_ISDIR(status.st_mode)) return "is a folder";
  if (!S_ISREG(status.st_mode) && !S_ISFIFO(status.st_mode)) return "not a regular file";
  const File file(std::fopen(m_name.c_str(), "rbe"));
  if (file == nullptr) return std::strerror(errno);
  return S_ISFIFO(status.st_mode) ? Keep(file.get()) : "";
}

std::string InputFile::Keep(FILE* stream) {
  m_kept.reset(std::tmpfile());
  if (m_kept == nullptr || !CopyAll(stream, m_kept.get())) return std::strerror(errno);
  m_path = "/proc/self/fd/" + std::to_string(fileno(m_kept.get()));
  return "";
}
