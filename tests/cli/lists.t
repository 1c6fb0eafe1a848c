Lists that must be complete. Do not refresh this file: it has no output.

  $ . "$SUPPORT/session.sh"

The README has a row for each subcommand, and a document names each.

  $ for subcommand in $(subcommands); do
  >   grep -q "^| \`varnel $subcommand " "$PROJECT/README.md" || echo "README.md has no row for $subcommand"
  >   grep -q "\`varnel $subcommand[\` ]" "$PROJECT"/docs/*.md || echo "no document in docs/ names varnel $subcommand"
  > done

Each subcommand has sessions.

  $ for subcommand in $(subcommands); do
  >   [ -e "$SUPPORT/${subcommand//-/_}.t" ] || echo "tests/cli has no ${subcommand//-/_}.t"
  > done

Each subcommand has a line in terminal.t that passes hostile bytes to it.

  $ for subcommand in $(subcommands); do
  >   grep -q "^  \$ show \(-v \)\?$subcommand .*\$bad" "$SUPPORT/terminal.t" || echo "terminal.t has no hostile bytes for $subcommand"
  > done

Each example has a session in a document.

  $ for example in "$PROJECT"/examples/*.cpp; do
  >   grep -q "^\$ $(basename "$example" .cpp)\b" "$PROJECT"/docs/*.md || echo "no document in docs/ runs $example"
  > done
