#ifndef VARNEL_TOOLS_COMPLETION_H
#define VARNEL_TOOLS_COMPLETION_H

#include <string>

#include "command.h"

/// A script that lets bash complete the command lines of a command and its subcommands. It needs nothing but bash.
std::string BashCompletion(const Command& top);

#endif
