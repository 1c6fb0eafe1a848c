#ifndef VARNEL_PLATFORM_KELP_OS_H
#define VARNEL_PLATFORM_KELP_OS_H

#include <sys/stat.h>

#include <cstdio>

/// File calls of the host. `encoding` names the encoding of `path`; the library always passes "UTF-8". Both calls
/// must be safe from several threads at once.
namespace KELP_OS {

/// Opens a file as std::fopen does.
///
/// The bundled implementation takes `path` as bytes, opens close-on-exec and never blocks: a FIFO or a socket is
/// refused with ENXIO instead of being waited for.
///
/// @return the stream, which the caller closes with std::fclose, or null with errno set.
FILE* fopen(const char* path, const char* mode, const char* encoding);

/// Fills `buffer` as ::stat does, following symbolic links.
///
/// @return 0, or -1 with errno set.
int stat(const char* path, struct ::stat* buffer, const char* encoding);

}  // namespace KELP_OS

#endif
