#ifndef VARNEL_TOOLS_PACKAGE_FILE_H
#define VARNEL_TOOLS_PACKAGE_FILE_H

#include <publicdata.h>
#include <softwarefile.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files.h"

/// Reads a software or text file in one pass: first bytes of its start, then its lines, again from the first byte.
/// Memory does not grow with the file.
class FileScanner {
 public:
  explicit FileScanner(InputFile& input);

  /// The bytes from `offset` on; fewer than `size` if the file ends before. `offset` + `size` is at most MAX_START.
  /// Call it only before NextLine().
  std::string_view Bytes(size_t offset, size_t size);

  /// The next line as VARNEL_COMMON::Vnifstream with a buffer of 1024 bytes and strlen() see it: without its line feed,
  /// cut to 1023 bytes and at its first NUL. It is valid until the next call. False at the end.
  bool NextLine(std::string_view& line);

  /// The number of the last line, from 1 on.
  size_t LineNumber() const { return m_lineNumber; }
  const InputFile& Input() const { return m_input; }

  /// The most bytes of the headers and texts of a software file: two headers, a gap of four lengths, extension word,
  /// skipped area, link text and version text.
  static constexpr size_t MAX_START = 2 * VARNEL_COMMON::ZEP_HEAD_LENGTH + size_t{4} * UINT16_MAX + 2 + UINT16_MAX +
                                      VARNEL_COMMON::ZEP_MAX_LINK_LENGTH + UINT16_MAX;

 private:
  bool ReadBlock();
  bool Refill(size_t& searched);

  static constexpr size_t BLOCK_SIZE = 65536;

  InputFile& m_input;
  std::unique_ptr<char[]> m_buffer;
  size_t m_begin = 0;  // the contents of the buffer are between these two
  size_t m_end = 0;
  uint64_t m_left;  // bytes from m_begin on that belong to lines
  size_t m_lineNumber = 0;
};

/// One of the two headers of the file, in the machine's byte order.
template <typename Head>
struct FoundHead {
  Head fields;
  uint32_t computedSum;
  uint64_t offset;  ///< of its first byte in the file
};

/// The start of an NE software file up to its texts, as far as it can be read.
struct FileStart {
  std::optional<FoundHead<VARNEL_COMMON::ZEP_DIR_HEAD>> directoryHead;
  std::optional<FoundHead<VARNEL_COMMON::ZEP_FILE_HEAD>> fileHead;  ///< only after a valid directory header
  std::string error;  ///< the first fault; empty for valid headers and texts

  /// The following members are set if there is no fault.
  std::optional<std::string> linkTarget;
  std::optional<std::string> version;         ///< absent also if the file has none
  std::optional<unsigned int> extensionWord;  ///< only for the file type that has one
  std::optional<unsigned int> payloadOffset;
  std::optional<unsigned short> fileType;
  std::optional<bool> typeAccepted;
};

/// Reads headers and texts with the results of VARNEL_COMMON::readZEPFileHead() and CheckZEPFileHead().
FileStart ReadFileStart(FileScanner& scanner);

/// An entry of a package description.
struct Entry {
  std::string name, kind;
  unsigned int size;
};

/// What the lines of a software file contain.
struct FileLines {
  std::optional<bool> coldPatch;
  std::optional<std::vector<Entry>> entries;  ///< absent without a description section
  std::string remark;                         ///< the fault of the description; empty for none
};

/// Reads the lines with the results of VARNEL_COMMON::isColdPatch() and CPkgFile::ParsePkgSoftInfo().
FileLines ReadFileLines(FileScanner& scanner);

/// Returns VARNEL_COMMON::isColdPatch() for the rest of the file.
bool HasColdPatchMarker(FileScanner& scanner);

/// Bytes between the two headers.
uint32_t GapLength(const VARNEL_COMMON::ZEP_DIR_HEAD& head);

/// Sum of the part of a header that its checksum covers.
template <typename Head>
uint32_t HeadSum(const Head& head) {
  return VARNEL_COMMON::GetUCCheckSum(reinterpret_cast<const char*>(&head) + VARNEL_COMMON::ZEP_SUM_START,
                                      VARNEL_COMMON::ZEP_SUM_LENGTH);
}

#endif
