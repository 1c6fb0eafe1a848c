Watching elements that follow scripts: see tests/support/scripted_element.h. The file "received" contains
the commands that they receive.

  $ . "$SUPPORT/session.sh"
  $ head='\r\n\n   NE1 26-03-04 05:06:07\r\n'
  $ compld="send $head"'M  % COMPLD\r\n;'
  $ alarm() { echo "send ${head}*C $1 REPT ALM EQPT"'\r\n   "SLOT-1:CR,LOS,SA"\r\n;'; }
  $ talk() { printf '%s\n' "${@:2}" > steps; serve --talk --times "$1" steps; }
  $ (umask 077; echo 'Se"cret\1' > password)
  $ account=(--user ops --password-file password)
  $ start() { : > lines; command varnel watch "$@" > lines 2> errors & pid=$!; }
  $ await() {
  >   for _ in $(seq 400); do
  >     if [ "$(grep -c "$1" lines)" -ge "${2:-1}" ]; then return; fi
  >     sleep 0.05
  >   done
  >   echo "$1 did not come"
  > }
  $ show() {
  >   sed -E '/"event"/s/,"[a-z_]+":null//g; s/,"received":"[-0-9]+T[0-9:.]+Z"//; s/("retry_in":)[0-9.]+/\1R/
  >     s/"offset":.*("sid")/\1/; s/("ctag":)"[0-9]+"/\1N/; s/,"date".*("ctag")/,\1/; s/,"text":.*"severity"/,"severity"/' lines
  > }
  $ stop() {
  >   local status=0
  >   kill -"${1:-TERM}" "$pid"
  >   wait "$pid" || status=$?
  >   show
  >   cat errors
  >   without_ctags < received | uniq
  >   return "$status"
  > }
  $ without_ctags() { sed -E 's/([A-Z]+:[^:]*:[^:]*:)[0-9]+/\1N/'; }

Log-in, commands, messages, gaps also across a reconnect, and the log-out.

  $ talk 2 receive "$compld" receive "send $head"'M  % COMPLD\r\n   one\r\n>' "send $head"'M  % COMPLD\r\n   two\r\n;' \
  >   "$(alarm 1.7)" "$(alarm 4.8)" 'wait 300'
  $ start "a=$address" "${account[@]}" --after-login RTRV-HDR --retry-max 0.1
  $ await '"event":"login"' 2
  $ await '"atag":"4.8"' 2
  $ stop
  {"event":"up","source":"a"}
  {"type":"response","source":"a","sid":"NE1","ctag":N,"atag":null,"code":"COMPLD","verb":null,"lines":[],"severity":null,"missed":null,"continues":false,"raw":null}
  {"event":"login","source":"a","code":"COMPLD","user":"ops"}
  {"type":"response","source":"a","sid":"NE1","ctag":N,"atag":null,"code":"COMPLD","verb":null,"lines":["one"],"severity":null,"missed":null,"continues":true,"raw":null}
  {"type":"response","source":"a","sid":"NE1","ctag":N,"atag":null,"code":"COMPLD","verb":null,"lines":["two"],"severity":null,"missed":null,"continues":false,"raw":null}
  {"type":"autonomous","source":"a","sid":"NE1","ctag":null,"atag":"1.7","code":"*C","verb":"REPT ALM EQPT","lines":["\"SLOT-1:CR,LOS,SA\""],"severity":"CR","missed":null,"continues":false,"raw":null}
  {"event":"missed","source":"a","sid":"NE1","count":2}
  {"type":"autonomous","source":"a","sid":"NE1","ctag":null,"atag":"4.8","code":"*C","verb":"REPT ALM EQPT","lines":["\"SLOT-1:CR,LOS,SA\""],"severity":"CR","missed":2,"continues":false,"raw":null}
  {"event":"down","source":"a","reason":"the element closed the connection","retry_in":R}
  {"event":"up","source":"a"}
  {"type":"response","source":"a","sid":"NE1","ctag":N,"atag":null,"code":"COMPLD","verb":null,"lines":[],"severity":null,"missed":null,"continues":false,"raw":null}
  {"event":"login","source":"a","code":"COMPLD","user":"ops"}
  {"type":"response","source":"a","sid":"NE1","ctag":N,"atag":null,"code":"COMPLD","verb":null,"lines":["one"],"severity":null,"missed":null,"continues":true,"raw":null}
  {"type":"response","source":"a","sid":"NE1","ctag":N,"atag":null,"code":"COMPLD","verb":null,"lines":["two"],"severity":null,"missed":null,"continues":false,"raw":null}
  {"type":"autonomous","source":"a","sid":"NE1","ctag":null,"atag":"1.7","code":"*C","verb":"REPT ALM EQPT","lines":["\"SLOT-1:CR,LOS,SA\""],"severity":"CR","missed":null,"continues":false,"raw":null}
  {"event":"missed","source":"a","sid":"NE1","count":2}
  {"type":"autonomous","source":"a","sid":"NE1","ctag":null,"atag":"4.8","code":"*C","verb":"REPT ALM EQPT","lines":["\"SLOT-1:CR,LOS,SA\""],"severity":"CR","missed":2,"continues":false,"raw":null}
  ACT-USER::ops:N::"Se\"cret\\1";
  RTRV-HDR:::N;
  ACT-USER::ops:N::"Se\"cret\\1";
  RTRV-HDR:::N;

A failure that repeats is reported once: connections refused, log-ins refused, connections closed immediately.

  $ : > received
  $ serve --refuse
  $ start "a=$address" --retry-max 0.05
  $ await down
  $ sleep 0.5
  $ stop
  {"event":"down","source":"a","reason":"Connection refused","retry_in":R}
  $ talk 3 receive "send $head"'M  % DENY\r\n   PIUI Se"cret\\1\r\n;' stay
  $ start "a=$address" "${account[@]}" --type acknowledgement --retry-max 0.05
  $ await login_refused
  $ for _ in $(seq 100); do [ "$(wc -l < received)" -lt 2 ] || break; sleep 0.05; done
  $ stop INT
  {"event":"up","source":"a"}
  {"event":"login_refused","source":"a","reason":"PIUI ******","code":"DENY","user":"ops","retry_in":R}
  ACT-USER::ops:N::"Se\"cret\\1";
  $ serve --times 50
  $ start "$address" --retry-max 0.05
  $ await down
  $ sleep 0.5
  $ : > received
  $ stop > shown
  $ without_port < shown
  {"event":"up","source":"127.0.0.1:PORT"}
  {"event":"down","source":"127.0.0.1:PORT","reason":"the element closed the connection","retry_in":R}

Heartbeats: answers are not printed; without one the connection is lost.

  $ talk 2 receive "$compld" receive stay
  $ start "a=$address" --heartbeat 0.2 --type '*' --retry-max 30
  $ await down
  $ stop
  {"event":"up","source":"a"}
  {"event":"down","source":"a","reason":"no answer to the heartbeat","retry_in":R}
  RTRV-HDR:::N;

Telnet, answers in pieces, many parts with an event between, a reset in a message, and elements that do not answer or
cannot be reached, all at the same time. A pending log-in is ended too.

  $ element() {
  >   mkdir "$1"
  >   cd "$1"
  >   talk 1 "${@:2}"
  >   cd ..
  >   echo "$1 $address ops password" >> mixed
  > }
  $ part="${head}M  % COMPLD\r\n   part\r\n>"
  $ element telnet 'send \xff\xfb\x01\xff\xfd\x18\xff\xfb\x01Welcome\r\n<' receive "$compld" receive "$compld" stay
  $ element pieces 'piece 1' receive "$compld" receive "$compld" "send $head"'A  1 REPT EVT\r\n   Se"cret\\1\r\n;' stay
  $ element parts receive "$compld" receive "repeat 500 $part" "$(alarm 1)" "repeat 499 $part" "$compld" stay
  $ element reset reset receive "$compld" receive "send ${head}M  % COMPLD\r\n   cut" 'wait 100'
  $ element silent receive receive
  $ serve --hang; echo "hanging $address" >> mixed
  $ echo 'unknown no..host:3083' >> mixed
  $ start --elements mixed --after-login RTRV-X --type autonomous,response
  $ await '"source":"telnet".*"COMPLD"' 3
  $ await '"source":"pieces".*"REPT EVT"'
  $ await '"source":"parts".*"continues":false' 3
  $ await '"event":"down","source":"reset"'
  $ await '"event":"down","source":"unknown"'
  $ kill "$pid"
  $ wait "$pid"
  $ brief() { sed -E 's/^.*("source":"[a-z]*").*,("code":"[^"]*"),"verb":[^,]*,("lines":[^]]*\]).*("continues":[a-z]*).*/\1 \2 \3 \4/'; }
  $ show | grep -v refused | sort -s -t '"' -k 8,8 | brief | uniq -c
        1 {"event":"up","source":"parts"}
        1 "source":"parts" "code":"COMPLD" "lines":[] "continues":false
        1 {"event":"login","source":"parts","code":"COMPLD","user":"ops"}
      500 "source":"parts" "code":"COMPLD" "lines":["part"] "continues":true
        1 "source":"parts" "code":"*C" "lines":["\"SLOT-1:CR,LOS,SA\""] "continues":false
      499 "source":"parts" "code":"COMPLD" "lines":["part"] "continues":true
        1 "source":"parts" "code":"COMPLD" "lines":[] "continues":false
        1 {"event":"up","source":"pieces"}
        1 "source":"pieces" "code":"COMPLD" "lines":[] "continues":false
        1 {"event":"login","source":"pieces","code":"COMPLD","user":"ops"}
        1 "source":"pieces" "code":"COMPLD" "lines":[] "continues":false
        1 "source":"pieces" "code":"A" "lines":["******"] "continues":false
        1 {"event":"up","source":"reset"}
        1 "source":"reset" "code":"COMPLD" "lines":[] "continues":false
        1 {"event":"login","source":"reset","code":"COMPLD","user":"ops"}
        1 "source":"reset" "code":"COMPLD" "lines":["cut"] "continues":false
        1 {"event":"down","source":"reset","reason":"Connection reset by peer","retry_in":R}
        1 {"event":"up","source":"silent"}
        1 {"event":"up","source":"telnet"}
        1 "source":"telnet" "code":"COMPLD" "lines":[] "continues":false
        1 {"event":"login","source":"telnet","code":"COMPLD","user":"ops"}
        1 "source":"telnet" "code":"COMPLD" "lines":[] "continues":false
        1 {"event":"down","source":"unknown","reason":"Name or service not known","retry_in":R}
  $ grep -c '"source":"reset".*"complete":false' lines
  1
  $ without_ctags < telnet/received
  ACT-USER::ops:N::"Se\"cret\\1";
  \xff\xfe\x01\xff\xfc\x18RTRV-X:::N; (esc)
  $ without_ctags < silent/received
  ACT-USER::ops:N::"Se\"cret\\1";
  CANC-USER::ops:N;

The list is read again, but not a pipe. A bad list changes nothing; an element that it no longer has is logged out.

  $ talk 1 receive "$compld" receive
  $ mkdir lists
  $ mv password lists
  $ printf '# all\n\nold %s ops password # user\r\npiped 127.0.0.1:1\n' "$address" > lists/all
  $ start --elements lists/all --user j.ops --password-file <(echo piped)
  $ await '"login"'
  $ echo 'worse 10.0.0.7' >> lists/all
  $ kill -HUP "$pid"
  $ for _ in $(seq 100); do [ ! -s errors ] || break; sleep 0.05; done
  $ echo "new ${address%:*}:1" > lists/all
  $ kill -HUP "$pid"
  $ await '"source":"new"'
  $ await 'no longer' 2
  $ stop > shown
  $ grep -v '"down"' shown
  {"event":"up","source":"old"}
  {"type":"response","source":"old","sid":"NE1","ctag":N,"atag":null,"code":"COMPLD","verb":null,"lines":[],"severity":null,"missed":null,"continues":false,"raw":null}
  {"event":"login","source":"old","code":"COMPLD","user":"ops"}
  varnel: line 5 of lists/all: "10.0.0.7" is not HOST:PORT, with an IPv6 address in brackets
  ACT-USER::ops:N::"Se\"cret\\1";
  CANC-USER::ops:N;
  $ grep '"down"' shown | sort
  {"event":"down","source":"new","reason":"Connection refused","retry_in":R}
  {"event":"down","source":"old","reason":"it is no longer in the list"}
  {"event":"down","source":"piped","reason":"Connection refused","retry_in":R}
  {"event":"down","source":"piped","reason":"it is no longer in the list"}
  $ list() { printf '%b' "$1" > list; varnel watch --elements list "${@:2}"; }
  $ list 'a 127.0.0.1:1\nb\n'
  ! varnel: line 2 of list: "b" has no address (expected NAME HOST:PORT)
  [1]
  $ list 'a 127.0.0.1:1 u p x\n'
  ! varnel: line 1 of list: "x" is a word too many after the password file
  [1]
  $ list 'a 127.0.0.1:1\nb 127.0.0.1:2\na [::1]:3\n'
  ! varnel: line 3 of list: the name "a" occurs twice
  [1]
  $ list 'a 127.0.0.1:1\n' a=127.0.0.1:2
  ! varnel: line 1 of list: the name "a" occurs twice
  [1]
  $ list 'a 127.0.0.1:1\000\n'
  ! varnel: line 1 of list: contains a control character
  [1]
  $ list 'a 127.0.0.1:1 ops\n'
  ! varnel: line 1 of list: user "ops" has no password file
  [1]
  $ list 'a 127.0.0.1:1 ops absent\n'
  ! varnel: absent: No such file or directory
  [1]
  $ (umask 077; printf 'x\ty\n' > control); list '' a=127.0.0.1:1 --user ops --password-file control
  ! varnel: a: cannot log in: control character or byte 255 in the password
  [1]
  $ chmod 644 control; list '' a=127.0.0.1:1 --user ops --password-file control
  ! varnel: control: other users have access to this password file (expected: chmod 600)
  [1]
  $ varnel watch --elements absent
  ! varnel: absent: No such file or directory
  [1]
  $ varnel watch
  ! varnel: ELEMENT or --elements is required
  ! Try "varnel watch --help".
  [2]
  $ varnel watch =127.0.0.1:1
  ! varnel: ELEMENT: "=127.0.0.1:1" has no name (expected [NAME=]HOST:PORT)
  ! Try "varnel watch --help".
  [2]
  $ varnel watch a=127.0.0.1
  ! varnel: ELEMENT: "127.0.0.1" is not HOST:PORT, with an IPv6 address in brackets
  ! Try "varnel watch --help".
  [2]
  $ varnel watch a=127.0.0.1:1 --after-login 'RTRV;HDR;'
  ! varnel: --after-login: text after the ";"
  ! Try "varnel watch --help".
  [2]
  $ varnel watch a=127.0.0.1:1 --heartbeat -1
  ! varnel: --heartbeat: "-1" is not a number of seconds from 0 to a year
  ! Try "varnel watch --help".
  [2]

Output that blocks, also in lines longer than a pipe accepts in one piece: reading stops, memory is limited, and the
heartbeat waits; nothing is lost when output continues.

  $ for i in $(seq 20000); do
  >   printf '\r\n\n   NE1 26-03-04 05:06:07\r\nA  %d REPT EVT EQPT\r\n   %0*d\r\n;' "$i" "$((i % 1000 ? 1 : 9000))" 1
  > done > many
  $ blocked() {
  >   local before written=0
  >   for _ in $(seq 100); do
  >     before=$written
  >     written=$(sed -n 's/wchar: //p' "/proc/$pid/io")
  >     if [ "$written" -gt 50000 ] && [ "$written" -eq "$before" ]; then return; fi
  >     sleep 0.2
  >   done
  >   echo "output does not block"
  > }
  $ memory() { sed -n 's/VmRSS:[^0-9]*\([0-9]*\).*/\1/p' "/proc/$pid/status"; }
  $ mkfifo pipe
  $ exec {held}<> pipe
  $ : > received
  $ serve --silent many
  $ command varnel watch "a=$address" --heartbeat 0.5 > pipe 2> errors & pid=$!
  $ blocked
  $ sleep 1.5
  $ exec {reader}< <(exec sed -E '/"atag":"20000"/q' < pipe)
  $ cat <&"$reader" > lines
  $ kill "$pid"
  $ wait "$pid"
  $ grep -c '"missed":0' lines
  19999
  $ grep -c event lines
  1
  $ grep -c '0\{8999\}1' lines
  20
  $ grep -v '^{"[^{]*}$' lines
  [1]
  $ cat errors

A signal while output is blocked: whole lines are printed, the others counted.

  $ serve --for-ever many
  $ command varnel watch "a=$address" > pipe 2> errors & pid=$!
  $ blocked
  $ before=$(memory)
  $ sleep 1
  $ [ "$(memory)" -lt "$((before + 4096))" ] || echo "too much memory"
  $ kill "$pid"
  $ wait "$pid"
  $ exec {held}>&-
  $ sed 's/[0-9][0-9]*/N/' errors
  varnel: standard output: N lines are lost
