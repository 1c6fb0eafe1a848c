  $ . "$SUPPORT/session.sh"
  $ cd "$PROJECT/tests/captures"
  $ varnel tl1 00-by-the-book.tl1
  acknowledgement  IP  ctag 1
    at    0, 7 bytes
  
  response  COMPLD  ctag 1
    from  NORTH1  26-03-04  05:06:07
    at    7, 100 bytes
      "SLOT-1:MAIN,OK"
      STATE=IS
      /* all of it */
  
  acknowledgement  PF  ctag 2
    at    109, 7 bytes
  
  acknowledgement  OK  ctag 3
    at    116, 7 bytes
  
  acknowledgement  NA  ctag 4
    at    123, 7 bytes
  
  acknowledgement  NG  ctag 5
    at    130, 7 bytes
  
  acknowledgement  RL  ctag 6
    at    137, 7 bytes
  
  acknowledgement  IP
    at    146, 5 bytes
  
  response  DENY  ctag 2
    from  NORTH1  26-03-04  05:06:07
    at    151, 88 bytes
      ICNV
      /* Input, Command Not Valid */
  
  response  PRTL  ctag 3
    from  NORTH1  26-03-04  05:06:07
    at    239, 66 bytes
      "SLOT-2:\"half\""
  
  response  DELAY  ctag 4
    from  NORTH1  26-03-04  05:06:07
    at    305, 45 bytes
  
  autonomous  *C  REPT ALM EQPT  atag 10
    from  NORTH1  26-03-04  05:06:07
    at    350, 75 bytes
      "SLOT-1:CR,FAIL"
  
  autonomous  **  REPT ALM COM  atag 11
    from  NORTH1  26-03-04  05:06:07
    at    425, 69 bytes
      "NORTH1:MJ"
  
  autonomous  *  REPT ALM ENV  atag 12
    from  NORTH1  26-03-04  05:06:07
    at    494, 67 bytes
      "DOOR:MN"
  
  autonomous  A  REPT EVT  atag 13
    from  NORTH1  26-03-04  05:06:07
    at    561, 67 bytes
      "SLOT-1:DONE"
  
  autonomous  A  REPT DBCHG  atag 14
    from  NORTH1  26-03-04  05:06:07
    at    628, 51 bytes
  
  response  COMPLD  ctag 5  (continues)
    from  NORTH1  26-03-04  05:06:07
    at    679, 58 bytes
      "first"
  
  response  COMPLD  ctag 5
    from  NORTH1  26-03-04  05:06:07
    at    737, 59 bytes
      "second"
  
  $ varnel tl1 --join 09-continuations.tl1
  response  COMPLD  ctag 1
    from  NORTH1  26-03-04  05:06:07
    at    0, 192 bytes
      "1/3"
      "a;b"
      "2/3"
      SLOT-1;UP
      "3/3"
  
  response  COMPLD  ctag 2
    from  NORTH1  26-03-04  05:06:07
    at    192, 91 bytes
      "1/3"
      "2/3"
      "3/3;
      ;
      "
  
  response  COMPLD  ctag 3
    from  NORTH1  26-03-04  05:06:07
    at    283, 82 bytes
      "1/2"
      "2/2"
  
  prompt  (continues)
    at    419, 3 bytes
  
  response  COMPLD  ctag 4
    from  NORTH1  26-03-04  05:06:07
    at    365, 171 bytes
      "1/3"
      "2/3"
      "3/3"
  
  autonomous  A  REPT EVT  atag 6
    from  NORTH1  26-03-04  05:06:07
    at    592, 62 bytes
      "between"
  
  response  COMPLD  ctag 5
    from  NORTH1  26-03-04  05:06:07
    at    536, 174 bytes
      "1/2"
      "2/2"
  
  $ varnel tl1 --json - < 14-cuts.tl1
  {"type":"acknowledgement","source":"-","received":null,"offset":0,"length":7,"complete":true,"sid":null,"date":null,"time":null,"ctag":"1","atag":null,"code":"IP","verb":null,"lines":[],"text":[],"severity":null,"missed":null,"continues":false,"raw":null}
  {"type":"response","source":"-","received":null,"offset":7,"length":54,"complete":true,"sid":"NORTH1","date":"26-03-04","time":"05:06:07","ctag":"1","atag":null,"code":"COMPLD","verb":null,"lines":["\"a\""],"text":[{"aid":"a","positional":[],"named":{}}],"severity":null,"missed":null,"continues":false,"raw":null}
  {"type":"autonomous","source":"-","received":null,"offset":61,"length":56,"complete":true,"sid":"NORTH1","date":"26-03-04","time":"05:06:07","ctag":null,"atag":"2","code":"A","verb":"REPT EVT","lines":["\"b\""],"text":[{"aid":"b","positional":[],"named":{}}],"severity":null,"missed":null,"continues":false,"raw":null}
  {"type":"response","source":"-","received":null,"offset":117,"length":54,"complete":true,"sid":"NORTH1","date":"26-03-04","time":"05:06:07","ctag":"2","atag":null,"code":"COMPLD","verb":null,"lines":["\"c\""],"text":[{"aid":"c","positional":[],"named":{}}],"severity":null,"missed":null,"continues":true,"raw":null}
  {"type":"response","source":"-","received":null,"offset":171,"length":54,"complete":true,"sid":"NORTH1","date":"26-03-04","time":"05:06:07","ctag":"2","atag":null,"code":"COMPLD","verb":null,"lines":["\"d\""],"text":[{"aid":"d","positional":[],"named":{}}],"severity":null,"missed":null,"continues":false,"raw":null}
  {"type":"autonomous","source":"-","received":null,"offset":225,"length":61,"complete":true,"sid":"NORTH1","date":"26-03-04","time":"05:06:07","ctag":null,"atag":"3","code":"*C","verb":"REPT ALM EQPT","lines":["\"e\""],"text":[{"aid":"e","positional":[],"named":{}}],"severity":null,"missed":0,"continues":false,"raw":null}

Filters.

  $ count() {
  >   varnel tl1 --json "$@" 00-by-the-book.tl1 |
  >     sed -E 's/.*"type":"([a-z]*)".*"ctag":([^,]*),.*"code":([^,]*),.*/\1 \2 \3/'
  > }
  $ count --type acknowledgement --type prompt
  acknowledgement "1" "IP"
  acknowledgement "2" "PF"
  acknowledgement "3" "OK"
  acknowledgement "4" "NA"
  acknowledgement "5" "NG"
  acknowledgement "6" "RL"
  acknowledgement null "IP"
  $ count --type prompt,response
  response "1" "COMPLD"
  response "2" "DENY"
  response "3" "PRTL"
  response "4" "DELAY"
  response "5" "COMPLD"
  response "5" "COMPLD"
  $ count --ctag 1,5 --ctag 3
  acknowledgement "1" "IP"
  response "1" "COMPLD"
  acknowledgement "3" "OK"
  acknowledgement "5" "NG"
  response "3" "PRTL"
  response "5" "COMPLD"
  response "5" "COMPLD"
  $ count --code '*C,**' --code DENY
  response "2" "DENY"
  autonomous null "*C"
  autonomous null "**"
  $ count --type response --ctag 1,2 --code COMPLD
  response "1" "COMPLD"
  $ count --code 'comp*' --ctag '?'
  response "1" "COMPLD"
  response "5" "COMPLD"
  response "5" "COMPLD"
  $ count --code '*'
  autonomous null "*"
  $ count --sid 'NORTH?' --verb 'rept alm *'
  autonomous null "*C"
  autonomous null "**"
  autonomous null "*"
  $ count --severity cr,'M?'
  autonomous null "*C"
  autonomous null "**"
  autonomous null "*"
  $ count --type 'ack*' --count 2
  acknowledgement "1" "IP"
  acknowledgement "2" "PF"
  $ varnel tl1 --type autonomous --count 8 00-by-the-book.tl1 | grep -c ^autonomous
  ! varnel: 00-by-the-book.tl1: only 5 of 8 messages came
  5
  [1]

Parts of texts: blocks, names, folds, escapes; a name that occurs twice.

  $ texts() { varnel tl1 --json "$@" | sed -E 's/.*"text":(.*),"severity":([^,]*),"missed":([^,]*),"cont.*/\1 \2 \3/'; }
  $ message() { printf '\r\n\n   N1 26-03-04 05:06:07\r\n* %s REPT ALM EQPT\r\n   %b\r\n;' "$1" "$2"; }
  $ message 4 '"A1:CR,LOS,:X=1,Y=\\"a,b=c\\",X=2::"\r\n   unquoted\r\n   "\\\\ \\"q\\""' | texts
  [{"aid":"A1","positional":[["CR","LOS",""],[],[],[]],"named":{"X":"2","Y":"a,b=c"}},null,{"aid":"\\ \"q\"","positional":[],"named":{}}] "CR" null
  $ message 4 '":MN,folded\r\n   text"' | texts
  [{"aid":null,"positional":[["MN","foldedtext"]],"named":{}},null] "MN" null
  $ { for atag in 4 5.1 8 8 3; do message "$atag" ''; done; } | texts
  [] null null
  [] null 0
  [] null 2
  [] null 0
  [] null null
  $ { for atag in 4 8; do message "$atag" ''; done; } | texts --join --count 2
  [] null null
  [] null 3

The strict form, and log lines.

  $ varnel tl1 --strict --type unrecognised 00-by-the-book.tl1
  unrecognised
    at    146, 5 bytes
      IP
      <
  
  unrecognised
    at    561, 67 bytes
      NORTH1 26-03-04 05:06:07
      A  13 REPT EVT
      "SLOT-1:DONE"
      ;
  
  unrecognised
    at    628, 51 bytes
      NORTH1 26-03-04 05:06:07
      A  14 REPT DBCHG
      ;
  
  ! varnel: 00-by-the-book.tl1: the message at offset 146 is refused: bad acknowledgement
  ! varnel: 00-by-the-book.tl1: the message at offset 561 is refused: bad identification line
  ! varnel: 00-by-the-book.tl1: the message at offset 628 is refused: bad identification line
  [1]
  $ varnel tl1 --strict 04-missing-header.tl1
  unrecognised
    at    0, 30 bytes
      M  1 COMPLD
      "no header"
      ;
  
  unrecognised
    at    32, 37 bytes
      *C 7 REPT ALM EQPT
      "no header"
      ;
  
  unrecognised
    at    72, 21 bytes
      M  2 DENY
      IIAC
      ;
  
  response  COMPLD  ctag 3
    from  GATE9  26-03-04  05:06:07
    at    93, 68 bytes
      "behind a gateway"
  
  unrecognised
    at    161, 75 bytes
      GATE9 26-03-04 05:06:07
      A  8 REPT EVT EQPT
      "NORTH1,SLOT-1:UP"
      ;
  
  ! varnel: 04-missing-header.tl1: the message at offset 0 is refused: bad header line
  ! varnel: 04-missing-header.tl1: the message at offset 32 is refused: bad header line
  ! varnel: 04-missing-header.tl1: the message at offset 72 is refused: bad header line
  ! varnel: 04-missing-header.tl1: the message at offset 161 is refused: bad identification line
  [1]
  $ varnel tl1 --strict --json 02-four-digit-years.tl1
  {"type":"unrecognised","source":"02-four-digit-years.tl1","received":null,"offset":0,"length":71,"complete":true,"sid":null,"date":null,"time":null,"ctag":null,"atag":null,"code":null,"verb":null,"lines":["NORTH1 2026-03-04 05:06:07","A  1001 REPT EVT","\"SLOT-3:T-UP\"",";"],"text":[null,null,{"aid":"SLOT-3","positional":[["T-UP"]],"named":{}},null],"severity":null,"missed":null,"continues":false,"raw":null}
  {"type":"autonomous","source":"02-four-digit-years.tl1","received":null,"offset":71,"length":74,"complete":true,"sid":"NORTH1","date":"2026-03-04","time":"05:06:07","ctag":null,"atag":"1002","code":"**","verb":"REPT ALM EQPT","lines":["\"SLOT-3:MJ\""],"text":[{"aid":"SLOT-3","positional":[["MJ"]],"named":{}}],"severity":"MJ","missed":0,"continues":false,"raw":null}
  {"type":"response","source":"02-four-digit-years.tl1","received":null,"offset":145,"length":56,"complete":true,"sid":"NORTH1","date":"2026-03-04","time":"05:06:07","ctag":"9","atag":null,"code":"COMPLD","verb":null,"lines":["\"x\""],"text":[{"aid":"x","positional":[],"named":{}}],"severity":null,"missed":null,"continues":false,"raw":null}
  ! varnel: 02-four-digit-years.tl1: the message at offset 0 is refused: bad identification line
  [1]
  $ varnel tl1 --strict --json "$DATA/tl1/session.tl1" | cmp - <(varnel tl1 --json "$DATA/tl1/session.tl1")
  $ varnel -v tl1 --ctag 3 11-echoes-banners-telnet.tl1
  response  COMPLD  ctag 3
    from  NORTH1  26-03-04  05:06:07
    at    339, 46 bytes
  
  ! varnel: 11-echoes-banners-telnet.tl1: skipped 236 bytes between messages: 3 echoes, 3 prompts, 5 other lines; 6 telnet sequences
  $ printf 'M  1 COMPLD\r\n;' | varnel tl1 --strict -v
  unrecognised
    at    0, 14 bytes
      M  1 COMPLD
      ;
  
  ! varnel: -: the message at offset 0 is refused: bad header line
  ! varnel: -: skipped 0 bytes between messages: 0 echoes, 0 prompts, 0 other lines; 0 telnet sequences
  [1]
  $ printf '\r\n\n   NORTH1 x\r\nM  1 COMPLD\r\n;' | varnel tl1 --strict -v
  unrecognised
    at    16, 14 bytes
      M  1 COMPLD
      ;
  
  ! varnel: -: the message at offset 16 is refused: bad header line
  ! varnel: -: skipped 16 bytes between messages: 0 echoes, 0 prompts, 1 other lines; 0 telnet sequences
  [1]
  $ cd "$OLDPWD"

Messages without an end.

  $ printf 'IP 1\r\n<\r\n\n   NORTH1 26-03-04 05:06:07\r\nM  1 COMPLD\r\n   "x' | varnel tl1
  acknowledgement  IP  ctag 1
    at    0, 7 bytes
  
  response  COMPLD  ctag 1  (incomplete)
    from  NORTH1  26-03-04  05:06:07
    at    7, 50 bytes
      "x
  
  ! varnel: -: the message at offset 7 has no end
  [1]
  $ printf '\r\n\n   NORTH1 26-03-04 05:06:07\r\nM  1 COMPLD\r\n   "x"\r\n>' > cut
  $ printf '\r\n\n   NORTH1 26-03-04 05:06:07\r\nM  1 COM' >> cut
  $ varnel tl1 --join --json cut
  {"type":"response","source":"cut","received":null,"offset":0,"length":54,"complete":false,"sid":"NORTH1","date":"26-03-04","time":"05:06:07","ctag":"1","atag":null,"code":"COMPLD","verb":null,"lines":["\"x\""],"text":[{"aid":"x","positional":[],"named":{}}],"severity":null,"missed":null,"continues":true,"raw":null}
  {"type":"response","source":"cut","received":null,"offset":54,"length":40,"complete":false,"sid":"NORTH1","date":"26-03-04","time":"05:06:07","ctag":"1","atag":null,"code":"COM","verb":null,"lines":[],"text":[],"severity":null,"missed":null,"continues":false,"raw":null}
  ! varnel: cut: the answer at offset 0 lacks its last part
  ! varnel: cut: the message at offset 54 has no end
  [1]
  $ cat "$PROJECT/tests/captures/16-damage.tl1" | varnel tl1 | grep -E '^[a-z]'
  ! varnel: -: the message at offset 0 has no end
  ! varnel: -: the message at offset 135 has no end
  ! varnel: -: the message at offset 708 has no end
  ! varnel: -: the message at offset 928 has no end
  ! varnel: -: the message at offset 1183 has no end
  response  COMPLD  ctag 1  (incomplete)
  autonomous  *C  REPT ALM EQPT  atag 2
  response  COMPLD  ctag 3  (incomplete)
  autonomous  *C  REPT ALM EQPT  atag 4  (1 missed before)
  response  COMPLD  ctag 5
  autonomous  *C  REPT ALM EQPT  atag 6  (1 missed before)
  response  COMPLD  ctag 7
  autonomous  *C  REPT ALM EQPT  atag 8  (1 missed before)
  response  COMPLD  ctag 9
  autonomous  *C  REPT ALM EQPT  atag 10  (1 missed before)
  acknowledgement  IP  ctag 11
  acknowledgement  PF  ctag 12  (incomplete)
  autonomous  *C  REPT ALM EQPT  atag 13  (2 missed before)
  autonomous  **  REPT ALM EQPT  atag 14
  response  COMPLD  ctag 15
  response  COMPLD  ctag 16  (incomplete)
  autonomous  *C  REPT ALM EQPT  atag 17  (2 missed before)
  autonomous  *C  REPT ALM EQPT  atag 18
  response  COMPLD  ctag 19  (continues)
  response  COMPLD  ctag 19
  response  COMPLD  ctag 20  (incomplete)
  [1]
  $ printf '\r\n\n   N1 26-03-04 05:06:07\r\nM  1 RTRV\r\n   "x"\r\n;' | varnel tl1 --join
  response  RTRV  ctag 1  (continues)  (incomplete)
    from  N1  26-03-04  05:06:07
    at    0, 48 bytes
      "x"
  
  ! varnel: -: the answer at offset 0 lacks its last part
  [1]

Several files: each is a separate stream.

  $ printf 'IP 1\r\n<' > one
  $ printf 'noise' > two
  $ varnel tl1 one two absent one
  acknowledgement  IP  ctag 1
    at    0, 7 bytes of one
  
  acknowledgement  IP  ctag 1
    at    0, 7 bytes of one
  
  ! varnel: two: no TL1 message was found
  ! varnel: absent: No such file or directory
  [1]
  $ varnel tl1 --count 3 one one
  acknowledgement  IP  ctag 1
    at    0, 7 bytes of one
  
  acknowledgement  IP  ctag 1
    at    0, 7 bytes of one
  
  ! varnel: one: only 2 of 3 messages came
  [1]
  $ varnel tl1 --json --count 1 one cut | cut -c 1-40
  {"type":"acknowledgement","source":"one"

Characters: of another encoding, invalid, and escaped.

  $ characters() { varnel tl1 --json "$@" | sed -E 's/.*"lines":(.*),"text".*"raw":(.*)}/\1 \2/'; }
  $ stream() { printf '\r\n\n   N1 26-03-04 05:06:07\r\nM  1 COMPLD\r\n   %b\r\n;' "$1"; }
  $ stream 'L\0374fter' | characters
  ["L\xef\xbf\xbdfter"] "DQoKICAgTjEgMjYtMDMtMDQgMDU6MDY6MDcNCk0gIDEgQ09NUExEDQogICBM/GZ0ZXINCjs=" (esc)
  $ stream 'L\0374fter' | characters --encoding latin1
  ["L\xc3\xbcfter"] null (esc)
  $ stream 'L\0374fter' | varnel tl1 --encoding LATIN1 | grep fter
      L\xc3\xbcfter (esc)
  $ stream '\0244\0244\0244\0377' | characters --encoding EUC-JP
  ["\xe3\x81\x84\xef\xbf\xbd\xef\xbf\xbd"] "DQoKICAgTjEgMjYtMDMtMDQgMDU6MDY6MDcNCk0gIDEgQ09NUExEDQogICCkpKT/DQo7" (esc)
  $ stream 'L\0303\0274fter' | characters
  ["L\xc3\xbcfter"] null (esc)
  $ stream 'a\0000b\t\033\0177\0302\0205\0342\0200\0256' | characters
  ["a\u0000b\u0009\u001b\u007f\u0085\u202e"] null

The limit of a message: the second one has 103 bytes.

  $ { printf 'IP 1\r\n<'; printf '\r\n\n   NORTH1 26-03-04 05:06:07\r\nM  1 COMPLD\r\n   "%050d"\r\n;' 0; } > long
  $ varnel tl1 --limit 103 long
  acknowledgement  IP  ctag 1
    at    0, 7 bytes
  
  response  COMPLD  ctag 1
    from  NORTH1  26-03-04  05:06:07
    at    7, 103 bytes
      "00000000000000000000000000000000000000000000000000"
  
  $ varnel tl1 --limit 102 long
  acknowledgement  IP  ctag 1
    at    0, 7 bytes
  
  response  COMPLD  ctag 1  (incomplete)
    from  NORTH1  26-03-04  05:06:07
    at    7, 102 bytes
      "00000000000000000000000000000000000000000000000000"
  
  ! varnel: long: the message at offset 7 is longer than 102 bytes
  [1]
  $ cat long long | varnel tl1 --limit 102 --type 'ack*'
  acknowledgement  IP  ctag 1
    at    0, 7 bytes
  
  acknowledgement  IP  ctag 1
    at    110, 7 bytes
  
  ! varnel: -: the message at offset 7 is longer than 102 bytes
  ! varnel: -: the message at offset 117 is longer than 102 bytes
  [1]
  $ for limit in 1k 1048576M; do varnel tl1 --limit $limit long | grep -c COMPLD; done
  1
  1
  $ for _ in 1 2 3; do printf '\r\n\n   NORTH1 26-03-04 05:06:07\r\nM  1 COMPLD\r\n   "x"\r\n>'; done | varnel tl1 --limit 100 --join
  response  COMPLD  ctag 1  (continues)  (incomplete)
    from  NORTH1  26-03-04  05:06:07
    at    0, 108 bytes
      "x"
      "x"
  
  response  COMPLD  ctag 1  (continues)  (incomplete)
    from  NORTH1  26-03-04  05:06:07
    at    108, 54 bytes
      "x"
  
  ! varnel: -: the message at offset 0 is longer than 100 bytes
  ! varnel: -: the answer at offset 108 lacks its last part
  [1]

Files that cannot be read, empty ones, and wrong usage.

  $ mkdir folder
  $ varnel tl1 absent
  ! varnel: absent: No such file or directory
  [1]
  $ varnel tl1 --json folder
  ! varnel: folder: is a folder
  [1]
  $ varnel tl1 /dev/null
  ! varnel: /dev/null: no TL1 message was found
  [1]
  $ varnel tl1 --type answer x
  ! varnel: --type: answer is not one of acknowledgement, response, autonomous, prompt, unrecognised
  ! Try "varnel tl1 --help".
  [2]
  $ varnel tl1 --code '' x
  ! varnel: --code: has an empty item
  ! Try "varnel tl1 --help".
  [2]
  $ for limit in 1G K 1099511627777 18446744073709551615M ''; do varnel tl1 --limit "$limit" x 2>&1 | grep limit; done
  ! varnel: --limit: "1G" is not a number of bytes from 1 to 1099511627776, decimal, with K or M
  ! varnel: --limit: "K" is not a number of bytes from 1 to 1099511627776, decimal, with K or M
  ! varnel: --limit: "1099511627777" is not a number of bytes from 1 to 1099511627776, decimal, with K or M
  ! varnel: --limit: "18446744073709551615M" is not a number of bytes from 1 to 1099511627776, decimal, with K or M
  ! varnel: --limit: "" is not a number of bytes from 1 to 1099511627776, decimal, with K or M
  [2]
  $ varnel tl1 --encoding klingon x
  ! varnel: --encoding: "klingon" is not an encoding that iconv knows (iconv -l lists them)
  ! Try "varnel tl1 --help".
  [2]
  $ varnel tl1 --encoding UTF-16 x
  ! varnel: --encoding: "UTF-16" does not extend ASCII, as TL1 needs it
  ! Try "varnel tl1 --help".
  [2]
  $ varnel tl1 --limit 0 x
  ! varnel: --limit: "0" is not a number of bytes from 1 to 1099511627776, decimal, with K or M
  ! Try "varnel tl1 --help".
  [2]
  $ varnel tl1 one two
  acknowledgement  IP  ctag 1
    at    0, 7 bytes of one
  
  ! varnel: two: no TL1 message was found
  [1]
