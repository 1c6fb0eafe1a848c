  $ . "$SUPPORT/session.sh"
  $ set +o pipefail   # report ends before its input does
  $ cd "$DATA/reports"

Script runs.

  $ varnel report script-mml.txt
  script 5/20 25%  NE-WEST
  script 10/20 50%  NE-WEST
  script 15/20 75%  NE-WEST
  script 20/20 100%  NE-WEST
  end SUCCESS, code 0  NE-WEST
  $ varnel report script-mml-failed.txt
  script 5/20 25%  NE-WEST
  script 10/20 50%  NE-WEST
  script 15/20 75%  NE-WEST
  script 17/20 85%  NE-WEST
  end FAIL, code 1203, item 17: board 3 does not answer  NE-WEST
  [1]
  $ varnel report --json script-mml.txt
  {"event":"script","source":"script-mml.txt","sid":"NE-WEST","load":null,"done":5,"total":20,"percent":25}
  {"event":"script","source":"script-mml.txt","sid":"NE-WEST","load":null,"done":10,"total":20,"percent":50}
  {"event":"script","source":"script-mml.txt","sid":"NE-WEST","load":null,"done":15,"total":20,"percent":75}
  {"event":"script","source":"script-mml.txt","sid":"NE-WEST","load":null,"done":20,"total":20,"percent":100}
  {"event":"end","source":"script-mml.txt","sid":"NE-WEST","result":"SUCCESS","code":0,"item":null,"text":null}
  $ varnel report --json script-mml-failed.txt
  {"event":"script","source":"script-mml-failed.txt","sid":"NE-WEST","load":null,"done":5,"total":20,"percent":25}
  {"event":"script","source":"script-mml-failed.txt","sid":"NE-WEST","load":null,"done":10,"total":20,"percent":50}
  {"event":"script","source":"script-mml-failed.txt","sid":"NE-WEST","load":null,"done":15,"total":20,"percent":75}
  {"event":"script","source":"script-mml-failed.txt","sid":"NE-WEST","load":null,"done":17,"total":20,"percent":85}
  {"event":"end","source":"script-mml-failed.txt","sid":"NE-WEST","result":"FAIL","code":1203,"item":"17","text":"board 3 does not answer"}
  [1]
  $ printf 'EVENT CAM RUN PROGRESS TOTAL  DONE_NUM 7 1;\n;\nEVENT CAM RUN END RSP SUCCESS' | varnel report -
  script 1/7 100%
  end SUCCESS, code 0

Package loads.

  $ varnel report --ne 0xFFFFFF package-mml.txt
  package 0/12 0%  NE-WEST 41
  package 3/12 25%  NE-WEST 41
  package 9/12 75%  NE-WEST 41
  package 12/12 100%  NE-WEST 41
  package complete  NE-WEST 41
  $ varnel report --ne 0xFFFFFF package-mml-status.txt
  package 1/4 25%  NE-WEST
  package 2/4 50%  NE-WEST
  package 4/4 100%  NE-WEST
  package complete  NE-WEST
  $ varnel report --ne 16777216 package-tl1.txt
  package 0/12 0%  NE-EAST SLOT-3
  package 4/12 33%  NE-EAST SLOT-3
  package 8/12 66%  NE-EAST SLOT-3
  package 12/12 100%  NE-EAST SLOT-3
  package complete  NE-EAST SLOT-3
  $ varnel report --ne 16777216 package-tl1-files.txt
  package 2/8 25%  NE-EAST
  package 5/8 62%  NE-EAST
  package 8/8 100%  NE-EAST
  package complete  NE-EAST
  $ varnel report --ne 16777216 package-tl1-slots.txt
  package 1/3 33%  NE-EAST
  package 2/3 66%  NE-EAST
  package 3/3 100%  NE-EAST
  package complete  NE-EAST
  $ varnel report --json --ne 0x1000000 package-tl1.txt
  {"event":"package","source":"package-tl1.txt","sid":"NE-EAST","load":"SLOT-3","done":0,"total":12,"percent":0}
  {"event":"package","source":"package-tl1.txt","sid":"NE-EAST","load":"SLOT-3","done":4,"total":12,"percent":33}
  {"event":"package","source":"package-tl1.txt","sid":"NE-EAST","load":"SLOT-3","done":8,"total":12,"percent":66}
  {"event":"package","source":"package-tl1.txt","sid":"NE-EAST","load":"SLOT-3","done":12,"total":12,"percent":100}
  {"event":"complete","source":"package-tl1.txt","sid":"NE-EAST","load":"SLOT-3","total":12}

Several loads at the same time: the run ends with the last one, with --first at the first one.

  $ mml() { printf '+++ %s\nEVT_SFTM_CPYFILE_PROGRESS\nTASK_ID = %s\nDONE_NUM TOTAL_NUM\n%s %s\n--- END\n' "$@"; }
  $ loads() { mml A 1 0 2; mml B 1 0 2; mml A 2 1 2; mml B 1 2 2; mml A 1 2 2; mml A 2 2 2; mml A 3 0 2; }
  $ loads | varnel report
  package 0/2 0%  A 1
  package 0/2 0%  B 1
  package 1/2 50%  A 2
  package 2/2 100%  B 1
  package complete  B 1
  package 2/2 100%  A 1
  package complete  A 1
  package 2/2 100%  A 2
  package complete  A 2
  $ loads | varnel report --json --first
  {"event":"package","source":"-","sid":"A","load":"1","done":0,"total":2,"percent":0}
  {"event":"package","source":"-","sid":"B","load":"1","done":0,"total":2,"percent":0}
  {"event":"package","source":"-","sid":"A","load":"2","done":1,"total":2,"percent":50}
  {"event":"package","source":"-","sid":"B","load":"1","done":2,"total":2,"percent":100}
  {"event":"complete","source":"-","sid":"B","load":"1","total":2}
  $ loads | head -n 32 | varnel report | tail -n 1
  ! varnel: -: no end result: the input ends
  package complete  A 1
  $ tl1() { printf '\r\n\n   %s 26-03-04 05:06:07\r\nA  1 REPT EVT PROGRESS\r\n   %b\r\n;' "$@"; }
  $ both='"S1:X,TRANSFEREDFILES=1,TOTALNUM=2,:"\r\n   "S2:X,TRANSFEREDFILES=2,TOTALNUM=2,:"'
  $ { tl1 A "$both"; tl1 B 'FILES_DONE=1,FILES_TOTAL=1'; tl1 A '"S1:X,TRANSFEREDFILES=2,TOTALNUM=2,:"'; } | varnel report
  package 1/2 50%  A S1
  package 2/2 100%  A S2
  package complete  A S2
  package 1/1 100%  B
  package complete  B
  package 2/2 100%  A S1
  package complete  A S1
  $ script() { printf '+++ %s\nEVENT CAM RUN %s\n---  END\n' "$@"; }
  $ { script A 'PROGRESS TOTAL  DONE_NUM 20 5;'; script B 'END RSP FAIL 1 2 text'; script A 'END RSP SUCCESS 0'; } | varnel report
  script 5/20 25%  A
  end FAIL, code 1, item 2: text  B
  end SUCCESS, code 0  A
  [1]

The language is that of the first report that is recognised, unless it is given.

  $ cat package-tl1-slots.txt package-mml.txt | varnel report --first | tail -n 1
  package complete  NE-EAST
  $ cat package-tl1-slots.txt package-mml.txt | varnel report --language mml | tail -n 1
  package complete  NE-WEST 41
  $ varnel report --language tl1 package-mml.txt
  ! varnel: package-mml.txt: no end result: the input ends; no TL1 report was recognised
  [1]
  $ varnel report --language ftp package-mml.txt
  ! varnel: --language: "ftp" is not one of mml, tl1
  ! Try "varnel report --help".
  [2]
  $ varnel report --language mml --ne 1 package-mml.txt
  ! varnel: --language excludes --ne
  ! Try "varnel report --help".
  [2]

Without an end result.

  $ sed '/RUN END/,$d' script-mml.txt | varnel report
  script 5/20 25%  NE-WEST
  script 10/20 50%  NE-WEST
  script 15/20 75%  NE-WEST
  script 20/20 100%  NE-WEST
  ! varnel: -: no end result: the input ends
  [1]
  $ sed '/10:04/,$d' package-mml.txt | varnel report --json
  {"event":"package","source":"-","sid":"NE-WEST","load":"41","done":0,"total":12,"percent":0}
  {"event":"package","source":"-","sid":"NE-WEST","load":"41","done":3,"total":12,"percent":25}
  {"event":"package","source":"-","sid":"NE-WEST","load":"41","done":9,"total":12,"percent":75}
  ! varnel: -: no end result: the input ends
  [1]
  $ printf 'EVENT CAM RUN END RSP FAIL 1 2\n' | varnel report
  ! varnel: -: no end result: the input ends; no report was recognised
  [1]
  $ varnel report < /dev/null
  ! varnel: -: no end result: the input ends; no report was recognised
  [1]
  $ varnel report package-tl1.txt
  package 0/12 0%  NE-EAST SLOT-3
  package 4/12 33%  NE-EAST SLOT-3
  package 8/12 66%  NE-EAST SLOT-3
  package 12/12 100%  NE-EAST SLOT-3
  package complete  NE-EAST SLOT-3
  $ varnel report --ne 0x1000000 script-mml.txt
  ! varnel: script-mml.txt: no end result: the input ends; no TL1 report was recognised
  [1]
  $ varnel report script-mml.txt > /dev/full
  ! varnel: standard output: cannot write
  [1]
  $ cd "$OLDPWD"

Keys.

  $ line() { echo "$1 EVENT CAM RUN END RSP SUCCESS $2"; echo ";"; }
  $ { line NE-1 1; line NE-2 2; line NE-3 3; } > both.txt
  $ varnel report both.txt
  end SUCCESS, code 1
  $ varnel report --key NE-2 both.txt
  end SUCCESS, code 2
  $ varnel report --key 'NE-*RSP*3*' both.txt
  end SUCCESS, code 3
  $ varnel report --key absent --key NE-3 both.txt
  end SUCCESS, code 3
  $ varnel report --key absent both.txt
  ! varnel: both.txt: no end result: the input ends; no report was recognised
  [1]

Where a report ends.

  $ end() { echo "EVENT CAM RUN END $1"; }
  $ { end 'RSP'; echo; end 'RSP SUCCESS 1'; } | varnel report --json
  {"event":"end","source":"-","sid":null,"result":"SUCCESS","code":1,"item":null,"text":null}
  $ { end 'RSP'; echo ';'; end 'RSP SUCCESS 2'; } | varnel report --json
  {"event":"end","source":"-","sid":null,"result":"SUCCESS","code":2,"item":null,"text":null}
  $ { end 'RSP'; printf ' >\r\n'; end 'RSP SUCCESS 3'; } | varnel report --json
  {"event":"end","source":"-","sid":null,"result":"SUCCESS","code":3,"item":null,"text":null}
  $ { end 'RSP'; echo '<'; end 'RSP SUCCESS 4'; } | varnel report --json
  {"event":"end","source":"-","sid":null,"result":"SUCCESS","code":4,"item":null,"text":null}
  $ { end 'RSP'; echo '---  END'; end 'RSP SUCCESS 5'; } | varnel report --json
  {"event":"end","source":"-","sid":null,"result":"SUCCESS","code":5,"item":null,"text":null}
  $ { echo '+++ NE-WEST'; echo; end; printf ';\n>\n'; echo 'RSP SUCCESS 6'; echo '--- END'; } | varnel report --json
  {"event":"end","source":"-","sid":"NE-WEST","result":"SUCCESS","code":6,"item":null,"text":null}
  $ { echo '+++ NE-WEST'; end; echo '+++ NE-WEST'; end 'RSP FAIL 7 8 no; nothing > that < ends'; } | varnel report --json
  {"event":"end","source":"-","sid":"NE-WEST","result":"FAIL","code":7,"item":"8","text":"no; nothing > that < ends"}
  [1]
  $ { end 'RSP FAIL 9 1 a'; echo 'b'; printf '\r\n'; echo 'c'; } | varnel report --json
  {"event":"end","source":"-","sid":null,"result":"FAIL","code":9,"item":"1","text":"a b"}
  [1]
  $ { end; echo; echo 'RSP SUCCESS 10 |'; end 'RSP SUCCESS 11'; } | varnel report --json --separator '|'
  {"event":"end","source":"-","sid":null,"result":"SUCCESS","code":10,"item":null,"text":null}
  $ { end 'RSP FAIL 12 1 text--'; echo '=='; echo ';'; } | varnel report --json --separator $'--\n=='
  {"event":"end","source":"-","sid":null,"result":"FAIL","code":12,"item":"1","text":"text"}
  [1]
  $ end 'RSP SUCCESS 13' | varnel report --json --separator 'nowhere'
  {"event":"end","source":"-","sid":null,"result":"SUCCESS","code":13,"item":null,"text":null}

Only changes are printed.

  $ package() { echo "status=completed done=$1 total=$2;"; echo ";"; }
  $ script() { echo "EVENT CAM RUN PROGRESS TOTAL  DONE_NUM $2 $1;"; echo ";"; }
  $ {
  >   package 1 4; script 1 40; package 1 4; script 1 40
  >   package 2 4; package 2 5; package 1 5; package 0 0
  >   script 50 40
  >   echo "status=completed done=x total=9"
  >   package 6 5; package 7 9
  > } | varnel report
  package 1/4 25%
  script 1/40 2%
  package 2/4 50%
  package 2/5 40%
  package 1/5 20%
  package 0/0 0%
  script 50/40 125%
  package 7/9 77%
  ! varnel: -: no end result: the input ends
  [1]

A report has at most 10485760 bytes.

  $ fill() { head -c "$1" /dev/zero | tr '\0' x; }
  $ end='EVENT CAM RUN END RSP SUCCESS 0'
  $ { printf '%s ' "$end"; fill $((10485760 - ${#end} - 1)); } > longest
  $ varnel report longest > shown
  $ head -c 100 shown
  end SUCCESS, code 0
  $ { cat longest; fill 1; } | varnel report
  ! varnel: -: a report is longer than 10485760 bytes
  [1]
  $ { fill 10485761; echo; echo ';'; echo "$end"; } | varnel report
  ! varnel: -: a report is longer than 10485760 bytes
  [1]
  $ { for _ in 1 2 3; do fill 9000000; printf '\n\n'; done; echo "$end"; } | varnel report
  end SUCCESS, code 0
  $ { fill 10485761; echo "|$end"; } | varnel report --separator '|'
  ! varnel: -: a report is longer than 10485760 bytes
  [1]
  $ yes "$(fill 500)" | varnel report
  ! varnel: -: a report is longer than 10485760 bytes
  [1]

Files that cannot be read.

  $ mkdir folder
  $ echo x > secret.txt
  $ chmod 0 secret.txt
  $ varnel report absent.txt
  ! varnel: absent.txt: No such file or directory
  [1]
  $ varnel report folder
  ! varnel: folder: is a folder
  [1]
  $ varnel report --follow absent.txt
  ! varnel: absent.txt: No such file or directory
  [1]
  $ varnel report --follow folder
  ! varnel: folder: is a folder
  [1]
  $ varnel report --follow /dev/null
  ! varnel: /dev/null: --follow reads regular files only
  [1]
  $ with_permissions varnel report secret.txt
  ! varnel: secret.txt: Permission denied
  [1]

Wrong usage.

  $ try() { varnel report "$@" 2>&1 < /dev/null | sed '/--help/d'; echo "status ${PIPESTATUS[0]} of $*"; }
  $ for ne in x -1 4294967296 0x 0x100000000 1.5 ''; do try --ne "$ne"; done
  ! varnel: --ne: "x" is not a number from 0 to 4294967295, decimal, or hexadecimal after 0x
  status 2 of --ne x
  ! varnel: --ne: "-1" is not a number from 0 to 4294967295, decimal, or hexadecimal after 0x
  status 2 of --ne -1
  ! varnel: --ne: "4294967296" is not a number from 0 to 4294967295, decimal, or hexadecimal after 0x
  status 2 of --ne 4294967296
  ! varnel: --ne: "0x" is not a number from 0 to 4294967295, decimal, or hexadecimal after 0x
  status 2 of --ne 0x
  ! varnel: --ne: "0x100000000" is not a number from 0 to 4294967295, decimal, or hexadecimal after 0x
  status 2 of --ne 0x100000000
  ! varnel: --ne: "1.5" is not a number from 0 to 4294967295, decimal, or hexadecimal after 0x
  status 2 of --ne 1.5
  ! varnel: --ne: "" is not a number from 0 to 4294967295, decimal, or hexadecimal after 0x
  status 2 of --ne 
  $ for seconds in 0 -1 x nan inf 31536001 1s; do try --timeout "$seconds"; done
  ! varnel: --timeout: "0" is not a number of seconds above 0 and up to a year
  status 2 of --timeout 0
  ! varnel: --timeout: "-1" is not a number of seconds above 0 and up to a year
  status 2 of --timeout -1
  ! varnel: --timeout: "x" is not a number of seconds above 0 and up to a year
  status 2 of --timeout x
  ! varnel: --timeout: "nan" is not a number of seconds above 0 and up to a year
  status 2 of --timeout nan
  ! varnel: --timeout: "inf" is not a number of seconds above 0 and up to a year
  status 2 of --timeout inf
  ! varnel: --timeout: "31536001" is not a number of seconds above 0 and up to a year
  status 2 of --timeout 31536001
  ! varnel: --timeout: "1s" is not a number of seconds above 0 and up to a year
  status 2 of --timeout 1s
  $ for address in host 127.0.0.1: :7 ::1:7 '[::1]' '[]:7' host:0 host:65536 host:x,y host:7/x; do try --connect "$address"; done
  ! varnel: --connect: "host" is not HOST:PORT, with an IPv6 address in brackets
  status 2 of --connect host
  ! varnel: --connect: "127.0.0.1:" is not HOST:PORT, with an IPv6 address in brackets
  status 2 of --connect 127.0.0.1:
  ! varnel: --connect: ":7" is not HOST:PORT, with an IPv6 address in brackets
  status 2 of --connect :7
  ! varnel: --connect: "::1:7" is not HOST:PORT, with an IPv6 address in brackets
  status 2 of --connect ::1:7
  ! varnel: --connect: "[::1]" is not HOST:PORT, with an IPv6 address in brackets
  status 2 of --connect [::1]
  ! varnel: --connect: "[]:7" is not HOST:PORT, with an IPv6 address in brackets
  status 2 of --connect []:7
  ! varnel: --connect: "host:0" is not HOST:PORT, with an IPv6 address in brackets
  status 2 of --connect host:0
  ! varnel: --connect: "host:65536" is not HOST:PORT, with an IPv6 address in brackets
  status 2 of --connect host:65536
  ! varnel: --connect: "host:x,y" is not HOST:PORT, with an IPv6 address in brackets
  status 2 of --connect host:x,y
  ! varnel: --connect: "host:7/x" is not HOST:PORT, with an IPv6 address in brackets
  status 2 of --connect host:7/x
  $ try --connect 127.0.0.1:7 file
  ! varnel: FILE excludes --connect
  status 2 of --connect 127.0.0.1:7 file
  $ try --connect 127.0.0.1:7 --follow
  ! varnel: --connect excludes --follow
  status 2 of --connect 127.0.0.1:7 --follow
  $ try --follow
  ! varnel: --follow: requires one FILE
  status 2 of --follow
  $ try --follow -
  ! varnel: --follow: requires one FILE
  status 2 of --follow -
  $ try --separator ''
  ! varnel: --separator: is empty
  status 2 of --separator 
  $ try one two
  ! varnel: unexpected argument: two
  status 2 of one two
