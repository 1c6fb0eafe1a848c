#include "publicdata.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <string_view>
#include <utility>

#include "common.h"
#include "platform/annex_k.h"
#include "platform/kelp_os.h"
#include "productdata.h"
#include "softwarefile.h"
#include "str.h"
#include "util/big_endian.h"
#include "util/file_handle.h"
#include "util/wildcard.h"
#include "zepv2data.h"

namespace VARNEL_COMMON {

using namespace VARNEL_UTIL;

namespace {

constexpr char MODULE[] = "publicdata";

// Result codes. Callers compare with them: they never change.
constexpr unsigned int CANNOT_OPEN = 0x3BA00013;
constexpr unsigned int INVALID_HEAD = 0x3BA00B02;

constexpr unsigned int SPARE_BYTES = 1024;  // zeros after the content of a loaded file
constexpr unsigned int LINE_SIZE = MAX_LINE_LENGTH + 1;
constexpr size_t NUMBER_SIZE = 8;  // five digits at most, and a NUL
constexpr unsigned int LAST_MML_NE_ID = 0xFFFFFF;
constexpr char PATH_ENCODING[] = "UTF-8";

static_assert(sizeof(ZEP_DIR_HEAD) == ZEP_HEAD_LENGTH && offsetof(ZEP_DIR_HEAD, ulValue60) == 60,
              "laid out as in the file");
static_assert(sizeof(ZEP_FILE_HEAD) == ZEP_HEAD_LENGTH && offsetof(ZEP_FILE_HEAD, ulValue60) == 60,
              "laid out as in the file");

// Opens a file through the host; null with errno set on failure.
FileHandle OpenForReading(const std::string& path) {
  return FileHandle(KELP_OS::fopen(path.c_str(), "rb", PATH_ENCODING));
}

// Reads exactly `size` bytes; a short read is reported.
bool Read(const FileHandle& file, void* dest, size_t size) {
  if (std::fread(dest, 1, size, file.get()) == size) return true;
  const int error = errno;
  LogWarning({MODULE, "readZEPFileHead", __LINE__}, StrCat("readZEPFileHead(): ACE_OS::fread failed! errno: ", error));
  return false;
}

// A stream that cannot seek is read from its current position.
void Skip(const FileHandle& file, uint32_t size) {
  if (size != 0) static_cast<void>(std::fseek(file.get(), static_cast<long>(size), SEEK_CUR));
}

template <typename Head>
bool ReadHead(const FileHandle& file, uint32_t magic, Head& head) {
  if (!Read(file, &head, sizeof head)) return false;
  head.ToHostOrder();
  const uint32_t sum = GetUCCheckSum(reinterpret_cast<const char*>(&head) + ZEP_SUM_START, ZEP_SUM_LENGTH);
  return head.ulMagic == magic && head.ulCheckSum == sum;
}

unsigned int ReadExtensionWord(const FileHandle& file) {
  unsigned char word[2];
  return std::fread(word, 1, sizeof word, file.get()) == sizeof word ? LoadBig16(word) : 0U;
}

bool ReadLinkTarget(const FileHandle& file, unsigned short length, std::string& linkTarget) {
  char link[ZEP_MAX_LINK_LENGTH + 1] = {};
  if (length > ZEP_MAX_LINK_LENGTH || !Read(file, link, length)) return false;
  const char* marker = std::strstr(link, ZEP_LINK_MARKER);
  if (marker == nullptr) return false;
  linkTarget = marker + sizeof ZEP_LINK_MARKER - 1;
  return true;
}

bool ReadVersionText(const FileHandle& file, unsigned short length, std::string& versionText) {
  if (length == 0 || length == ZEP_NO_VERSION_LENGTH) return true;
  std::string text(length, '\0');
  if (!Read(file, text.data(), length)) return false;
  text.resize(std::min({text.find('T'), text.find('\0'), text.size()}));
  versionText = std::move(text);
  return true;
}

unsigned int ReadHeads(const FileHandle& file, ZEP_FILE_HEAD& head, std::string& linkTarget, std::string& versionText,
                       unsigned int& extWord, unsigned int& payloadOffset) {
  ZEP_DIR_HEAD dirHead;
  if (!ReadHead(file, ZEP_DIR_MAGIC, dirHead)) return INVALID_HEAD;
  const uint32_t gap = uint32_t{dirHead.usGapLen26} + dirHead.usGapLen32 + dirHead.usGapLen34 + dirHead.usGapLen36;
  Skip(file, gap);
  if (!ReadHead(file, ZEP_FILE_MAGIC, head)) return INVALID_HEAD;

  if (head.usFileType == ZEP_EXTENDED_TYPE) extWord = ReadExtensionWord(file);
  payloadOffset =
      gap + uint32_t{2 * ZEP_HEAD_LENGTH} + head.usSkipLen + head.usLinkLen + head.usVersionLen + head.usTailLen;
  Skip(file, head.usSkipLen);
  const bool textsRead =
      ReadLinkTarget(file, head.usLinkLen, linkTarget) && ReadVersionText(file, head.usVersionLen, versionText);
  return textsRead ? 0 : INVALID_HEAD;
}

// Copies digits to `buffer` and returns the code of the first character, 0 without one.
unsigned char FirstDigitCode(char (&buffer)[NUMBER_SIZE], const char* digits, size_t count, int line) {
  const int result = strncpy_s(buffer, sizeof buffer, digits, count);
  if (result != 0) LogError({MODULE, "GetNESlotID", line}, result, "GetNESlotID.strncpy_s failed");
  char digit = '\0';
  ConvertFromString(buffer, digit);
  return static_cast<unsigned char>(digit);
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
    LogWarning({MODULE, "readZEPFileHead", __LINE__},
               StrCat("readZEPFileHead(): KELP_OS::fopen failed! filename:", path, ". errno:", error));
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
  return ZepAcceptsFileType(type) ? 0 : INVALID_HEAD;
}

Vnifstream::Vnifstream(const std::string& path) : m_pBuffer(nullptr), m_uiSize(0), m_uiPos(0) {
  ReadFile(path);
}

Vnifstream::Vnifstream(const Vnifstream& other) = default;

Vnifstream& Vnifstream::operator=(const Vnifstream& other) = default;

Vnifstream::~Vnifstream() {
  delete[] m_pBuffer;
}

bool Vnifstream::ReadFile(const std::string& path) {
  const int callersErrno = errno;
  struct ::stat status;
  if (path.empty() || KELP_OS::stat(path.c_str(), &status, PATH_ENCODING) != 0) return false;
  FileHandle file = OpenForReading(path);
  if (file == nullptr) return false;

  const auto size = static_cast<unsigned int>(status.st_size);
  // Where size_t has 32 bits, the sum must not wrap: new refuses the largest size.
  const size_t allocated = size + std::min<size_t>(SPARE_BYTES, SIZE_MAX - size);
  auto* buffer = new char[allocated];
  const size_t read = std::fread(buffer, 1, size, file.get());
  memset_s(buffer + read, allocated - read, 0, allocated - read);
  file.reset();
  errno = callersErrno;
  m_pBuffer = buffer;
  m_uiSize = size;
  m_uiPos = 0;
  return true;
}

bool Vnifstream::GetLine(char* buf, unsigned int size) {
  if (buf == nullptr || size == 0 || m_pBuffer == nullptr || m_uiPos >= m_uiSize) return false;
  const char* start = m_pBuffer + m_uiPos;
  const size_t left = m_uiSize - m_uiPos;
  const void* lineFeed = std::memchr(start, '\n', left);
  size_t length = lineFeed == nullptr ? left : static_cast<size_t>(static_cast<const char*>(lineFeed) - start);
  m_uiPos += static_cast<unsigned int>(length);
  if (length >= size) length = size - 1;
  if (length > 0) {
    const int result = memcpy_s(buf, length, start, length);
    if (result != 0) {
      LogError({MODULE, "GetLine", __LINE__}, result, "Vnifstream::GetLine.memcpy_s failed");
      return false;
    }
  }
  buf[length] = '\0';
  if (m_uiPos < std::numeric_limits<unsigned int>::max()) ++m_uiPos;
  return true;
}

bool isColdPatch(const std::string& path) {
  Vnifstream file(path);
  char line[LINE_SIZE];
  while (file.GetLine(line, sizeof line)) {
    if (std::strstr(line, COLD_PATCH_MARKER) != nullptr) return true;
  }
  LogWarning({MODULE, "isColdPatch", __LINE__}, StrCat("isColdPatch not find coldpatch, File: ", path.c_str()));
  return false;
}

unsigned int GetNESlotID(unsigned short slotNumber) {
  char number[NUMBER_SIZE] = {};
  if (snprintf_s(number, sizeof number, sizeof number - 1, "%d", slotNumber) == -1) {
    LogError({MODULE, "GetNESlotID", 528}, -1, StrCat("GetNESlotID.snprintf_s failed, SlotId", slotNumber));
  }
  if (std::strlen(number) != 3) return slotNumber;
  char digits[NUMBER_SIZE] = {};
  const unsigned int shelf = FirstDigitCode(digits, number, 1, 543);
  const unsigned int slot = FirstDigitCode(digits, number + 1, 2, 550);
  return shelf << 5 | slot;
}

bool IsTL1NeID(unsigned int neId) {
  return neId > LAST_MML_NE_ID;
}

bool IsKorvaneNE(int generation, const std::string& name) {
  return !IsZepv2(generation) && strmcmpnocase(name.c_str(), KORVANE_NAME) != 0;
}

bool IsSccBdName(const std::string& name) {
  const std::string_view text = name.c_str();
  return std::any_of(std::begin(SCC_BOARD_NAMES), std::end(SCC_BOARD_NAMES), [text](std::string_view pattern) {
    // The length rules out most patterns: a fourth less time for other boards.
    const bool mayMatch = pattern.front() == '*' || pattern.size() == text.size();
    return mayMatch && NoCaseMatcher(text, pattern).Matches();
  });
}

}  // namespace VARNEL_COMMON
