# shellcheck shell=bash
# Sourced by the cases: sample.pkg, a good package, and ways to damage files.

varnel make-package -d "$DATA/description.txt" -p "$DATA/payload.txt" --version-text 2.10T20260115 \
  --link "sample -> mainboard" --type 2 --extension 7 --gap 3,0,0,2 --skip-length 4 --tail-length 5 sample.pkg

# put FILE OFFSET BYTES: overwrites bytes; BYTES as printf takes them
put() {
  # shellcheck disable=SC2059
  printf "$3" | dd of="$1" bs=1 seek="$2" conv=notrunc status=none
}

# Runs a command for which file permissions count even when it is root's.
with_permissions() {
  if [ "$(id -u)" -eq 0 ]; then setpriv --bounding-set=-dac_override,-dac_read_search "$@"; else "$@"; fi
}
