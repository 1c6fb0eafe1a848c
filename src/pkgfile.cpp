#include "pkgfile.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

#include "chars.h"
#include "common.h"
#include "find.h"
#include "piece.h"
#include "publicdata.h"
#include "stream_reader.h"

namespace VARNEL_COMMON {

namespace {

constexpr char MODULE[] = "pkgfile";
constexpr unsigned int INVALID_DESCRIPTION = 0x3BA0120F;
constexpr unsigned int LINE_SIZE = 1024;
constexpr size_t COLUMNS = 8;
constexpr size_t MAX_COLUMN_LENGTH = 255;
constexpr char WIDE_NUMBER_SIGN[] = "\xA3\xA3";  // the full-width "#" in GB2312

using Columns = std::array<std::string_view, COLUMNS>;
using VARNEL_INTERNAL::Finder;

constexpr Finder SECTION_START("[File Description]");
constexpr Finder SECTION_END("[END]");

bool Holds(std::string_view line, const Finder& piece) {
  return piece.Find(line) != std::string_view::npos;
}

// The lines of a package description; a line lives until the next one is read.
class Lines {
 public:
  explicit Lines(const std::string& path) : m_file(path) {}

  bool Next(std::string_view& line) {
    if (!m_file.GetLine(m_line, LINE_SIZE)) return false;
    line = m_line;
    return true;
  }

  bool SkipPast(const Finder& marker) {
    std::string_view line;
    while (Next(line)) {
      if (Holds(line, marker)) return true;
    }
    return false;
  }

 private:
  Vnifstream m_file;
  char m_line[LINE_SIZE + SHORT_PIECE] = {};
};

bool EndsSection(std::string_view line) {
  return line.substr(0, 1) == "[" || Holds(line, SECTION_END);
}

std::string_view Trimmed(std::string_view column) {
  column.remove_prefix(LeadingBlanks(column));
  return column.substr(0, LengthWithoutTrailingBlanks(column));
}

// Cuts an entry line (see docs/formats.md) into columns, blanks around them included; false for a line that is none.
bool ReadColumns(std::string_view line, Columns& columns) {
  size_t count = 0;
  size_t start = 0;
  ForEachPlace(line, ':', [&](size_t end) {
    if (count < COLUMNS) columns[count] = line.substr(start, end - start);
    ++count;
    start = end + 1;
  });
  if (count != COLUMNS - 1) return false;
  columns[count] = line.substr(start);
  return true;
}

bool IsComment(std::string_view firstColumn) {
  return firstColumn.substr(0, 1) == "#" || firstColumn.find(WIDE_NUMBER_SIGN) != std::string_view::npos;
}

bool IsLong(std::string_view column) {
  return column.size() > MAX_COLUMN_LENGTH && Trimmed(column).size() > MAX_COLUMN_LENGTH;
}

std::unique_ptr<SOFT_INFO> MakeEntry(const Columns& columns) {
  std::unique_ptr<SOFT_INFO> entry(new SOFT_INFO{CopyOf(Trimmed(columns[0])), CopyOf(Trimmed(columns[1]))});
  StreamReader(Trimmed(columns[4])).Read(entry->uiColumn5);
  return entry;
}

unsigned int Fail(int line, const char* why, const std::string& path) {
  ReportError({MODULE, "ParsePkgSoftInfo", line}, static_cast<int>(INVALID_DESCRIPTION), Compose(why, path));
  return INVALID_DESCRIPTION;
}

}  // namespace

CPkgFile::CPkgFile(const std::string& path) : m_strFilePath(path) {}

CPkgFile::~CPkgFile() {
  ClearSoftInfo();
}

unsigned int CPkgFile::ParsePkgFile() {
  int fileType = 0;
  std::string linkTarget;
  std::string versionText;
  // The result does not matter: the description of a file with damaged heads is still read.
  CheckZEPFileHead(m_strFilePath, fileType, linkTarget, versionText);
  m_strVersion = versionText;
  return ParsePkgSoftInfo(m_strFilePath);
}

unsigned int CPkgFile::ParsePkgSoftInfo(const std::string& path) {
  Lines lines(path);
  if (!lines.SkipPast(SECTION_START)) {
    return Fail(__LINE__, "CPkgFile::ParsePkgSoftInfo(): , not find [File Description], File: ", path);
  }
  Columns columns;
  for (std::string_view line; lines.Next(line) && !EndsSection(line);) {
    if (!ReadColumns(line, columns) || IsComment(Trimmed(columns.front()))) continue;
    if (std::any_of(columns.begin(), columns.end(), IsLong)) {
      return Fail(__LINE__, "CPkgFile::ParsePkgSoftInfo(): the line is not correct, File: ", path);
    }
    auto entry = MakeEntry(columns);
    m_lstSoftInfo.push_back(entry.get());
    static_cast<void>(entry.release());
  }
  if (m_lstSoftInfo.empty()) {
    return Fail(__LINE__, "CSPHPkgFile::ParsePkgSoftInfo(): , m_lstSoftInfo is empty, File: ", path);
  }
  return 0;
}

void CPkgFile::ClearSoftInfo() {
  for (const SOFT_INFO* entry : m_lstSoftInfo)
    delete entry;
  m_lstSoftInfo.clear();
}

}  // namespace VARNEL_COMMON
