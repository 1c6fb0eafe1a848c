#include "command_line.h"

#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <mutex>

#include "output.h"

// Each is defined in the file of its name.
extern const Subcommand PACKAGE, HEAD, MAKE_PACKAGE, COLDPATCH, REPORT, TL1, ALARMS, ASK, WATCH, SLOT, BOARD;

namespace {

constexpr char HELP_TEXT[] = R"(Print the help of a subcommand.

Usage: varnel help [OPTION]... [SUBCOMMAND]

Without SUBCOMMAND, print the help of varnel. The result is the same as that of
varnel SUBCOMMAND --help.

Options:
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

Exit status:
  0  The help is printed.
  1  The result could not be written.
  2  The command line is wrong.

Examples:
  varnel help tl1
      Print the help of varnel tl1.
)";

class HelpCommand {
 public:
  explicit HelpCommand(CLI::App& command) : m_top(*command.get_parent()) { command.add_option("SUBCOMMAND", m_name); }

  int Run() const {
    const auto named = m_top.get_subcommands([this](const CLI::App* app) { return app->get_name() == m_name; });
    if (named.empty() && !m_name.empty()) throw CLI::ValidationError("unknown subcommand", m_name);
    const CLI::App& command = named.empty() ? m_top : *named.front();
    // Not command.help(): that prints the help of the subcommand on the command line.
    std::cout << command.get_formatter()->make_help(&command, "", CLI::AppFormatMode::Normal);
    return EXIT_DONE;
  }

 private:
  const CLI::App& m_top;
  std::string m_name;
};

const Subcommand HELP = {"help", HELP_TEXT, AddAs<HelpCommand>};

const Subcommand* const SUBCOMMANDS[] = {&PACKAGE, &HEAD, &MAKE_PACKAGE, &COLDPATCH, &REPORT, &TL1,
                                         &ALARMS,  &ASK,  &WATCH,        &SLOT,      &BOARD};

constexpr char HELP_BEFORE_SUBCOMMANDS[] = R"(Tools for NE software packages and reports.

Usage: varnel [OPTION]... SUBCOMMAND ...

Results go to standard output, diagnostics to standard error. Control characters
in names and texts are shown as \xNN. On a terminal the result is coloured,
unless the environment variable NO_COLOR is set and not empty or TERM is dumb.

If an operand of a subcommand starts with -, write -- before it.

Options:
  -h, --help            Print this help and exit
  -V, --version         Print the version and exit
  -v, --verbose         Show the library's log lines on standard error

Subcommands:
)";

constexpr char HELP_AFTER_SUBCOMMANDS[] = R"(
Run varnel help SUBCOMMAND for its options, with examples.

Exit status:
  0  Done.
  1  Something examined is bad, unreadable, refused or incomplete, or the result
     could not be written.
  2  The command line is wrong.
)";

// "  tl1             Cut a stream of bytes ..." for each of them.
std::string SubcommandRows() {
  std::string rows;
  for (const Subcommand* subcommand : SUBCOMMANDS) {
    const std::string help = subcommand->help;
    rows += "  " + Padded(subcommand->name, 14) + help.substr(0, help.find(".\n")) + '\n';
  }
  return rows;
}

void SetHelp(CLI::App& command, const std::string& text) {
  command.set_help_flag("-h,--help");
  command.formatter_fn([text](const CLI::App*, const std::string&, CLI::AppFormatMode) { return text; });
}

class StandardErrorSink : public spdlog::sinks::base_sink<std::mutex> {
  void sink_it_(const spdlog::details::log_msg& line) override {
    std::cout.flush();
    std::cerr << "varnel: library " << (line.level == spdlog::level::err ? "error" : "warning") << ": "
              << Escaped({line.payload.data(), line.payload.size()}) << " [" << line.source.filename << ' '
              << line.source.funcname << "]\n";
  }
  void flush_() override { std::cerr.flush(); }
};

// Shows the log lines of the library only with -v: the command reports errors in its own words.
void RouteLibraryLog(bool visible) {
  const auto logger = std::make_shared<spdlog::logger>("transcommon_log");
  if (visible) logger->sinks().push_back(std::make_shared<StandardErrorSink>());
  spdlog::register_logger(logger);
}

// A byte that no argument can contain. At both ends of an argument it prevents CLI11 from reading it as an option, or
// "[a,b]" as a list of two words.
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

// Describes an option with too many values or without a value.
std::string Mismatch(const std::string& message) {
  const std::string option = message.substr(0, message.find(": "));
  if (message.find(" missing") != std::string::npos) return option + ": its value is missing";
  if (message.find("At Most 1 ") != std::string::npos) return option + ": is given more than once";
  if (message.find("At Most ") != std::string::npos) return option + ": has too many values";
  return message;
}

}  // namespace

CommandLine::CommandLine() : m_top("", "varnel") {
  SetHelp(m_top, HELP_BEFORE_SUBCOMMANDS + SubcommandRows() + HELP_AFTER_SUBCOMMANDS);
  m_top.set_version_flag("-V,--version", "varnel " VARNEL_VERSION);
  m_top.add_flag("-v,--verbose", m_verbose);
  m_top.require_subcommand(0, 1);
  m_top.failure_message([this](const CLI::App*, const CLI::Error& error) {
    return "varnel: " + Escaped(Message(error)) + "\nTry \"" + NamedCommand() + " --help\".\n";
  });
  for (const Subcommand* subcommand : SUBCOMMANDS)
    AddSubcommand(*subcommand);
  AddSubcommand(HELP);
}

void CommandLine::AddSubcommand(const Subcommand& subcommand) {
  CLI::App* const command = m_top.add_subcommand(subcommand.name);
  SetHelp(*command, subcommand.help);
  command->fallthrough();
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

// In reverse order, as CLI11 expects. CLI11 recognises "--" only before the first operand.
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

// "varnel tl1", or "varnel" if no subcommand is named.
std::string CommandLine::NamedCommand() const {
  const std::vector<CLI::App*> named = m_top.get_subcommands();
  return named.empty() ? m_top.get_name() : m_top.get_name() + ' ' + named.front()->get_name();
}

// CLI11 reports a missing argument first, although an unknown argument is often the reason.
std::string CommandLine::Message(const CLI::Error& error) const {
  const std::vector<std::string> unknown = m_top.remaining(true);
  if (unknown.empty()) return error.get_name() == "ArgumentMismatch" ? Mismatch(error.what()) : error.what();
  const std::string& first = unknown.front();
  if (first.compare(0, 1, "-") == 0) return "unknown option: " + WithoutShield(first);
  return (m_top.get_subcommands().empty() ? "unknown subcommand: " : "unexpected argument: ") + WithoutShield(first);
}
