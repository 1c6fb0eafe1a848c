#include <pkgfile.h>
#include <publicdata.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <vector>

#include "input_file.h"
#include "output.h"
#include "software_file.h"
#include "subcommands.h"

namespace {

namespace fs = std::filesystem;

struct Entry {
  std::string name, kind;
  unsigned int size;
};

struct Package {
  std::string path;
  std::string error;   ///< why it is bad; empty for a good one
  std::string remark;  ///< what is wrong with its description; no reason to call it bad
  SoftwareFile heads;
  std::optional<bool> coldPatch;
  std::optional<std::vector<Entry>> entries;  ///< absent without a description section
};

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

Package Unreadable(const std::string& path, const std::string& why) {
  Package package;
  package.path = path;
  package.heads.error = package.error = why;
  return package;
}

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

Json ToJson(const std::vector<Entry>& entries) {
  Json list = Json::array();
  for (const Entry& entry : entries) {
    list.push_back(Json{{"name", entry.name}, {"kind", entry.kind}, {"size", entry.size}});
  }
  return list;
}

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

bool BeginsAsSoftwareFile(const InputFile& input) {
  char magic[4] = {};
  const File file = input.Open();
  if (file == nullptr || std::fread(magic, 1, sizeof magic, file.get()) != sizeof magic) return false;
  return std::memcmp(magic, "QXDD", sizeof magic) == 0;
}

class PackageCommand {
 public:
  explicit PackageCommand(Command& command) {
    command.add_option("PATH", m_paths, "Files, and folders to search; - is standard input")->required();
    command.add_flag("--json", m_json, "Print one JSON object per file");
    command.add_flag("--only-bad", m_onlyBad, "Print bad files only");
    command.add_flag("-q,--quiet", m_quiet, "Print nothing; the exit status tells");
    Explain(command);
  }

  int Run() {
    for (const std::string& path : m_paths) {
      std::error_code ignored;
      if (fs::is_directory(path, ignored)) {
        CheckFolder(path);
      } else {
        Check(InputFile(path));
      }
    }
    if (m_folders && !m_json && !m_quiet) PrintSummary();
    return m_bad == 0 ? EXIT_DONE : EXIT_BAD;
  }

 private:
  static void Explain(Command& command) {
    command.explanation = {
        {"",
         {{"",
           "A file is good when its heads and texts are valid and its file type is accepted: 0 to 13, 15 or 513. "
           "One without a [File Description] section has no entries."},
          {"",
           "In a folder, files that do not begin as software files are counted but not called bad. Symbolic "
           "links are not followed; pipes and devices are passed over."}}},
        {"JSON objects",
         {{"path, ok, error", "The file, whether it is good, and why it is not, or null."},
          {"version, link_target", "Texts."},
          {"file_type", "A number; file_type_accepted tells whether it is accepted."},
          {"payload_offset", "Where the payload begins, without the extension word."},
          {"extension_word", "A number, or null for other file types than 2."},
          {"cold_patch", "True for a cold patch."},
          {"entries", "A list of objects with name, kind and size; null without a description section."},
          {"", "What cannot be read is null."}}}};
    command.SetExitStatus("Every file is good.", "A file is bad or unreadable");
    command.examples.paragraphs = {{"varnel package mainboard.pkg", "Check a file and list its entries."},
                                   {"varnel package --only-bad /srv/packages", "Look for bad files in a folder."}};
  }

  // The library loads a file as a whole; one that is too large does not keep the others from being checked.
  void Check(const InputFile& input) {
    try {
      Report(Examine(input));
    } catch (const std::bad_alloc&) {
      Report(Unreadable(input.Name(), std::strerror(ENOMEM)));
    }
  }

  void Report(const Package& package) {
    const bool good = package.error.empty();
    ++(good ? m_good : m_bad);
    if (m_quiet) return;
    if (!package.remark.empty()) Complain(package.path, "package description: " + package.remark);
    if (m_onlyBad && good) return;
    if (m_json) {
      PrintAsJson(package);
    } else {
      PrintAsTable(package);
    }
  }

  // Looks at regular files only: pipes and devices could block, and symbolic links could lead round in circles.
  void CheckFolder(const std::string& folder) {
    m_folders = true;
    std::vector<std::string> files;
    Collect(folder, files);
    std::sort(files.begin(), files.end());
    ProgressBar progress(m_quiet ? 0 : files.size());
    for (const std::string& path : files) {
      const InputFile input(path);
      if (input.Error().empty() && !BeginsAsSoftwareFile(input)) {
        ++m_others;
      } else {
        progress.Hide();
        Check(input);
      }
      progress.Advance();
    }
  }

  // One folder is open at a time, however deep they lie.
  void Collect(const std::string& top, std::vector<std::string>& files) {
    std::vector<fs::path> folders{top};
    while (!folders.empty()) {
      const fs::path folder = std::move(folders.back());
      folders.pop_back();
      std::error_code error;
      fs::directory_iterator item(folder, error);
      for (; !error && item != fs::directory_iterator(); item.increment(error)) {
        std::error_code ignored;
        const auto type = item->symlink_status(ignored).type();
        if (type == fs::file_type::directory) folders.push_back(item->path());
        if (type == fs::file_type::regular) files.push_back(item->path().string());
      }
      if (error) Report(Unreadable(folder.string(), std::strerror(error.value())));
    }
  }

  void PrintSummary() const {
    const size_t all = m_good + m_bad + m_others;
    std::cout << all << (all == 1 ? " file: " : " files: ") << m_good << " good, " << m_bad << " bad, " << m_others
              << " other\n";
  }

  std::vector<std::string> m_paths;
  bool m_json = false;
  bool m_onlyBad = false;
  bool m_quiet = false;
  bool m_folders = false;
  size_t m_good = 0;
  size_t m_bad = 0;
  size_t m_others = 0;
};

}  // namespace

std::function<int()> AddPackage(Command& command) {
  const auto package = std::make_shared<PackageCommand>(command);
  return [package] { return package->Run(); };
}
