#ifndef VARNEL_TOOLS_SUBCOMMAND_H
#define VARNEL_TOOLS_SUBCOMMAND_H

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>

/// Exit statuses of the command.
enum ExitStatus : int {
  EXIT_DONE = 0,
  EXIT_BAD = 1,    ///< an input is bad or unreadable, or the result could not be written
  EXIT_USAGE = 2,  ///< the command line is wrong
};

/// A subcommand; its file defines one. Completion is generated from its options, its manual page from its help.
struct Subcommand {
  const char* name;
  const char* help;  ///< all of its help. The first line is its purpose, which the help of the command lists
  /// Adds options and operands. Returns a function that runs the subcommand after parsing and returns its exit status.
  std::function<int()> (*add)(CLI::App& command);
};

/// Creates `add` for a class that adds options in its constructor and has Run().
template <typename Command>
std::function<int()> AddAs(CLI::App& app) {
  const auto command = std::make_shared<Command>(app);
  return [command] { return command->Run(); };
}

#endif
