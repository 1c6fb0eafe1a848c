#include "pkgfile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string_view>

#include "common.h"
#include "publicdata.h"
#include "softwarefile.h"
#include "util/chars.h"
#include "util/stream_reader.h"

namespace VARNEL_COMMON {

using VARNEL_UTIL::StreamReader;
using VARNEL_UTIL::Trimmed;

namespace {

constexpr char MODULE[] = "pkgfile";
constexpr unsigned int INVALID_DESCRIPTION = 0x3BA0120F;
constexpr unsigned int LINE_SIZE = MAX_LINE_LENGTH + 1;

using Columns = std::array<std::string_view, ENTRY_COLUMNS>;

bool SkipPastSectionStart(Vnifstream& file, char (&line)[LINE_SIZE]) {
  while (file.GetLine(line, sizeof line)) {
    if (std::strstr(line, DESCRIPTION_START) != nullptr) return true;
  }
  return false;
}

bool EndsSection(std::string_view line) {
  return line.substr(0, 1) == "[" || line.find(DESCRIPTION_END) != std::string_view::npos;
}

// Cuts an entry line (see docs/formats.md) into trimmed columns; false for any other line.
bool ReadColumns(std::string_view line, Columns& columns) {
  if (std::count(line.begin(), line.end(), ':') != ENTRY_COLUMNS - 1) return false;
  for (std::string_view& column : columns) {
    const auto end = static_cast<size_t>(std::find(line.begin(), line.end(), ':') - line.begin());
    column = Trimmed(line.substr(0, end));
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  return true;
}

bool IsComment(std::string_view firstColumn) {
  return firstColumn.substr(0, 1) == ENTRY_COMMENT || firstColumn.find(WIDE_ENTRY_COMMENT) != std::string_view::npos;
}

bool IsTooLong(std::string_view column) {
  return column.size() > MAX_COLUMN_LENGTH;
}

std::unique_ptr<SOFT_INFO> MakeEntry(const Columns& columns) {
  std::unique_ptr<SOFT_INFO> entry(new SOFT_INFO{std::string(columns[0]), std::string(columns[1])});
  StreamReader(columns[4]).Read(entry->uiColumn5);
  return entry;
}

unsigned int Fail(int line, const char* why, const std::string& path) {
  LogError({MODULE, "ParsePkgSoftInfo", line}, static_cast<int>(INVALID_DESCRIPTION), StrCat(why, path));
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
  // The result is ignored: the description of a file with damaged headers is read too.
  CheckZEPFileHead(m_strFilePath, fileType, linkTarget, versionText);
  m_strVersion = versionText;
  return ParsePkgSoftInfo(m_strFilePath);
}

unsigned int CPkgFile::ParsePkgSoftInfo(const std::string& path) {
  Vnifstream file(path);
  char line[LINE_SIZE];
  if (!SkipPastSectionStart(file, line)) {
    return Fail(__LINE__, "CPkgFile::ParsePkgSoftInfo(): , not find [File Description], File: ", path);
  }
  Columns columns;
  while (file.GetLine(line, sizeof line)) {
    const std::string_view text = line;
    if (EndsSection(text)) break;
    if (!ReadColumns(text, columns) || IsComment(columns.front())) continue;
    if (std::any_of(columns.begin(), columns.end(), IsTooLong)) {
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
