// Reads a software package: checks its headers and prints its version and its entries.

#include <varnel_common/pkgfile.h>
#include <varnel_common/publicdata.h>
#include <varnel_common/str.h>

#include <iostream>

using namespace VARNEL_COMMON;

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: read_package FILE\n";
    return 2;
  }
  const std::string path = ToAbsPath(argv[1]);
  if (path.empty()) {
    std::cerr << argv[1] << ": no such file\n";
    return 1;
  }

  // ParsePkgFile() also accepts packages with damaged headers. Check the headers first.
  int fileType = 0;
  std::string linkTarget, version;
  const unsigned int result = CheckZEPFileHead(path, fileType, linkTarget, version);
  if (result != 0) {
    std::cerr << argv[1] << ": no valid software file, code 0x" << std::hex << result << '\n';
    return 1;
  }
  std::cout << "type " << fileType << ", for " << linkTarget << '\n';

  CPkgFile package(path);
  if (package.ParsePkgFile() != 0) return 1;
  std::cout << "version " << package.m_strVersion << '\n';
  for (const auto* entry : package.m_lstSoftInfo) {
    std::cout << entry->strColumn1 << " (" << entry->strColumn2 << "): " << entry->uiColumn5 << " bytes\n";
  }
}
