  $ . "$SUPPORT/session.sh"
  $ varnel --help
  Tools for NE software packages and reports.
  
  Usage: varnel [OPTIONS] SUBCOMMAND
  
  Options:
    -h, --help     Print this help and exit
    --version      Print the version and exit
    -v, --verbose  Show the library's log lines, and what tl1 skips, on standard
                   error
  
  Subcommands:
    package       Check NE software files and list the entries of their package
                  descriptions
    head          Show both heads of an NE software file, field by field
    make-package  Write an NE software file with valid heads
    coldpatch     Tell whether files are cold patches
    report        Follow the progress and the end of a package load or script run
                  in the reports of an element
    tl1           Cut a stream of bytes into TL1 messages and show their parts
    slot          Show a slot in every form it is written in
    board         Tell whether boards are system-control boards, and whether an
                  element is of the Korvane family
  
  varnel SUBCOMMAND --help explains a subcommand, with examples.
  
  Results go to standard output, diagnostics to standard error. Control characters
  in names and texts are shown as \xNN. On a terminal the result is coloured,
  unless the environment variable NO_COLOR is set.
  
  Where an argument of a subcommand begins with -, put -- in front of it.
  
  Exit status:
    0  Done.
    1  Something examined is bad or unreadable, or the result could not be
       written.
    2  The command line is wrong.
  $ for subcommand in $(subcommands); do varnel "$subcommand" --help && echo "== end of $subcommand"; done
  Check NE software files and list the entries of their package descriptions.
  
  Usage: varnel package [OPTIONS] PATH...
  
  Arguments:
    PATH...  Files, and folders to search; - is standard input
  
  Options:
    -h, --help     Print this help and exit
    --json         Print one JSON object per file
    --only-bad     Print bad files only
    -q, --quiet    Print nothing; the exit status tells
    -v, --verbose  Show the library's log lines, and what tl1 skips, on standard
                   error
  
  A file is good when its heads and texts are valid and its file type is accepted:
  0 to 13, 15 or 513. One without a [File Description] section has no entries. The
  payload is not judged, nor is the description: what is wrong with it is told on
  standard error.
  
  In a folder, files that do not begin as software files are counted but not
  called bad. Symbolic links are not followed; pipes and devices are passed over.
  
  JSON objects:
    path, ok, error       The file, whether it is good, and why it is not, or
                          null.
    version, link_target  Texts.
    file_type             A number; file_type_accepted tells whether it is
                          accepted.
    payload_offset        Where the payload begins, without the extension word.
    extension_word        A number, or null for other file types than 2.
    cold_patch            True for a cold patch.
    entries               A list of objects with name, kind and size; null without
                          a description section.
  
    What cannot be read is null.
  
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
  
  Usage: varnel head [OPTIONS] PATH
  
  Arguments:
    PATH  A software file; - is standard input
  
  Options:
    -h, --help     Print this help and exit
    --json         Print one JSON object
    -v, --verbose  Show the library's log lines, and what tl1 skips, on standard
                   error
  
  Each line shows a field: its offset in the head, its name, and its value in
  hexadecimal and decimal. The checksums that are stored are compared with
  computed ones, and the first fault is told. A head that cannot be found is left
  out.
  
  JSON object:
    path, ok, error   The file, whether its heads are valid, and the first fault
                      or null.
    directory, file   The fields of each head by their names, or null.
    stored, computed  Objects with the checksums of the heads, directory and file;
                      null for one that is absent.
  
  Exit status:
    0  Both heads are valid.
    1  The file is bad or unreadable, or the result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel head mainboard.pkg
        Show the heads of a file.
  == end of head
  Write an NE software file with valid heads.
  
  Usage: varnel make-package [OPTIONS] OUTPUT
  
  Arguments:
    OUTPUT  File to write; - is standard output
  
  Options:
    -h, --help            Print this help and exit
    -d, --description FILE
                          File with the package description; - is standard input
    -p, --payload FILE    File with what follows the description; - is standard
                          input
    --version-text TEXT   Version text, up to 65534 bytes; empty for none
                          (default: 1.0)
    --link TEXT           Link text, "NAME -> TARGET", up to 1023 bytes (default:
                          package -> package)
    -t, --type NUMBER     File type, 0 to 65535 (default: 1)
    --extension NUMBER    Extension word, for file type 2 only, 0 to 65535
    --gap N,N,N,N         Lengths of up to four parts of the gap between the
                          heads, 0 to 65535
    --skip-length NUMBER  Length of the area behind the heads, 0 to 65535
                          (default: 0)
    --tail-length NUMBER  Length of the area behind the texts, 0 to 65535
                          (default: 0)
    -v, --verbose         Show the library's log lines, and what tl1 skips, on
                          standard error
  
  Writes heads with right checksums, then the link and version texts, then the
  description and the payload. Numbers are decimal, or hexadecimal behind 0x.
  OUTPUT appears only once it is complete, and replaces a file of that name.
  
  Description file:
    A line [File Description], then a line for each entry, of eight columns that
    are separated by colons: the first is its name, the second its kind, the fifth
    its size. A line [END] ends it.
  
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
  Tell whether files are cold patches.
  
  Usage: varnel coldpatch [OPTIONS] PATH...
  
  Arguments:
    PATH...  Script and package files; - is standard input
  
  Options:
    -h, --help     Print this help and exit
    --json         Print one JSON object per file
    -v, --verbose  Show the library's log lines, and what tl1 skips, on standard
                   error
  
  A file is a cold patch when one of its lines holds [COLDPATCH].
  
  JSON objects:
    Each holds path and cold_patch, which is true, false, or null for an
    unreadable file.
  
  Exit status:
    0  All files are cold patches.
    1  A file is none or is unreadable, or the result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel coldpatch patch.txt update.pkg
        Tell of two files.
    varnel coldpatch - < patch.txt > /dev/null && echo yes
        Use it as a condition.
  == end of coldpatch
  Follow the progress and the end of a package load or script run in the reports
  of an element.
  
  Usage: varnel report [OPTIONS] [FILE]
  
  Arguments:
    FILE  File to read; - is standard input (default: -; not with --connect)
  
  Options:
    -h, --help           Print this help and exit
    --connect HOST:PORT  Read from a TCP connection; an IPv6 address stands in
                         brackets (not with --follow, FILE)
    --follow             Go on reading as FILE grows (not with --connect)
    --timeout SECONDS    Give up when there is no end result after so many
                         seconds, up to a year (default: no limit)
    --ne ID              Identifier of the element, 0 to 4294967295 (default: 0)
    --key TEXT           Look only at reports that hold TEXT or match it as a
                         pattern with * (may be repeated)
    --separator TEXT     A report ends behind TEXT, not where its language ends it
    --json               Print one JSON object per change
    -v, --verbose        Show the library's log lines, and what tl1 skips, on
                         standard error
  
  An element with an identifier above 16777215 (0xFFFFFF) speaks TL1, others speak
  MML. Give the identifier in decimal, or in hexadecimal behind 0x.
  
  An MML report ends at a line ;, >, < or --- END, or before an empty line; a TL1
  report as varnel tl1 cuts it.
  
  The command ends with the end result: a package load when all is done, a script
  run with its end report. On a terminal a bar shows the progress.
  
  JSON objects:
    event                 package, script or end.
    done, total, percent  Of package and script: numbers.
    result, code          Of end: the word and the number that the element gives.
    item, text            Of end: where and why a run failed, or null.
  
  Exit status:
    0  The load or run ended well.
    1  It failed, there was no end result, or the input is unreadable, or the
       result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel report load.log
        Show the progress that is written down in a file.
    varnel report --connect 192.0.2.7:1400 --ne 0x1000001 --timeout 600
        Follow a load for ten minutes at most.
    varnel report --follow --json --key '*BOARD 3*' session.log
        Follow the reports of one board in a log.
  == end of report
  Cut a stream of bytes into TL1 messages and show their parts.
  
  Usage: varnel tl1 [OPTIONS] [FILE]
  
  Arguments:
    FILE  File to read; - is standard input (default: -; not with --connect)
  
  Options:
    -h, --help           Print this help and exit
    --connect HOST:PORT  Read from a TCP connection; an IPv6 address stands in
                         brackets (not with --follow, FILE)
    --follow             Go on reading as FILE grows (not with --connect)
    --timeout SECONDS    Give up after so many seconds without a byte, up to a
                         year (default: no limit)
    --json               Print one JSON object per message
    --join               Make one message of the parts of an answer
    --strict             Read messages with the library's strict parser
    --type LIST          Only messages of these types (values: acknowledgement,
                         response, autonomous, prompt, unrecognised; several are
                         separated by commas)
    --ctag LIST          Only messages with these correlation tags (several are
                         separated by commas)
    --code LIST          Only messages with these codes, such as COMPLD or *C
                         (several are separated by commas)
    --limit BYTES        The longest message taken, 1 to 1099511627776 (default:
                         16777216)
    -v, --verbose        Show the library's log lines, and what tl1 skips, on
                         standard error
  
  Line ends of every kind are taken; echoes, banners, prompts and telnet bytes
  between messages are skipped. What is cut out as a message but cannot be read is
  shown as unrecognised. A message without its end is shown too, and reported on
  standard error. A message is shown when it passes all filters.
  
  JSON objects:
    type             acknowledgement, response, autonomous, prompt or
                     unrecognised.
    offset, length   Where the message stands in the stream, in bytes.
    sid, date, time  From the header.
    ctag, atag       The correlation tag of an answer; the tag of an autonomous
                     message.
    code, verb       The completion or alarm code; what an autonomous message
                     reports.
    lines            A list of the lines of its text.
    continues        True when more parts of the answer follow.
  
    What a message does not have is null.
  
  Exit status:
    0  The whole stream was read.
    1  A message has no end or is too long, the time is over, or the input is
       unreadable, or the result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel tl1 capture.log
        Show all messages of a file.
    varnel tl1 --json --type autonomous --code '*C,**' capture.log
        Show critical and major alarms, for a program.
    varnel tl1 --connect 192.0.2.7:1400 --timeout 60
        Show what an element sends until it is silent for a minute.
  == end of tl1
  Show a slot in every form it is written in.
  
  Usage: varnel slot [OPTIONS] TEXT...
  
  Arguments:
    TEXT...  Slots in any form; - reads them from standard input, one a line
  
  Options:
    -h, --help         Print this help and exit
    --generation CODE  Give the DC form only where elements of this generation
                       write it
    --json             Print one JSON object per text
    -v, --verbose      Show the library's log lines, and what tl1 skips, on
                       standard error
  
  How a text is read:
    0x0305          hexadecimal: the word, shelf * 256 + slot
    FAC-1-SLOT-3-5  behind the first SLOT- as in TL1; SLOT-7 has no shelf, and
                    SLOT-305 is a plain number
    3-5             shelf and slot, as in MML parameters
    305             from 200 on and with 3 to 11 digits in the DC form: shelf, and
                    two digits of slot
    7, 105          other numbers plainly: the slot, without a shelf
  
    Where another reading is possible, a note tells it. Empty lines of standard
    input are passed over.
  
  What is shown:
    Elements of old generations write shelves from 2 on in the DC form; other
    slots, and all of the second generation (codes above 52099), are written
    dashed and have none. Without --generation the DC form is that of an old
    generation. The NE slot ID is that of a text which is a number and nothing
    else.
  
  JSON objects:
    text               The text given.
    word, shelf, slot  Numbers.
    dashed, hex, dc    Texts; dc is null where there is no DC form.
    ne_slot_id         A number, or null where the text is not a plain number.
  
    All but text are null for a text that is no slot. Notes go to standard error.
  
  Exit status:
    0  Every text is a slot.
    1  A text is none, or standard input cannot be read, or the result could not
       be written.
    2  The command line is wrong.
  
  Examples:
    varnel slot 3-5 305 0x0305 FAC-1-SLOT-3-5
        Show one slot, given in four forms.
    varnel slot --generation 52100 10-31
        Show it as elements of the second generation write it.
    varnel slot --json - < slots.txt
        Read slots from a file, one a line, for a program.
  == end of slot
  Tell whether boards are system-control boards, and whether an element is of the
  Korvane family.
  
  Usage: varnel board [OPTIONS] [NAME...]
  
  Arguments:
    NAME...  Board names; - reads them from standard input, one a line
  
  Options:
    -h, --help         Print this help and exit
    --ne NAME          Tell also whether the element of this name is of the
                       Korvane family (only with --generation)
    --generation CODE  Generation code of that element; above 52099 none is
                       Korvane (only with --ne)
    --json             Print one JSON object per name
    -v, --verbose      Show the library's log lines, and what tl1 skips, on
                       standard error
  
  Case does not count in names. Empty lines of standard input are passed over.
  
  JSON objects:
    of a board     name, system_control
    of an element  ne, generation, korvane
  
    The answers are true or false, and null for a bad name.
  
  Exit status:
    0  Every question is answered, whatever the answers are.
    1  A name is empty or holds a NUL, or standard input cannot be read, or the
       result could not be written.
    2  The command line is wrong.
  
  Examples:
    varnel board vcua mainboard
        Tell of two boards.
    varnel board --ne KVA-4210 --generation 50000
        Tell of an element.
    varnel board --json - < boards.txt
        Tell of all boards in a file, one a line, for a program.
  == end of board
  $ varnel --version | sed 's/[0-9][0-9]*/N/g'
  varnel N.N.N
