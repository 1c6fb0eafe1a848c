#ifndef VARNEL_TESTS_PACKAGE_REPORTS_H
#define VARNEL_TESTS_PACKAGE_REPORTS_H

#include <string>

#include "recording_host.h"

namespace VARNEL_TEST {

constexpr unsigned int INVALID_DESCRIPTION = 0x3BA0120F;

inline LogLine PackageError(const std::string& message) {
  return Error("ErrorCode:0x3ba0120f, " + message, "pkgfile", "ParsePkgSoftInfo");
}

inline LogLine SectionMissing(const std::string& path) {
  return PackageError("CPkgFile::ParsePkgSoftInfo(): , not find [File Description], File: " + path);
}

inline LogLine LineNotCorrect(const std::string& path) {
  return PackageError("CPkgFile::ParsePkgSoftInfo(): the line is not correct, File: " + path);
}

inline LogLine ListEmpty(const std::string& path) {
  return PackageError("CSPHPkgFile::ParsePkgSoftInfo(): , m_lstSoftInfo is empty, File: " + path);
}

}  // namespace VARNEL_TEST

#endif
