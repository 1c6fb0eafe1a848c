#include <publicdata.h>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <memory>
#include <new>
#include <vector>

#include "input_file.h"
#include "output.h"
#include "subcommands.h"

namespace {

class ColdPatchCommand {
 public:
  explicit ColdPatchCommand(Command& command) {
    command.add_option("PATH", m_paths, "Script and package files; - is standard input")->required();
    command.add_flag("--json", m_json, "Print one JSON object per file");
    command.explanation = {
        {"", {{"", "A file is a cold patch when one of its lines holds [COLDPATCH]."}}},
        {"JSON objects",
         {{"", "Each holds path and cold_patch, which is true, false, or null for an unreadable file."}}}};
    command.SetExitStatus("All files are cold patches.", "A file is none or is unreadable");
    command.examples.paragraphs = {
        {"varnel coldpatch patch.txt update.pkg", "Tell of two files."},
        {"varnel coldpatch - < patch.txt > /dev/null && echo yes", "Use it as a condition."}};
  }

  int Run() const {
    bool all = true;
    for (const std::string& path : m_paths)
      all = Check(InputFile(path)) && all;
    return all ? EXIT_DONE : EXIT_BAD;
  }

 private:
  bool Check(const InputFile& input) const {
    std::string error = input.Error();
    bool coldPatch = false;
    try {
      coldPatch = error.empty() && VARNEL_COMMON::isColdPatch(input.Path());
    } catch (const std::bad_alloc&) {
      error = std::strerror(ENOMEM);  // one file that is too large does not keep the others from being checked
    }
    const bool readable = error.empty();
    if (!readable) Complain(input.Name(), error);
    if (m_json) {
      PrintJson({{"path", input.Name()}, {"cold_patch", readable ? Json(coldPatch) : Json(nullptr)}});
    } else if (readable) {
      std::cout << Escaped(input.Name()) << ": " << (coldPatch ? "yes" : "no") << '\n';
    }
    return coldPatch;
  }

  std::vector<std::string> m_paths;
  bool m_json = false;
};

}  // namespace

std::function<int()> AddColdPatch(Command& command) {
  const auto coldPatch = std::make_shared<ColdPatchCommand>(command);
  return [coldPatch] { return coldPatch->Run(); };
}
