#ifndef VARNEL_TOOLS_COMMAND_H
#define VARNEL_TOOLS_COMMAND_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// A paragraph of the help and of the manual page. A term stands in front of the text that explains it.
struct Paragraph {
  std::string term;  ///< empty for plain text
  std::string text;
};

struct Section {
  std::string heading;  ///< empty for what needs none
  std::vector<Paragraph> paragraphs;
};

/// A command together with all that its help and its manual page tell of it. Both are printed from this alone.
class Command : public CLI::App {
 public:
  Command(const std::string& purpose, const std::string& name);

  /// "varnel slot".
  std::string FullName() const;

  /// Says what the exit statuses 0 and 1 mean, `bad` without the period at its end; the rest holds for all commands.
  void SetExitStatus(const std::string& done, const std::string& bad);

  std::vector<Section> explanation;
  Section exitStatus;
  Section examples;  ///< terms are command lines
};

/// The commands of a family are all of this class.
const Command& AsCommand(const CLI::App& app);

#endif
