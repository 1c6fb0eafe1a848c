#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "command_line.h"
#include "progress.h"

namespace VARNEL_TEST {

namespace {

using Names = std::set<std::string>;

// The names at the start of the lines of the section "Options".
Names OptionsInHelp(const std::string& help) {
  const size_t begin = help.find("\nOptions:\n");
  const std::string options = help.substr(begin, help.find("\n\n", begin) - begin);
  const std::regex line("\n +(-[a-zA-Z], )?(--[a-z-]+)");
  Names names;
  for (std::sregex_iterator found(options.begin(), options.end(), line), end; found != end; ++found) {
    names.insert(found->str(2));
    if (found->length(1) > 0) names.insert(found->str(1).substr(0, 2));
  }
  return names;
}

Names OptionsOf(const CLI::App& command) {
  Names names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_snames())
      names.insert('-' + name);
    for (const std::string& name : option->get_lnames())
      names.insert("--" + name);
  }
  return names;
}

void ExpectFormOf(const std::string& help) {
  EXPECT_TRUE(std::regex_search(help, std::regex("^[A-Z][^\n]{10,63}\\.\n\nUsage: varnel "))) << help;
  EXPECT_FALSE(std::regex_search(help, std::regex("[^\n]{81}|[^\n -~]"))) << "not ASCII, or too long a line: " << help;
  EXPECT_NE(std::string::npos, help.find("\nExit status:\n  0  ")) << help;
}

TEST(Help, OfTheCommandListsItsOptions) {
  const CommandLine commandLine;
  EXPECT_EQ(OptionsOf(commandLine.Top()), OptionsInHelp(commandLine.Top().help()));
  ExpectFormOf(commandLine.Top().help());
}

TEST(Help, OfEachSubcommandListsItsOptionsAndOperands) {
  const CommandLine commandLine;
  for (const CLI::App* command : commandLine.Top().get_subcommands({})) {
    const std::string help = command->help();
    Names options = OptionsOf(*command);
    options.insert({"-v", "--verbose"});
    EXPECT_EQ(options, OptionsInHelp(help)) << help;
    ExpectFormOf(help);
    const std::string usage =
        help.substr(help.find("Usage: "), help.find('\n', help.find("Usage: ")) - help.find("Usage: "));
    EXPECT_EQ(0U, usage.find("Usage: varnel " + command->get_name() + " [OPTION]...")) << usage;
    for (const CLI::Option* option : command->get_options()) {
      EXPECT_TRUE(!option->get_positional() || usage.find(option->get_name(true)) != usage.npos) << usage;
    }
    EXPECT_NE(std::string::npos, help.find("\nExamples:\n  varnel " + command->get_name())) << help;
  }
}

TEST(Help, OfTheCommandListsItsSubcommands) {
  const CommandLine commandLine;
  const std::string help = commandLine.Top().help();
  for (const CLI::App* command : commandLine.Top().get_subcommands({})) {
    if (command->get_name() == "help") continue;
    const std::string purpose = command->help().substr(0, command->help().find(".\n"));
    EXPECT_TRUE(std::regex_search(help, std::regex("\n  " + command->get_name() + " +" + purpose + '\n'))) << help;
  }
}

TEST(BarText, FitsTheWidth) {
  EXPECT_EQ("[====================                    ] 1/2 files", BarText(1, 2, "1/2 files", 80));
  EXPECT_EQ("[=====     ] 1/2 files", BarText(1, 2, "1/2 files", 23));
  EXPECT_EQ("1/2 files", BarText(1, 2, "1/2 files", 22));
  EXPECT_EQ("1/2", BarText(1, 2, "1/2 files", 4));
  EXPECT_EQ("", BarText(1, 2, "1/2 files", 1));
  for (size_t columns = 1; columns < 90; ++columns)
    EXPECT_LT(BarText(3, 2, "3/2 files", columns).size(), columns);
}

}  // namespace

}  // namespace VARNEL_TEST
