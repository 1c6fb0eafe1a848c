# shellcheck shell=bash
# shellcheck disable=SC2034
# Sourced by the tests in this folder.

set -euo pipefail
export LC_ALL=C.UTF-8
failures=0

complain() {
  echo "$*" >&2
  failures=1
}

# expect WHAT WANTED GOT
expect() {
  [ "$2" = "$3" ] || complain "$1:"$'\n'"$(diff <(echo "$2") <(echo "$3"))"
}

subcommands() { "$1" help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z0-9-]*\) .*/\1/p'; }

# From standard input, the options of a help or a rendered page.
options() { sed -nE 's/^ +((-[a-zA-Z], )?--[a-z-]+).*/\1/p' | tr -d ' ,' | sed 's/\(-[a-zA-Z]\)--/\1 --/' | sort; }
