# shellcheck shell=bash
# Sourced by the cases: an element to connect to.

# serve ARGUMENT...: starts an element and sets $address. It ends with the connection, or by itself.
serve() {
  local port output
  exec {output}< <(exec "$ELEMENT" "$@")
  read -r port <&"$output"
  export address=127.0.0.1:$port
}

# The name of this machine to itself; its number where no name is known.
local_name() { if getent hosts localhost > /dev/null; then echo localhost; else echo 127.0.0.1; fi; }

# dismiss: ends an element that waits for nobody.
dismiss() { kill "$!" && { wait "$!" || true; }; }

# Messages without the port, which is another one every time.
without_port() { sed 's/127\.0\.0\.1:[0-9]*/127.0.0.1:PORT/'; }
