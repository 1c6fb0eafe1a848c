#include "platform/kelp_os.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

// The open(2) flags of an fopen mode, or -1 for an unknown mode.
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

// The first attempt does not block. If another process holds a lease on the file it fails with EWOULDBLOCK. The second
// attempt then waits for the lease, but only for a regular file.
int Open(const char* path, int flags) {
  constexpr mode_t MODE = 0666;  // before the process's umask
  const int descriptor = open(path, flags | O_NONBLOCK, MODE);
  if (descriptor != -1 || errno != EWOULDBLOCK) return descriptor;
  struct ::stat status;
  if (::stat(path, &status) != 0) return -1;
  if (!S_ISREG(status.st_mode)) {
    errno = EWOULDBLOCK;
    return -1;
  }
  return open(path, flags, MODE);
}

bool IsFifo(int descriptor) {
  struct ::stat status;
  return fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
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
  const int descriptor = Open(path, flags | O_CLOEXEC | O_NOCTTY);
  if (descriptor == -1) return nullptr;
  if (IsFifo(descriptor)) return CloseAndFail(descriptor, ENXIO);
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
