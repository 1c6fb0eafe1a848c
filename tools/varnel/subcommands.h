#ifndef VARNEL_TOOLS_SUBCOMMANDS_H
#define VARNEL_TOOLS_SUBCOMMANDS_H

#include <CLI/CLI.hpp>
#include <functional>

/// Exit statuses of the command.
enum ExitStatus : int {
  EXIT_DONE = 0,
  EXIT_BAD = 1,    ///< something examined is bad or unreadable, or the result could not be written
  EXIT_USAGE = 2,  ///< the command line is wrong
};

/// Each adds the arguments of its subcommand to `command` and gives what runs it once they are parsed. What runs
/// returns an exit status.
std::function<int()> AddPackage(CLI::App& command);
std::function<int()> AddHead(CLI::App& command);
std::function<int()> AddMakePackage(CLI::App& command);
std::function<int()> AddColdPatch(CLI::App& command);
std::function<int()> AddReport(CLI::App& command);
std::function<int()> AddTl1(CLI::App& command);
std::function<int()> AddSlot(CLI::App& command);
std::function<int()> AddBoard(CLI::App& command);

#endif
