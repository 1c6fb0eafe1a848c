  $ . "$SUPPORT/session.sh"

Wrong usage exits with 2.

  $ varnel
  ! varnel: A subcommand is required
  ! Try "varnel --help".
  [2]
  $ varnel frobnicate
  ! varnel: unknown subcommand: frobnicate
  ! Try "varnel --help".
  [2]
  $ varnel $'\e]0;x\a'
  ! varnel: unknown subcommand: \x1b]0;x\x07
  ! Try "varnel --help".
  [2]
  $ varnel package --frobnicate x
  ! varnel: unknown option: --frobnicate
  ! Try "varnel package --help".
  [2]
  $ varnel slot --generatoin 5 3-5
  ! varnel: unknown option: --generatoin
  ! Try "varnel slot --help".
  [2]
  $ varnel package
  ! varnel: PATH is required
  ! Try "varnel package --help".
  [2]
  $ varnel package --quiet=maybe x
  ! varnel: Could not convert: --quiet = maybe
  ! Try "varnel package --help".
  [2]
  $ varnel tl1 --type
  ! varnel: --type: its value is missing
  ! Try "varnel tl1 --help".
  [2]
  $ varnel report --timeout
  ! varnel: --timeout: its value is missing
  ! Try "varnel report --help".
  [2]
  $ varnel report --timeout 1 --timeout 2
  ! varnel: --timeout: is given more than once
  ! Try "varnel report --help".
  [2]
  $ varnel head one two three
  ! varnel: unexpected argument: two
  ! Try "varnel head --help".
  [2]
  $ varnel -q package x
  ! varnel: unknown option: -q
  ! Try "varnel package --help".
  [2]

A word that begins with "-" is an argument if it is a number or follows "--", and may be the value of
an option. A flag may have a value.

  $ varnel slot -5
  ! varnel: -5: does not begin with a shelf or slot number
  [1]
  $ varnel slot --json=2 3
  {"text":"3","word":3,"shelf":0,"slot":3,"dashed":"3","hex":"3","dc":null,"ne_slot_id":3}
  $ varnel slot 3-5 -- -x 7 2>&1 | grep :
  3-5: shelf 3, slot 5
  7: shelf 0, slot 7
    DC          none: written 7
  ! varnel: -x: does not begin with a shelf or slot number
  [1]
  $ varnel board vcu -- -x -- '[-]'
  vcu: a system-control board
  -x: not a system-control board
  --: not a system-control board
  [-]: not a system-control board
  $ varnel -- board -x
  -x: not a system-control board
  $ varnel package -- --json one
  --json: bad: No such file or directory
  one: bad: No such file or directory
  [1]
  $ varnel report --separator -- --json /dev/null
  ! varnel: /dev/null: no end result: the input ends; no report was recognised
  [1]
  $ varnel board -- ''
  ! varnel: : is empty
  [1]
  $ varnel head one -- -two
  ! varnel: unexpected argument: -two
  ! Try "varnel head --help".
  [2]

Numbers are decimal, with or without leading zeros; 0x begins a hexadecimal number.

  $ varnel make-package --type 010 --gap 0010,08 --skip-length 0x10 --tail-length 00 out.pkg
  $ varnel package --json out.pkg
  {"path":"out.pkg","ok":true,"error":null,"version":"1.0","link_target":"package","file_type":10,"file_type_accepted":true,"payload_offset":183,"extension_word":null,"cold_patch":false,"entries":null}
  $ varnel head out.pkg | grep -E 'GapLen|FileType|SkipLen'
      26  usGapLen26    0x000a  10
      32  usGapLen32    0x0008  8
      34  usGapLen34    0x0000  0
      36  usGapLen36    0x0000  0
      32  usFileType    0x000a  10
      44  usSkipLen     0x0010  16
  $ for number in 0x 0b1 1e3 +5 ' 5' '' 5x 99999999999999999999999; do varnel make-package --type "$number" out.pkg; done 2>&1 |
  >   sort | uniq -c
        8 ! Try "varnel make-package --help".
        1 ! varnel: --type: " 5" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
        1 ! varnel: --type: "" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
        1 ! varnel: --type: "+5" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
        1 ! varnel: --type: "0b1" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
        1 ! varnel: --type: "0x" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
        1 ! varnel: --type: "1e3" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
        1 ! varnel: --type: "5x" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
        1 ! varnel: --type: "99999999999999999999999" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
  [2]
  $ varnel make-package --gap 1,x out.pkg
  ! varnel: --gap: "x" is not a number from 0 to 65535, decimal, or hexadecimal after 0x
  ! Try "varnel make-package --help".
  [2]
  $ varnel make-package --gap 1,2 --gap 3 out.pkg && varnel head out.pkg | grep GapLen
      26  usGapLen26    0x0001  1
      32  usGapLen32    0x0002  2
      34  usGapLen34    0x0003  3
      36  usGapLen36    0x0000  0
  $ varnel tl1 --limit 010 /dev/null
  ! varnel: /dev/null: no TL1 message was found
  [1]

Names in brackets are ordinary names.

  $ make_sample
  $ mv sample.pkg '[a]'
  $ varnel package '[a]' '[b,c]' '[]' | grep '^\['
  [a]: good
  [b,c]: bad: No such file or directory
  []: bad: No such file or directory
  [1]
  $ varnel coldpatch '[a]'
  [a]: no
  [1]
  $ varnel make-package --link '[a -> b]' --version-text '[1]' '[d]'
  $ varnel head '[d]' | tail -n 1
  [d]: good
  $ varnel package '[d]'
  [d]: good
    version         [1]
    link target     b]
    file type       1
    payload offset  139
    cold patch      no
    entries         none: no description section
  $ varnel package '[a]' --frobnicate '[e]'
  ! varnel: unknown option: --frobnicate
  ! Try "varnel package --help".
  [2]

The help and the version.

  $ varnel help tl1 | cmp - <(varnel tl1 --help)
  $ varnel help | cmp - <(varnel --help)
  $ varnel help frobnicate
  ! varnel: unknown subcommand: frobnicate
  ! Try "varnel help --help".
  [2]
  $ varnel -V
  varnel 1.0.0
  $ varnel --version
  varnel 1.0.0

The library's log lines, which appear with -v only.

  $ printf '\r\n\n   N 26-03-04 05:06:07\r\nM  1 COMPLD;' > cut.tl1
  $ varnel -v tl1 --strict cut.tl1 > /dev/null
  ! varnel: library warning: CTL1NEMsgParse::ParseOutputAndAuto(): m_strRetRspCode not find [tl1nemsgparse ParseOutputAndAuto]
  ! varnel: cut.tl1: the message at offset 0 is refused: bad identification line
  ! varnel: cut.tl1: skipped 0 bytes between messages: 0 echoes, 0 prompts, 0 other lines; 0 telnet sequences
  [1]
  $ varnel tl1 --strict cut.tl1 > /dev/null
  ! varnel: cut.tl1: the message at offset 0 is refused: bad identification line
  [1]
