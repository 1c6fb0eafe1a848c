Closed standard streams, closed pipes, full disks. The marks of standard error need open streams: "command" omits them.

  $ . "$SUPPORT/session.sh"
  $ make_sample
  $ command varnel package - <&- 2> /dev/null
  -: bad: Bad file descriptor
  [1]
  $ command varnel coldpatch - <&- > /dev/null
  varnel: -: Bad file descriptor
  [1]
  $ command varnel make-package -d - out.pkg <&- > /dev/null
  varnel: out.pkg: cannot read -: Bad file descriptor
  [1]
  $ command varnel report <&- > /dev/null
  varnel: -: Bad file descriptor
  [1]
  $ command varnel slot - <&- > /dev/null
  varnel: standard input: cannot read
  [1]
  $ command varnel package - < sample.pkg >&-
  varnel: standard output: cannot write
  [1]
  $ command varnel make-package - >&- 2>&-
  [1]
  $ command varnel -v make-package out.pkg 2>&-
  $ command varnel package out.pkg - < sample.pkg 2>&-
  out.pkg: good
    version         1.0
    link target     package
    file type       1
    payload offset  149
    cold patch      no
    entries         none: no description section
  -: good
    version         2.10
    link target     mainboard
    file type       2
    extension word  7
    payload offset  174
    cold patch      no
    entries         4
      NAME           KIND         SIZE
      mainboard.bin  app       1048576
      line-card.bin  app        524288
      fpga-07.rbt    logic      262144
      hotfix-12.bin  patch        2048
  $ varnel package sample.pkg > /dev/full
  ! varnel: standard output: cannot write
  [1]
  $ (set +o pipefail; yes 3-5 | command timeout 20 varnel slot - > /dev/full)
  varnel: standard output: cannot write
  [1]

  $ {
  >   echo '[File Description]'
  >   for i in $(seq 5000); do echo "file-$i:app:3:rw:$i:2026-01-15:core:x"; done
  > } > many.txt
  $ varnel make-package -d many.txt many.pkg
  $ command varnel package many.pkg | head -n 1
  many.pkg: good
  [141]
  $ (yes 3-5 || true) | command varnel slot --json - | head -n 1
  {"text":"3-5","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":null}
  [141]
  $ for _ in $(seq 500); do cat "$PROJECT/tests/captures/00-by-the-book.tl1"; done > many
  $ command varnel tl1 --json many | head -n 1
  {"type":"acknowledgement","source":"many","received":null,"offset":0,"length":7,"complete":true,"sid":null,"date":null,"time":null,"ctag":"1","atag":null,"code":"IP","verb":null,"lines":[],"text":[],"severity":null,"missed":null,"continues":false,"raw":null}
  [141]
