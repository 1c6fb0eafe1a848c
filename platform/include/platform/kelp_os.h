#ifndef VARNEL_PLATFORM_KELP_OS_H
#define VARNEL_PLATFORM_KELP_OS_H

#include <sys/stat.h>

#include <cstdio>

/// @file
/// File calls of the host.

// A host that is built with hidden names still offers these.
#pragma GCC visibility push(default)

/// File calls of the host, which must be safe from several threads at once.
namespace KELP_OS {

/// Opens a file as std::fopen does.
///
/// The bundled implementation takes `path` as bytes, opens close-on-exec and never blocks: a FIFO or a socket is
/// refused with ENXIO instead of being waited for.
///
/// @param path      of the file; null fails with EINVAL.
/// @param mode      as that of std::fopen; null or an unknown one fails with EINVAL.
/// @param encoding  of `path`; the library always passes "UTF-8".
/// @return the stream, which the caller closes with std::fclose, or null with errno set.
FILE* fopen(const char* path, const char* mode, const char* encoding);

/// Tells the state of a file as stat(2) does, following symbolic links.
///
/// @param path      of the file; null fails with EINVAL.
/// @param buffer    gets the state; null fails with EINVAL.
/// @param encoding  of `path`; the library always passes "UTF-8".
/// @return 0, or -1 with errno set.
int stat(const char* path, struct ::stat* buffer, const char* encoding);

}  // namespace KELP_OS

#pragma GCC visibility pop

#endif
