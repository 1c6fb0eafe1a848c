#ifndef VARNEL_UTIL_FILE_HANDLE_H
#define VARNEL_UTIL_FILE_HANDLE_H

#include <cstdio>
#include <memory>

namespace VARNEL_UTIL {

struct FileCloser {
  void operator()(FILE* file) const { std::fclose(file); }
};

/// An open stream that closes itself.
using FileHandle = std::unique_ptr<FILE, FileCloser>;

}  // namespace VARNEL_UTIL

#endif
