  $ . "$SUPPORT/session.sh"
  $ varnel make-package --type 2 --extension 0x1234 --gap 1,2,3,4 --skip-length 2 --link "a -> b" --version-text 1T2 \
  >   --tail-length 3 -d <(echo '[File Description]') -p <(printf payload) small.pkg
  $ od -A d -t x1z small.pkg
  0000000 51 58 44 44 00 00 00 0a 00 00 00 00 00 00 00 00  >QXDD............<
  0000016 00 00 00 00 00 00 00 00 00 00 00 01 00 00 00 00  >................<
  0000032 00 02 00 03 00 04 00 00 00 00 00 00 00 00 00 00  >................<
  0000048 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  >................<
  0000064 00 00 00 00 00 00 00 00 00 00 51 58 46 46 00 00  >..........QXFF..<
  0000080 00 10 00 00 00 00 00 00 00 00 00 00 00 00 00 00  >................<
  0000096 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 00  >................<
  0000112 00 00 00 00 00 00 00 02 00 06 00 03 00 03 00 00  >................<
  0000128 00 00 00 00 00 00 00 00 00 00 12 34 00 00 61 20  >...........4..a <
  0000144 2d 3e 20 62 31 54 32 00 00 00 0a 5b 46 69 6c 65  >-> b1T2....[File<
  0000160 20 44 65 73 63 72 69 70 74 69 6f 6e 5d 0a 70 61  > Description].pa<
  0000176 79 6c 6f 61 64                                   >yload<
  0000181
  $ varnel package small.pkg
  small.pkg: good
    version         1
    link target     b
    file type       2
    extension word  4660
    payload offset  152
    cold patch      no
    entries         0
  ! varnel: small.pkg: package description: no valid entry (expected eight columns separated by colons)

To and from standard streams. A file that cannot be read is noticed before the first byte is written.

  $ varnel make-package - | varnel package -
  -: good
    version         1.0
    link target     package
    file type       1
    payload offset  149
    cold patch      no
    entries         none: no description section
  $ varnel make-package -d - -p "$DATA/payload.txt" out.pkg < "$DATA/description.txt"
  $ varnel package out.pkg | tail -n 4
      mainboard.bin  app       1048576
      line-card.bin  app        524288
      fpga-07.rbt    logic      262144
      hotfix-12.bin  patch        2048
  $ (varnel make-package -d absent - > output); wc -c < output
  ! varnel: -: cannot read absent: No such file or directory
  0
  $ (varnel make-package -p absent - > output); wc -c < output
  ! varnel: -: cannot read absent: No such file or directory
  0

The longest texts and areas, and the longest names.

  $ mkdir limits && cd limits
  $ varnel make-package --link "-> $(printf '%01020d' 0)" --version-text "$(printf '%065534d' 0)" \
  >   --gap 65535,65535,65535,65535 --skip-length 65535 --tail-length 65535 big.pkg
  $ varnel package --json big.pkg | sed 's/0\{100,\}/0..0/g'
  {"path":"big.pkg","ok":true,"error":null,"version":"0..0","link_target":"0..0","file_type":1,"file_type_accepted":true,"payload_offset":459895,"extension_word":null,"cold_patch":false,"entries":null}
  $ varnel make-package "$(printf '%0255d' 0)"
  $ varnel make-package "$PWD/$(printf '%0255d' 1)"
  $ varnel make-package "$(printf '%0256d' 0)" 2>&1 | sed 's/0\{100,\}/0..0/'
  ! varnel: 0..0: cannot write: File name too long
  [1]
  $ ls -A | sed 's/0\{100,\}/0..0/'
  0..0
  0..01
  big.pkg
  $ cd ..

Outputs that cannot be written leave nothing.

  $ mkdir unwritable && cd unwritable
  $ mkdir folder closed
  $ chmod 555 closed
  $ varnel make-package folder
  ! varnel: folder: is a folder
  [1]
  $ varnel make-package absent/out.pkg
  ! varnel: absent/out.pkg: cannot write: No such file or directory
  [1]
  $ varnel make-package /dev/null
  ! varnel: /dev/null: not a regular file
  [1]
  $ varnel make-package -d absent.txt out.pkg
  ! varnel: out.pkg: cannot read absent.txt: No such file or directory
  [1]
  $ varnel make-package - > /dev/full
  ! varnel: -: cannot write: No space left on device
  [1]
  $ with_permissions varnel make-package closed/out.pkg
  ! varnel: closed/out.pkg: cannot write: Permission denied
  [1]
  $ ls -A . closed
  .:
  closed
  folder
  
  closed:
  $ chmod 755 closed
  $ cd ..

Wrong usage exits with 2 and writes nothing.

  $ mkdir wrong && cd wrong
  $ varnel make-package --type 65536 out.pkg
  ! varnel: --type: "65536" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
  ! Try "varnel make-package --help".
  [2]
  $ varnel make-package --type x out.pkg
  ! varnel: --type: "x" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
  ! Try "varnel make-package --help".
  [2]
  $ varnel make-package --type -1 out.pkg
  ! varnel: --type: "-1" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
  ! Try "varnel make-package --help".
  [2]
  $ varnel make-package --extension 1 out.pkg
  ! varnel: --extension: requires --type 2
  ! Try "varnel make-package --help".
  [2]
  $ varnel make-package --link "no marker" out.pkg
  ! varnel: --link: has no "-> " (expected NAME -> TARGET)
  ! Try "varnel make-package --help".
  [2]
  $ varnel make-package --link "a -> $(printf '%01024d' 0)" out.pkg
  ! varnel: --link: is longer than 1023 bytes
  ! Try "varnel make-package --help".
  [2]
  $ varnel make-package --version-text "$(printf '%065535d' 0)" out.pkg
  ! varnel: --version-text: is longer than 65534 bytes
  ! Try "varnel make-package --help".
  [2]
  $ varnel make-package --gap 1,2,3,4,5 out.pkg
  ! varnel: --gap: has too many values
  ! Try "varnel make-package --help".
  [2]
  $ varnel make-package -d - -p - out.pkg
  ! varnel: --payload: standard input is already read by --description
  ! Try "varnel make-package --help".
  [2]
  $ varnel make-package
  ! varnel: OUTPUT is required
  ! Try "varnel make-package --help".
  [2]
  $ ls -A
  $ cd ..

Symbolic links are replaced, their targets and other folders stay as they are.

  $ mkdir links && cd links
  $ HOME=$PWD/home TMPDIR=$PWD/temporary
  $ mkdir home temporary away
  $ echo precious > away/target
  $ ln -s away/target link
  $ ln -s absent dangling
  $ ln -s loop loop
  $ ln -s away folder
  $ umask 022
  $ for name in link dangling loop folder/new; do varnel make-package "$name" || echo "$name: status $?"; done
  $ stat -c '%A %F %n' link dangling loop away/new
  -rw-r--r-- regular file link
  -rw-r--r-- regular file dangling
  -rw-r--r-- regular file loop
  -rw-r--r-- regular file away/new
  $ cat away/target
  precious
  $ ln -sf away/target link
  $ (umask 027; varnel make-package link)
  $ stat -c '%A %s' link
  -rw-r----- 149

While it is written, the package is a temporary file that only its owner may read.

  $ mkfifo payload
  $ varnel make-package -p payload slow &
  $ exec {feed}> payload
  $ while ! temporary=$(ls -A | grep '^\.varnel\.'); do sleep 0.01; done
  $ stat -c '%A %F while it is written' "$temporary"
  -rw------- regular empty file while it is written
  $ ln -sf away/target slow
  $ exec {feed}>&-
  $ wait "$!"
  $ stat -c '%A %F %n' slow
  -rw-r--r-- regular file slow
  $ cat away/target
  precious
  $ varnel make-package -p absent never
  ! varnel: never: cannot read absent: No such file or directory
  [1]
  $ ls -A . home temporary away
  .:
  away
  dangling
  folder
  home
  link
  loop
  payload
  slow
  temporary
  
  away:
  new
  target
  
  home:
  
  temporary:
