#include "platform/kelp_os.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

// The open(2) flags of an fopen mode, or -1 for a mode that fopen does not know.
int OpenFlags(const char* mode) {
  int flags = 0;
  switch (mode[0]) {
    case 'r':
      break;
    case 'w':
      flags = O_CREAT | O_TRUNC;
      break;
    case 'a':
      flags = O_CREAT | O_APPEND;
      break;
    default:
      return -1;
  }
  if (std::strchr(mode, 'x') != nullptr) flags |= O_EXCL;
  const bool readAndWrite = std::strchr(mode, '+') != nullptr;
  return flags | (readAndWrite ? O_RDWR : mode[0] == 'r' ? O_RDONLY : O_WRONLY);
}

bool WouldBlock(int descriptor) {
  // Asking for the position tells usual files from the others faster than fstat() does.
  if (lseek(descriptor, 0, SEEK_CUR) != -1) return false;
  struct ::stat status;
  return fstat(descriptor, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

FILE* CloseAndFail(int descriptor, int error) {
  close(descriptor);
  errno = error;
  return nullptr;
}

}  // namespace

namespace KELP_OS {

FILE* fopen(const char* path, const char* mode, const char* /*encoding*/) {
  const int flags = path == nullptr || mode == nullptr ? -1 : OpenFlags(mode);
  if (flags == -1) {
    errno = EINVAL;
    return nullptr;
  }
  const int descriptor = open(path, flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
  if (descriptor == -1) return nullptr;
  if (WouldBlock(descriptor)) return CloseAndFail(descriptor, ENXIO);
  FILE* stream = fdopen(descriptor, mode);
  return stream != nullptr ? stream : CloseAndFail(descriptor, errno);
}

int stat(const char* path, struct ::stat* buffer, const char* /*encoding*/) {
  if (path == nullptr || buffer == nullptr) {
    errno = EINVAL;
    return -1;
  }
  return ::stat(path, buffer);
}

}  // namespace KELP_OS
