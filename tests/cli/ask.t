Sessions with an element that follows a script: see tests/support/scripted_element.h. The file "received" contains
the commands that it receives.

  $ . "$SUPPORT/session.sh"
  $ head='\r\n\n   NE1 26-03-04 05:06:07\r\n'
  $ compld="send $head"'M  % COMPLD\r\n;'
  $ deny="send $head"'M  % DENY\r\n   PICC\r\n;'
  $ talk() { : > received; printf '%s\n' "$@" > steps; serve --talk steps; }
  $ without_ctags() { sed -E 's/(-USER:[^:]*:("([^"\]|\\.)*"|[^:"]*):)[0-9]+/\1N/'; }
  $ ask() { varnel ask "$@" 2>&1 | without_port | without_ctags | sed -E 's/^(  at    )[0-9]+/\1N/'; }
  $ (umask 077; echo 'Se"cret\1' > password)
  $ account=(--user ops --password-file password)

Answers. Parts are joined, with and without a header, and the ctag of the answer counts.

  $ talk receive "$compld"
  $ ask "$address" RTRV-HDR:::70
  response  COMPLD  ctag 70
    from  NE1  26-03-04  05:06:07
    at    N, 44 bytes
  
  $ talk receive 'send IP %\r\n<' "$compld" receive "$deny" receive
  $ ask "$address" rtrv-alm-all:NE1:ALL:70 'ED-X::"a;b":71::C=D;' RTRV-HDR:::72
  rtrv-alm-all:NE1:ALL:70;
  response  COMPLD  ctag 70
    from  NE1  26-03-04  05:06:07
    at    N, 44 bytes
  
  ED-X::"a;b":71::C=D;
  response  DENY  ctag 71
    from  NE1  26-03-04  05:06:07
    at    N, 51 bytes
      PICC
  
  [1]
  $ cat received
  rtrv-alm-all:NE1:ALL:70;
  ED-X::"a;b":71::C=D;
  $ talk receive "send $head"'M  % COMPLD\r\n   "A-1:x,y:B=\\"z\\""\r\n>' "send ${head}M  % COMPLD\r\n   two\r\n>" \
  >   'send \r\n   bare\r\n;'
  $ ask --json "$address" RTRV-HDR:::70 | sed 's/"received":"[-0-9T:.]*Z"/"received":TIME/'
  {"command":"RTRV-HDR:::70;","type":"response","source":"127.0.0.1:PORT","received":TIME,"offset":0,"length":130,"complete":true,"sid":"NE1","date":"26-03-04","time":"05:06:07","ctag":"70","atag":null,"code":"COMPLD","verb":null,"lines":["\"A-1:x,y:B=\\\"z\\\"\"","two","bare"],"text":[{"aid":"A-1","positional":[["x","y"],[]],"named":{"B":"z"}},null,null],"severity":null,"missed":null,"continues":false,"raw":null}
  $ talk receive "repeat 999 ${head}M  % COMPLD\r\n   part\r\n>" "$compld"
  $ ask "$address" RTRV-X:::70 | grep -c '^    part'
  999
  $ for step in 'M  0 DENY' 'M  1 DENY'; do talk receive "send ${head}$step\r\n;"; ask "$address" RTRV-HDR:::70; done
  response  DENY  ctag 0
    from  NE1  26-03-04  05:06:07
    at    N, 41 bytes
  
  response  DENY  ctag 1
    from  NE1  26-03-04  05:06:07
    at    N, 41 bytes
  
  [1]
  $ for code in NA NG RL; do talk receive "send $code\r\n<"; ask "$address" RTRV-HDR:::70; done
  acknowledgement  NA
    at    N, 5 bytes
  
  acknowledgement  NG
    at    N, 5 bytes
  
  acknowledgement  RL
    at    N, 5 bytes
  
  [1]

A banner, a prompt after each answer, an echo, telnet, and answers split at every byte.

  $ talk 'piece 1' 'send \r\nWelcome; log in\r\n<\xff\xfb\x01\xff\xfd\x18\xff\xfb\x01' receive 'send \xff\xfd\x18RTRV-HDR:::70;' \
  >   "$compld" 'send \r\n> ' receive "$compld"
  $ ask "$address" RTRV-HDR:::70 RTRV-EQPT:::71
  RTRV-HDR:::70;
  response  COMPLD  ctag 70
    from  NE1  26-03-04  05:06:07
    at    N, 44 bytes
  
  RTRV-EQPT:::71;
  response  COMPLD  ctag 71
    from  NE1  26-03-04  05:06:07
    at    N, 44 bytes
  
  $ od -c received
  0000000   R   T   R   V   -   H   D   R   :   :   :   7   0   ;  \n 377
  0000020 376 001 377 374 030   R   T   R   V   -   E   Q   P   T   :   :
  0000040   :   7   1   ;  \n
  0000045

Autonomous messages, also in the middle of parts. They do not prolong the wait.

  $ rept="send ${head}A  5 REPT EVT\r\n   event\r\n;"
  $ talk "$rept" receive "$rept" "send ${head}M  % COMPLD\r\n   one\r\n>" "$rept" "$compld"
  $ ask "$address" RTRV-HDR:::70
  response  COMPLD  ctag 70
    from  NE1  26-03-04  05:06:07
    at    N, 151 bytes
      one
  
  $ talk receive "$rept" "$compld"
  $ varnel ask --events "$address" RTRV-HDR:::70
  response  COMPLD  ctag 70
    from  NE1  26-03-04  05:06:07
    at    55, 44 bytes
  
  ! autonomous  A  REPT EVT  atag 5
  !   from  NE1  26-03-04  05:06:07
  !   at    0, 55 bytes
  !     event
  $ talk receive "$rept" "$compld"
  $ varnel ask --events --json "$address" RTRV-HDR:::70 2>&1 > /dev/null | grep -o '"command.*"source\|"verb.*'
  "command":null,"type":"autonomous","source
  "verb":"REPT EVT","lines":["event"],"text":[null],"severity":null,"missed":null,"continues":false,"raw":null}
  $ rept="${rept#send }"
  $ talk receive "send $rept" 'wait 200' "send $rept" 'wait 200' "send $rept" 'wait 200' "send $rept" stay
  $ ask --timeout 0.5 "$address" RTRV-HDR:::70
  ! varnel: 127.0.0.1:PORT: RTRV-HDR:::70; no answer within 0.5 seconds
  [1]

Log-in and log-out, after a failure too. The password is never printed, in any form in which the element sends it.

  $ talk receive "$compld" receive "$deny" receive "$compld"
  $ ask "${account[@]}" --tid NE-1 "$address" RTRV-HDR:::70 RTRV-HDR:::71
  RTRV-HDR:NE-1::70;
  response  DENY  ctag 70
    from  NE1  26-03-04  05:06:07
    at    N, 51 bytes
      PICC
  
  [1]
  $ without_ctags < received
  ACT-USER:NE-1:ops:N::"Se\"cret\\1";
  RTRV-HDR:NE-1::70;
  CANC-USER:NE-1:ops:N;
  $ rept="send $head"'A  5 REPT EVT se"cret\\1\r\n   se"c\r\n   ret\\1\r\n;'
  $ talk receive "$compld" receive "$rept" "send $head"'M  % DENY\r\n   Se"cret\\1 "SE\\"CRET\\\\1" \xff\r\n;' receive
  $ ask --json --events "${account[@]}" "$address" RTRV-HDR:::70 | tee shown | grep -o '"lines.*"text\|"verb":"[^"]*"'
  "lines":["****** \\"******\\" \xef\xbf\xbd"],"text (esc)
  "verb":"REPT EVT ******"
  "lines":["******"],"text
  [1]
  $ grep -o '"raw":"[^"]*"' shown | cut -d '"' -f 4 | base64 -d | tr -d '\r' | tail -n 2
     ****** "******" \xff (esc)
  ; (no-eol)
  $ talk receive "send $head"'M  % DENY\r\n   PICC\r\n   /* bad Se"cret\\1 */\r\n;' receive
  $ ask --json --keep-going "${account[@]}" "$address" RTRV-HDR:::70 RTRV-HDR:::71
  {"command":"RTRV-HDR:::70;","error":"the log-in was refused: DENY PICC /* bad ****** */"}
  ! varnel: 127.0.0.1:PORT: the log-in was refused: DENY PICC /* bad ****** */
  [1]
  $ talk receive receive
  $ ask --timeout 0.2 "${account[@]}" "$address" RTRV-HDR:::70
  ! varnel: 127.0.0.1:PORT: the log-in failed: no answer within 0.2 seconds
  [1]
  $ without_ctags < received
  ACT-USER::ops:N::"Se\"cret\\1";
  CANC-USER::ops:N;

A user name cannot carry another command.

  $ talk receive "$compld" receive "$compld" receive
  $ ask --user 'x:1::y;DLT-EQPT::"1:2' --password-file password "$address" RTRV-HDR:::70
  response  COMPLD  ctag 70
    from  NE1  26-03-04  05:06:07
    at    N, 44 bytes
  
  $ without_ctags < received
  ACT-USER::"x:1::y;DLT-EQPT::\"1:2":N::"Se\"cret\\1";
  RTRV-HDR:::70;
  CANC-USER::"x:1::y;DLT-EQPT::\"1:2":N;
  $ ask --user "$(printf 'a\rb')" --password-file password "$address" RTRV-HDR
  ! varnel: --user: control character or byte 255 in the user name
  ! Try "varnel ask --help".
  [2]
  $ ask --user '' "$address" RTRV-HDR
  ! varnel: --user: no user name
  ! Try "varnel ask --help".
  [2]

Password files.

  $ cp password open && chmod 640 open
  $ ask --user ops --password-file open 127.0.0.1:1 RTRV-HDR
  ! varnel: open: other users have access to this password file (expected: chmod 600)
  [1]
  $ (umask 077; echo > empty; : > none; head -c 1100 /dev/zero | tr '\0' x > long; printf 'a\tb\n' > control)
  $ mkfifo named
  $ for file in empty none long control absent . named; do ask --user ops --password-file "$file" 127.0.0.1:1 RTRV-HDR; done
  ! varnel: empty: the password is empty
  ! varnel: none: the password is empty
  ! varnel: long: the password is longer than 1024 bytes
  ! varnel: control: control character or byte 255 in the password
  ! varnel: absent: No such file or directory
  ! varnel: .: is not a regular file or unnamed pipe
  ! varnel: named: is not a regular file or unnamed pipe
  [1]
  $ ask --password-file password 127.0.0.1:1 RTRV-HDR
  ! varnel: --password-file requires --user
  ! Try "varnel ask --help".
  [2]
  $ setsid varnel ask --user ops 127.0.0.1:1 RTRV-HDR < /dev/null
  varnel: password of ops: there is no terminal to ask for it
  [1]
  $ talk receive "$compld" receive "$compld" receive
  $ printf 'first\r\nRTRV-HDR:::70\n' | ask --user ops --password-file - "$address" -
  RTRV-HDR:::70;
  response  COMPLD  ctag 70
    from  NE1  26-03-04  05:06:07
    at    N, 44 bytes
  
  $ without_ctags < received
  ACT-USER::ops:N::first;
  RTRV-HDR:::70;
  CANC-USER::ops:N;

  $ talk receive "$compld" receive "$deny" receive
  $ ask --user ops --password-file <(printf second) "$address" RTRV-HDR:::70 > /dev/null
  [1]
  $ sed -n '1s/.*:/:/p' received
  :second;
  $ command varnel ask --user ops --password-file <(: < named) 127.0.0.1:1 RTRV-HDR & asking=$!
  $ sleep 0.2
  $ kill "$asking"
  $ wait "$asking"
  [143]
  $ : > named

Commands from standard input are sent as they arrive.

  $ talk receive "$compld" receive "$deny" receive
  $ printf ' \n# none\r\n RTRV-HDR:::70;\r\nRTRV-X:::71\nRTRV-HDR:::72' | ask "$address" -
  RTRV-HDR:::70;
  response  COMPLD  ctag 70
    from  NE1  26-03-04  05:06:07
    at    N, 44 bytes
  
  RTRV-X:::71;
  response  DENY  ctag 71
    from  NE1  26-03-04  05:06:07
    at    N, 51 bytes
      PICC
  
  [1]
  $ cat received
  RTRV-HDR:::70;
  RTRV-X:::71;
  $ talk receive "$compld" receive "$deny" receive "$compld" stay
  $ mkfifo commands
  $ exec {live}< <(exec varnel ask --keep-going --json "$address" RTRV-A:::1 - < commands)
  $ exec {feed}> commands
  $ show() { read -r -t 20 line <&"$live" && echo "$line" | grep -o '^.*;"\|"code":"[A-Z]*"'; }
  $ show
  {"command":"RTRV-A:::1;"
  "code":"COMPLD"
  $ echo RTRV-B:::2 >&"$feed"; show
  {"command":"RTRV-B:::2;"
  "code":"DENY"
  $ echo RTRV-C:::3 >&"$feed"; show
  {"command":"RTRV-C:::3;"
  "code":"COMPLD"
  $ exec {feed}>&-
  $ wait "$!"
  [1]
  $ talk receive "$compld" receive "$compld"
  $ printf 'RTRV-HDR:::70\nRTRV;X:::71\n\tx\nRTRV-HDR:::72\n' | ask "$address" --keep-going - | grep -v '^    '
  RTRV-HDR:::70;
  response  COMPLD  ctag 70
    from  NE1  26-03-04  05:06:07
    at    N, 44 bytes
  
  RTRV-HDR:::72;
  response  COMPLD  ctag 72
    from  NE1  26-03-04  05:06:07
    at    N, 44 bytes
  
  ! varnel: line 2 of standard input: text after the ";"
  ! varnel: line 3 of standard input: control character or byte 255
  [2]
  $ talk 'wait 1'
  $ exec {feed}<> commands
  $ ask "$address" - < commands
  ! varnel: 127.0.0.1:PORT: the element closed the connection
  [1]
  $ exec {feed}>&-
  $ talk stay
  $ command varnel ask "$address" - <&-
  varnel: standard input: Bad file descriptor
  [1]

Without an answer.

  $ talk receive stay
  $ ask --json --timeout 0.2 "$address" RTRV-HDR:::70
  {"command":"RTRV-HDR:::70;","error":"no answer within 0.2 seconds"}
  ! varnel: 127.0.0.1:PORT: RTRV-HDR:::70; no answer within 0.2 seconds
  [1]
  $ talk receive receive "$compld"
  $ ask --keep-going --timeout 1 "$address" RTRV-HDR:::70 RTRV-HDR:::71
  RTRV-HDR:::71;
  response  COMPLD  ctag 71
    from  NE1  26-03-04  05:06:07
    at    N, 44 bytes
  
  ! varnel: 127.0.0.1:PORT: RTRV-HDR:::70; no answer within 1 second
  [1]
  $ talk receive "send ${head}M  % COMPLD\r\n   cut" stay
  $ ask --timeout 1 "$address" RTRV-HDR:::70
  response  COMPLD  ctag 70  (incomplete)
    from  NE1  26-03-04  05:06:07
    at    N, 49 bytes
      cut
  
  ! varnel: 127.0.0.1:PORT: RTRV-HDR:::70; the answer is incomplete
  [1]
  $ talk receive "send ${head}M  % COMPLD\r\n   one\r\n>" stay
  $ ask --timeout 1 "$address" RTRV-HDR:::70
  response  COMPLD  ctag 70  (continues)  (incomplete)
    from  NE1  26-03-04  05:06:07
    at    N, 52 bytes
      one
  
  ! varnel: 127.0.0.1:PORT: RTRV-HDR:::70; the answer is incomplete
  [1]
  $ talk
  $ ask --keep-going "$address" RTRV-HDR:::70 RTRV-HDR:::71 | sed 's/Connection reset by peer/the element closed the connection/'
  ! varnel: 127.0.0.1:PORT: RTRV-HDR:::70; the element closed the connection
  [1]
  $ talk reset receive "send ${head}M  % COMPLD\r\n   cut" 'wait 100'
  $ ask --keep-going "$address" RTRV-HDR:::70 RTRV-HDR:::71
  RTRV-HDR:::70;
  response  COMPLD  ctag 70  (incomplete)
    from  NE1  26-03-04  05:06:07
    at    N, 49 bytes
      cut
  
  ! varnel: 127.0.0.1:PORT: RTRV-HDR:::70; the answer is incomplete
  [1]
  $ serve --refuse
  $ ask --json "$address" RTRV-HDR:::70
  {"command":"RTRV-HDR:::70;","error":"Connection refused"}
  ! varnel: 127.0.0.1:PORT: Connection refused
  [1]
  $ serve --hang
  $ ask --timeout 0.3 "$address" RTRV-HDR:::70
  ! varnel: 127.0.0.1:PORT: no connection within 0.3 seconds
  [1]
  $ ask no..host:3083 RTRV-HDR
  ! varnel: no..host:3083: Name or service not known
  [1]

Signals log out; so does a closed pipe.

  $ interrupt() {
  >   talk receive "$compld" receive receive
  >   command varnel ask --json "${account[@]}" "$address" RTRV-HDR:::70 RTRV-HDR:::71 > shown 2>&1 &
  >   while [ "$(wc -l < received)" -lt 2 ]; do sleep 0.05; done
  >   local status=0
  >   kill "-$1" "$!"
  >   wait "$!" || status=$?
  >   without_port < shown
  >   echo "status $status; $(sed -n '$p' received | without_ctags)"
  > }
  $ interrupt INT
  {"command":"RTRV-HDR:::70;","error":"interrupted"}
  varnel: 127.0.0.1:PORT: RTRV-HDR:::70; interrupted
  status 130; CANC-USER::ops:N;
  $ interrupt TERM
  {"command":"RTRV-HDR:::70;","error":"interrupted"}
  varnel: 127.0.0.1:PORT: RTRV-HDR:::70; interrupted
  status 143; CANC-USER::ops:N;
  $ exec {feed}<> commands
  $ talk receive "$compld" receive "repeat 30000 ${head}M  % COMPLD\r\n   part\r\n>" "$compld" receive
  $ command varnel ask "${account[@]}" "$address" RTRV-HDR:::70 > commands &
  $ until read -r -t 20 -u "$feed"; do true; done
  $ kill "$!"
  $ wait "$!"
  [143]
  $ sed -n '$p' received | without_ctags
  CANC-USER::ops:N;
  $ talk receive "$compld" receive "$compld" receive "$compld" receive "$compld" receive
  $ exec {closed}> >(true)
  $ wait "$!"
  $ printf 'RTRV-HDR:::70\nRTRV-HDR:::71\n' | command varnel ask "${account[@]}" "$address" - >&"$closed"
  [141]
  $ sed -n '$p' received | without_ctags
  CANC-USER::ops:N;
  $ talk receive "$compld"
  $ varnel ask "$address" RTRV-HDR:::70 > /dev/full
  ! varnel: standard output: cannot write
  [1]

Dry runs.

  $ ask --dry-run --tid NE1 --user j.ops 127.0.0.1:1 RTRV-HDR:::70 'ed-pid::ops:71::old,new' ENT-USER-SECU:::72::pw - << 'END'
  > RTRV-ALM-ALL::ALL:73
  > END
  ACT-USER:NE1:"j.ops":N::******;
  RTRV-HDR:NE1::70;
  ed-pid:NE1:ops:71::******;
  ENT-USER-SECU:NE1::72::******;
  RTRV-ALM-ALL:NE1:ALL:73;
  CANC-USER:NE1:"j.ops":N;
  $ for _ in 1 2 3; do ask --dry-run 127.0.0.1:1 RTRV-A RTRV-B RTRV-C; done | grep -c '^RTRV-.:::[1-9][0-9]\{0,5\};$'
  9
  $ ask --dry-run --json 127.0.0.1:1 ACT-USER:::1::pw
  {"command":"ACT-USER:::N::******;"}

Wrong usage.

  $ for command in 'RTRV-HDR;x' "$(printf 'RTRV\nX')" '' '1' 'RTRV:::#' 'X:::"'; do ask 127.0.0.1:1 RTRV-HDR "$command"; done
  ! varnel: COMMAND 2: text after the ";"
  ! Try "varnel ask --help".
  ! varnel: COMMAND 2: control character or byte 255
  ! Try "varnel ask --help".
  ! varnel: COMMAND 2: no verb (expected a letter, then letters, digits, "-", "_")
  ! Try "varnel ask --help".
  ! varnel: COMMAND 2: no verb (expected a letter, then letters, digits, "-", "_")
  ! Try "varnel ask --help".
  ! varnel: COMMAND 2: bad ctag (expected letters, digits, "-", "_", ".")
  ! Try "varnel ask --help".
  ! varnel: COMMAND 2: quotation without end
  ! Try "varnel ask --help".
  [2]
  $ ask --timeout 0 127.0.0.1:1 RTRV-HDR
  ! varnel: --timeout: "0" is not a number of seconds above 0 and up to a year
  ! Try "varnel ask --help".
  [2]
  $ ask --tid "$(printf 'a\tb')" 127.0.0.1:1 RTRV-HDR
  ! varnel: --tid: control character or byte 255
  ! Try "varnel ask --help".
  [2]
  $ ask ::1:3083 RTRV-HDR
  ! varnel: HOST:PORT: "::1:3083" is not HOST:PORT, with an IPv6 address in brackets
  ! Try "varnel ask --help".
  [2]
  $ ask 127.0.0.1:3083
  ! varnel: COMMAND is required
  ! Try "varnel ask --help".
  [2]

IPv6, and the name of a service.

  $ talk() { : > received; printf '%s\n' "$@" > steps; serve --host ::1 --talk steps; }
  $ talk receive "$deny"
  $ ask "[::1]:${address#*:}" RTRV-HDR:::70
  response  DENY  ctag 70
    from  NE1  26-03-04  05:06:07
    at    N, 51 bytes
      PICC
  
  [1]

  $ ask '[::1]:no-such-service' RTRV-HDR:::70
  ! varnel: [::1]:no-such-service: the service "no-such-service" is not known
  [1]
