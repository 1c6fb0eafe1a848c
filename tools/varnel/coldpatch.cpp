#include <iostream>
#include <memory>
#include <vector>

#include "arguments.h"
#include "json.h"
#include "output.h"
#include "package_file.h"
#include "subcommand.h"

namespace {

constexpr char HELP_TEXT[] = R"(Report whether files are cold patches.

Usage: varnel coldpatch [OPTION]... PATH...

PATH is a script or package file, or - for standard input. A file is a cold
patch if one of its lines contains [COLDPATCH] within its first 1023 bytes.

Options:
      --json            Print one JSON object per file
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

JSON objects:
  path                  The file
  cold_patch            True, false, or null for an unreadable file

Exit status:
  0  All files are cold patches.
  1  A file is not a cold patch or is unreadable, or the result could not be
     written.
  2  The command line is wrong.

Examples:
  varnel coldpatch patch.txt update.pkg
      Check two files.
  varnel coldpatch - < patch.txt > /dev/null && echo yes
      Use the result as a condition.
)";

class ColdPatchCommand {
 public:
  explicit ColdPatchCommand(CLI::App& command) {
    TakePaths(command.add_option("PATH", m_paths))->required();
    command.add_flag("--json", m_json);
  }

  int Run() const {
    bool all = true;
    for (const std::string& path : m_paths)
      all = Check(path) && all;
    return all ? EXIT_DONE : EXIT_BAD;
  }

 private:
  bool Check(const std::string& path) const {
    InputFile input(path);
    FileScanner scanner(input);
    const bool coldPatch = HasColdPatchMarker(scanner);
    const bool readable = input.Error().empty();
    if (!readable) Complain(input.Name(), input.Error());
    if (m_json) {
      JsonWriter json;
      json.Add("path", input.Name()).Add("cold_patch", readable ? std::optional(coldPatch) : std::nullopt).Print();
    } else if (readable) {
      std::cout << Escaped(input.Name()) << ": " << (coldPatch ? "yes" : "no") << '\n';
    }
    return coldPatch;
  }

  std::vector<std::string> m_paths;
  bool m_json = false;
};

}  // namespace

extern const Subcommand COLDPATCH = {"coldpatch", HELP_TEXT, AddAs<ColdPatchCommand>};
