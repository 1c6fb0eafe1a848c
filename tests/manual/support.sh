# shellcheck shell=bash
# shellcheck disable=SC2034
# Sourced by the tests beside it, with VARNEL MANUAL-PROGRAM as arguments: what the help says, and the manual in $work.

set -euo pipefail
export LC_ALL=C.UTF-8
varnel=$1
manual=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

complain() {
  echo "$*" >&2
  failures=1
}

# expect WHAT WANTED GOT
expect() {
  [ "$2" = "$3" ] || complain "$1:"$'\n'"$(diff <(echo "$2") <(echo "$3"))"
}

# help_of SUBCOMMAND, which is empty for the command itself
help_of() { "$varnel" ${1:+"$1"} --help; }

# From standard input, the lines of a section of a help, without their margin.
help_section() { sed -n "/^$1:\$/,/^\$/s/^  \\([^ ]\\)/\\1/p"; }

subcommands() { help_of '' | help_section Subcommands | sed -n 's/^\([a-z0-9-]*\) .*/\1/p'; }

# From a list of options with their texts, their names and arguments.
only_options() { grep -oE '^(-[a-zA-Z], )?--[a-z-]+( [A-Z][A-Z:,]*)?( |$)' | sed 's/ *$//' | sort; }
