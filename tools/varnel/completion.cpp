// Prints the bash completion of the command, which the build calls once.

#include <iostream>

#include "arguments.h"
#include "command_line.h"

namespace {

using Words = std::vector<std::string>;

// _init_completion and _filedir are those of the package bash-completion: they split words and complete file names.
constexpr char BEGIN[] = R"(# bash completion of varnel. Generated from its options; do not edit.

_varnel() {
  local cur prev words cword split subcommand='' options='' values='' files='' prefix='' i
  _init_completion -s -n : || return
  for ((i = 1; i < cword; i++)); do
    if [[ ${words[i]} != -* ]]; then subcommand=${words[i]}; break; fi
  done
  if [[ " ${words[*]:0:cword} " == *' -- '* ]]; then prev=--; fi
  case "$subcommand $prev" in
)";

constexpr char END[] = R"(  esac
  if [[ $prev != -- && $cur == -* ]]; then values=$options files=''; fi
  if [[ $cur == *,* ]]; then prefix=${cur%,*},; fi
  if [[ $files ]]; then
    _filedir
  elif [[ $values ]]; then
    mapfile -t COMPREPLY < <(compgen -P "$prefix" -W "$values" -- "${cur#"$prefix"}")
  fi
} && complete -F _varnel varnel
)";

Words Names(const CLI::Option& option) {
  Words names;
  for (const std::string& name : option.get_snames())
    names.push_back('-' + name);
  for (const std::string& name : option.get_lnames())
    names.push_back("--" + name);
  return names;
}

std::string Joined(const Words& words, const std::string& separator = " ") {
  return CLI::detail::join(words, separator);
}

// CLI11 shows a validator of OneOf() as "{a,b}".
std::string Choices(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const size_t begin = type.find('{');
  return begin == std::string::npos
             ? ""
             : Joined(CLI::detail::split(type.substr(begin + 1, type.find('}') - begin - 1), ','));
}

// The possible values of an option.
std::string ValueRow(const std::string& subcommand, const CLI::Option& option) {
  Words patterns;
  for (const std::string& name : Names(option))
    patterns.push_back(std::string("'").append(subcommand).append(" ").append(name).append("'"));
  const std::string action = TakesPaths(option) ? "files=yes" : "values='" + Choices(option) + "'";
  return "    " + Joined(patterns, " | ") + ") " + action + " ;;\n";
}

// The rows of a "case" for the values of options, and for all other words of the subcommand.
std::string Rows(const CLI::App& command, const std::string& name, const Words& above, const Words& operands) {
  std::string rows;
  Words options = above;
  bool files = false;
  for (const CLI::Option* option : command.get_options()) {
    const Words names = Names(*option);
    options.insert(options.end(), names.begin(), names.end());
    if (option->get_positional()) files = TakesPaths(*option);
    if (!names.empty() && option->get_items_expected_max() > 0) rows += ValueRow(name, *option);
  }
  return rows + "    '" + name + " '*) options='" + Joined(options) + "' values='" + Joined(operands) +
         (files ? "' files=yes" : "'") + " ;;\n";
}

}  // namespace

int main() {
  const CommandLine commandLine;
  Words names;
  std::cout << BEGIN;
  for (const CLI::App* command : commandLine.Top().get_subcommands({}))
    names.push_back(command->get_name());
  for (const CLI::App* command : commandLine.Top().get_subcommands({})) {
    std::cout << Rows(*command, command->get_name(), {"-v", "--verbose"},
                      command->get_name() == "help" ? names : Words());
  }
  std::cout << Rows(commandLine.Top(), "", {}, names) << END;
  return std::cout.flush() ? EXIT_DONE : EXIT_BAD;
}
