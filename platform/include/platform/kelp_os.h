#ifndef VARNEL_PLATFORM_KELP_OS_H
#define VARNEL_PLATFORM_KELP_OS_H

#include <sys/stat.h>

#include <cstdio>

/// @file
/// File calls of the host.

// These names stay visible in a host that is built with hidden names.
#pragma GCC visibility push(default)

/// File calls of the host, which must be safe to call from several threads concurrently.
namespace KELP_OS {

static_assert(sizeof(off_t) == 8, "compile with -D_FILE_OFFSET_BITS=64: struct stat must be that of the library");

/// Opens a file as std::fopen does.
///
/// The bundled implementation takes `path` as bytes and opens close-on-exec. It refuses a FIFO or a socket with ENXIO
/// without waiting. Like open(2), it waits while another process holds a lease on a regular file.
///
/// @param path      path of the file; null fails with EINVAL.
/// @param mode      mode as for std::fopen; null or an unknown one fails with EINVAL.
/// @param encoding  encoding of `path`; the library always passes "UTF-8".
/// @return the stream, which the caller closes with std::fclose, or null with errno set.
FILE* fopen(const char* path, const char* mode, const char* encoding);

/// Reads the status of a file as stat(2) does, following symbolic links.
///
/// @param path      path of the file; null fails with EINVAL.
/// @param buffer    receives the status; null fails with EINVAL.
/// @param encoding  encoding of `path`; the library always passes "UTF-8".
/// @return 0, or -1 with errno set.
int stat(const char* path, struct ::stat* buffer, const char* encoding);

}  // namespace KELP_OS

#pragma GCC visibility pop

#endif
