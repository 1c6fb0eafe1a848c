#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>
#include <vector>

#include "library_log.h"
#include "output.h"
#include "subcommands.h"

namespace {

struct Subcommand {
  const char* name;
  const char* purpose;
  const char* example;
  std::function<int()> (*add)(CLI::App& command);
};

constexpr Subcommand SUBCOMMANDS[] = {
    {"package", "Check NE software files and list the entries of their package descriptions",
     "varnel package --only-bad mainboard.pkg /srv/packages", AddPackage},
    {"head", "Show both heads of an NE software file, field by field", "varnel head mainboard.pkg", AddHead},
    {"make-package", "Write an NE software file with valid heads",
     "varnel make-package -d description.txt --link \"board -> mainboard\" -t 1 mainboard.pkg", AddMakePackage},
    {"coldpatch", "Tell whether files are cold patches", "varnel coldpatch patch.txt", AddColdPatch},
    {"report", "Follow the progress and the end of a package load or script run in the reports of an element",
     "varnel report --connect 192.0.2.7:1400 --ne 0x1000001 --timeout 600", AddReport},
    {"tl1", "Cut a stream of bytes into TL1 messages and show their parts",
     "varnel tl1 --json --type autonomous --code '*C,**' capture.log", AddTl1},
    {"slot", "Show a slot in every form it is written in", "varnel slot 3-5 305 0x0305 FAC-1-SLOT-3-5", AddSlot},
    {"board", "Tell whether boards are system-control boards, and whether an element is of the Korvane family",
     "varnel board --ne KVA-4210 --generation 50000 vcua", AddBoard},
};

constexpr char EXIT_STATUSES[] =
    "Exit status: 0 done; 1 something examined is bad or unreadable, or the result could not be written; 2 wrong "
    "usage.";

// CLI11 takes "[a,b]" for a list of two words. A NUL, which no argument can hold, keeps it from seeing the brackets.
constexpr char SHIELD = '\0';

std::string Shielded(std::string argument) {
  if (!argument.empty() && argument.back() == ']') argument.push_back(SHIELD);
  return argument;
}

std::string WithoutShield(std::string argument) {
  if (!argument.empty() && argument.back() == SHIELD) argument.pop_back();
  return argument;
}

// A file that is opened later is not to take the place of a closed standard stream. The wrong direction keeps the use
// of that stream an error.
void OccupyClosedStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) == -1) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

class Command {
 public:
  Command() : m_app("Tools for NE software packages and reports", "varnel") {
    m_app.set_version_flag("--version", "varnel " VARNEL_VERSION);
    m_app.add_flag("-v,--verbose", m_verbose, "Show the library's log lines, and what tl1 skips, on standard error");
    m_app.require_subcommand(0, 1);
    m_app.fallthrough();
    m_app.failure_message([](const CLI::App*, const CLI::Error& error) {
      return "varnel: " + Escaped(error.what()) + "\nvarnel --help and varnel SUBCOMMAND --help tell the usage.\n";
    });
    m_app.footer(std::string("varnel SUBCOMMAND --help explains a subcommand, with an example.\n\n") + EXIT_STATUSES);
    for (const Subcommand& subcommand : SUBCOMMANDS)
      Add(subcommand);
  }

  int Run(int argc, char** argv) {
    try {
      std::vector<std::string> arguments;  // the last one first, as CLI11 wants them
      for (int i = argc - 1; i > 0; --i)
        arguments.push_back(Shielded(argv[i]));
      m_app.parse(arguments);
      if (m_run == nullptr) throw CLI::RequiredError("A subcommand");
      RouteLibraryLog(m_verbose);
      return m_run();
    } catch (const CLI::ParseError& error) {
      return m_app.exit(error) == 0 ? EXIT_DONE : EXIT_USAGE;
    }
  }

 private:
  void Add(const Subcommand& subcommand) {
    CLI::App* command = m_app.add_subcommand(subcommand.name, subcommand.purpose);
    command->footer(std::string("Example:\n  ") + subcommand.example + "\n\n" + EXIT_STATUSES);
    const auto run = subcommand.add(*command);
    for (CLI::Option* option : command->get_options()) {
      if (option->get_expected_max() > 0) option->transform(WithoutShield);
    }
    command->callback([this, run] { m_run = run; });
  }

  CLI::App m_app;
  bool m_verbose = false;
  std::function<int()> m_run;
};

}  // namespace

int main(int argc, char** argv) {
  OccupyClosedStandardStreams();
  std::signal(SIGPIPE, SIG_DFL);  // a reader that goes away ends the command quietly, whatever the parent ignored
  std::ios::sync_with_stdio(false);
  int status = EXIT_BAD;
  try {
    status = Command().Run(argc, argv);
  } catch (const std::exception& error) {
    Complain("failed", error.what());
  }
  if (!std::cout.flush()) {
    Complain("standard output", "cannot write");
    return EXIT_BAD;
  }
  return status;
}
