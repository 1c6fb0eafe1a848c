#include "publicdata.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#include "big_endian.h"
#include "common.h"
#include "file_handle.h"

namespace VARNEL_COMMON {

namespace {

constexpr char MODULE[] = "publicdata";

// Persistent numbers: result codes that callers compare with, and what stands in files; see docs/formats.md.
constexpr unsigned int CANNOT_OPEN = 0x3BA00013;
constexpr unsigned int INVALID_HEAD = 0x3BA00B02;
constexpr uint32_t DIR_MAGIC = 0x51584444;   // "QXDD"
constexpr uint32_t FILE_MAGIC = 0x51584646;  // "QXFF"
constexpr int SUM_START = 4 + 4;             // behind magic word and sum
constexpr int SUM_LENGTH = 64 - SUM_START - 4;
constexpr unsigned short EXTENDED_TYPE = 2;
constexpr unsigned short MAX_LINK_LENGTH = 1023;
constexpr unsigned short NO_VERSION = 65535;

static_assert(sizeof(ZEP_DIR_HEAD) == 64 && offsetof(ZEP_DIR_HEAD, ulValue60) == 60, "laid out as in the file");
static_assert(sizeof(ZEP_FILE_HEAD) == 64 && offsetof(ZEP_FILE_HEAD, ulValue60) == 60, "laid out as in the file");

// Reads exactly `size` bytes; a short read is reported.
bool Read(const FileHandle& file, void* dest, size_t size) {
  if (std::fread(dest, 1, size, file.get()) == size) return true;
  const int error = errno;
  ReportWarning({MODULE, "readZEPFileHead", __LINE__},
                Compose("readZEPFileHead(): ACE_OS::fread failed! errno: ", error));
  return false;
}

// A stream that cannot seek is read on from where it is.
void Skip(const FileHandle& file, uint32_t size) {
  if (size != 0) static_cast<void>(std::fseek(file.get(), static_cast<long>(size), SEEK_CUR));
}

template <typename Head>
bool ReadHead(const FileHandle& file, uint32_t magic, Head& head) {
  if (!Read(file, &head, sizeof head)) return false;
  head.ToHostOrder();
  const uint32_t sum = GetUCCheckSum(reinterpret_cast<const char*>(&head) + SUM_START, SUM_LENGTH);
  return head.ulMagic == magic && head.ulCheckSum == sum;
}

unsigned int ReadExtensionWord(const FileHandle& file) {
  unsigned char word[2];
  return std::fread(word, 1, sizeof word, file.get()) == sizeof word ? LoadBig16(word) : 0U;
}

bool ReadLinkTarget(const FileHandle& file, unsigned short length, std::string& linkTarget) {
  constexpr std::string_view MARKER = "-> ";
  char link[MAX_LINK_LENGTH + 1] = {};
  if (length > MAX_LINK_LENGTH || !Read(file, link, length)) return false;
  const char* marker = std::strstr(link, MARKER.data());
  if (marker == nullptr) return false;
  linkTarget = marker + MARKER.size();
  return true;
}

bool ReadVersionText(const FileHandle& file, unsigned short length, std::string& versionText) {
  if (length == 0 || length == NO_VERSION) return true;
  std::string text(length, '\0');
  if (!Read(file, text.data(), length)) return false;
  text.resize(std::min({text.find('T'), text.find('\0'), text.size()}));
  versionText = std::move(text);
  return true;
}

unsigned int ReadHeads(const FileHandle& file, ZEP_FILE_HEAD& head, std::string& linkTarget, std::string& versionText,
                       unsigned int& extWord, unsigned int& payloadOffset) {
  ZEP_DIR_HEAD dirHead;
  if (!ReadHead(file, DIR_MAGIC, dirHead)) return INVALID_HEAD;
  const uint32_t gap = uint32_t{dirHead.usGapLen26} + dirHead.usGapLen32 + dirHead.usGapLen34 + dirHead.usGapLen36;
  Skip(file, gap);
  if (!ReadHead(file, FILE_MAGIC, head)) return INVALID_HEAD;

  if (head.usFileType == EXTENDED_TYPE) extWord = ReadExtensionWord(file);
  constexpr uint32_t HEADS = sizeof(ZEP_DIR_HEAD) + sizeof(ZEP_FILE_HEAD);
  payloadOffset = gap + HEADS + head.usSkipLen + head.usLinkLen + head.usVersionLen + head.usTailLen;
  Skip(file, head.usSkipLen);
  const bool textsRead =
      ReadLinkTarget(file, head.usLinkLen, linkTarget) && ReadVersionText(file, head.usVersionLen, versionText);
  return textsRead ? 0 : INVALID_HEAD;
}

bool IsHandledFileType(unsigned short type) {
  return type <= 13 || type == 15 || type == 513;
}

}  // namespace

void ZEP_DIR_HEAD::ToHostOrder() {
  for (uint32_t* number : {&ulMagic, &ulCheckSum, &ulValue12, &ulValue28, &ulValue60})
    BigToHost(*number);
  for (uint16_t* number :
       {&usValue08, &usValue10, &usValue22, &usValue24, &usGapLen26, &usGapLen32, &usGapLen34, &usGapLen36}) {
    BigToHost(*number);
  }
}

void ZEP_FILE_HEAD::ToHostOrder() {
  for (uint32_t* number : {&ulMagic, &ulCheckSum, &ulValue24, &ulValue28, &ulValue36, &ulValue40, &ulValue60}) {
    BigToHost(*number);
  }
  for (uint16_t* number :
       {&usValue08, &usValue10, &usFileType, &usValue34, &usSkipLen, &usLinkLen, &usVersionLen, &usTailLen}) {
    BigToHost(*number);
  }
}

unsigned int GetUCCheckSum(const char* data, int len) {
  unsigned int sum = 0;
  if (data == nullptr) return sum;
  for (int i = 0; i < len; ++i)
    sum += static_cast<unsigned char>(data[i]);
  return sum;
}

unsigned int readZEPFileHead(const std::string& path, ZEP_FILE_HEAD& head, std::string& linkTarget,
                             std::string& versionText, unsigned int& extWord, unsigned int& payloadOffset) {
  const int callersErrno = errno;
  FileHandle file = OpenForReading(path);
  if (file == nullptr) {
    const int error = errno;
    ReportWarning({MODULE, "readZEPFileHead", __LINE__},
                  Compose("readZEPFileHead(): KELP_OS::fopen failed! filename:", path, ". errno:", error));
    return CANNOT_OPEN;
  }
  const unsigned int result = ReadHeads(file, head, linkTarget, versionText, extWord, payloadOffset);
  file.reset();
  if (result == 0) errno = callersErrno;
  return result;
}

unsigned int CheckZEPFileHead(const std::string& path, unsigned int& extWord, unsigned int& payloadOffset,
                              std::string& linkTarget, unsigned short& fileType, std::string& versionText) {
  ZEP_FILE_HEAD head;
  const unsigned int result = readZEPFileHead(path, head, linkTarget, versionText, extWord, payloadOffset);
  if (result == 0) fileType = head.usFileType;
  return result;
}

unsigned int CheckZEPFileHead(const std::string& path, int& fileType, std::string& linkTarget,
                              std::string& versionText) {
  unsigned int unused = 0;
  unsigned short type = 0;
  const unsigned int result = CheckZEPFileHead(path, unused, unused, linkTarget, type, versionText);
  if (result != 0) return result;
  fileType = type;
  return IsHandledFileType(type) ? 0 : INVALID_HEAD;
}

}  // namespace VARNEL_COMMON
