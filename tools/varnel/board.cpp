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
  explicit BoardCommand(Command& command) {
    command.add_option("NAME", m_names, "Board names; - reads them from standard input, one a line");
    CLI::Option* element =
        command.add_option("--ne", m_element, "Tell also whether the element of this name is of the Korvane family")
            ->type_name("NAME");
    CLI::Option* generation =
        AddGenerationOption(command, m_generation, "Generation code of that element; above 52099 none is Korvane");
    element->needs(generation);
    generation->needs(element);
    command.add_flag("--json", m_json, "Print one JSON object per name");
    command.explanation = {{"", {{"", "Case does not count in names. Empty lines of standard input are passed over."}}},
                           {"JSON objects",
                            {{"of a board", "name, system_control"},
                             {"of an element", "ne, generation, korvane"},
                             {"", "The answers are true or false, and null for a bad name."}}}};
    command.SetExitStatus("Every question is answered, whatever the answers are.",
                          "A name is empty or holds a NUL, or standard input cannot be read");
    command.examples.paragraphs = {
        {"varnel board vcua mainboard", "Tell of two boards."},
        {"varnel board --ne KVA-4210 --generation 50000", "Tell of an element."},
        {"varnel board --json - < boards.txt", "Tell of all boards in a file, one a line, for a program."}};
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

std::function<int()> AddBoard(Command& command) {
  const auto board = std::make_shared<BoardCommand>(command);
  return [board] { return board->Run(); };
}
