#include <cerrno>
#include <cstring>
#include <limits>

#include "common.h"
#include "file_handle.h"
#include "find.h"
#include "platform/annex_k.h"
#include "publicdata.h"

namespace VARNEL_COMMON {

namespace {

constexpr char MODULE[] = "publicdata";
constexpr unsigned int SPARE_BYTES = 1024;  // zeros behind the text of a file
constexpr unsigned int LINE_SIZE = 1024;

}  // namespace

Vnifstream::Vnifstream(const std::string& path) : m_pBuffer(nullptr), m_uiSize(0), m_uiPos(0) {
  ReadFile(path);
}

Vnifstream::Vnifstream(const Vnifstream& other) = default;

Vnifstream& Vnifstream::operator=(const Vnifstream& other) = default;

Vnifstream::~Vnifstream() {
  delete[] m_pBuffer;
}

bool Vnifstream::ReadFile(const std::string& path) {
  const int callersErrno = errno;
  struct ::stat status;
  if (path.empty() || KELP_OS::stat(path.c_str(), &status, PATH_ENCODING) != 0) return false;
  FileHandle file = OpenForReading(path);
  if (file == nullptr) return false;

  const auto size = static_cast<unsigned int>(status.st_size);
  const size_t allocated = size_t{size} + SPARE_BYTES;
  auto* buffer = new char[allocated];
  const size_t read = std::fread(buffer, 1, size, file.get());
  memset_s(buffer + read, allocated - read, 0, allocated - read);
  file.reset();
  errno = callersErrno;
  m_pBuffer = buffer;
  m_uiSize = size;
  m_uiPos = 0;
  return true;
}

bool Vnifstream::GetLine(char* buf, unsigned int size) {
  if (buf == nullptr || size == 0 || m_pBuffer == nullptr || m_uiPos >= m_uiSize) return false;
  const char* start = m_pBuffer + m_uiPos;
  const size_t left = m_uiSize - m_uiPos;
  const void* lineFeed = std::memchr(start, '\n', left);
  size_t length = lineFeed == nullptr ? left : static_cast<size_t>(static_cast<const char*>(lineFeed) - start);
  m_uiPos += static_cast<unsigned int>(length);
  if (length >= size) length = size - 1;
  if (length > 0) {
    const int result = memcpy_s(buf, length, start, length);
    if (result != 0) {
      ReportError({MODULE, "GetLine", __LINE__}, result, "Vnifstream::GetLine.memcpy_s failed");
      return false;
    }
  }
  buf[length] = '\0';
  if (m_uiPos < std::numeric_limits<unsigned int>::max()) ++m_uiPos;
  return true;
}

bool isColdPatch(const std::string& path) {
  Vnifstream file(path);
  char line[LINE_SIZE];
  while (file.GetLine(line, sizeof line)) {
    if (VARNEL_INTERNAL::FindInString(line, "[COLDPATCH]") != nullptr) return true;
  }
  ReportWarning({MODULE, "isColdPatch", __LINE__}, Compose("isColdPatch not find coldpatch, File: ", path.c_str()));
  return false;
}

}  // namespace VARNEL_COMMON
