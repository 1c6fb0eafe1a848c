#ifndef VARNEL_SRC_FILE_HANDLE_H
#define VARNEL_SRC_FILE_HANDLE_H

#include <cstdio>
#include <memory>
#include <string>

#include "platform/kelp_os.h"

namespace VARNEL_COMMON {

constexpr char PATH_ENCODING[] = "UTF-8";

struct FileCloser {
  void operator()(FILE* file) const { std::fclose(file); }
};

/// An open file that closes itself.
using FileHandle = std::unique_ptr<FILE, FileCloser>;

/// Opens a file through the host; null with errno set on failure.
inline FileHandle OpenForReading(const std::string& path) {
  return FileHandle(KELP_OS::fopen(path.c_str(), "rb", PATH_ENCODING));
}

}  // namespace VARNEL_COMMON

#endif
