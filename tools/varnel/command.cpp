#include "command.h"

#include "help.h"

Command::Command(const std::string& purpose, const std::string& name)
    : App(purpose, name), exitStatus{"Exit status", {}}, examples{"Examples", {}} {
  set_help_flag("-h,--help", "Print this help and exit");
  fallthrough();
  formatter(std::make_shared<HelpFormatter>());
}

std::string Command::FullName() const {
  const CLI::App* parent = get_parent();
  return parent == nullptr ? get_name() : AsCommand(*parent).FullName() + ' ' + get_name();
}

void Command::SetExitStatus(const std::string& done, const std::string& bad) {
  exitStatus.paragraphs = {
      {"0", done}, {"1", bad + ", or the result could not be written."}, {"2", "The command line is wrong."}};
}

const Command& AsCommand(const CLI::App& app) {
  return dynamic_cast<const Command&>(app);
}
