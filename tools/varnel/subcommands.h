#ifndef VARNEL_TOOLS_SUBCOMMANDS_H
#define VARNEL_TOOLS_SUBCOMMANDS_H

#include <functional>

#include "command.h"

/// Exit statuses of the command.
enum ExitStatus : int {
  EXIT_DONE = 0,
  EXIT_BAD = 1,    ///< something examined is bad or unreadable, or the result could not be written
  EXIT_USAGE = 2,  ///< the command line is wrong
};

/// Adds the arguments of a subcommand and what its help tells to `command`, and gives what runs it once they are
/// parsed. What runs returns an exit status.
using AddArguments = std::function<int()>(Command& command);

AddArguments AddPackage, AddHead, AddMakePackage, AddColdPatch, AddReport, AddTl1, AddSlot, AddBoard;

struct Subcommand {
  const char* name;
  const char* purpose;
  AddArguments* add;
};

#endif
