#include <varnel_common/pkgfile.h>
#include <varnel_common/publicdata.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <new>
#include <string>

#include "families.h"

using namespace VARNEL_COMMON;

namespace {

constexpr char FILE_NAME[] = "sample.pkg";

// Converts into the file's order first, as the sum is one of bytes.
template <typename Head>
std::string BytesOf(Head head, unsigned int magic) {
  head.ulMagic = magic;
  head.ToHostOrder();
  std::string bytes(reinterpret_cast<const char*>(&head), sizeof head);
  const unsigned int sum = GetUCCheckSum(&bytes[8], 52);
  for (size_t i = 0; i < 4; ++i)
    bytes[4 + i] = static_cast<char>(sum >> (24 - 8 * i));
  return bytes;
}

void WriteSample() {
  const std::string link = "a -> main";
  const std::string version = "2.1T1";
  ZEP_FILE_HEAD fileHead{};
  fileHead.usFileType = 1;
  fileHead.usLinkLen = static_cast<unsigned short>(link.size());
  fileHead.usVersionLen = static_cast<unsigned short>(version.size());
  std::ofstream(FILE_NAME, std::ios::binary)
      << BytesOf(ZEP_DIR_HEAD{}, 0x51584444) << BytesOf(fileHead, 0x51584646) << link << version
      << "\n[COLDPATCH]\n[File Description]\nmain.bin:app:c:d:7:f:g:h\n[END]\n";
}

void ReadHeads() {
  ZEP_FILE_HEAD head;
  std::string link, version;
  unsigned int extension = 0;
  unsigned int payload = 0;
  unsigned short type = 0;
  int wideType = 0;
  std::cout << readZEPFileHead(FILE_NAME, head, link, version, extension, payload) << ' ' << link << ' ' << version
            << ' ' << payload << '\n';
  std::cout << CheckZEPFileHead(FILE_NAME, extension, payload, link, type, version) << type
            << CheckZEPFileHead(FILE_NAME, wideType, link, version) << wideType << '\n';
}

void ReadPackage() {
  CPkgFile package(FILE_NAME);
  std::cout << package.ParsePkgFile() << ' ' << package.m_strVersion << ' ' << package.m_lstSoftInfo.size() << ' '
            << package.m_lstSoftInfo.front()->strColumn1 << '\n';
  std::cout << package.ParsePkgSoftInfo(FILE_NAME) << package.m_lstSoftInfo.size();
  package.ClearSoftInfo();
  std::cout << package.m_lstSoftInfo.size() << ' ' << std::hex << package.ParsePkgSoftInfo("/absent") << std::dec
            << '\n';
}

// Copies share one buffer, so of all that share it a single one is destroyed.
void ReadLines() {
  Vnifstream file(FILE_NAME);
  alignas(Vnifstream) unsigned char storage[2][sizeof(Vnifstream)];
  auto* copy = new (storage[0]) Vnifstream(file);
  auto* assigned = new (storage[1]) Vnifstream("");
  *assigned = *copy;
  char line[256];
  std::cout << assigned->GetLine(line, sizeof line) << assigned->GetLine(line, sizeof line) << ' ' << line << ' '
            << file.ReadFile("") << '\n';
}

}  // namespace

void UseSoftwareFiles() {
  WriteSample();
  ReadHeads();
  ReadPackage();
  ReadLines();
  std::cout << GetUCCheckSum("\1\2\3", 3) << ' ' << isColdPatch(FILE_NAME) << isColdPatch("/absent") << '\n';
  std::remove(FILE_NAME);
}
