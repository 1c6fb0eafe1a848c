# shellcheck shell=bash
# Sourced by the sessions: the command with its standard error marked, sample files, and elements to connect to.

# Runs a command. The lines of its standard error follow its output, each after "! ".
marked() {
  local errors status=0
  { errors=$("$@" 2>&1 >&3 3>&-) || status=$?; } 3>&1
  [ -z "$errors" ] || printf '! %s\n' "${errors//$'\n'/$'\n! '}" >&2
  return "$status"
}

varnel() { marked command varnel "$@"; }

subcommands() { varnel --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z0-9-]*\) .*/\1/p'; }

# Runs a command for which file permissions count even if the user is root.
with_permissions() {
  if [ "$(id -u)" -eq 0 ]; then marked setpriv --bounding-set=-dac_override,-dac_read_search "$@"; else "$@"; fi
}

on_terminal() { script -qec "$1" /dev/null < /dev/null; }

# Writes sample.pkg, a good package.
make_sample() {
  varnel make-package -d "$DATA/description.txt" -p "$DATA/payload.txt" --version-text 2.10T20260115 \
    --link "sample -> mainboard" --type 2 --extension 7 --gap 3,0,0,2 --skip-length 4 --tail-length 5 sample.pkg
}

# put FILE OFFSET BYTES: overwrites bytes; BYTES is a format of printf
put() {
  # shellcheck disable=SC2059
  printf "$3" | dd of="$1" bs=1 seek="$2" conv=notrunc status=none
}

# serve ARGUMENT...: starts an element and sets $address. It ends with the connection or the session.
serve() {
  local port output
  exec {output}< <(exec varnel_element "$@" < /dev/null)
  read -r port <&"$output"
  export address=127.0.0.1:$port
}

# The name of the loopback address; its number if it has no name.
local_name() { if getent hosts localhost > /dev/null; then echo localhost; else echo 127.0.0.1; fi; }

# hold COMMAND...: creates a pipe named `pipe` that contains the output of a command and stays open.
hold() {
  local feed
  rm -f pipe
  mkfifo pipe
  exec {feed}<> pipe
  "$@" >&"$feed"
}

# Replaces the times at which messages arrived.
without_times() { sed -E 's/"received":"[-0-9]{10}T[0-9:]{8}\.[0-9]{3}Z"/"received":"TIME"/'; }

# Replaces the port of an element, which changes from run to run.
without_port() { sed 's/127\.0\.0\.1:[0-9]*/127.0.0.1:PORT/'; }
