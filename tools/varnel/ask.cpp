#include <command.h>

#include "address.h"
#include "arguments.h"
#include "ask_run.h"
#include "byte_source.h"
#include "subcommand.h"

using VARNEL_TL1::Command;

namespace {

constexpr char HELP_TEXT[] = R"(Send TL1 commands to an element and print the answers.

Usage: varnel ask [OPTION]... HOST:PORT COMMAND...

COMMAND is VERB-MODIFIER[:TID[:AID[:CTAG[:GENERAL[:DATA...]]]]][;]; if it is -,
commands are read from standard input, one per line, and sent as each line
arrives. Blank lines and lines that start with # are skipped. A missing or empty
ctag is filled in. Each command is sent after the answer to the one before, and
the parts of an answer are joined. The first command that is not COMPLD ends the
run.

Write an IPv6 address in brackets: [::1]:3083. PORT may be a service name.

Options:
      --user NAME       Log in first and log out at the end. The password is
                        asked for on the terminal unless there is a
                        password file
      --password-file FILE  Read the password from the first line of FILE, to
                        which other users must not have access
      --tid TID         Fill in an empty TID of a command
      --timeout SECONDS  Wait at most this time for the connection, for the
                        log-in and for each part of an answer (default: 30)
      --keep-going      Send the next command if one is not COMPLD
      --events          Print autonomous messages on standard error
      --dry-run         Print the commands that would be sent, and do not
                        connect
      --json            Print one JSON object per command
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

Passwords are printed as ******, also if the element repeats them.

JSON objects:
  command               As sent
  error                 Why there is no answer. With an answer, all other keys
                        are those of varnel tl1: see varnel help tl1

Exit status:
  0    Every command was COMPLD.
  1    A command was not, the log-in was refused, there is no connection or no
       password, or the result could not be written.
  2    The command line or a command is wrong.
  130  SIGINT ended the run, 143: SIGTERM, 129: SIGHUP.

Examples:
  varnel ask 192.0.2.7:3083 RTRV-HDR
      Ask who is there.
  varnel ask --user ops --password-file ~/.ne 192.0.2.7:3083 RTRV-ALM-ALL
      Log in, show the alarms, and log out.
  varnel ask --json --keep-going --tid NE1 '[2001:db8::7]:3083' - < commands
      Send the commands of a file, for a program.
)";

std::string CheckTid(const std::string& tid) {
  Command command;
  command.Parse("RTRV-HDR");
  const char* const fault = command.SetParameters(Command::TID, {{"", tid}});
  return fault == nullptr ? "" : fault;
}

class AskCommand {
 public:
  explicit AskCommand(CLI::App& command) {
    command.add_option("HOST:PORT", m_options.address)->check(CheckAddress)->required();
    command.add_option("COMMAND", m_options.commands)->required();
    CLI::Option* user = command.add_option("--user", m_options.user)->check(CheckUser);
    TakePaths(command.add_option("--password-file", m_options.passwordFile))->needs(user);
    command.add_option("--tid", m_options.tid)->check(CheckTid);
    TakeSeconds(command.add_option("--timeout", m_options.timeout));
    command.add_flag("--keep-going", m_options.keepGoing);
    command.add_flag("--events", m_options.events);
    command.add_flag("--dry-run", m_options.dryRun);
    command.add_flag("--json", m_options.json);
  }

  int Run() const { return AskRun(m_options).Run(); }

 private:
  static std::string CheckUser(const std::string& user) { return CheckLogIn(user, "any"); }

  AskOptions m_options;
};

}  // namespace

extern const Subcommand ASK = {"ask", HELP_TEXT, AddAs<AskCommand>};
