# shellcheck shell=bash
# Sourced by the scripts in this folder: changes to the project's folder and defines common functions.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() {
  printf '\n== %s\n' "$*"
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo > /dev/null; then
    sudo "$@"
  else
    echo "$0: needs root, or sudo, to install: ${missing[*]}" >&2
    exit 1
  fi
}

# Installs the named Debian packages that are missing.
need() {
  missing=()
  local package
  for package in "$@"; do
    dpkg-query -W -f '${Status}\n' "$package" 2> /dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  say "Installing ${missing[*]}"
  as_root apt-get update -q || echo "$0: some package lists cannot be read; trying the installation all the same" >&2
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -qy --no-install-recommends "${missing[@]}"
}

need_build_tools() {
  need g++ cmake ninja-build ccache pkg-config libace-dev libspdlog-dev libcli11-dev rapidjson-dev \
    libgtest-dev locales groff-base help2man bash-completion python3-cram patch
}

# configure_and_build PRESET [TARGET...]
configure_and_build() {
  local preset=$1 log
  shift
  log=$(mktemp)
  say "Building (preset $preset)"
  cmake --preset "$preset" > "$log" 2>&1 || { cat "$log" >&2; rm -f "$log"; exit 1; }
  rm -f "$log"
  cmake --build --preset "$preset" ${1:+--target "$@"}
}
