#include "package_contents.h"

#include <pkgfile.h>
#include <publicdata.h>

#include <cstring>

namespace {

bool HasDescription(const std::string& path) {
  VARNEL_COMMON::Vnifstream file(path);
  char line[1024];
  while (file.GetLine(line, sizeof line)) {
    if (std::strstr(line, "[File Description]") != nullptr) return true;
  }
  return false;
}

void ReadEntries(const std::string& path, Package& package) {
  VARNEL_COMMON::CPkgFile description(path);
  const bool failed = description.ParsePkgSoftInfo(path) != 0;
  if (failed && !HasDescription(path)) return;
  if (failed) {
    const bool some = !description.m_lstSoftInfo.empty();
    package.remark = some ? "a column is longer than 255 bytes, the entries from there on are not listed"
                          : "there is no valid entry in it";
  }
  package.entries.emplace();
  for (const auto* info : description.m_lstSoftInfo) {
    package.entries->push_back({info->strColumn1, info->strColumn2, info->uiColumn5});
  }
}

}  // namespace

Package Examine(const InputFile& input) {
  Package package;
  package.path = input.Name();
  package.heads = InspectSoftwareFile(input);
  package.error = package.heads.error;
  if (!package.error.empty()) return package;
  if (!package.heads.typeAccepted) {
    package.error = "file type " + std::to_string(package.heads.file->fields.usFileType) + " is not accepted";
  }
  package.coldPatch = VARNEL_COMMON::isColdPatch(input.Path());
  ReadEntries(input.Path(), package);
  return package;
}

Package Unreadable(const std::string& path, const std::string& why) {
  Package package;
  package.path = path;
  package.heads.error = package.error = why;
  return package;
}
