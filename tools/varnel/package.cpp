#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "input_file.h"
#include "output.h"
#include "package_contents.h"
#include "package_output.h"
#include "progress_bar.h"
#include "subcommands.h"

namespace {

namespace fs = std::filesystem;

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
           "One without a [File Description] section has no entries. The payload is not judged, nor is the "
           "description: what is wrong with it is told on standard error."},
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
