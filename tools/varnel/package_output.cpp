#include "package_output.h"

#include <algorithm>
#include <iostream>

#include "output.h"

namespace {

Json ToJson(const std::vector<Entry>& entries) {
  Json list = Json::array();
  for (const Entry& entry : entries) {
    list.push_back(Json{{"name", entry.name}, {"kind", entry.kind}, {"size", entry.size}});
  }
  return list;
}

void PrintField(const char* name, const std::string& value) {
  std::cout << "  " << Padded(name, 14) << "  " << value << '\n';
}

void PrintEntries(const std::vector<Entry>& entries) {
  size_t nameWidth = 4, kindWidth = 4;
  for (const Entry& entry : entries) {
    nameWidth = std::max(nameWidth, Width(Escaped(entry.name)));
    kindWidth = std::max(kindWidth, Width(Escaped(entry.kind)));
  }
  std::cout << "    " << Padded("NAME", nameWidth) << "  " << Padded("KIND", kindWidth) << "        SIZE\n";
  for (const Entry& entry : entries) {
    const std::string size = std::to_string(entry.size);
    std::cout << "    " << Padded(Escaped(entry.name), nameWidth) << "  " << Padded(Escaped(entry.kind), kindWidth)
              << "  " << std::string(size.size() < 10 ? 10 - size.size() : 0, ' ') << size << '\n';
  }
}

}  // namespace

void PrintAsJson(const Package& package) {
  const SoftwareFile& heads = package.heads;
  const bool typeKnown = heads.error.empty();
  PrintJson({{"path", package.path},
             {"ok", package.error.empty()},
             {"error", package.error.empty() ? Json(nullptr) : Json(package.error)},
             {"version", OrNull(heads.version)},
             {"link_target", OrNull(heads.linkTarget)},
             {"file_type", typeKnown ? Json(heads.file->fields.usFileType) : Json(nullptr)},
             {"file_type_accepted", typeKnown ? Json(heads.typeAccepted) : Json(nullptr)},
             {"payload_offset", OrNull(heads.payloadOffset)},
             {"extension_word", OrNull(heads.extensionWord)},
             {"cold_patch", OrNull(package.coldPatch)},
             {"entries", package.entries ? ToJson(*package.entries) : Json(nullptr)}});
}

void PrintAsTable(const Package& package) {
  const bool good = package.error.empty();
  std::cout << Escaped(package.path) << ": " << Coloured(good ? Colour::Good : Colour::Bad, good ? "good" : "bad");
  std::cout << (good ? "" : ": ") << package.error << '\n';
  const SoftwareFile& heads = package.heads;
  if (!heads.error.empty()) return;
  PrintField("version", Escaped(heads.version.value_or("none")));
  PrintField("link target", Escaped(*heads.linkTarget));
  PrintField("file type",
             std::to_string(heads.file->fields.usFileType) + (heads.typeAccepted ? "" : " (not accepted)"));
  if (heads.extensionWord) PrintField("extension word", std::to_string(*heads.extensionWord));
  PrintField("payload offset", std::to_string(*heads.payloadOffset));
  PrintField("cold patch", *package.coldPatch ? "yes" : "no");
  PrintField("entries", package.entries ? std::to_string(package.entries->size()) : "none: no description section");
  if (package.entries && !package.entries->empty()) PrintEntries(*package.entries);
}
