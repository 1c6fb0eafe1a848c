#include <varnel_common/str.h>

#include <cerrno>
#include <iostream>
#include <string>

#include "families.h"

using namespace VARNEL_COMMON;

void UsePaths() {
  std::string folder, name, stem, extension;
  SplitFilePathAndFileName("x\\pkg\\a.bin", folder, name);
  GetFileLeftNameAndExName(name, stem, extension);
  std::cout << folder << ' ' << stem << ' ' << extension << '\n';
  std::cout << VerifyFilePathAndName("/a/b") << VerifyFilePathAndName("/a/../b") << ' ' << ToAbsPath("/.") << ' '
            << ToAbsPath("/absent").size() << '\n';
  std::cout << (VNRemoveFile("/absent") == ENOENT) << (VNRemoveDir("/absent") == ENOENT) << '\n';
}
