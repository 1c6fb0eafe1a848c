#ifndef VARNEL_TOOLS_OPTION_VIEW_H
#define VARNEL_TOOLS_OPTION_VIEW_H

#include <string>
#include <vector>

#include "command.h"

/// What help, manual page and completion show of an option, or of an argument without a name of its own.
struct OptionView {
  std::vector<std::string> names;    ///< "-d" and "--description"; of a nameless argument none
  std::string argument;              ///< "FILE"; empty for a flag
  std::string text;                  ///< what it is for, its default, and with what it goes
  std::vector<std::string> choices;  ///< all values that it takes; empty where that is no short list
  bool required = false;             ///< of a nameless argument only
  bool repeated = false;             ///< several may be given
  char delimiter = '\0';             ///< what stands between several values in one argument

  /// True where a name of a file or folder is expected.
  bool TakesPath() const;
};

/// Nameless arguments in their order.
std::vector<OptionView> Arguments(const Command& command);

/// Its own options, and behind them those of the commands above that it takes, too.
std::vector<OptionView> Options(const Command& command);

/// The subcommands in their order.
std::vector<const Command*> Subcommands(const Command& command);

/// What stands behind the name of the command on a line: "[OPTIONS]", "PATH...".
std::vector<std::string> Operands(const Command& command);

#endif
