#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <utility>
#include <vector>

#include "arguments.h"
#include "json.h"
#include "output.h"
#include "package_file.h"
#include "progress.h"
#include "subcommand.h"

namespace {

namespace fs = std::filesystem;

constexpr char HELP_TEXT[] = R"(Check NE software files and list the entries of packages.

Usage: varnel package [OPTION]... PATH...

PATH is a file, a folder to search, or - for standard input. A file is good if
its headers and texts are valid and its file type is accepted: 0 to 13, 15 or
513. A file without a section [File Description] has no entries. The payload is
not checked. Faults of the description are reported on standard error and do
not make the file bad.

In a folder, files without the software-file magic are skipped and counted.
Symbolic links are not followed. Pipes and devices are skipped.

Options:
      --json            Print one JSON object per file
      --only-bad        Print bad files only
  -q, --quiet           Print nothing; use the exit status
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

JSON objects:
  path, ok, error       The file, whether it is good, and why not, or null
  version, link_target  Texts
  file_type             A number; file_type_accepted is true or false
  payload_offset        Where the payload starts, without the extension word
  extension_word        A number; null for file types other than 2
  cold_patch            True or false
  entries               A list of objects with name, kind and size; null without
                        a description section
  Values that cannot be read are null.

Exit status:
  0  Every file is good.
  1  A file is bad or unreadable, or the result could not be written.
  2  The command line is wrong.

Examples:
  varnel package mainboard.pkg
      Check a file and list its entries.
  varnel package --only-bad /srv/packages
      Look for bad files in a folder.
)";

// The result of examining a software file.
struct Package {
  std::string path;
  std::string error;  // why it is bad; empty for a good one
  FileStart start;
  FileLines lines;  // read if headers and texts are valid
};

Package Examine(FileScanner& scanner) {
  Package package{scanner.Input().Name(), "", ReadFileStart(scanner), {}};
  package.error = package.start.error;
  if (!package.error.empty()) return package;
  package.lines = ReadFileLines(scanner);
  if (!*package.start.typeAccepted) {
    package.error = "file type " + std::to_string(*package.start.fileType) + " is not accepted";
  }
  if (!scanner.Input().Error().empty()) package.error = scanner.Input().Error();
  return package;
}

void AddEntries(JsonWriter& json, const std::optional<std::vector<Entry>>& entries) {
  json.Key("entries");
  if (!entries) return json.Value(nullptr);
  json.BeginArray();
  for (const Entry& entry : *entries) {
    json.BeginObject();
    json.Add("name", entry.name).Add("kind", entry.kind).Add("size", entry.size);
    json.EndObject();
  }
  json.EndArray();
}

void AppendPadded(std::string& table, const std::string& text, size_t width) {
  table += text;
  table.append(width - std::min(Width(text), width), ' ');
}

void AppendField(std::string& table, const char* name, const std::string& value) {
  table += "  ";
  AppendPadded(table, name, 16);
  table.append(value).append(1, '\n');
}

void AppendEntries(std::string& table, const std::vector<Entry>& entries) {
  struct Row {
    std::string name, kind, size;
  };
  std::vector<Row> rows{{"NAME", "KIND", "      SIZE"}};
  size_t nameWidth = 4, kindWidth = 4;
  for (const Entry& entry : entries) {
    rows.push_back({Escaped(entry.name), Escaped(entry.kind), std::to_string(entry.size)});
    nameWidth = std::max(nameWidth, Width(rows.back().name));
    kindWidth = std::max(kindWidth, Width(rows.back().kind));
  }
  for (const Row& row : rows) {
    table += "    ";
    AppendPadded(table, row.name, nameWidth + 2);
    AppendPadded(table, row.kind, kindWidth + 2);
    table.append(10 - std::min<size_t>(row.size.size(), 10), ' ').append(row.size).append(1, '\n');
  }
}

void PrintAsJson(const Package& package) {
  const FileStart& start = package.start;
  JsonWriter json;
  json.Add("path", package.path).Add("ok", package.error.empty()).AddOrNull("error", package.error);
  json.Add("version", start.version).Add("link_target", start.linkTarget);
  json.Add("file_type", start.fileType).Add("file_type_accepted", start.typeAccepted);
  json.Add("payload_offset", start.payloadOffset).Add("extension_word", start.extensionWord);
  json.Add("cold_patch", package.lines.coldPatch);
  AddEntries(json, package.lines.entries);
  json.Print();
}

// The text is written in one piece: for a folder of small packages most time is spent on output.
void PrintAsTable(const Package& package) {
  const bool good = package.error.empty();
  std::string table = Escaped(package.path) + ": " + Coloured(good ? Colour::Good : Colour::Bad, good ? "good" : "bad");
  table += (good ? "" : ": ") + package.error + '\n';
  const FileStart& start = package.start;
  if (start.error.empty()) {
    AppendField(table, "version", Escaped(start.version.value_or("none")));
    AppendField(table, "link target", Escaped(*start.linkTarget));
    AppendField(table, "file type", std::to_string(*start.fileType) + (*start.typeAccepted ? "" : " (not accepted)"));
    if (start.extensionWord) AppendField(table, "extension word", std::to_string(*start.extensionWord));
    AppendField(table, "payload offset", std::to_string(*start.payloadOffset));
    AppendField(table, "cold patch", *package.lines.coldPatch ? "yes" : "no");
    const auto& entries = package.lines.entries;
    AppendField(table, "entries", entries ? std::to_string(entries->size()) : "none: no description section");
    if (entries && !entries->empty()) AppendEntries(table, *entries);
  }
  std::cout << table;
}

bool BeginsAsSoftwareFile(FileScanner& scanner) {
  return scanner.Bytes(0, 4) == "QXDD";
}

class PackageCommand {
 public:
  explicit PackageCommand(CLI::App& command) {
    TakePaths(command.add_option("PATH", m_paths))->required();
    command.add_flag("--json", m_json);
    command.add_flag("--only-bad", m_onlyBad);
    command.add_flag("-q,--quiet", m_quiet);
  }

  int Run() {
    for (const std::string& path : m_paths) {
      std::error_code ignored;
      if (fs::is_directory(path, ignored)) {
        CheckFolder(path);
      } else {
        InputFile input(path);
        FileScanner scanner(input);
        Report(Examine(scanner));
      }
    }
    if (m_folders && !m_json && !m_quiet) PrintSummary();
    return m_bad == 0 ? EXIT_DONE : EXIT_BAD;
  }

 private:
  void Report(const Package& package) {
    const bool good = package.error.empty();
    ++(good ? m_good : m_bad);
    if (m_quiet) return;
    if (!package.lines.remark.empty()) Complain(package.path, "package description: " + package.lines.remark);
    if (m_onlyBad && good) return;
    if (m_json) {
      PrintAsJson(package);
    } else {
      PrintAsTable(package);
    }
  }

  void ReportUnreadable(const std::string& path, int error) {
    Package package{path, std::strerror(error), {}, {}};
    package.start.error = package.error;
    Report(package);
  }

  // Examines regular files only: pipes and devices could block, and symbolic links could form cycles.
  void CheckFolder(const std::string& folder) {
    m_folders = true;
    std::vector<std::string> files;
    Collect(folder, files);
    std::sort(files.begin(), files.end());
    FileProgress progress(m_quiet ? 0 : files.size());
    for (const std::string& path : files) {
      InputFile input(path);
      FileScanner scanner(input);
      if (!BeginsAsSoftwareFile(scanner) && input.Error().empty()) {
        ++m_others;
      } else {
        progress.Hide();
        Report(Examine(scanner));
      }
      progress.Advance();
    }
  }

  // One folder is open at a time, at any depth.
  void Collect(const std::string& top, std::vector<std::string>& files) {
    std::vector<fs::path> folders{top};
    while (!folders.empty()) {
      const fs::path folder = std::move(folders.back());
      folders.pop_back();
      std::error_code error;
      fs::directory_iterator item(folder, error);
      for (; !error && item != fs::directory_iterator(); item.increment(error)) {
        std::error_code ignored;
        if (item->is_symlink(ignored)) continue;
        if (item->is_directory(ignored)) folders.push_back(item->path());
        if (item->is_regular_file(ignored)) files.push_back(item->path().string());
      }
      if (error) ReportUnreadable(folder.string(), error.value());
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

extern const Subcommand PACKAGE = {"package", HELP_TEXT, AddAs<PackageCommand>};
