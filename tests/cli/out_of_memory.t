  $ . "$SUPPORT/session.sh"
  $ make_sample
  $ cp sample.pkg large.pkg
  $ truncate -s 3G large.pkg
  $ ulimit -v 2000000
  $ varnel package large.pkg sample.pkg | grep pkg
  large.pkg: bad: Cannot allocate memory
  sample.pkg: good
  [1]
  $ varnel package --json large.pkg
  {"path":"large.pkg","ok":false,"error":"Cannot allocate memory","version":null,"link_target":null,"file_type":null,"file_type_accepted":null,"payload_offset":null,"extension_word":null,"cold_patch":null,"entries":null}
  [1]
  $ varnel coldpatch large.pkg sample.pkg
  sample.pkg: no
  ! varnel: large.pkg: Cannot allocate memory
  [1]
  $ varnel coldpatch --json large.pkg
  {"path":"large.pkg","cold_patch":null}
  ! varnel: large.pkg: Cannot allocate memory
  [1]
