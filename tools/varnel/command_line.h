#ifndef VARNEL_TOOLS_COMMAND_LINE_H
#define VARNEL_TOOLS_COMMAND_LINE_H

#include <functional>
#include <string>
#include <vector>

#include "command.h"
#include "subcommands.h"

/// The command `varnel` with all its subcommands.
class CommandLine {
 public:
  CommandLine();

  /// Reads the arguments and runs the subcommand that they name; gives the exit status.
  int Run(int argc, char** argv);

  const Command& Top() const { return m_top; }

 private:
  void AddSubcommand(const Subcommand& subcommand);
  bool TakesValue(const std::string& argument) const;
  std::vector<std::string> ToArguments(int argc, char** argv) const;
  const Command& Named() const;
  std::string Message(const CLI::Error& error) const;

  Command m_top;
  bool m_verbose = false;
  std::function<int()> m_run;
};

#endif
