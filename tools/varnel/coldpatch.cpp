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
  explicit ColdPatchCommand(CLI::App& command) {
    command.add_option("PATH", m_paths, "Script and package files; - is standard input")->required()->type_name("");
    command.add_flag("--json", m_json, "Print one JSON object per file");
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

std::function<int()> AddColdPatch(CLI::App& command) {
  const auto coldPatch = std::make_shared<ColdPatchCommand>(command);
  return [coldPatch] { return coldPatch->Run(); };
}
