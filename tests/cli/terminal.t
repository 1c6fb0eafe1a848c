A terminal is required; without one these sessions are skipped.

  $ . "$SUPPORT/session.sh"
  $ on_terminal true > /dev/null 2>&1 || exit 80
  $ make_sample

Colours and progress of package.

  $ head -c 50 sample.pkg > cut.pkg
  $ mkdir tree
  $ cp sample.pkg cut.pkg tree
  $ on_terminal "varnel package cut.pkg" | cat -v
  cut.pkg: ^[[1;31mbad^[[0m: directory header: the file ends after 50 of 64 bytes^M
  [1]
  $ on_terminal "NO_COLOR=1 varnel package cut.pkg" | cat -v
  cut.pkg: bad: directory header: the file ends after 50 of 64 bytes^M
  [1]
  $ on_terminal "NO_COLOR= varnel package cut.pkg" | cat -v
  cut.pkg: ^[[1;31mbad^[[0m: directory header: the file ends after 50 of 64 bytes^M
  [1]
  $ on_terminal "TERM=dumb varnel package cut.pkg" | cat -v
  cut.pkg: bad: directory header: the file ends after 50 of 64 bytes^M
  [1]
  $ on_terminal "varnel make-package -" | cat -v
  varnel: -: is a terminal (expected a file or a pipe)^M
  [1]
  $ on_terminal "stty cols 30; varnel package --only-bad tree" | cat -v | grep -o '\[=* *\] 1/2 files'
  [========         ] 1/2 files
  [1]
  $ on_terminal "varnel package --only-bad tree" | cat -v | grep -o '=* *\] 1/2 files'
  ====================                    ] 1/2 files
  [1]
  $ varnel make-package --link "$(printf 'a -> \302\233\177\303\251')" hostile.pkg
  $ on_terminal "varnel package --json hostile.pkg" | grep -o '"link_target":"[^"]*"'
  "link_target":"\\u009b\\u007f\xc3\xa9" (esc)

The bar of report, which the last line replaces. Only a terminal shows it.

  $ on_terminal "varnel report '$DATA/reports/script-mml.txt'" > shown
  $ grep -o '\[=* *\] script 5/20 25%  [0-9]*:[0-9][0-9]' shown | sed 's/ [0-9:]*$/ TIME/'
  [==========                              ] script 5/20 25%  TIME
  $ for columns in 20 60 200; do
  >   on_terminal "stty cols $columns; varnel report '$DATA/reports/package-mml.txt'" | tr '\r' '\n' |
  >     sed -n 's/^\x1b\[K//; s/[0-9]:[0-9][0-9]/TIME/; /0\/12/p'
  > done
  package 0/12 0%  0:
  [                       ] package 0/12 0%  TIME  NE-WEST 41
  [                                        ] package 0/12 0%  TIME  NE-WEST 41
  $ cat -v shown | sed 's/.*\^\[\[K//'
  end ^[[32mSUCCESS^[[0m, code 0  NE-WEST^M
  $ on_terminal "varnel report '$DATA/reports/script-mml-failed.txt'; echo status \$?" | cat -v | sed 's/.*\^\[\[K//'
  end ^[[1;31mFAIL^[[0m, code 1203, item 17: board 3 does not answer  NE-WEST^M
  status 1^M
  $ on_terminal "varnel report '$DATA/reports/package-mml.txt' 2> errors" | cat -v
  package 0/12 0%  NE-WEST 41^M
  package 3/12 25%  NE-WEST 41^M
  package 9/12 75%  NE-WEST 41^M
  package 12/12 100%  NE-WEST 41^M
  package ^[[32mcomplete^[[0m  NE-WEST 41^M
  $ on_terminal "varnel report '$DATA/reports/package-mml.txt' > lines" | grep -c 'package 0/12 0%'
  1
  $ cat errors lines
  package 0/12 0%  NE-WEST 41
  package 3/12 25%  NE-WEST 41
  package 9/12 75%  NE-WEST 41
  package 12/12 100%  NE-WEST 41
  package complete  NE-WEST 41
  $ on_terminal "varnel report --json - < '$DATA/reports/script-mml.txt'" | cat -v | tail -n 1
  {"event":"end","source":"-","sid":"NE-WEST","result":"SUCCESS","code":0,"item":null,"text":null}^M
  $ on_terminal "head -n 8 '$DATA/reports/package-mml.txt' | varnel report" | cat -v | sed 's/.*\^\[\[K//'
  varnel: -: no end result: the input ends^M
  [1]

Colours of tl1.

  $ capture=$PROJECT/tests/captures/00-by-the-book.tl1
  $ on_terminal "varnel tl1 $capture" | cat -v | grep -F '[' | sort -u
  acknowledgement  ^[[1;31mNA^[[0m  ctag 4^M
  acknowledgement  ^[[1;31mNG^[[0m  ctag 5^M
  acknowledgement  ^[[1;31mRL^[[0m  ctag 6^M
  autonomous  ^[[1;31m**^[[0m  REPT ALM COM  atag 11^M
  autonomous  ^[[1;31m*C^[[0m  REPT ALM EQPT  atag 10^M
  autonomous  ^[[32mA^[[0m  REPT DBCHG  atag 14^M
  autonomous  ^[[32mA^[[0m  REPT EVT  atag 13^M
  autonomous  ^[[33m*^[[0m  REPT ALM ENV  atag 12^M
  response  ^[[1;31mDENY^[[0m  ctag 2^M
  response  ^[[32mCOMPLD^[[0m  ctag 1^M
  response  ^[[32mCOMPLD^[[0m  ctag 5  (continues)^M
  response  ^[[32mCOMPLD^[[0m  ctag 5^M
  $ on_terminal "NO_COLOR=1 varnel tl1 $capture" | grep -c "$(printf '\033')"
  0
  [1]

Hostile bytes in files, streams and arguments: apart from the codes that draw the bars, a terminal receives no control
character, nothing that changes the direction of writing, and only valid UTF-8.

  $ export NO_COLOR=1
  $ bad=$(printf '\342\200\256\033]0;owned\007\033[2J\302\233\377\177\r\010z')
  $ printf '\n[File Description]\n%s:%s:c:d:5:f:g:h\n' "$bad" "$bad" > description
  $ varnel make-package -d description --link "a -> $bad" --version-text "$bad" "$bad.pkg"
  $ varnel make-package -t 77 "$bad.refused"
  $ head -c 100 "$bad.pkg" > "$bad.cut"
  $ mkdir "$bad"
  $ cp "$bad.pkg" "$bad/$bad"
  $ printf '\r\n\n   "N%s" 26-03-04 05:06:07\r\n*C 1 REPT ALM %s\r\n   "%s"\r\n;' "$bad" "$bad" "$bad" > stream
  $ tr ';' 'x' < stream > unfinished
  $ printf 'EVENT CAM RUN END RSP FAIL%s 5 item%s text%s\n' "$bad" "$bad" "$bad" > end
  $ show() {
  >   printf '%q ' varnel "$@" > run_it   # as an argument of script, it would lose some of the bytes
  >   on_terminal "bash run_it" | sed 's/\r\x1b\[K//g; s/\r\[[= ]*\] [0-9/]* files//g; s/\r*$//' > shown
  >   [ -s shown ] || echo "nothing shown"
  >   if LC_ALL=C grep -aqP '[\x00-\x08\x0b-\x1f\x7f]|\xc2[\x80-\x9f]|\xe2\x80[\x8e\x8f\xaa-\xae]' shown ||
  >     ! iconv -f UTF-8 -t UTF-8 shown > valid; then cat -v shown; fi
  > }
  $ show package "$bad.pkg" "$bad.refused" "$bad.cut" "$bad" "absent$bad"
  $ show package --json "$bad.pkg" "$bad.refused" "$bad.cut" "$bad" "absent$bad"
  $ show -v package "$bad.cut" "absent$bad"
  $ show head "$bad.pkg"
  $ show head "$bad.cut"
  $ show head --json "$bad.pkg"
  $ show coldpatch "$bad.pkg" "absent$bad"
  $ show coldpatch --json "$bad.pkg"
  $ show -v coldpatch "$bad.pkg"
  $ show make-package -d "absent$bad" "$bad.new"
  $ show make-package "$bad"
  $ show report end
  $ show report --json end
  $ show report "absent$bad"
  $ show report --key "$bad" --separator "$bad" end
  $ show report --connect "$bad:1"
  $ show report --ne "$bad"
  $ show tl1 stream
  $ show tl1 --json stream
  $ show -v tl1 --strict stream
  $ show -v tl1 unfinished
  $ show tl1 --type "$bad" stream
  $ show tl1 --encoding "$bad" stream "absent$bad"
  $ printf '\r\n\n   "N%s" 26-03-04 05:06:07\r\n*C 1 REPT ALM EQPT\r\n   "%s:CR,%s,%s:%s"\r\n;' "$bad" "$bad" "$bad" "$bad" "$bad" > alarm
  $ show alarms alarm "absent$bad"
  $ show alarms --json alarm
  $ show alarms --changes alarm
  $ hostile="\\r\\n\\n   N$bad 26-03-04 05:06:07\\r\\nM  7 DENY\\r\\n   $bad\\r\\n;"
  $ answer() { printf '%s\n' receive "send $hostile" > steps; serve --talk steps; }
  $ answer
  $ show ask "$address" RTRV-HDR:::7
  $ answer
  $ show ask --json "$address" RTRV-HDR:::7
  $ show ask "$bad:1" "$bad"
  $ show ask --user "$bad" "$bad:1" RTRV-HDR
  $ show watch "$bad=$bad"
  $ printf '%s' "$bad" > list
  $ show watch --elements list
  $ show slot "3-5,$bad" "$bad" "0x$bad" "SLOT-3-$bad"
  $ show slot --json "3-5,$bad" "$bad"
  $ show board "$bad" --ne "$bad" --generation 1
  $ show board --json "$bad" --ne "$bad" --generation 1
  $ show board --generation "$bad" x
  $ show package "--$bad"
  $ show "$bad"

The prompt of ask for a password, without echo. A signal restores the terminal.

  $ mkfifo keys
  $ exec {keys}<> keys
  $ prompted() {
  >   : > shown
  >   script -qefc "$1; echo status \$?; stty -a | grep -ow -- '-*echo'" shown < keys > /dev/null &
  >   until grep -q 'Password of ops at 127' shown; do sleep 0.05; done
  > }
  $ shown() { wait "$!"; grep -av '^Script' shown | tr -d '\r' | without_port; }
  $ head='send \r\n\n   NE1 26-03-04 05:06:07\r\nM  % '
  $ printf '%s\n' receive "${head}DENY\r\n   got pa ss\r\n;" > steps
  $ serve --talk steps
  $ prompted "varnel ask --user ops $address RTRV-HDR"
  $ echo 'pa ss' > keys
  $ shown
  Password of ops at 127.0.0.1:PORT: 
  varnel: 127.0.0.1:PORT: the log-in was refused: DENY got ******
  status 1
  echo
  
  $ sed 's/[0-9]\{2,\}/N/; s/ops:[0-9]:/ops:N:/' received
  ACT-USER::ops:N::"pa ss";
  $ prompted 'varnel ask --user ops 127.0.0.1:1 RTRV-HDR'
  $ printf '\003' > keys
  $ shown
  Password of ops at 127.0.0.1:PORT: 
  status 130
  echo
  
