  $ . "$SUPPORT/session.sh"
  $ package() { printf 'status=completed done=%d total=%d;\n;\n' "$1" "$2"; }
  $ show() { IFS= read -r line <&"$live"; echo "$line"; }

Each report of a pipe is shown when it arrives.

  $ mkfifo pipe
  $ exec {live}< <(varnel report pipe; echo "status $?")
  $ exec {pipe}> pipe
  $ package 1 3 >&"$pipe"; show
  package 1/3 33%
  $ package 2 3 >&"$pipe"; show
  package 2/3 66%
  $ package 3 3 >&"$pipe"
  $ cat <&"$live"
  package 3/3 100%
  package complete
  status 0

A growing file, which is rewritten once.

  $ package 1 4 > growing.txt
  $ exec {live}< <(varnel report --follow growing.txt --timeout 50; echo "status $?")
  $ show
  package 1/4 25%
  $ package 2 4 >> growing.txt
  $ show
  package 2/4 50%
  $ printf 'status=completed do' >> growing.txt
  $ printf 'ne=3 total=400000000;\n' >> growing.txt
  $ echo ";" >> growing.txt
  $ show
  package 3/400000000 0%
  $ package 4 5 > growing.txt
  $ show
  package 4/5 80%
  $ package 5 5 >> growing.txt
  $ cat <&"$live"
  package 5/5 100%
  package complete
  status 0

A file that is replaced. The idle limit ends the run.

  $ package 1 4 > log
  $ exec {live}< <(varnel report --follow log --idle 2 2>&1; echo "status $?")
  $ show
  package 1/4 25%
  $ mv log log.1
  $ package 2 4 > log
  $ cat <&"$live"
  package 2/4 50%
  ! varnel: log: no end result: no input for 2 seconds
  status 1

Connections: ended by the element, silent after the end result, endless.

  $ serve "$DATA/reports/script-mml.txt"
  $ varnel report --connect "$address"
  script 5/20 25%  NE-WEST
  script 10/20 50%  NE-WEST
  script 15/20 75%  NE-WEST
  script 20/20 100%  NE-WEST
  end SUCCESS, code 0  NE-WEST
  $ serve --silent "$DATA/reports/script-mml.txt"
  $ varnel report --connect "$(local_name):${address#*:}" --timeout 50
  script 5/20 25%  NE-WEST
  script 10/20 50%  NE-WEST
  script 15/20 75%  NE-WEST
  script 20/20 100%  NE-WEST
  end SUCCESS, code 0  NE-WEST
  $ serve --for-ever --piece 7 "$DATA/reports/package-mml-status.txt"
  $ varnel report --connect "$address"
  package 1/4 25%  NE-WEST
  package 2/4 50%  NE-WEST
  package 4/4 100%  NE-WEST
  package complete  NE-WEST

One byte at a time.

  $ serve --piece 1 "$DATA/reports/script-mml-failed.txt"
  $ varnel report --connect "$address"
  script 5/20 25%  NE-WEST
  script 10/20 50%  NE-WEST
  script 15/20 75%  NE-WEST
  script 17/20 85%  NE-WEST
  end FAIL, code 1203, item 17: board 3 does not answer  NE-WEST
  [1]
  $ serve --piece 1 "$DATA/reports/package-mml.txt"
  $ varnel report --connect "$address"
  package 0/12 0%  NE-WEST 41
  package 3/12 25%  NE-WEST 41
  package 9/12 75%  NE-WEST 41
  package 12/12 100%  NE-WEST 41
  package complete  NE-WEST 41
  $ serve --piece 1 "$DATA/reports/package-tl1.txt"
  $ varnel report --json --ne 0x1000001 --connect "$address" | without_port
  {"event":"package","source":"127.0.0.1:PORT","sid":"NE-EAST","load":"SLOT-3","done":0,"total":12,"percent":0}
  {"event":"package","source":"127.0.0.1:PORT","sid":"NE-EAST","load":"SLOT-3","done":4,"total":12,"percent":33}
  {"event":"package","source":"127.0.0.1:PORT","sid":"NE-EAST","load":"SLOT-3","done":8,"total":12,"percent":66}
  {"event":"package","source":"127.0.0.1:PORT","sid":"NE-EAST","load":"SLOT-3","done":12,"total":12,"percent":100}
  {"event":"complete","source":"127.0.0.1:PORT","sid":"NE-EAST","load":"SLOT-3","total":12}

Connections that are closed early or refused.

  $ sed '/15:02/,$d' "$DATA/reports/script-mml.txt" > part.txt
  $ serve part.txt
  $ varnel report --connect "$address" 2>&1 | without_port
  script 5/20 25%  NE-WEST
  script 10/20 50%  NE-WEST
  ! varnel: 127.0.0.1:PORT: no end result: the input ends
  [1]
  $ serve
  $ varnel report --connect "$address" 2>&1 | without_port
  ! varnel: 127.0.0.1:PORT: no end result: the input ends; no report was recognised
  [1]
  $ serve --refuse
  $ varnel report --connect "$address" 2>&1 | without_port
  ! varnel: 127.0.0.1:PORT: Connection refused
  [1]
  $ varnel report --connect "$address" --timeout 50 2>&1 | without_port
  ! varnel: 127.0.0.1:PORT: Connection refused
  [1]
  $ varnel report --connect "no..host:7"
  ! varnel: no..host:7: Name or service not known
  [1]

The time limit holds for every kind of input.

  $ serve --silent
  $ varnel report --connect "$address" --timeout 1 2>&1 | without_port
  ! varnel: 127.0.0.1:PORT: no end result: time limit reached after 1 second; no report was recognised
  [1]
  $ echo "drop by drop" > drops.txt
  $ serve --for-ever --piece 1 --pause 20 drops.txt
  $ varnel report --connect "$address" --timeout 1.5 2>&1 | without_port
  ! varnel: 127.0.0.1:PORT: no end result: time limit reached after 1.5 seconds; no report was recognised
  [1]
  $ varnel report --timeout 0.1 pipe
  ! varnel: pipe: no end result: time limit reached after 0.1 seconds; no report was recognised
  [1]
  $ exec {quiet}< <(exec sleep 50)
  $ varnel report --timeout 0.1 <&"$quiet"
  ! varnel: -: no end result: time limit reached after 0.1 seconds; no report was recognised
  [1]
  $ kill "$!"
  $ varnel report --timeout 0.1 --follow drops.txt
  ! varnel: drops.txt: no end result: time limit reached after 0.1 seconds; no report was recognised
  [1]
  $ (set +o pipefail; yes | varnel report --timeout 0.1 --separator y)
  ! varnel: -: no end result: time limit reached after 0.1 seconds; no report was recognised
  [1]
