#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/ns_util.h"

namespace {

bool HoldsNul(const std::string& path) {
  return path.find('\0') != std::string::npos;
}

// "link/" would name the folder behind a symbolic link instead of the link.
std::string WithoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/')
    path.pop_back();
  return path;
}

}  // namespace

namespace NS_UTIL {

int RemoveFile(const std::string& path) {
  if (HoldsNul(path)) return EINVAL;
  return unlink(path.c_str()) == 0 ? 0 : errno;
}

int RemoveDir(const std::string& path) {
  if (HoldsNul(path)) return EINVAL;
  const std::filesystem::path folder = WithoutTrailingSlashes(path);
  std::error_code error;
  const auto status = std::filesystem::symlink_status(folder, error);
  if (status.type() == std::filesystem::file_type::not_found) return ENOENT;
  if (error) return error.value();
  if (status.type() != std::filesystem::file_type::directory) return ENOTDIR;
  std::filesystem::remove_all(folder, error);
  return error.value();
}

}  // namespace NS_UTIL
