Files of any size need little memory.

  $ . "$SUPPORT/session.sh"
  $ make_sample
  $ cp sample.pkg large.pkg
  $ truncate -s 400M large.pkg
  $ ulimit -v 100000
  $ varnel package --json large.pkg
  {"path":"large.pkg","ok":true,"error":null,"version":"2.10","link_target":"mainboard","file_type":2,"file_type_accepted":true,"payload_offset":174,"extension_word":7,"cold_patch":false,"entries":[{"name":"mainboard.bin","kind":"app","size":1048576},{"name":"line-card.bin","kind":"app","size":524288},{"name":"fpga-07.rbt","kind":"logic","size":262144},{"name":"hotfix-12.bin","kind":"patch","size":2048}]}
  $ varnel head large.pkg | tail -n 1
  large.pkg: good
  $ varnel coldpatch large.pkg - < large.pkg
  large.pkg: no
  -: no
  [1]
