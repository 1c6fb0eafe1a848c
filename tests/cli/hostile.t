Control characters, invalid UTF-8 and NULs in names, texts and streams.

  $ . "$SUPPORT/session.sh"

  $ name=$(printf 'a\033[2Jb\302\233c\377d\303\251.pkg')
  $ printf '[File Description]\n\033]0;x\007:\302\205:c:d:5:f:g:h\n' > d.txt
  $ varnel make-package -d d.txt --link "$(printf 'a -> \033[31mred\177')" --version-text "$(printf '1\r2')" "$name"
  $ varnel package "$name"
  a\\x1b[2Jb\\xc2\\x9bc\\xffd\xc3\xa9.pkg: good (esc)
    version         1\x0d2
    link target     \x1b[31mred\x7f
    file type       1
    payload offset  145
    cold patch      no
    entries         1
      NAME          KIND            SIZE
      \x1b]0;x\x07  \xc2\x85           5
  $ varnel package --json "$name"
  {"path":"a\\u001b[2Jb\\u009bc\xef\xbf\xbdd\xc3\xa9.pkg","ok":true,"error":null,"version":"1\\u000d2","link_target":"\\u001b[31mred\\u007f","file_type":1,"file_type_accepted":true,"payload_offset":145,"extension_word":null,"cold_patch":false,"entries":[{"name":"\\u001b]0;x\\u0007","kind":"\\u0085","size":5}]} (esc)
  $ varnel head "$name" | tail -n 1
  a\\x1b[2Jb\\xc2\\x9bc\\xffd\xc3\xa9.pkg: good (esc)

  $ printf 'EVENT CAM RUN\0END RSP FA\033IL\033[2J 5 it\007em \377t\303\251xt\0\033]0;x\a FAIL\n' > end.txt
  $ varnel report end.txt
  end FA\\x1bIL\\x1b[2J, code 5, item it\\x07em: \\xfft\xc3\xa9xt \\x1b]0;x\\x07 FAIL (esc)
  [1]
  $ varnel report --json end.txt
  {"event":"end","source":"end.txt","sid":null,"result":"FA\\u001bIL\\u001b[2J","code":5,"item":"it\\u0007em","text":"\xef\xbf\xbdt\xc3\xa9xt \\u001b]0;x\\u0007 FAIL"} (esc)
  [1]
  $ for byte in $(seq 0 255); do printf '%b' "\\x$(printf %x "$byte")"; done > all.bin
  $ for _ in 1 2 3; do cat all.bin "$DATA/reports/script-mml.txt"; done > thrice
  $ varnel report thrice
  script 10/20 50%  NE-WEST
  script 15/20 75%  NE-WEST
  script 20/20 100%  NE-WEST
  end SUCCESS, code 0  NE-WEST
  $ head -c 200000 /dev/urandom | varnel report --ne 1
  ! varnel: -: no end result: the input ends; no MML report was recognised
  [1]
  $ head -c 200000 /dev/urandom | varnel report --ne 0x1000001
  ! varnel: -: no end result: the input ends; no TL1 report was recognised
  [1]
  $ varnel report "$(printf 'no\033such')"
  ! varnel: no\x1bsuch: No such file or directory
  [1]

  $ printf '\r\n\n   "N\033[2J" 26-03-04 05:06:07\r\n*C 1 REPT ALM \033]0;x\007\r\n   "\033[31m\302\233\377z"\r\n;' > hostile
  $ varnel tl1 hostile
  autonomous  *C  REPT ALM \x1b]0;x\x07  atag 1
    from  N  26-03-04  05:06:07
    at    0, 72 bytes
      "\x1b[31m\xc2\x9b\xffz"
  
  $ varnel tl1 --json hostile
  {"type":"autonomous","source":"hostile","received":null,"offset":0,"length":72,"complete":true,"sid":"N","date":"26-03-04","time":"05:06:07","ctag":null,"atag":"1","code":"*C","verb":"REPT ALM \\u001b]0;x\\u0007","lines":["\\"\\u001b[31m\\u009b\xef\xbf\xbdz\\""],"text":[{"aid":"\\u001b[31m\\u009b\xef\xbf\xbdz","positional":[],"named":{}}],"severity":null,"missed":null,"continues":false,"raw":"DQoKICAgIk4bWzJKIiAyNi0wMy0wNCAwNTowNjowNw0KKkMgMSBSRVBUIEFMTSAbXTA7eAcNCiAgICIbWzMxbcKb/3oiDQo7"} (esc)

  $ varnel slot "$(printf '3-5,\033[2J\302\233\377')" "$(printf '\033]0;x\007')"
  3-5,\x1b[2J\xc2\x9b\xff: shelf 3, slot 5
    read as     dashed form
    word        0x0305  773
    dashed      3-5
    hexadecimal 3-5
    DC          305
    note        text after the slot number is ignored
  ! varnel: \x1b]0;x\x07: does not begin with a shelf or slot number
  [1]
  $ varnel slot --json "$(printf '3-5,\033[2J\302\233\377')"
  {"text":"3-5,\\u001b[2J\\u009b\xef\xbf\xbd","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":null} (esc)
  ! varnel: 3-5,\x1b[2J\xc2\x9b\xff: text after the slot number is ignored
  $ printf '3\0005\n\n3-5\n' | varnel slot --json -
  {"text":"3\u00005","word":null,"shelf":null,"slot":null,"dashed":null,"hex":null,"dc":null,"ne_slot_id":null}
  {"text":"3-5","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":null}
  ! varnel: 3\x005: contains a NUL
  [1]

  $ name=$(printf '\033[2Jscc\302\233\377')
  $ varnel board "$name" --ne "$name" --generation 1
  \x1b[2Jscc\xc2\x9b\xff: a system-control board
  \x1b[2Jscc\xc2\x9b\xff: not of the Korvane family
  $ varnel board --json "$name"
  {"name":"\\u001b[2Jscc\\u009b\xef\xbf\xbd","system_control":true} (esc)
  $ printf 'vcu\0x\nvcu\n' | varnel board -
  vcu: a system-control board
  ! varnel: vcu\x00x: contains a NUL
  [1]
  $ varnel board --json ''
  {"name":"","system_control":null}
  ! varnel: : is empty
  [1]
