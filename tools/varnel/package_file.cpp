#include "package_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "output.h"
#include "util/big_endian.h"
#include "util/chars.h"
#include "util/stream_reader.h"

using namespace VARNEL_COMMON;

namespace {

std::string EndsAfter(size_t read, size_t wanted) {
  return "the file ends after " + std::to_string(read) + " of " + std::to_string(wanted) + " bytes";
}

// 0x51584444 -> " (\"QXDD\")"
std::string Quoted(uint32_t magic) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8)
    text.push_back(static_cast<char>(magic >> shift & 0xFF));
  return " (\"" + text + "\")";
}

// Reads and checks one header; returns the fault, else an empty text.
template <typename Head>
std::string ReadHead(FileScanner& scanner, size_t offset, uint32_t magic, std::optional<FoundHead<Head>>& found) {
  Head head;
  const std::string_view bytes = scanner.Bytes(offset, sizeof head);
  if (bytes.size() != sizeof head) return EndsAfter(bytes.size(), sizeof head);
  std::memcpy(&head, bytes.data(), sizeof head);
  head.ToHostOrder();
  found = FoundHead<Head>{head, HeadSum(head), offset};
  if (head.ulMagic != magic) return "magic word " + Hex32(head.ulMagic) + ", not " + Hex32(magic) + Quoted(magic);
  if (head.ulCheckSum == found->computedSum) return "";
  return "checksum " + Hex32(head.ulCheckSum) + " stored, " + Hex32(found->computedSum) + " computed";
}

// Reads the areas after the file header, up to `afterHeads`; returns the fault, else an empty text.
std::string ReadTexts(FileScanner& scanner, size_t afterHeads, const ZEP_FILE_HEAD& head, FileStart& start) {
  const bool extended = head.usFileType == ZEP_EXTENDED_TYPE;
  const size_t offset = afterHeads + (extended ? 2 : 0) + head.usSkipLen;
  if (head.usLinkLen > ZEP_MAX_LINK_LENGTH) {
    return "link text: " + std::to_string(head.usLinkLen) + " bytes, at most " + std::to_string(ZEP_MAX_LINK_LENGTH) +
           " are allowed";
  }
  std::string_view link = scanner.Bytes(offset, head.usLinkLen);
  if (link.size() != head.usLinkLen) return "link text: " + EndsAfter(link.size(), head.usLinkLen);
  link = link.substr(0, link.find('\0'));
  const size_t marker = link.find(ZEP_LINK_MARKER);
  if (marker == std::string_view::npos) return "link text: it contains no \"-> \"";

  const bool hasVersion = head.usVersionLen != 0 && head.usVersionLen != ZEP_NO_VERSION_LENGTH;
  const size_t versionLength = hasVersion ? head.usVersionLen : 0;
  const std::string_view version = scanner.Bytes(offset + head.usLinkLen, versionLength);
  if (version.size() != versionLength) return "version text: " + EndsAfter(version.size(), versionLength);

  start.linkTarget = link.substr(marker + sizeof ZEP_LINK_MARKER - 1);
  if (hasVersion) start.version = version.substr(0, std::min(version.find('T'), version.find('\0')));
  // Both bytes exist, since the link text was read after them.
  if (extended) start.extensionWord = VARNEL_UTIL::LoadBig16(scanner.Bytes(afterHeads, 2).data());
  start.payloadOffset =
      static_cast<unsigned int>(afterHeads + head.usSkipLen + head.usLinkLen + head.usVersionLen + head.usTailLen);
  start.fileType = head.usFileType;
  start.typeAccepted = ZepAcceptsFileType(head.usFileType);
  return "";
}

std::string ReadHeadsAndTexts(FileScanner& scanner, FileStart& start) {
  const std::string directoryFault = ReadHead(scanner, 0, ZEP_DIR_MAGIC, start.directoryHead);
  if (!directoryFault.empty()) return "directory header: " + directoryFault;
  const size_t fileHead = ZEP_HEAD_LENGTH + GapLength(start.directoryHead->fields);
  const std::string fileFault = ReadHead(scanner, fileHead, ZEP_FILE_MAGIC, start.fileHead);
  if (!fileFault.empty()) return "file header: " + fileFault;
  return ReadTexts(scanner, fileHead + ZEP_HEAD_LENGTH, start.fileHead->fields, start);
}

bool Contains(std::string_view line, std::string_view piece) {
  return line.find(piece) != std::string_view::npos;
}

// Finds the description section and its entries in lines that are passed one by one.
class DescriptionReader {
 public:
  explicit DescriptionReader(FileLines& result) : m_result(result) {}

  // `marked` is the line from its first "[" on: all markers begin with it.
  void Take(std::string_view line, std::string_view marked, size_t lineNumber) {
    if (m_place == Place::Before && Contains(marked, DESCRIPTION_START)) {
      m_place = Place::Inside;
      m_result.entries.emplace();
    } else if (m_place == Place::Inside) {
      const bool ends = !marked.empty() && (marked.size() == line.size() || Contains(marked, DESCRIPTION_END));
      if (ends) {
        m_place = Place::After;
      } else if (ReadColumns(line)) {
        TakeEntry(lineNumber);
      }
    }
  }

  bool IsOver() const { return m_place == Place::After; }

  void End() {
    if (m_result.entries && m_result.entries->empty() && m_result.remark.empty()) {
      m_result.remark = "no valid entry (expected eight columns separated by colons)";
    }
  }

 private:
  // Cuts a line into trimmed columns. A line with another number of columns than eight is not an entry, and is not
  // reported.
  bool ReadColumns(std::string_view line) {
    for (size_t i = 0; i + 1 < ENTRY_COLUMNS; ++i) {
      const size_t colon = line.find(':');
      if (colon == std::string_view::npos) return false;
      m_columns[i] = VARNEL_UTIL::Trimmed(line.substr(0, colon));
      line.remove_prefix(colon + 1);
    }
    m_columns.back() = VARNEL_UTIL::Trimmed(line);
    return line.find(':') == std::string_view::npos;
  }

  void TakeEntry(size_t lineNumber) {
    const std::string_view first = m_columns.front();
    if (first.substr(0, 1) == ENTRY_COMMENT || Contains(first, WIDE_ENTRY_COMMENT)) return;
    for (const std::string_view column : m_columns) {
      if (column.size() > MAX_COLUMN_LENGTH) return Refuse(lineNumber);
    }
    unsigned int size = 0;
    VARNEL_UTIL::StreamReader(m_columns[4]).Read(size);
    m_result.entries->push_back({std::string(first), std::string(m_columns[1]), size});
  }

  void Refuse(size_t lineNumber) {
    m_place = Place::After;
    m_result.remark = "line " + std::to_string(lineNumber) + ": a column is longer than " +
                      std::to_string(MAX_COLUMN_LENGTH) + " bytes, the entries from there on are not listed";
  }

  enum class Place { Before, Inside, After };

  FileLines& m_result;
  Place m_place = Place::Before;
  std::array<std::string_view, ENTRY_COLUMNS> m_columns;
};

}  // namespace

FileScanner::FileScanner(InputFile& input)
    : m_input(input),
      m_buffer(new char[MAX_START + BLOCK_SIZE]),
      m_left(input.Size() ? static_cast<uint32_t>(*input.Size()) : std::numeric_limits<uint64_t>::max()) {}

std::string_view FileScanner::Bytes(size_t offset, size_t size) {
  while (m_end < offset + size && ReadBlock()) {
  }
  return std::string_view(m_buffer.get(), m_end).substr(std::min(offset, m_end), size);
}

bool FileScanner::NextLine(std::string_view& line) {
  const char* feed = nullptr;
  size_t searched = 0;
  do {
    const auto present = static_cast<size_t>(std::min<uint64_t>(m_end - m_begin, m_left));
    const char* const start = m_buffer.get() + m_begin;
    feed = static_cast<const char*>(std::memchr(start + searched, '\n', present - searched));
    searched = feed == nullptr ? present : static_cast<size_t>(feed - start);
  } while (feed == nullptr && Refill(searched));
  if (feed == nullptr && searched == 0) return false;

  line = std::string_view(m_buffer.get() + m_begin, std::min(searched, MAX_LINE_LENGTH));
  line = line.substr(0, line.find('\0'));
  const size_t used = searched + (feed == nullptr ? 0 : 1);
  m_begin += used;
  m_left -= used;
  ++m_lineNumber;
  return true;
}

bool FileScanner::ReadBlock() {
  const size_t count = m_input.Read(m_buffer.get() + m_end, BLOCK_SIZE);
  m_end += count;
  return count > 0;
}

// Continues to read if the buffer contains only the `searched` bytes of a line. Of a long line only the start is kept.
bool FileScanner::Refill(size_t& searched) {
  if (searched == m_left) return false;
  const size_t kept = std::min(searched, MAX_LINE_LENGTH);
  std::memmove(m_buffer.get(), m_buffer.get() + m_begin, kept);
  m_left -= searched - kept;
  m_begin = 0;
  m_end = searched = kept;
  return ReadBlock();
}

FileStart ReadFileStart(FileScanner& scanner) {
  FileStart start;
  start.error = ReadHeadsAndTexts(scanner, start);
  if (!scanner.Input().Error().empty()) start.error = scanner.Input().Error();
  return start;
}

FileLines ReadFileLines(FileScanner& scanner) {
  FileLines result;
  DescriptionReader description(result);
  std::string_view line;
  bool coldPatch = false;
  while (!(coldPatch && description.IsOver()) && scanner.NextLine(line)) {
    const std::string_view marked = line.substr(std::min(line.find('['), line.size()));
    description.Take(line, marked, scanner.LineNumber());
    coldPatch = coldPatch || Contains(marked, COLD_PATCH_MARKER);
  }
  result.coldPatch = coldPatch;
  description.End();
  return result;
}

bool HasColdPatchMarker(FileScanner& scanner) {
  std::string_view line;
  while (scanner.NextLine(line)) {
    if (Contains(line, COLD_PATCH_MARKER)) return true;
  }
  return false;
}

uint32_t GapLength(const ZEP_DIR_HEAD& head) {
  return uint32_t{head.usGapLen26} + head.usGapLen32 + head.usGapLen34 + head.usGapLen36;
}
