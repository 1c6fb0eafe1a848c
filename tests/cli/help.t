  $ . "$SUPPORT/session.sh"
  $ varnel --help
  Tools for NE software packages and reports.
  
  Usage: varnel [OPTION]... SUBCOMMAND ...
  
  Results go to standard output, diagnostics to standard error. Control characters
  in names and texts are shown as \xNN. On a terminal the result is coloured,
  unless the environment variable NO_COLOR is set and not empty or TERM is dumb.
  
  If an operand of a subcommand starts with -, write -- before it.
  
  Options:
    -h, --help            Print this help and exit
    -V, --version         Print the version and exit
    -v, --verbose         Show the library's log lines on standard error
  
  Subcommands:
    package       Check NE software files and list the entries of packages
    head          Show both heads of an NE software file, field by field
    make-package  Write an NE software file with valid heads
    coldpatch     Report whether files are cold patches
    report        Follow package loads and script runs in the reports of elements
    tl1           Cut a stream of bytes into TL1 messages and show their parts
    alarms        Keep the table of active alarms in TL1 streams
    ask           Send TL1 commands to an element and print the answers
    watch         Follow many elements and print what they send
    slot          Show a slot in each form in which it can be written
    board         Report whether boards are system-control boards
  
  Run varnel help SUBCOMMAND for its options, with examples.
  
  Exit status:
    0  Done.
    1  Something examined is bad, unreadable, refused or incomplete, or the result
       could not be written.
    2  The command line is wrong.
  $ for subcommand in $(subcommands); do varnel "$subcommand" --help && echo "== end of $subcommand"; done
  Check NE software files and list the entries of packages.
  
  Usage: varnel package [OPTION]... PATH...
  
  PATH is a file, a folder to search, or - for standard input. A file is good if
  its heads and texts are valid and its file type is accepted: 0 to 13, 15 or 513.
  A file without a section [File Description] has no entries. The payload is not
  checked. Faults of the description are reported on standard error and do not
  make the file bad.
  
  In a folder, files without the software-file magic are skipped and counted.
  Symbolic links are not followed. Pipes and devices are skipped.
  
  Options:
        --json            Print one JSON object per file
        --only-bad        Print bad files only
    -q, --quiet           Print nothing; use the exit status
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines on standard error
  
  JSON objects:
    path, ok, error       The file, whether it is good, and why not, or null
    version, link_target  Texts
    file_type             A number; file_type_accepted is true or false
    payload_offset        Where the payload starts, without the extension word
    extension_word        A number; null for file types other than 2
    cold_patch            True or false
    entries               A list of objects with name, kind and size; null without
                          a description section
    Values that cannot be read are null.
  
  Exit status:
    0  Every file is good.
    1  A file is bad or unreadable, or the result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel package mainboard.pkg
        Check a file and list its entries.
    varnel package --only-bad /srv/packages
        Look for bad files in a folder.
  == end of package
  Show both heads of an NE software file, field by field.
  
  Usage: varnel head [OPTION]... PATH
  
  PATH is a software file, or - for standard input. Each line shows a field: its
  offset in the head, its name, and its value in hexadecimal and decimal. The
  stored checksums are compared with computed ones. The last line reports the
  first fault. A head that is missing is left out.
  
  Options:
        --json            Print one JSON object
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines on standard error
  
  JSON object:
    path, ok, error       The file, whether its heads are valid, and the first
                          fault or null
    directory, file       The fields of each head by name, or null
    stored, computed      Objects with the checksums of both heads, directory and
                          file; null for a head that is missing
  
  Exit status:
    0  Both heads and the texts are valid.
    1  The file is bad or unreadable, or the result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel head mainboard.pkg
        Show the heads of a file.
  == end of head
  Write an NE software file with valid heads.
  
  Usage: varnel make-package [OPTION]... OUTPUT
  
  OUTPUT is the file to write, or - for standard output, which must not be a
  terminal. The file consists of heads with valid checksums, the link and version
  texts, the description and the payload. It appears under its name only when it
  is complete, and replaces a file of that name.
  
  NUMBER is 0 to 65535, decimal, or hexadecimal after 0x.
  
  Options:
    -d, --description FILE  Take the package description from FILE; - is standard
                          input
    -p, --payload FILE    Append FILE after the description; - is standard input
        --version-text TEXT  Set the version text, up to 65534 bytes; empty for no
                          version text (default: 1.0)
        --link TEXT       Set the link text "NAME -> TARGET", up to 1023 bytes
                          (default: package -> package)
    -t, --type NUMBER     Set the file type (default: 1)
        --extension NUMBER  Set the extension word; requires --type 2
        --gap N,N,N,N     Set up to four lengths that make up the gap between the
                          heads
        --skip-length NUMBER  Set the length of the area after the heads
                          (default: 0)
        --tail-length NUMBER  Set the length of the area after the texts
                          (default: 0)
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines on standard error
  
  Description file:
    The line [File Description], then one line per entry with eight columns
    separated by colons: the first is the name, the second the kind, the fifth the
    size. The line [END] ends the list.
  
  Exit status:
    0  The file is written.
    1  A file cannot be read, or the result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel make-package -d description.txt --version-text 2.10 mainboard.pkg
        Write a package that lists files.
    varnel make-package --link 'board -> mainboard' -t 1 - | varnel head -
        Look at heads without a file.
  == end of make-package
  Report whether files are cold patches.
  
  Usage: varnel coldpatch [OPTION]... PATH...
  
  PATH is a script or package file, or - for standard input. A file is a cold
  patch if one of its lines contains [COLDPATCH] within its first 1023 bytes.
  
  Options:
        --json            Print one JSON object per file
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines on standard error
  
  JSON objects:
    path                  The file
    cold_patch            True, false, or null for an unreadable file
  
  Exit status:
    0  All files are cold patches.
    1  A file is not a cold patch or is unreadable, or the result could not be
       written.
    2  The command line is wrong.
  
  Examples:
    varnel coldpatch patch.txt update.pkg
        Check two files.
    varnel coldpatch - < patch.txt > /dev/null && echo yes
        Use the result as a condition.
  == end of coldpatch
  Follow package loads and script runs in the reports of elements.
  
  Usage: varnel report [OPTION]... [FILE]
  
  FILE is read to its end; without FILE, or if it is -, standard input is read. An
  MML report ends at a line ;, >, < or --- END, or before an empty line; a TL1
  report ends where a message of varnel tl1 ends. The language is the one in which
  the first report is recognised.
  
  Loads are distinguished by element and load: the SID and the AID in TL1, the
  name after +++ and the number after TASK_ID in MML. The command stops when all
  loads and runs that have begun are complete: a package load when all is done, a
  script run with its end report. On a terminal a bar shows the progress.
  
  Options:
        --connect HOST:PORT  Read from a TCP connection instead of FILE; write an
                          IPv6 address in brackets. PORT may be a service name
        --follow          Continue to read as FILE grows, also after another file
                          gets its name or it is truncated
        --timeout SECONDS  Stop after this time, up to a year (default: no limit)
        --idle SECONDS    Stop after this time without a byte (default: no limit)
        --first           Stop when the first load or run is complete
        --language NAME   Read reports in this language only: mml or tl1
        --ne ID           Read reports in the language of the element with this
                          identifier, 0 to 4294967295, decimal, or hexadecimal
                          after 0x: TL1 above 16777215 (0xFFFFFF), else MML
        --key TEXT        Read only reports that contain TEXT or match it as a
                          pattern with *; may be repeated
        --separator TEXT  End reports after TEXT instead of where the language
                          ends them
        --json            Print one JSON object per change
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines on standard error
  
  JSON objects:
    event                 package or script (progress), complete (a package load),
                          end (a script run)
    source                FILE or HOST:PORT
    sid, load             The element, and which of its loads; null if unknown
    done, total, percent  Numbers of package and script
    result, code          The word and the number of the end result
    item, text            Where and why a run failed, or null
  
  Exit status:
    0  All loads and runs that began succeeded; with --first, the first one.
    1  One failed, there was no end result, the input is unreadable, or the result
       could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel report load.log
        Show the progress recorded in a file.
    varnel report --connect 192.0.2.7:1400 --timeout 600
        Follow loads for ten minutes at most.
    varnel report --follow --json --key '*BOARD 3*' session.log
        Follow the reports of one board in a log.
  == end of report
  Cut a stream of bytes into TL1 messages and show their parts.
  
  Usage: varnel tl1 [OPTION]... [FILE]...
  
  Each FILE is read to its end; without FILE, or if it is -, standard input is
  read. Any line ends are accepted. Echoes, banners, prompts and telnet bytes
  between messages are skipped. A message that has no end is shown too, and
  reported on standard error with its offset.
  
  LIST is one pattern, or several separated by commas, with * for any run of
  characters and ? for one; case does not matter. A message is shown if it passes
  all filters.
  
  Options:
        --connect HOST:PORT  Read from a TCP connection instead of FILE; write an
                          IPv6 address in brackets. PORT may be a service name
        --follow          Continue to read as FILE grows, also after another file
                          gets its name or it is truncated
        --timeout SECONDS  Stop after this time, up to a year (default: no limit)
        --idle SECONDS    Stop after this time without a byte (default: no limit)
        --count N         Stop after N messages are shown
        --json            Print one JSON object per message
        --join            Join the parts of an answer into one message
        --strict          Read messages with the library's strict parser, and
                          report where it refuses one
        --type LIST       Show only messages of these types: acknowledgement,
                          response, autonomous, prompt, unrecognised
        --sid LIST        Show only messages from these elements
        --verb LIST       Show only autonomous messages with these verbs, such as
                          'REPT ALM *'
        --ctag LIST       Show only messages with these correlation tags
        --code LIST       Show only messages with these codes, such as COMPLD or
                          *C; *, ** and * with one other character mean that alarm
                          code
        --severity LIST   Show only messages whose text begins with one of these
                          severities: CR, MJ, MN, CL
        --encoding NAME   Read characters in this encoding of iconv, which must
                          extend ASCII (default: UTF-8)
        --limit BYTES     Accept messages up to this length, 1 to 1099511627776;
                          K and M are units of 1024 and 1048576 (default: 16M)
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines, what was skipped, and
                          which time limit was reached, on standard error
  
  JSON objects:
    type                  acknowledgement, response, autonomous, prompt or
                          unrecognised
    source                FILE or HOST:PORT
    received              Time when the end of the message came, in UTC; null for
                          a file that is not followed
    offset, length        Position of the message in the stream, in bytes
    complete              False if the message has no end or is too long, or if
                          with --join the last part is missing
    sid, date, time       From the header
    ctag, atag            The correlation tag of an answer; the tag of an
                          autonomous message
    code, verb            The completion or alarm code; the subject of an
                          autonomous message
    lines                 A list of the lines of its text
    text                  For each line null, or for a quoted one an object: aid,
                          positional (a list for each block after the aid) and
                          named (the values with names)
    severity              Of the first quoted line: CR, MJ, MN, CL or null
    missed                How many autonomous messages of this element are missing
                          before this one, by their atags; null if it is unknown
    continues             True if more parts of the answer follow
    raw                   The message in base64 if it is not valid in the encoding
    Values that a message does not have are null.
  
  Exit status:
    0  All was read, or a time limit or N was reached.
    1  A message is incomplete, too long or refused, no TL1 was found, fewer than
       N messages were shown, a FILE is unreadable, there is no connection, or the
       result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel tl1 capture.log
        Show all messages of a file.
    varnel tl1 --json --type autonomous --code '*C,**' *.log
        Show critical and major alarms in several files, for a program.
    varnel tl1 --connect 192.0.2.7:1400 --idle 60
        Show what an element sends until it is silent for a minute.
  == end of tl1
  Keep the table of active alarms in TL1 streams.
  
  Usage: varnel alarms [OPTION]... [FILE]...
  
  Each FILE is read to its end; without FILE, or if it is -, standard input is
  read. An autonomous REPT ALM message raises an alarm, or clears it by the
  severity CL, or by the alarm code A with CL among its values. An alarm is
  identified by source, SID, AID and condition. At the end the alarms are printed
  that are raised and not cleared.
  
  Options:
        --connect HOST:PORT  Read from a TCP connection instead of FILE; write an
                          IPv6 address in brackets. PORT may be a service name
        --follow          Continue to read as FILE grows, also after another file
                          gets its name or it is truncated
        --timeout SECONDS  Stop after this time, up to a year (default: no limit)
        --idle SECONDS    Stop after this time without a byte (default: no limit)
        --json            Print one JSON object per alarm
        --changes         Print each alarm when it is raised, changed or cleared,
                          and no table at the end
        --encoding NAME   Read characters in this encoding of iconv, which must
                          extend ASCII (default: UTF-8)
        --limit BYTES     Accept messages up to this length, 1 to 1099511627776;
                          K and M are units of 1024 and 1048576 (default: 16M)
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines, what was skipped, and
                          which time limit was reached, on standard error
  
  JSON objects:
    source                FILE or HOST:PORT
    sid, aid, condition   What identifies the alarm in its source
    severity              CR, MJ or MN; CL once it is cleared
    effect                SA or NSA, on service
    raised                Date and time of the message that raised it
    received              Time when that message came, in UTC; null for a file
                          that is not followed
    description           The text after these values
    change                Only with --changes: raised, changed or cleared
    Values that an alarm does not have are null.
  
  Exit status:
    0  All was read, or a time limit was reached, whether alarms are active or
       not.
    1  A message is incomplete or too long, no TL1 was found, a FILE is
       unreadable, there is no connection, or the result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel alarms capture.log
        Show which alarms were still active at the end of a file.
    varnel alarms --changes --json --connect 192.0.2.7:1400
        Follow the alarms of an element, for a program.
  == end of alarms
  Send TL1 commands to an element and print the answers.
  
  Usage: varnel ask [OPTION]... HOST:PORT COMMAND...
  
  COMMAND is VERB-MODIFIER[:TID[:AID[:CTAG[:GENERAL[:DATA...]]]]][;]; if it is -,
  commands are read from standard input, one per line, and sent as each line
  arrives. Blank lines and lines that start with # are skipped. A missing or empty
  ctag is filled in. Each command is sent after the answer to the one before, and
  the parts of an answer are joined. The first command that is not COMPLD ends the
  run.
  
  Write an IPv6 address in brackets: [::1]:3083. PORT may be a service name.
  
  Options:
        --user NAME       Log in first and log out at the end. The password is
                          asked for on the terminal unless there is a
                          password file
        --password-file FILE  Read the password from the first line of FILE, to
                          which other users must not have access
        --tid TID         Fill in an empty TID of a command
        --timeout SECONDS  Wait at most this time for the connection, for the
                          log-in and for each part of an answer (default: 30)
        --keep-going      Send the next command if one is not COMPLD
        --events          Print autonomous messages on standard error
        --dry-run         Print the commands that would be sent, and do not
                          connect
        --json            Print one JSON object per command
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines on standard error
  
  Passwords are printed as ******, also if the element repeats them.
  
  JSON objects:
    command               As sent
    error                 Why there is no answer. With an answer, all other keys
                          are those of varnel tl1: see varnel help tl1
  
  Exit status:
    0    Every command was COMPLD.
    1    A command was not, the log-in was refused, there is no connection or no
         password, or the result could not be written.
    2    The command line or a command is wrong.
    130  SIGINT ended the run, 143: SIGTERM, 129: SIGHUP.
  
  Examples:
    varnel ask 192.0.2.7:3083 RTRV-HDR
        Ask who is there.
    varnel ask --user ops --password-file ~/.ne 192.0.2.7:3083 RTRV-ALM-ALL
        Log in, show the alarms, and log out.
    varnel ask --json --keep-going --tid NE1 '[2001:db8::7]:3083' - < commands
        Send the commands of a file, for a program.
  == end of ask
  Follow many elements and print what they send.
  
  Usage: varnel watch [OPTION]... [ELEMENT]...
  
  ELEMENT is [NAME=]HOST:PORT; write an IPv6 address in brackets. PORT may be a
  service name. Without NAME, HOST:PORT is the name. Every message that an element
  sends is printed as one JSON object per line, and so is every change of its
  connection. A connection that is lost or refused is tried again after 1, 2, 4,
  8 ... seconds.
  
  Options:
        --elements FILE   Watch also the elements of this list. Each line is NAME
                          HOST:PORT [USER [PASSWORD-FILE]]; # begins a comment. A
                          relative PASSWORD-FILE is in the folder of the list
        --user NAME       Log in as this user where the list names no other
        --password-file FILE  Read the password from the first line of this file,
                          which only its owner may access, where the list names no
                          other
        --after-login COMMAND  Send this command after each log-in, or after each
                          connection without a user; may be given more than once
        --heartbeat SECONDS  Send RTRV-HDR after this time without a byte, and
                          connect again if nothing answers it in the same time; 0
                          for never (default: 60)
        --retry-max SECONDS  The longest time between two attempts to connect;
                          each is up to 25 % longer or shorter (default: 60)
        --type LIST       Show only messages of these types: acknowledgement,
                          response, autonomous, prompt, unrecognised
        --sid LIST        Show only messages from these elements
        --verb LIST       Show only autonomous messages with these verbs, such as
                          'REPT ALM *'
        --ctag LIST       Show only messages with these correlation tags
        --code LIST       Show only messages with these codes, such as COMPLD or
                          *C; *, ** and * with one other character mean that alarm
                          code
        --severity LIST   Show only messages whose text begins with one of these
                          severities: CR, MJ, MN, CL
        --encoding NAME   Read characters in this encoding of iconv, which must
                          extend ASCII (default: UTF-8)
        --limit BYTES     Accept messages up to this length, 1 to 1099511627776;
                          K and M are units of 1024 and 1048576 (default: 1M)
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines on standard error
  
  LIST is one pattern, or several separated by commas, with * for any run of
  characters and ? for one; case does not matter. Changes pass all filters.
  
  JSON objects:
    Messages are printed as by varnel tl1 --json; source is the name of the
    element. The parts of an answer are not joined. Changes have these members,
    null if they do not apply:
    event                 up (connected), login, login_refused, down or missed. A
                          failure that repeats is printed once
    source, received      Name of the element; time in UTC
    reason                Why the connection or log-in failed
    code                  Completion code of the answer to the log-in
    user                  Who has logged in or was refused
    sid, count            How many autonomous messages of this element are missing
    retry_in              Seconds to the next attempt to connect. After a refused
                          log-in it is the longest time
  
  Signals:
    SIGTERM and SIGINT log out everywhere and end within 2 seconds; lines that can
    no longer be printed are counted on standard error. SIGHUP reads the list and
    the password files again. Nothing is read while standard output is blocked.
  
  Exit status:
    0  SIGTERM or SIGINT has arrived.
    1  The list or a password is bad or unreadable, or the result could not be
       written.
    2  The command line is wrong.
  
  Examples:
    varnel watch east=192.0.2.7:1400 west=192.0.2.8:1400
        Follow two elements that need no log-in.
    varnel watch --elements all.txt --type autonomous --severity CR,MJ
        Follow the elements of a list and show critical and major alarms.
  == end of watch
  Show a slot in each form in which it can be written.
  
  Usage: varnel slot [OPTION]... TEXT...
  
  TEXT is a slot in any form; - reads texts from standard input, one per line, and
  skips empty lines.
  
  Options:
        --generation CODE  Show the DC form only if elements of this generation
                          use it
        --json            Print one JSON object per text
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines on standard error
  
  How a text is read:
    0x0305                Hexadecimal: the word, shelf * 256 + slot
    FAC-1-SLOT-3-5        After the first SLOT-, as in TL1; SLOT-7 has no shelf,
                          and SLOT-305 is a plain number
    3-5                   Shelf and slot, as in MML parameters
    305                   From 200 on and with 3 to 11 digits, the DC form: shelf,
                          then two digits of slot
    7, 105                Other numbers: the slot, without a shelf
    If another reading is possible, a note describes it.
  
  What is shown:
    Elements of old generations write shelves from 2 on in the DC form. Other
    slots, and all slots of the second generation (codes above 52099), are written
    with a dash and have no DC form. Without --generation the DC form is that of
    an old generation. The NE slot ID is shown for a text that is only a number.
  
  JSON objects:
    text                  The text
    word, shelf, slot     Numbers
    dashed, hex, dc       Texts; dc is null if there is no DC form
    ne_slot_id            A number; null if the text is not a plain number
    If the text is not a slot, all values except text are null. Notes are printed
    on standard error.
  
  Exit status:
    0  Every text is a slot.
    1  A text is not a slot, standard input cannot be read, or the result could
       not be written.
    2  The command line is wrong.
  
  Examples:
    varnel slot 3-5 305 0x0305 FAC-1-SLOT-3-5
        Show one slot, given in four forms.
    varnel slot --generation 52100 10-31
        Show it as elements of the second generation write it.
    varnel slot --json - < slots.txt
        Read slots from a file, one per line, for a program.
  == end of slot
  Report whether boards are system-control boards.
  
  Usage: varnel board [OPTION]... [NAME]...
  
  NAME is the name of a board, in any case of letters; - reads names from standard
  input, one per line, and skips empty lines. With --ne, report also whether an
  element belongs to the Korvane family.
  
  Options:
        --ne NAME         Report whether the element of this name belongs to the
                          Korvane family; requires --generation
        --generation CODE  Set the generation code of that element, decimal; an
                          element with a code above 52099 is not Korvane
        --json            Print one JSON object per name
    -h, --help            Print this help and exit
    -v, --verbose         Show the library's log lines on standard error
  
  JSON objects:
    name, system_control  A board, and true or false
    ne, generation, korvane  An element, its code, and true or false
    The answer is null for a bad name.
  
  Exit status:
    0  Every name is valid, for any answer.
    1  A name is empty or contains a NUL, standard input cannot be read, or the
       result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel board vcua mainboard
        Check two boards.
    varnel board --ne KVA-4210 --generation 50000
        Check an element.
    varnel board --json - < boards.txt
        Check all boards in a file, one per line, for a program.
  == end of board
  $ varnel --version | sed 's/[0-9][0-9]*/N/g'
  varnel N.N.N
