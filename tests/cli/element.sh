# shellcheck shell=bash
# Sourced by the cases: an element to connect to.

# serve ARGUMENT...: starts an element and sets $address. It ends with the connection, or by itself.
serve() {
  local port
  exec {element}< <(exec "$ELEMENT" "$@")
  read -r port <&"$element"
  address=127.0.0.1:$port
}

# Messages without the port, which is another one every time.
without_port() { sed 's/127\.0\.0\.1:[0-9]*/127.0.0.1:PORT/'; }

# dismiss: ends an element that waits for nobody.
dismiss() { kill "$!" && { wait "$!" || true; }; }
