#include "pkgfile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string_view>

#include "chars.h"
#include "common.h"
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

// The lines of a package description; a line lives until the next one is read.
class Lines {
 public:
  explicit Lines(const std::string& path) : m_file(path) {}

  const char* Next() { return m_file.GetLine(m_line, LINE_SIZE) ? m_line : nullptr; }

  bool SkipPast(const char* marker) {
    const char* line = Next();
    while (line != nullptr && std::strstr(line, marker) == nullptr)
      line = Next();
    return line != nullptr;
  }

 private:
  Vnifstream m_file;
  char m_line[LINE_SIZE];
};

bool EndsSection(const char* line) {
  return line[0] == '[' || std::strstr(line, "[END]") != nullptr;
}

bool IsComment(const Columns& columns) {
  const std::string_view first = columns.front();
  return first.substr(0, 1) == "#" || first.find(WIDE_NUMBER_SIGN) != std::string_view::npos;
}

std::string_view Trimmed(std::string_view column) {
  if (!column.empty() && IsBlank(column.front())) column.remove_prefix(LeadingBlanks(column));
  if (!column.empty() && IsBlank(column.back())) column = column.substr(0, LengthWithoutTrailingBlanks(column));
  return column;
}

// Reads the columns of an entry line; false for a line that is none.
bool ReadColumns(std::string_view line, Columns& columns) {
  size_t count = 0;
  size_t start = 0;
  ForEachPlace(line, ':', [&](size_t end) {
    if (count < COLUMNS) columns[count] = Trimmed(line.substr(start, end - start));
    ++count;
    start = end + 1;
  });
  if (count != COLUMNS - 1) return false;
  columns[count] = Trimmed(line.substr(start));
  return !IsComment(columns);
}

bool HasLongColumn(const Columns& columns) {
  return std::any_of(columns.begin(), columns.end(),
                     [](std::string_view column) { return column.size() > MAX_COLUMN_LENGTH; });
}

std::unique_ptr<SOFT_INFO> MakeEntry(const Columns& columns) {
  auto entry = std::make_unique<SOFT_INFO>();
  entry->strColumn1 = columns[0];
  entry->strColumn2 = columns[1];
  StreamReader(columns[4]).Read(entry->uiColumn5);
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
  if (!lines.SkipPast("[File Description]")) {
    return Fail(__LINE__, "CPkgFile::ParsePkgSoftInfo(): , not find [File Description], File: ", path);
  }
  Columns columns;
  for (const char* line; (line = lines.Next()) != nullptr && !EndsSection(line);) {
    if (!ReadColumns(line, columns)) continue;
    if (HasLongColumn(columns)) {
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
