  $ . "$SUPPORT/session.sh"
  $ make_sample

Files without the magic are skipped, links and special files are not followed.

  $ mkdir -p tree/deep/deeper
  $ cp sample.pkg tree/deep/good.pkg
  $ head -c 50 sample.pkg > tree/deep/deeper/cut.pkg
  $ echo text > tree/notes.txt
  $ : > tree/empty
  $ mkfifo tree/pipe
  $ ln -s .. tree/deep/loop
  $ ln -s ../sample.pkg tree/link.pkg
  $ varnel package tree
  tree/deep/deeper/cut.pkg: bad: directory header: the file ends after 50 of 64 bytes
  tree/deep/good.pkg: good
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
  4 files: 1 good, 1 bad, 2 other
  [1]
  $ mkdir good
  $ cp sample.pkg tree/notes.txt good
  $ varnel package --json --only-bad good
  $ varnel package --json good | cut -c 1-40
  {"path":"good/sample.pkg","ok":true,"err

Depth is not limited by the number of open files.

  $ deepest=deep$(printf '/d%.0s' {1..300})
  $ mkdir -p "$deepest"
  $ cp sample.pkg "$deepest"
  $ (ulimit -n 64; varnel package deep | sed 's#\(/d\)*/#/#')
  deep/sample.pkg: good
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
  1 file: 1 good, 0 bad, 0 other

Special files, and folders where a file is expected.

  $ mkdir folder
  $ varnel package /dev/null <(varnel make-package -) | sed 's#/dev/fd/[0-9]*#/dev/fd/N#'
  /dev/null: bad: not a regular file
  /dev/fd/N: good
    version         1.0
    link target     package
    file type       1
    payload offset  149
    cold patch      no
    entries         none: no description section
  [1]
  $ varnel head folder
  folder: bad: is a folder
  [1]

Files and folders that may not be read.

  $ mkdir -p secret/closed
  $ cp sample.pkg secret/closed/a.pkg
  $ cp sample.pkg secret/b.pkg
  $ chmod 0 secret/b.pkg secret/closed
  $ with_permissions varnel package secret secret/b.pkg
  secret/closed: bad: Permission denied
  secret/b.pkg: bad: Permission denied
  secret/b.pkg: bad: Permission denied
  3 files: 0 good, 3 bad, 0 other
  [1]
  $ with_permissions varnel package --json secret/b.pkg 2>&1 | cut -c 1-60
  {"path":"secret/b.pkg","ok":false,"error":"Permission denied
  [1]
  $ with_permissions varnel coldpatch secret/b.pkg
  ! varnel: secret/b.pkg: Permission denied
  [1]
  $ with_permissions varnel head secret/b.pkg
  secret/b.pkg: bad: Permission denied
  [1]
  $ chmod -R u+rwx secret
