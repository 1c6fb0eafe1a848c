  $ . "$SUPPORT/session.sh"
  $ cd "$DATA/tl1"

The table of active alarms, in text and as JSON.

  $ varnel alarms alarms.tl1
  SEV  RAISED             SID      AID      CONDITION  EFFECT  DESCRIPTION
  MN   26-01-15 12:00:45  NE-EAST  FAC-3-4  LOF        NSA     -
  MN   26-01-15 12:00:31  NE-EAST  SLOT-5   FAN-FAIL   NSA     Fan failure
  $ varnel alarms --json alarms.tl1
  {"source":"alarms.tl1","sid":"NE-EAST","aid":"FAC-3-4","condition":"LOF","severity":"MN","effect":"NSA","raised":"26-01-15 12:00:45","received":null,"description":null}
  {"source":"alarms.tl1","sid":"NE-EAST","aid":"SLOT-5","condition":"FAN-FAIL","severity":"MN","effect":"NSA","raised":"26-01-15 12:00:31","received":null,"description":"Fan failure"}
  $ varnel alarms alarms.tl1 session.tl1
  SEV  RAISED             SOURCE       SID      AID      CONDITION  EFFECT  DESCRIPTION
  MN   26-01-15 12:00:45  alarms.tl1   NE-EAST  FAC-3-4  LOF        NSA     -
  MN   26-01-15 12:00:31  alarms.tl1   NE-EAST  SLOT-5   FAN-FAIL   NSA     Fan failure
  CR   26-01-15 12:00:31  session.tl1  NE-EAST  SLOT-5   FAN-FAIL   SA      -
  $ varnel alarms long-answer.tl1
  no active alarms

Changes, without the table. An alarm keeps the time when it was raised.

  $ varnel alarms --changes alarms.tl1
  raised   CR  26-01-15 12:00:31  NE-EAST  SLOT-5  FAN-FAIL  SA  Fan failure
  raised   MJ  26-01-15 12:00:45  NE-EAST  FAC-3-2  LOS  SA  -
  raised   MN  26-01-15 12:00:45  NE-EAST  FAC-3-4  LOF  NSA  -
  changed  MN  26-01-15 12:00:31  NE-EAST  SLOT-5  FAN-FAIL  NSA  Fan failure
  cleared  CL  26-01-15 12:00:45  NE-EAST  FAC-3-2  LOS  SA  -
  $ varnel alarms --changes --json alarms.tl1 | sed -E 's/.*"aid":("[^"]*").*"severity":("[^"]*").*"raised":("[^"]*").*"change":("[^"]*").*/\1 \2 \3 \4/'
  "SLOT-5" "CR" "26-01-15 12:00:31" "raised"
  "FAC-3-2" "MJ" "26-01-15 12:00:45" "raised"
  "FAC-3-4" "MN" "26-01-15 12:00:45" "raised"
  "SLOT-5" "MN" "26-01-15 12:00:31" "changed"
  "FAC-3-2" "CL" "26-01-15 12:00:45" "cleared"
  $ cd "$OLDPWD"

An alarm is identified by source, SID, AID and condition, and cleared by CL in its text, for any alarm code.

  $ alarm() { printf '\r\n\n   %s 26-03-04 05:06:0%d\r\n%-2s %d REPT ALM EQPT\r\n   "%s"\r\n;' "$1" "$2" "$3" "$2" "$4"; }
  $ { alarm N1 1 '*C' 'A1:CR,LOS'; alarm N2 2 '*C' 'A1:CR,LOS'; alarm N1 3 '**' 'A1:MJ,LOF'; alarm N1 4 '*C' 'A2:CR,LOS'; } > raised
  $ { cat raised; alarm N1 5 '*C' 'A1:CL,LOS'; alarm N1 6 A 'A1:MJ,LOF,CL'; alarm N1 7 '*' 'A2:MN,LOS'; } > cleared
  $ varnel alarms raised
  SEV  RAISED             SID  AID  CONDITION  EFFECT  DESCRIPTION
  MJ   26-03-04 05:06:03  N1   A1   LOF        -       -
  CR   26-03-04 05:06:01  N1   A1   LOS        -       -
  CR   26-03-04 05:06:04  N1   A2   LOS        -       -
  CR   26-03-04 05:06:02  N2   A1   LOS        -       -
  $ varnel alarms cleared raised
  SEV  RAISED             SOURCE   SID  AID  CONDITION  EFFECT  DESCRIPTION
  MN   26-03-04 05:06:04  cleared  N1   A2   LOS        -       -
  CR   26-03-04 05:06:02  cleared  N2   A1   LOS        -       -
  MJ   26-03-04 05:06:03  raised   N1   A1   LOF        -       -
  CR   26-03-04 05:06:01  raised   N1   A1   LOS        -       -
  CR   26-03-04 05:06:04  raised   N1   A2   LOS        -       -
  CR   26-03-04 05:06:02  raised   N2   A1   LOS        -       -
  $ varnel alarms --changes cleared
  raised   CR  26-03-04 05:06:01  N1  A1  LOS  -  -
  raised   CR  26-03-04 05:06:02  N2  A1  LOS  -  -
  raised   MJ  26-03-04 05:06:03  N1  A1  LOF  -  -
  raised   CR  26-03-04 05:06:04  N1  A2  LOS  -  -
  cleared  CL  26-03-04 05:06:01  N1  A1  LOS  -  -
  cleared  CL  26-03-04 05:06:03  N1  A1  LOF  -  -
  changed  MN  26-03-04 05:06:04  N1  A2  LOS  -  -

Live input has times, and a time limit ends it with status 0. Incomplete messages and input without TL1 are reported.

  $ cat raised | varnel alarms --json | without_times | sed -n 1p
  {"source":"-","sid":"N1","aid":"A1","condition":"LOF","severity":"MJ","effect":null,"raised":"26-03-04 05:06:03","received":"TIME","description":null}
  $ hold cat raised
  $ varnel alarms --idle 0.3 -v < pipe
  SEV  RAISED             SID  AID  CONDITION  EFFECT  DESCRIPTION
  MJ   26-03-04 05:06:03  N1   A1   LOF        -       -
  CR   26-03-04 05:06:01  N1   A1   LOS        -       -
  CR   26-03-04 05:06:04  N1   A2   LOS        -       -
  CR   26-03-04 05:06:02  N2   A1   LOS        -       -
  ! varnel: -: skipped 0 bytes between messages: 0 echoes, 0 prompts, 0 other lines; 0 telnet sequences
  ! varnel: -: ended: no input for 0.3 seconds
  $ printf '\r\n\n   N1 26-03-04 05:06:07\r\n*C 1 REPT ALM EQPT\r\n   "A1:CR,LOS"\r\n' | varnel alarms
  SEV  RAISED             SID  AID  CONDITION  EFFECT  DESCRIPTION
  CR   26-03-04 05:06:07  N1   A1   LOS        -       -
  ! varnel: -: the message at offset 0 has no end
  [1]
  $ echo text | varnel alarms
  no active alarms
  ! varnel: -: no TL1 message was found
  [1]
  $ varnel alarms absent raised --json | wc -l
  ! varnel: absent: No such file or directory
  4
  [1]

The text in another encoding.

  $ alarm N1 1 '*C' 'A1:CR,LOS:Luefter' | sed 's/ue/\xfc/' | varnel alarms --encoding ISO-8859-1
  SEV  RAISED             SID  AID  CONDITION  EFFECT  DESCRIPTION
  CR   26-03-04 05:06:01  N1   A1   LOS        -       L\xc3\xbcfter (esc)
  $ varnel alarms --encoding klingon raised
  ! varnel: --encoding: "klingon" is not an encoding that iconv knows (iconv -l lists them)
  ! Try "varnel alarms --help".
  [2]
