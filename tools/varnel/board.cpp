#include <publicdata.h>

#include <iostream>
#include <memory>

#include "arguments.h"
#include "output.h"
#include "subcommands.h"

namespace {

// The library reads a name up to its first NUL.
bool CheckName(const std::string& name) {
  const char* error = name.empty() ? "is empty" : name.find('\0') != std::string::npos ? "holds a NUL" : nullptr;
  if (error != nullptr) Complain(name, error);
  return error == nullptr;
}

class BoardCommand {
 public:
  explicit BoardCommand(CLI::App& command) {
    command.add_option("NAME", m_names, "Board names; - reads them from standard input, one a line")->type_name("");
    CLI::Option* element =
        command.add_option("--ne", m_element, "Tell also whether the element of this name is of the Korvane family")
            ->type_name("NAME");
    CLI::Option* generation =
        AddGenerationOption(command, m_generation, "Generation code of that element; above 52099 none is Korvane");
    element->needs(generation);
    generation->needs(element);
    command.add_flag("--json", m_json, "Print one JSON object per name");
    command.footer(command.get_footer() +
                   "\nBoth answers count as done. Where a name begins with -, put -- in front of the first. Case does\n"
                   "not count. Empty lines are passed over; an empty name is bad.");
  }

  int Run() const {
    if (m_names.empty() && !m_element) throw CLI::RequiredError("NAME or --ne");
    bool all = ForEachText(m_names, [this](const std::string& name) { return ShowBoard(name); });
    if (m_element) all = ShowElement(*m_element, *m_generation) && all;
    return all ? EXIT_DONE : EXIT_BAD;
  }

 private:
  bool ShowBoard(const std::string& name) const {
    const bool valid = CheckName(name);
    const bool control = valid && VARNEL_COMMON::IsSccBdName(name);
    if (m_json) {
      PrintJson({{"name", name}, {"system_control", valid ? Json(control) : Json(nullptr)}});
    } else if (valid) {
      std::cout << Escaped(name) << ": " << (control ? "" : "not ") << "a system-control board\n";
    }
    return valid;
  }

  bool ShowElement(const std::string& name, int generation) const {
    const bool valid = CheckName(name);
    const bool korvane = valid && VARNEL_COMMON::IsKorvaneNE(generation, name);
    if (m_json) {
      PrintJson({{"ne", name}, {"generation", generation}, {"korvane", valid ? Json(korvane) : Json(nullptr)}});
    } else if (valid) {
      std::cout << Escaped(name) << ": " << (korvane ? "" : "not ") << "of the Korvane family\n";
    }
    return valid;
  }

  std::vector<std::string> m_names;
  std::optional<std::string> m_element;
  std::optional<int> m_generation;
  bool m_json = false;
};

}  // namespace

std::function<int()> AddBoard(CLI::App& command) {
  const auto board = std::make_shared<BoardCommand>(command);
  return [board] { return board->Run(); };
}
