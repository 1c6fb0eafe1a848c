#include "command_line.h"

#include <algorithm>

#include "library_log.h"
#include "output.h"

namespace {

constexpr Subcommand SUBCOMMANDS[] = {
    {"package", "Check NE software files and list the entries of their package descriptions", AddPackage},
    {"head", "Show both heads of an NE software file, field by field", AddHead},
    {"make-package", "Write an NE software file with valid heads", AddMakePackage},
    {"coldpatch", "Tell whether files are cold patches", AddColdPatch},
    {"report", "Follow the progress and the end of a package load or script run in the reports of an element",
     AddReport},
    {"tl1", "Cut a stream of bytes into TL1 messages and show their parts", AddTl1},
    {"slot", "Show a slot in every form it is written in", AddSlot},
    {"board", "Tell whether boards are system-control boards, and whether an element is of the Korvane family",
     AddBoard},
};

// A byte that no argument can hold. At either end of an argument it keeps CLI11 from taking that for an option, or
// "[a,b]" for a list of two words.
constexpr char SHIELD = '\0';

std::string Shielded(std::string argument, bool afterMark) {
  if (!argument.empty() && argument.back() == ']') argument.push_back(SHIELD);
  if (afterMark && argument.compare(0, 1, "-") == 0) argument.insert(0, 1, SHIELD);
  return argument;
}

std::string WithoutShield(std::string argument) {
  argument.erase(std::remove(argument.begin(), argument.end(), SHIELD), argument.end());
  return argument;
}

// Says in plain words what CLI11 says of an option that has too many values or none.
std::string Mismatch(const std::string& message) {
  const std::string option = message.substr(0, message.find(": "));
  if (message.find(" missing") != std::string::npos) return option + ": its value is missing";
  if (message.find("At Most 1 ") != std::string::npos) return option + ": is given more than once";
  if (message.find("At Most ") != std::string::npos) return option + ": has too many values";
  return message;
}

}  // namespace

CommandLine::CommandLine() : m_top("Tools for NE software packages and reports", "varnel") {
  m_top.set_version_flag("--version", "varnel " VARNEL_VERSION, "Print the version and exit");
  m_top.add_flag("-v,--verbose", m_verbose, "Show the library's log lines, and what tl1 skips, on standard error");
  m_top.require_subcommand(0, 1);
  m_top.failure_message([this](const CLI::App*, const CLI::Error& error) {
    return "varnel: " + Escaped(Message(error)) + '\n' + Named().FullName() + " --help tells the usage.\n";
  });
  m_top.explanation = {
      {"",
       {{"", "varnel SUBCOMMAND --help explains a subcommand, with examples."},
        {"",
         "Results go to standard output, diagnostics to standard error. Control characters in names and texts are "
         "shown as \\xNN. On a terminal the result is coloured, unless the environment variable NO_COLOR is set."},
        {"", "Where an argument of a subcommand begins with -, put -- in front of it."}}}};
  m_top.SetExitStatus("Done.", "Something examined is bad or unreadable");
  for (const Subcommand& subcommand : SUBCOMMANDS)
    AddSubcommand(subcommand);
}

void CommandLine::AddSubcommand(const Subcommand& subcommand) {
  const auto command = std::make_shared<Command>(subcommand.purpose, subcommand.name);
  m_top.add_subcommand(command);
  const auto run = subcommand.add(*command);
  for (CLI::Option* option : command->get_options()) {
    if (option->get_expected_max() > 0) option->transform(WithoutShield);
  }
  command->callback([this, run] { m_run = run; });
}

int CommandLine::Run(int argc, char** argv) {
  try {
    m_top.parse(ToArguments(argc, argv));
    if (m_run == nullptr) throw CLI::RequiredError("A subcommand");
    RouteLibraryLog(m_verbose);
    return m_run();
  } catch (const CLI::ParseError& error) {
    return m_top.exit(error) == 0 ? EXIT_DONE : EXIT_USAGE;
  }
}

bool CommandLine::TakesValue(const std::string& argument) const {
  for (const CLI::App* command : m_top.get_subcommands({})) {
    const CLI::Option* option = command->get_option_no_throw(argument);
    if (option != nullptr && option->nonpositional() && option->get_items_expected_max() > 0) return true;
  }
  return false;
}

// The last one first, as CLI11 wants them. It knows "--" only in front of the first of several texts.
std::vector<std::string> CommandLine::ToArguments(int argc, char** argv) const {
  std::vector<std::string> arguments;
  bool afterMark = false;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (!afterMark && argument == "--" && !TakesValue(argv[i - 1])) {
      afterMark = true;
    } else {
      arguments.push_back(Shielded(argument, afterMark));
    }
  }
  std::reverse(arguments.begin(), arguments.end());
  return arguments;
}

const Command& CommandLine::Named() const {
  const std::vector<CLI::App*> named = m_top.get_subcommands();
  return named.empty() ? m_top : AsCommand(*named.front());
}

// CLI11 looks for what is missing first, though an argument that it does not know is often the reason.
std::string CommandLine::Message(const CLI::Error& error) const {
  const std::vector<std::string> unknown = m_top.remaining(true);
  if (unknown.empty()) return error.get_name() == "ArgumentMismatch" ? Mismatch(error.what()) : error.what();
  const std::string& first = unknown.front();
  if (first.compare(0, 1, "-") == 0) return "unknown option: " + WithoutShield(first);
  return (&Named() == &m_top ? "unknown subcommand: " : "unexpected argument: ") + WithoutShield(first);
}
