  $ . "$SUPPORT/session.sh"

A message is printed while its stream is still open.

  $ mkfifo answers
  $ exec {live}< <(varnel tl1 < answers)
  $ exec {feed}> answers
  $ printf 'IP 1\r' >&"$feed"
  $ for part in '\n' '<'; do
  >   sleep 0.1
  >   printf '%b' "$part" >&"$feed"
  > done
  $ read -r -t 20 line <&"$live" && echo "$line"
  acknowledgement  IP  ctag 1
  $ exec {feed}>&-
  $ cat <&"$live"
    at    0, 7 bytes
  

A growing file.

  $ show() { IFS= read -r line <&"$live"; echo "$line" | without_times | cut -c 1-80; }
  $ head -c 100 "$DATA/tl1/session.tl1" > growing.tl1
  $ exec {live}< <(exec varnel tl1 --json --follow growing.tl1 --timeout 50)
  $ show
  {"type":"acknowledgement","source":"growing.tl1","received":"TIME","offset":35,"
  $ tail -c +101 "$DATA/tl1/session.tl1" | head -c 100 >> growing.tl1
  $ tail -c +201 "$DATA/tl1/session.tl1" >> growing.tl1
  $ show
  {"type":"response","source":"growing.tl1","received":"TIME","offset":46,"length"
  $ show
  {"type":"autonomous","source":"growing.tl1","received":"TIME","offset":181,"leng
  $ show
  {"type":"response","source":"growing.tl1","received":"TIME","offset":293,"length
  $ kill "$!"

A growing file that is truncated, then replaced, in the middle of messages. Their contents are not mixed.

  $ stream() { printf '\r\n\n   N1 26-03-04 05:06:07\r\nM  %d COMPLD\r\n;' "$@"; }
  $ show() { read -r -t 20 line <&"$live" && echo "$line" | sed -E 's/.*("offset":.*"complete":[a-z]*).*("ctag":[^,]*).*/\1 \2/'; }
  $ { stream 1; stream 2 | head -c 40; } > log
  $ exec {live}< <(exec varnel tl1 --json --follow log --timeout 50 2> errors; echo "status $?")
  $ show
  "offset":0,"length":42,"complete":true "ctag":"1"
  $ stream 3 > log
  $ show
  "offset":42,"length":40,"complete":false "ctag":"2"
  $ show
  "offset":0,"length":42,"complete":true "ctag":"3"
  $ stream 4 | head -c 40 >> log
  $ mv log log.1
  $ stream 4 | tail -c +41 >> log.1
  $ stream 5 > log
  $ show
  "offset":42,"length":42,"complete":true "ctag":"4"
  $ show
  "offset":0,"length":42,"complete":true "ctag":"5"
  $ kill "$!"
  $ cat errors
  varnel: log: the message at offset 42 has no end

Gaps are found across the rotation of a file.

  $ event() { printf '\r\n\n   N1 26-03-04 05:06:07\r\nA  %d REPT EVT\r\n;' "$@"; }
  $ event 1 > log
  $ exec {live}< <(exec varnel tl1 --json --follow log --timeout 50)
  $ show() { read -r -t 20 line <&"$live" && echo "$line" | grep -o '"missed":[^,]*'; }
  $ show
  "missed":null
  $ mv log log.2
  $ event 5 > log
  $ show
  "missed":3
  $ kill "$!"

Limits of time.

  $ hold stream 1
  $ varnel tl1 --idle 0.3 -v < pipe
  response  COMPLD  ctag 1
    from  N1  26-03-04  05:06:07
    at    0, 42 bytes
  
  ! varnel: -: skipped 0 bytes between messages: 0 echoes, 0 prompts, 0 other lines; 0 telnet sequences
  ! varnel: -: ended: no input for 0.3 seconds
  $ hold stream 1
  $ varnel tl1 --timeout 0.3 --type 'ack*' < pipe
  $ hold stream 1
  $ varnel tl1 --timeout 0.3 --count 2 < pipe | grep ctag
  ! varnel: -: only 1 of 2 messages came
  response  COMPLD  ctag 1
  [1]
  $ hold head -c 80 <(stream 1 2)
  $ varnel tl1 --idle 0.3 < pipe | grep ctag
  ! varnel: -: the message at offset 42 has no end
  response  COMPLD  ctag 1
  response  COMPL  ctag 2  (incomplete)
  [1]
  $ hold stream 1 2 3
  $ varnel tl1 --count 2 < pipe | grep ctag
  response  COMPLD  ctag 1
  response  COMPLD  ctag 2

Connections: whole, one byte at a time, cut off, refused, silent.

  $ serve "$DATA/tl1/session.tl1"
  $ varnel tl1 --json --connect "$address" | without_port | without_times
  {"type":"acknowledgement","source":"127.0.0.1:PORT","received":"TIME","offset":35,"length":9,"complete":true,"sid":null,"date":null,"time":null,"ctag":"117","atag":null,"code":"IP","verb":null,"lines":[],"text":[],"severity":null,"missed":null,"continues":false,"raw":null}
  {"type":"response","source":"127.0.0.1:PORT","received":"TIME","offset":46,"length":133,"complete":true,"sid":"NE-EAST","date":"26-01-15","time":"12:00:07","ctag":"117","atag":null,"code":"COMPLD","verb":null,"lines":["\"SLOT-3:CR,EQPT,SA,01-15,11-58-20,NEND,,\\\"second > third\\\"\"","/* one alarm */"],"text":[{"aid":"SLOT-3","positional":[["CR","EQPT","SA","01-15","11-58-20","NEND","","second > third"]],"named":{}},null],"severity":"CR","missed":null,"continues":false,"raw":null}
  {"type":"autonomous","source":"127.0.0.1:PORT","received":"TIME","offset":181,"length":110,"complete":true,"sid":"NE-EAST","date":"26-01-15","time":"12:00:31","ctag":null,"atag":"7860.7858","code":"*C","verb":"REPT ALM EQPT","lines":["\"SLOT-5:CR,FAN-FAIL,SA,01-15,12-00-31,NEND\""],"text":[{"aid":"SLOT-5","positional":[["CR","FAN-FAIL","SA","01-15","12-00-31","NEND"]],"named":{}}],"severity":"CR","missed":null,"continues":false,"raw":null}
  {"type":"response","source":"127.0.0.1:PORT","received":"TIME","offset":293,"length":56,"complete":true,"sid":"NE-EAST","date":"26-01-15","time":"12:01:02","ctag":"118","atag":null,"code":"DENY","verb":null,"lines":["PLNA"],"text":[null],"severity":null,"missed":null,"continues":false,"raw":null}
  $ serve --piece 1 "$DATA/tl1/session.tl1"
  $ varnel tl1 --connect "$address" --timeout 50
  acknowledgement  IP  ctag 117
    at    35, 9 bytes
  
  response  COMPLD  ctag 117
    from  NE-EAST  26-01-15  12:00:07
    at    46, 133 bytes
      "SLOT-3:CR,EQPT,SA,01-15,11-58-20,NEND,,\"second > third\""
      /* one alarm */
  
  autonomous  *C  REPT ALM EQPT  atag 7860.7858
    from  NE-EAST  26-01-15  12:00:31
    at    181, 110 bytes
      "SLOT-5:CR,FAN-FAIL,SA,01-15,12-00-31,NEND"
  
  response  DENY  ctag 118
    from  NE-EAST  26-01-15  12:01:02
    at    293, 56 bytes
      PLNA
  
  $ head -c 330 "$DATA/tl1/session.tl1" > cut.tl1
  $ serve --piece 100 --pause 5 cut.tl1
  $ varnel tl1 --json --type response --connect "$address" 2>&1 | without_port | without_times
  {"type":"response","source":"127.0.0.1:PORT","received":"TIME","offset":46,"length":133,"complete":true,"sid":"NE-EAST","date":"26-01-15","time":"12:00:07","ctag":"117","atag":null,"code":"COMPLD","verb":null,"lines":["\"SLOT-3:CR,EQPT,SA,01-15,11-58-20,NEND,,\\\"second > third\\\"\"","/* one alarm */"],"text":[{"aid":"SLOT-3","positional":[["CR","EQPT","SA","01-15","11-58-20","NEND","","second > third"]],"named":{}},null],"severity":"CR","missed":null,"continues":false,"raw":null}
  ! varnel: 127.0.0.1:PORT: the message at offset 293 has no end
  [1]
  $ serve --refuse
  $ varnel tl1 --connect "$address" 2>&1 | without_port
  ! varnel: 127.0.0.1:PORT: Connection refused
  [1]
  $ serve --silent "$DATA/tl1/session.tl1"
  $ varnel tl1 --type acknowledgement --connect "$address" --idle 1 2>&1 | without_port
  acknowledgement  IP  ctag 117
    at    35, 9 bytes
  

One byte per second does not delay the time limit.

  $ printf 'x' > drop
  $ serve --for-ever --piece 1 --pause 1000 drop
  $ varnel tl1 --idle 0.3 --connect "$address" 2>&1 | without_port
  ! varnel: 127.0.0.1:PORT: no TL1 message was found
  [1]
