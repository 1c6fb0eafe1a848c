#ifndef VARNEL_TOOLS_FILE_SOURCE_H
#define VARNEL_TOOLS_FILE_SOURCE_H

#include <memory>

#include "timed_source.h"

/// Standard input, a file, a pipe or a terminal line, up to its end; or with `follow` a regular file that others write
/// to. One of these that has become shorter is read from its beginning.
std::unique_ptr<ByteSource> MakeFileSource(const SourceOptions& options, Limit limit, Milliseconds tick);

#endif
