#ifndef VARNEL_TOOLS_COMMAND_LINE_H
#define VARNEL_TOOLS_COMMAND_LINE_H

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "subcommand.h"

/// The command `varnel` with all its subcommands.
class CommandLine {
 public:
  CommandLine();

  /// Reads the arguments, runs the subcommand that they name and returns the exit status.
  int Run(int argc, char** argv);

  const CLI::App& Top() const { return m_top; }

 private:
  void AddSubcommand(const Subcommand& subcommand);
  bool TakesValue(const std::string& argument) const;
  std::vector<std::string> ToArguments(int argc, char** argv) const;
  std::string NamedCommand() const;
  std::string Message(const CLI::Error& error) const;

  CLI::App m_top;
  bool m_verbose = false;
  std::function<int()> m_run;
};

#endif
