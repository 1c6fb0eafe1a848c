#include <algorithm>
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

std::string Refuse(int line, const char* why, const std::string& path) {
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
  filePath = std::move(path);
  fileName = std::move(name);
}

// By value, so that the name may be one of the outputs. NOLINTNEXTLINE(performance-unnecessary-value-param)
void GetFileLeftNameAndExName(std::string fileName, std::string& leftName, std::string& exName) {
  const size_t dot = std::min(fileName.rfind('.'), fileName.size());
  exName = fileName.substr(dot);
  fileName.resize(dot);
  leftName = std::move(fileName);
}

bool VerifyFilePathAndName(const std::string& path) {
  // Two dots stand in the folder part or in the name part, never across the separator between them.
  return path.find("..") == std::string::npos;
}

std::string ToAbsPath(const std::string& path) {
  if (std::strlen(path.c_str()) > MAX_PATH_LENGTH) return Refuse(__LINE__, "fileName too long file:", path);
  char resolved[MAX_PATH_LENGTH + 1] = {};
  if (realpath(path.c_str(), resolved) == nullptr) return Refuse(__LINE__, "realpath failed. file:", path);
  if (!VerifyFilePathAndName(resolved)) {
    return Refuse(__LINE__, "VerifyFilePathAndName is failed, filename", resolved);
  }
  return resolved;
}

int VNRemoveFile(const std::string& path) {
  return NS_UTIL::RemoveFile(path);
}

int VNRemoveDir(const std::string& path) {
  return NS_UTIL::RemoveDir(path);
}

}  // namespace VARNEL_COMMON
