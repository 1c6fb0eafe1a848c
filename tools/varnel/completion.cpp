#include "completion.h"

#include "option_view.h"

namespace {

// The parts of the script that are the same for every command. "values" holds what the word may be, "files" that it may
// be a file, which is left to readline: it knows quotes and "~".
constexpr char BEGIN[] = R"(# bash completion of NAME. Generated from its options; not to be edited.

_NAME() {
  local word='' before='' subcommand='' options='' values='' prefix='' files='' plain='' joined='' i
  # bash cuts words at "=" and ":"; here they are put together again.
  local -a words=()
  for ((i = 0; i <= COMP_CWORD; i++)); do
    if [[ $joined || ($i -gt 1 && ${COMP_WORDS[i]} =~ ^[=:]+$) ]]; then
      words[-1]+=${COMP_WORDS[i]}
      if [[ ${COMP_WORDS[i]} =~ ^[=:]+$ ]]; then joined=yes; else joined=''; fi
    else
      words+=("${COMP_WORDS[i]}")
    fi
  done
  word=${words[-1]}
  for ((i = 1; i < ${#words[@]} - 1; i++)); do
    if [[ ${words[i]} == -- ]]; then
      plain=yes
    elif [[ ! $subcommand && ${words[i]} != -* ]]; then
      subcommand=${words[i]}
    fi
  done
  if [[ ! $plain ]]; then before=${words[-2]}; fi
  if [[ ! $plain && $word == --*=* ]]; then
    before=${word%%=*}
    word=${word#*=}
  fi

)";

constexpr char END[] = R"(
  COMPREPLY=()
  if [[ ${words[-2]} =~ ^[0-9]*[\<\>]+$ ]]; then values='' files=yes; fi
  if [[ $word == *,* && $values == *,* ]]; then prefix=${word%,*},; fi
  values=${values//,/ }
  if [[ $values ]]; then
    mapfile -t COMPREPLY < <(compgen -P "$prefix" -W "$values" -- "${word#"$prefix"}")
  fi
  [[ $files ]] || compopt +o default +o bashdefault 2> /dev/null || true
}

complete -o default -o bashdefault -F _NAME NAME
)";

std::string Joined(const std::vector<std::string>& words, const char* separator) {
  return CLI::detail::join(words, separator);
}

// A row of a "case": for `pattern`, what a value or an argument may be.
std::string Row(const std::string& pattern, const std::string& actions) {
  return "    " + pattern + ") " + actions + " ;;\n";
}

std::string Expected(const OptionView& view) {
  if (!view.choices.empty()) return "values='" + Joined(view.choices, view.delimiter == '\0' ? " " : ",") + "'";
  return view.TakesPath() ? "files=yes" : ":";
}

std::string Patterns(const Command& command, const OptionView& view) {
  std::vector<std::string> patterns;
  for (const std::string& name : view.names)
    patterns.push_back("'" + command.get_name() + ' ' + name + "'");
  return Joined(patterns, " | ");
}

std::string ValueRows(const Command& command) {
  std::string rows;
  for (const OptionView& view : Options(command)) {
    if (!view.argument.empty()) rows += Row(Patterns(command, view), Expected(view));
  }
  return rows;
}

std::string OptionNames(const Command& command) {
  std::vector<std::string> names;
  for (const OptionView& view : Options(command))
    names.insert(names.end(), view.names.begin(), view.names.end());
  return Joined(names, " ");
}

std::string ArgumentRow(const Command& command) {
  std::string actions = "options='" + OptionNames(command) + "'";
  for (const OptionView& view : Arguments(command)) {
    if (view.TakesPath()) actions += " files=yes";
  }
  return Row(command.get_name(), actions);
}

std::string TopRow(const Command& top) {
  std::vector<std::string> names;
  for (const Command* subcommand : Subcommands(top))
    names.push_back(subcommand->get_name());
  return Row("''", "options='" + OptionNames(top) + "' values='" + Joined(names, " ") + "'");
}

}  // namespace

std::string BashCompletion(const Command& top) {
  std::string script = BEGIN;
  std::string arguments = TopRow(top);
  script += "  case \"$subcommand $before\" in\n";
  for (const Command* subcommand : Subcommands(top)) {
    script += ValueRows(*subcommand);
    arguments += ArgumentRow(*subcommand);
  }
  script += "    *) before='' ;;\n  esac\n";
  script += "  if [[ ! $before ]]; then\n    case $subcommand in\n" + arguments + "    esac\n";
  script += "    if [[ ! $plain && $word == -* ]]; then values=$options files=''; fi\n  fi\n";
  script += END;
  return CLI::detail::find_and_replace(script, "NAME", top.get_name());
}
