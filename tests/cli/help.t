  $ . "$SUPPORT/session.sh"
  $ varnel --help
  Tools for NE software packages and reports.
  
  Usage: varnel [OPTION]... SUBCOMMAND ...
  
  Results go to standard output, diagnostics to standard error. Control characters
  in names and texts are shown as \xNN. On a terminal the result is coloured,
  unless the environment variable NO_COLOR is set and not empty or TERM is dumb.
  
  If an operand of a subcommand starts with -, write -- before it.
  
  Options:
    -h, --help            Print this help and exit
    -V, --version         Print the version and exit
    -v, --verbose         Show the library's log lines on standard error
  
  Subcommands:
    package       Check NE software files and list the entries of packages
    head          Show both headers of an NE software file, field by field
    make-package  Write an NE software file with valid headers
    coldpatch     Report whether files are cold patches
    report        Follow package loads and script runs in the reports of elements
    tl1           Cut a stream of bytes into TL1 messages and show their parts
    alarms        List the active alarms of TL1 streams
    ask           Send TL1 commands to an element and print the answers
    watch         Follow many elements and print their messages
    slot          Show a slot in each form in which it can be written
    board         Report whether boards are system-control boards
  
  Run varnel help SUBCOMMAND for its options, with examples.
  
  Exit status:
    0  Done.
    1  Something examined is bad, unreadable, refused or incomplete, or the result
       could not be written.
    2  The command line is wrong.

The help of each subcommand fits 80 columns and has the same sections in the same order.

  $ sections() { sed -nE 's/^(Usage|Options|Exit status|Examples):.*/\1/p' | xargs; }
  $ for subcommand in $(subcommands); do
  >   varnel "$subcommand" --help > text || echo "$subcommand ends with $?"
  >   grep -nE '.{81}|[[:blank:]]$' text
  >   grep -qE "^Usage: varnel $subcommand " text || echo "$subcommand has another usage"
  >   grep -qE "^  varnel $subcommand " text || echo "$subcommand has no example"
  >   varnel help "$subcommand" | cmp - text
  >   sections < text
  > done | sort -u
  Usage Options Exit status Examples

  $ varnel --version | sed 's/[0-9][0-9]*/N/g'
  varnel N.N.N
