  $ . "$SUPPORT/session.sh"
  $ make_sample
  $ varnel package sample.pkg
  sample.pkg: good
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
  $ varnel package --json sample.pkg
  {"path":"sample.pkg","ok":true,"error":null,"version":"2.10","link_target":"mainboard","file_type":2,"file_type_accepted":true,"payload_offset":174,"extension_word":7,"cold_patch":false,"entries":[{"name":"mainboard.bin","kind":"app","size":1048576},{"name":"line-card.bin","kind":"app","size":524288},{"name":"fpga-07.rbt","kind":"logic","size":262144},{"name":"hotfix-12.bin","kind":"patch","size":2048}]}
  $ varnel package - < sample.pkg
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
  $ cat sample.pkg | varnel package --json -
  {"path":"-","ok":true,"error":null,"version":"2.10","link_target":"mainboard","file_type":2,"file_type_accepted":true,"payload_offset":174,"extension_word":7,"cold_patch":false,"entries":[{"name":"mainboard.bin","kind":"app","size":1048576},{"name":"line-card.bin","kind":"app","size":524288},{"name":"fpga-07.rbt","kind":"logic","size":262144},{"name":"hotfix-12.bin","kind":"patch","size":2048}]}

Several files: one bad file makes the exit status 1.

  $ cp sample.pkg bad.pkg
  $ put bad.pkg 20 X
  $ varnel package sample.pkg bad.pkg
  sample.pkg: good
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
  bad.pkg: bad: directory header: checksum 0x00000005 stored, 0x0000005d computed
  [1]
  $ varnel package --only-bad sample.pkg bad.pkg
  bad.pkg: bad: directory header: checksum 0x00000005 stored, 0x0000005d computed
  [1]
  $ varnel package --quiet sample.pkg
  $ varnel package -q sample.pkg absent.pkg
  [1]

File types.

  $ for type in 0 13 14 15 16 0x201 514 65535; do varnel make-package --type $type type-$type.pkg; done
  $ varnel package type-*.pkg
  type-0.pkg: good
    version         1.0
    link target     package
    file type       0
    payload offset  149
    cold patch      no
    entries         none: no description section
  type-0x201.pkg: good
    version         1.0
    link target     package
    file type       513
    payload offset  149
    cold patch      no
    entries         none: no description section
  type-13.pkg: good
    version         1.0
    link target     package
    file type       13
    payload offset  149
    cold patch      no
    entries         none: no description section
  type-14.pkg: bad: file type 14 is not accepted
    version         1.0
    link target     package
    file type       14 (not accepted)
    payload offset  149
    cold patch      no
    entries         none: no description section
  type-15.pkg: good
    version         1.0
    link target     package
    file type       15
    payload offset  149
    cold patch      no
    entries         none: no description section
  type-16.pkg: bad: file type 16 is not accepted
    version         1.0
    link target     package
    file type       16 (not accepted)
    payload offset  149
    cold patch      no
    entries         none: no description section
  type-514.pkg: bad: file type 514 is not accepted
    version         1.0
    link target     package
    file type       514 (not accepted)
    payload offset  149
    cold patch      no
    entries         none: no description section
  type-65535.pkg: bad: file type 65535 is not accepted
    version         1.0
    link target     package
    file type       65535 (not accepted)
    payload offset  149
    cold patch      no
    entries         none: no description section
  [1]
  $ varnel make-package --type 14 --version-text "" refused.pkg
  $ varnel package --json refused.pkg absent.pkg
  {"path":"refused.pkg","ok":false,"error":"file type 14 is not accepted","version":null,"link_target":"package","file_type":14,"file_type_accepted":false,"payload_offset":146,"extension_word":null,"cold_patch":false,"entries":null}
  {"path":"absent.pkg","ok":false,"error":"No such file or directory","version":null,"link_target":null,"file_type":null,"file_type_accepted":null,"payload_offset":null,"extension_word":null,"cold_patch":null,"entries":null}
  [1]

Descriptions: none, without entries, with a line that is too long, of a cold patch.

  $ varnel make-package -p "$DATA/payload.txt" plain.pkg
  $ varnel package plain.pkg
  plain.pkg: good
    version         1.0
    link target     package
    file type       1
    payload offset  149
    cold patch      no
    entries         none: no description section
  $ varnel package --json plain.pkg
  {"path":"plain.pkg","ok":true,"error":null,"version":"1.0","link_target":"package","file_type":1,"file_type_accepted":true,"payload_offset":149,"extension_word":null,"cold_patch":false,"entries":null}
  $ printf '[File Description]\n[END]\n' > empty.txt
  $ { printf '[File Description]\na:b:c:d:5:f:g:h\n'; printf 'x:b:c:d:5:f:g:%0256d\ny:b:c:d:5:f:g:h\n' 0; } > long.txt
  $ for name in empty long; do varnel make-package -d $name.txt $name.pkg; done
  $ varnel package empty.pkg long.pkg
  empty.pkg: good
    version         1.0
    link target     package
    file type       1
    payload offset  149
    cold patch      no
    entries         0
  long.pkg: good
    version         1.0
    link target     package
    file type       1
    payload offset  149
    cold patch      no
    entries         1
      NAME  KIND        SIZE
      a     b              5
  ! varnel: empty.pkg: package description: no valid entry (expected eight columns separated by colons)
  ! varnel: long.pkg: package description: line 4: a column is longer than 255 bytes, the entries from there on are not listed
  $ varnel package --json empty.pkg long.pkg
  {"path":"empty.pkg","ok":true,"error":null,"version":"1.0","link_target":"package","file_type":1,"file_type_accepted":true,"payload_offset":149,"extension_word":null,"cold_patch":false,"entries":[]}
  {"path":"long.pkg","ok":true,"error":null,"version":"1.0","link_target":"package","file_type":1,"file_type_accepted":true,"payload_offset":149,"extension_word":null,"cold_patch":false,"entries":[{"name":"a","kind":"b","size":5}]}
  ! varnel: empty.pkg: package description: no valid entry (expected eight columns separated by colons)
  ! varnel: long.pkg: package description: line 4: a column is longer than 255 bytes, the entries from there on are not listed
  $ varnel package -q empty.pkg
  $ printf '[COLDPATCH]\n[File Description]\na:b:c:d:5:f:g:h\n' > patch.txt
  $ varnel make-package -d patch.txt patch.pkg
  $ varnel package patch.pkg
  patch.pkg: good
    version         1.0
    link target     package
    file type       1
    payload offset  149
    cold patch      yes
    entries         1
      NAME  KIND        SIZE
      a     b              5

Damaged headers.

  $ mkdir headers
  $ damaged() { cp sample.pkg "headers/$1"; put "headers/$1" "$2" "$3"; }
  $ damaged dir-magic.pkg 3 X
  $ damaged dir-sum.pkg 7 '\007'
  $ damaged file-magic.pkg 69 '\000'
  $ damaged file-sum.pkg 76 '\377'
  $ damaged link-length.pkg 115 '\377'   # the sum no longer fits
  $ head -c 63 sample.pkg > headers/dir-short.pkg
  $ head -c 100 sample.pkg > headers/file-short.pkg
  $ : > headers/empty.pkg
  $ varnel package headers/*
  headers/dir-magic.pkg: bad: directory header: magic word 0x51584458, not 0x51584444 ("QXDD")
  headers/dir-short.pkg: bad: directory header: the file ends after 63 of 64 bytes
  headers/dir-sum.pkg: bad: directory header: checksum 0x00000007 stored, 0x00000005 computed
  headers/empty.pkg: bad: directory header: the file ends after 0 of 64 bytes
  headers/file-magic.pkg: bad: file header: magic word 0x00584646, not 0x51584646 ("QXFF")
  headers/file-short.pkg: bad: file header: the file ends after 31 of 64 bytes
  headers/file-sum.pkg: bad: file header: checksum 0x000000ff stored, 0x0000002b computed
  headers/link-length.pkg: bad: file header: checksum 0x0000002b stored, 0x0000012a computed
  [1]

Damaged texts. The last file's link text is 1032 bytes long instead of 8, with a correct checksum.

  $ varnel make-package --link "ab -> cd" --version-text 1.0 texts.pkg
  $ head -c 130 texts.pkg > link-short.pkg
  $ head -c 137 texts.pkg > version-short.pkg
  $ cp texts.pkg no-marker.pkg
  $ put no-marker.pkg 131 ' >  '
  $ cp texts.pkg link-long.pkg
  $ put link-long.pkg 110 '\004\010'
  $ put link-long.pkg 68 '\000\000\000\020'
  $ varnel package link-short.pkg version-short.pkg no-marker.pkg link-long.pkg
  link-short.pkg: bad: link text: the file ends after 2 of 8 bytes
  version-short.pkg: bad: version text: the file ends after 1 of 3 bytes
  no-marker.pkg: bad: link text: it contains no "-> "
  link-long.pkg: bad: link text: 1032 bytes, at most 1023 are allowed
  [1]

A package with everything, through a symbolic link, good and damaged.

  $ cat > description.txt << 'END'
  > [COLDPATCH]
  > [File Description]
  > mainboard.bin : app : c : d : 1048576 : f : g : h
  > hotfix.bin : patch : c : d : 2048 : f : g : h
  > [END]
  > END
  $ varnel make-package -d description.txt -p "$DATA/payload.txt" --version-text 2.10T20260115 --link "a -> mainboard" \
  >   --type 2 --extension 7 --gap 1,2,3,4 made.pkg
  $ ln -s made.pkg link.pkg
  $ varnel package link.pkg
  link.pkg: good
    version         2.10
    link target     mainboard
    file type       2
    extension word  7
    payload offset  165
    cold patch      yes
    entries         2
      NAME           KIND         SIZE
      mainboard.bin  app       1048576
      hotfix.bin     patch        2048
  $ varnel coldpatch link.pkg
  link.pkg: yes
  $ varnel head link.pkg | grep -v '^ *[0-9]'
  directory header at offset 0
    checksum 0x0000000a stored, 0x0000000a computed: correct
  file header at offset 74
    checksum 0x0000001d stored, 0x0000001d computed: correct
  link.pkg: good
  $ put made.pkg 100 X
  $ varnel package link.pkg
  link.pkg: bad: file header: checksum 0x0000001d stored, 0x00000075 computed
  [1]
  $ varnel coldpatch link.pkg
  link.pkg: yes
  $ varnel head link.pkg | tail -n 1
  link.pkg: bad: file header: checksum 0x0000001d stored, 0x00000075 computed
  [1]
