#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "common.h"
#include "platform/ns_util.h"
#include "str.h"

namespace VARNEL_COMMON {

namespace {

constexpr char MODULE[] = "str";
constexpr size_t MAX_PATH_LENGTH = 4096;
static_assert(MAX_PATH_LENGTH >= PATH_MAX, "realpath() may write PATH_MAX bytes");

std::string WithSlashes(std::string path) {
  ReplaceString(path, "\\", "/");
  return path;
}

std::string Refuse(int line, const char* why, const char* path) {
  ReportError({MODULE, "ToAbsPath", line}, CONSISTENCY_ERROR, Compose(why, path, ". "));
  return "";
}

}  // namespace

void SplitFilePathAndFileName(const std::string& fullPath, std::string& filePath, std::string& fileName) {
  std::string path = WithSlashes(fullPath);
  const size_t nameStart = path.rfind('/') + 1;  // 0 where there is no separator
  const bool isBareName = !path.empty() && nameStart == 0;
  std::string name = path.substr(nameStart);
  path.resize(nameStart);
  if (isBareName) path = "/";
  fileName = std::move(name);
  filePath = std::move(path);  // last, and so what one variable for both outputs keeps
}

// The name is a copy and may be one of the outputs; one variable for both outputs keeps the extension.
void GetFileLeftNameAndExName(std::string fileName, std::string& leftName, std::string& exName) {
  const size_t dot = std::min(fileName.rfind('.'), fileName.size());
  std::string extension = fileName.substr(dot);
  fileName.resize(dot);
  leftName = std::move(fileName);
  exName = std::move(extension);
}

bool VerifyFilePathAndName(const std::string& path) {
  // Two dots stand in the folder part or in the name part, never across the separator between them.
  return path.find("..") == std::string::npos;
}

std::string ToAbsPath(const std::string& path) {
  const char* text = path.c_str();  // up to the first NUL
  if (std::strlen(text) > MAX_PATH_LENGTH) return Refuse(__LINE__, "fileName too long file:", text);
  const int callersErrno = errno;
  char resolved[MAX_PATH_LENGTH + 1] = {};
  if (realpath(text, resolved) == nullptr) return Refuse(__LINE__, "realpath failed. file:", text);
  if (!VerifyFilePathAndName(resolved)) {
    return Refuse(__LINE__, "VerifyFilePathAndName is failed, filename", resolved);
  }
  errno = callersErrno;  // realpath() changes it on success too
  return resolved;
}

int VNRemoveFile(const std::string& path) {
  return NS_UTIL::RemoveFile(path);
}

int VNRemoveDir(const std::string& path) {
  return NS_UTIL::RemoveDir(path);
}

}  // namespace VARNEL_COMMON
