#include <publicdata.h>

#include <iostream>
#include <memory>

#include "arguments.h"
#include "json.h"
#include "output.h"
#include "subcommand.h"

namespace {

constexpr char HELP_TEXT[] = R"(Report whether boards are system-control boards.

Usage: varnel board [OPTION]... [NAME]...

NAME is the name of a board, in any case of letters; - reads names from standard
input, one per line, and skips empty lines. With --ne, report also whether an
element belongs to the Korvane family.

Options:
      --ne NAME         Report whether the element of this name belongs to the
                        Korvane family; requires --generation
      --generation CODE  Set the generation code of that element, decimal; an
                        element with a code above 52099 is not Korvane
      --json            Print one JSON object per name
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

JSON objects:
  name, system_control  A board, and true or false
  ne, generation, korvane  An element, its code, and true or false
  The answer is null for a bad name.

Exit status:
  0  Every name is valid, for any answer.
  1  A name is empty or contains a NUL, standard input cannot be read, or the
     result could not be written.
  2  The command line is wrong.

Examples:
  varnel board vcua mainboard
      Check two boards.
  varnel board --ne KVA-4210 --generation 50000
      Check an element.
  varnel board --json - < boards.txt
      Check all boards in a file, one per line, for a program.
)";

// The library reads a name up to its first NUL.
bool CheckName(const std::string& name) {
  const char* error = name.empty() ? "is empty" : name.find('\0') != std::string::npos ? "contains a NUL" : nullptr;
  if (error != nullptr) Complain(name, error);
  return error == nullptr;
}

class BoardCommand {
 public:
  explicit BoardCommand(CLI::App& command) {
    command.add_option("NAME", m_names);
    CLI::Option* element = command.add_option("--ne", m_element);
    CLI::Option* generation = AddGenerationOption(command, m_generation);
    element->needs(generation);
    generation->needs(element);
    command.add_flag("--json", m_json);
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
      JsonWriter().Add("name", name).Add("system_control", valid ? std::optional(control) : std::nullopt).Print();
    } else if (valid) {
      std::cout << Escaped(name) << ": " << (control ? "" : "not ") << "a system-control board\n";
    }
    return valid;
  }

  bool ShowElement(const std::string& name, int generation) const {
    const bool valid = CheckName(name);
    const bool korvane = valid && VARNEL_COMMON::IsKorvaneNE(generation, name);
    if (m_json) {
      JsonWriter json;
      json.Add("ne", name).Add("generation", generation);
      json.Add("korvane", valid ? std::optional(korvane) : std::nullopt).Print();
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

extern const Subcommand BOARD = {"board", HELP_TEXT, AddAs<BoardCommand>};
