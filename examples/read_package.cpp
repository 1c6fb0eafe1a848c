// Reads a software package: from a path to the list of its entries.

#include <varnel_common/pkgfile.h>
#include <varnel_common/str.h>

#include <iostream>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: read_package FILE\n";
    return 2;
  }
  VARNEL_COMMON::CPkgFile package(VARNEL_COMMON::ToAbsPath(argv[1]));
  if (package.ParsePkgFile() != 0) return 1;
  std::cout << "version " << package.m_strVersion << '\n';
  for (const auto* entry : package.m_lstSoftInfo) {
    std::cout << entry->strColumn1 << " (" << entry->strColumn2 << "): " << entry->uiColumn5 << " bytes\n";
  }
}
