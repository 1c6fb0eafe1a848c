  $ . "$SUPPORT/session.sh"
  $ varnel slot 3-5 7 305 105 1031 0x0a1f 0X00ff 0 ' 2-14 ' FAC-1-SLOT-3-5 SLOT-7 SLOT-3-12,ABC '2-14,PORT=1' 3-5-1
  3-5: shelf 3, slot 5
    read as     dashed form
    word        0x0305  773
    dashed      3-5
    hexadecimal 3-5
    DC          305
  7: shelf 0, slot 7
    read as     plain number
    word        0x0007  7
    dashed      7
    hexadecimal 7
    DC          none: written 7
    NE slot ID  0x0007  7
  305: shelf 3, slot 5
    read as     DC form
    word        0x0305  773
    dashed      3-5
    hexadecimal 3-5
    DC          305
    NE slot ID  0x0670  1648
    note        as a plain number it is slot 305: 1-49, the word 0x0131
  105: shelf 0, slot 105
    read as     plain number
    word        0x0069  105
    dashed      105
    hexadecimal 69
    DC          none: written 105
    NE slot ID  0x0630  1584
    note        not shelf 1, slot 5: the DC form begins with shelf 2
  1031: shelf 10, slot 31
    read as     DC form
    word        0x0a1f  2591
    dashed      10-31
    hexadecimal a-1f
    DC          1031
    NE slot ID  0x0407  1031
    note        as a plain number it is slot 1031: 4-7, the word 0x0407
  0x0a1f: shelf 10, slot 31
    read as     hexadecimal word
    word        0x0a1f  2591
    dashed      10-31
    hexadecimal a-1f
    DC          1031
  0X00ff: shelf 0, slot 255
    read as     hexadecimal word
    word        0x00ff  255
    dashed      255
    hexadecimal ff
    DC          none: written 255
  0: shelf 0, slot 0
    read as     plain number
    word        0x0000  0
    dashed      0
    hexadecimal 0
    DC          none: written 0
    NE slot ID  0x0000  0
    note        the word 0 means no slot
   2-14 : shelf 2, slot 14
    read as     dashed form
    word        0x020e  526
    dashed      2-14
    hexadecimal 2-e
    DC          214
  FAC-1-SLOT-3-5: shelf 3, slot 5
    read as     TL1
    word        0x0305  773
    dashed      3-5
    hexadecimal 3-5
    DC          305
  SLOT-7: shelf 0, slot 7
    read as     TL1
    word        0x0007  7
    dashed      7
    hexadecimal 7
    DC          none: written 7
  SLOT-3-12,ABC: shelf 3, slot 12
    read as     TL1
    word        0x030c  780
    dashed      3-12
    hexadecimal 3-c
    DC          312
  2-14,PORT=1: shelf 2, slot 14
    read as     dashed form
    word        0x020e  526
    dashed      2-14
    hexadecimal 2-e
    DC          214
    note        text after the slot number is ignored
  3-5-1: shelf 3, slot 5
    read as     dashed form
    word        0x0305  773
    dashed      3-5
    hexadecimal 3-5
    DC          305
    note        text after the slot number is ignored
  $ varnel slot --json 3-5 7 305 0x0a1f SLOT-7 SLOT-305 2-14,PORT=1 1000 0
  {"text":"3-5","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":null}
  {"text":"7","word":7,"shelf":0,"slot":7,"dashed":"7","hex":"7","dc":null,"ne_slot_id":7}
  {"text":"305","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":1648}
  {"text":"0x0a1f","word":2591,"shelf":10,"slot":31,"dashed":"10-31","hex":"a-1f","dc":"1031","ne_slot_id":null}
  {"text":"SLOT-7","word":7,"shelf":0,"slot":7,"dashed":"7","hex":"7","dc":null,"ne_slot_id":null}
  {"text":"SLOT-305","word":305,"shelf":1,"slot":49,"dashed":"1-49","hex":"1-31","dc":null,"ne_slot_id":null}
  {"text":"2-14,PORT=1","word":526,"shelf":2,"slot":14,"dashed":"2-14","hex":"2-e","dc":"214","ne_slot_id":null}
  {"text":"1000","word":2560,"shelf":10,"slot":0,"dashed":"10-0","hex":"a-0","dc":"1000","ne_slot_id":1000}
  {"text":"0","word":0,"shelf":0,"slot":0,"dashed":"0","hex":"0","dc":null,"ne_slot_id":0}
  ! varnel: 305: as a plain number it is slot 305: 1-49, the word 0x0131
  ! varnel: SLOT-305: slot 305 is above 255 and carries into the shelf
  ! varnel: 2-14,PORT=1: text after the slot number is ignored
  ! varnel: 1000: as a plain number it is slot 1000: 3-232, the word 0x03e8
  ! varnel: 0: the word 0 means no slot

Texts that can be read in two ways.

  $ varnel slot 305 200 199 10100 3150 3-150 3-300 SLOT-305 SLOT-5:ABC-DEF 14:A-B 000000000305
  305: shelf 3, slot 5
    read as     DC form
    word        0x0305  773
    dashed      3-5
    hexadecimal 3-5
    DC          305
    NE slot ID  0x0670  1648
    note        as a plain number it is slot 305: 1-49, the word 0x0131
  200: shelf 2, slot 0
    read as     DC form
    word        0x0200  512
    dashed      2-0
    hexadecimal 2-0
    DC          200
    NE slot ID  0x0670  1648
    note        as a plain number it is slot 200: 200, the word 0x00c8
  199: shelf 0, slot 199
    read as     plain number
    word        0x00c7  199
    dashed      199
    hexadecimal c7
    DC          none: written 199
    NE slot ID  0x0639  1593
    note        not shelf 1, slot 99: the DC form begins with shelf 2
  10100: shelf 101, slot 0
    read as     DC form
    word        0x6500  25856
    dashed      101-0
    hexadecimal 65-0
    DC          10100
    NE slot ID  0x2774  10100
    note        as a plain number it is slot 10100: 39-116, the word 0x2774
    note        old generations also write it for 10-100, the word 0x0a64
  3150: shelf 31, slot 50
    read as     DC form
    word        0x1f32  7986
    dashed      31-50
    hexadecimal 1f-32
    DC          3150
    NE slot ID  0x0c4e  3150
    note        as a plain number it is slot 3150: 12-78, the word 0x0c4e
    note        old generations also write it for 3-150, the word 0x0396
  3-150: shelf 3, slot 150
    read as     dashed form
    word        0x0396  918
    dashed      3-150
    hexadecimal 3-96
    DC          3150
    note        its DC form is read as shelf 31, slot 50
  3-300: shelf 4, slot 44
    read as     dashed form
    word        0x042c  1068
    dashed      4-44
    hexadecimal 4-2c
    DC          444
    note        slot 300 is above 255 and carries into the shelf
  SLOT-305: shelf 1, slot 49
    read as     TL1
    word        0x0131  305
    dashed      1-49
    hexadecimal 1-31
    DC          none: written 1-49
    note        slot 305 is above 255 and carries into the shelf
  SLOT-5:ABC-DEF: shelf 0, slot 5
    read as     TL1
    word        0x0005  5
    dashed      5
    hexadecimal 5
    DC          none: written 5
    note        the text contains a later -, therefore the library reads it as shelf 5, slot 0
  14:A-B: shelf 0, slot 14
    read as     plain number
    word        0x000e  14
    dashed      14
    hexadecimal e
    DC          none: written 14
    note        text after the slot number is ignored
    note        the text contains a later -, therefore the library reads it as shelf 14, slot 0
  000000000305: shelf 1, slot 49
    read as     plain number
    word        0x0131  305
    dashed      1-49
    hexadecimal 1-31
    DC          none: written 1-49
    NE slot ID  0x0670  1648
    note        slot 000000000305 is above 255 and carries into the shelf
  $ varnel slot --json 305 10100 3-300 SLOT-5:ABC-DEF
  {"text":"305","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":1648}
  {"text":"10100","word":25856,"shelf":101,"slot":0,"dashed":"101-0","hex":"65-0","dc":"10100","ne_slot_id":10100}
  {"text":"3-300","word":1068,"shelf":4,"slot":44,"dashed":"4-44","hex":"4-2c","dc":"444","ne_slot_id":null}
  {"text":"SLOT-5:ABC-DEF","word":5,"shelf":0,"slot":5,"dashed":"5","hex":"5","dc":null,"ne_slot_id":null}
  ! varnel: 305: as a plain number it is slot 305: 1-49, the word 0x0131
  ! varnel: 10100: as a plain number it is slot 10100: 39-116, the word 0x2774
  ! varnel: 10100: old generations also write it for 10-100, the word 0x0a64
  ! varnel: 3-300: slot 300 is above 255 and carries into the shelf
  ! varnel: SLOT-5:ABC-DEF: the text contains a later -, therefore the library reads it as shelf 5, slot 0

Generations of elements.

  $ for code in 50000 52099 52100 052100 -1 2147483647; do
  >   echo "generation $code"
  >   varnel slot --generation "$code" --json 305 1-5 10-100
  >   varnel slot --generation "$code" 3-5 1-5 | grep -E '^  DC|note'
  > done
  generation 50000
  {"text":"305","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":1648}
  {"text":"1-5","word":261,"shelf":1,"slot":5,"dashed":"1-5","hex":"1-5","dc":null,"ne_slot_id":null}
  {"text":"10-100","word":2660,"shelf":10,"slot":100,"dashed":"10-100","hex":"a-64","dc":"10100","ne_slot_id":null}
  ! varnel: 305: as a plain number it is slot 305: 1-49, the word 0x0131
  ! varnel: 10-100: its DC form is read as shelf 101, slot 0
    DC          305
    DC          none: written 1-5
  generation 52099
  {"text":"305","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":1648}
  {"text":"1-5","word":261,"shelf":1,"slot":5,"dashed":"1-5","hex":"1-5","dc":null,"ne_slot_id":null}
  {"text":"10-100","word":2660,"shelf":10,"slot":100,"dashed":"10-100","hex":"a-64","dc":"10100","ne_slot_id":null}
  ! varnel: 305: as a plain number it is slot 305: 1-49, the word 0x0131
  ! varnel: 10-100: its DC form is read as shelf 101, slot 0
    DC          305
    DC          none: written 1-5
  generation 52100
  {"text":"305","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":null,"ne_slot_id":1648}
  {"text":"1-5","word":261,"shelf":1,"slot":5,"dashed":"1-5","hex":"1-5","dc":null,"ne_slot_id":null}
  {"text":"10-100","word":2660,"shelf":10,"slot":100,"dashed":"10-100","hex":"a-64","dc":null,"ne_slot_id":null}
  ! varnel: 305: as a plain number it is slot 305: 1-49, the word 0x0131
    DC          none: written 3-5
    DC          none: written 1-5
  generation 052100
  {"text":"305","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":null,"ne_slot_id":1648}
  {"text":"1-5","word":261,"shelf":1,"slot":5,"dashed":"1-5","hex":"1-5","dc":null,"ne_slot_id":null}
  {"text":"10-100","word":2660,"shelf":10,"slot":100,"dashed":"10-100","hex":"a-64","dc":null,"ne_slot_id":null}
  ! varnel: 305: as a plain number it is slot 305: 1-49, the word 0x0131
    DC          none: written 3-5
    DC          none: written 1-5
  generation -1
  {"text":"305","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":1648}
  {"text":"1-5","word":261,"shelf":1,"slot":5,"dashed":"1-5","hex":"1-5","dc":null,"ne_slot_id":null}
  {"text":"10-100","word":2660,"shelf":10,"slot":100,"dashed":"10-100","hex":"a-64","dc":"10100","ne_slot_id":null}
  ! varnel: 305: as a plain number it is slot 305: 1-49, the word 0x0131
  ! varnel: 10-100: its DC form is read as shelf 101, slot 0
    DC          305
    DC          none: written 1-5
  generation 2147483647
  {"text":"305","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":null,"ne_slot_id":1648}
  {"text":"1-5","word":261,"shelf":1,"slot":5,"dashed":"1-5","hex":"1-5","dc":null,"ne_slot_id":null}
  {"text":"10-100","word":2660,"shelf":10,"slot":100,"dashed":"10-100","hex":"a-64","dc":null,"ne_slot_id":null}
  ! varnel: 305: as a plain number it is slot 305: 1-49, the word 0x0131
    DC          none: written 3-5
    DC          none: written 1-5

Too large, and malformed.

  $ varnel slot 256-5 255-256 SLOT-65536 0x10000 0x12345678901 30000 70000 255100 1677721905 12345678901 123456789012 3-5
  3-5: shelf 3, slot 5
    read as     dashed form
    word        0x0305  773
    dashed      3-5
    hexadecimal 3-5
    DC          305
  ! varnel: 256-5: shelf 256 is above 255
  ! varnel: 255-256: slot 256 does not fit
  ! varnel: SLOT-65536: slot 65536 does not fit
  ! varnel: 0x10000: is above 0xffff
  ! varnel: 0x12345678901: is above 0xffff
  ! varnel: 30000: is too large for the DC form (the largest shelf is 255)
  ! varnel: 30000: as a plain number it is slot 30000: 117-48, the word 0x7530
  ! varnel: 70000: is too large for the DC form (the largest shelf is 255)
  ! varnel: 255100: is too large for the DC form (the largest shelf is 255)
  ! varnel: 255100: old generations also write it for 255-100, the word 0xff64
  ! varnel: 1677721905: is too large for the DC form (the largest shelf is 255)
  ! varnel: 12345678901: is too large for the DC form (the largest shelf is 255)
  ! varnel: 123456789012: is too large for the DC form (the largest shelf is 255)
  [1]
  $ varnel slot '' ' ' abc -5 3- 3--5 '3 - 5' 3-5x a-1f 0x 0x1G slot-3-5 SLOT- SLOT-1-SLOT-2-3 PORT-1 7
  7: shelf 0, slot 7
    read as     plain number
    word        0x0007  7
    dashed      7
    hexadecimal 7
    DC          none: written 7
    NE slot ID  0x0007  7
  ! varnel: : is empty
  ! varnel:  : is empty
  ! varnel: abc: does not begin with a shelf or slot number
  ! varnel: -5: does not begin with a shelf or slot number
  ! varnel: 3-: has no slot number after 3-
  ! varnel: 3--5: has no slot number after 3-
  ! varnel: 3 - 5: has invalid text after the slot number
  ! varnel: 3-5x: has invalid text after the slot number
  ! varnel: a-1f: does not begin with a shelf or slot number
  ! varnel: 0x: is not 0x and hexadecimal digits
  ! varnel: 0x1G: is not 0x and hexadecimal digits
  ! varnel: slot-3-5: does not begin with a shelf or slot number
  ! varnel: SLOT-: does not begin with a shelf or slot number
  ! varnel: SLOT-1-SLOT-2-3: has no slot number after 1-
  ! varnel: PORT-1: does not begin with a shelf or slot number
  [1]
  $ varnel slot --json 3- 7
  {"text":"3-","word":null,"shelf":null,"slot":null,"dashed":null,"hex":null,"dc":null,"ne_slot_id":null}
  {"text":"7","word":7,"shelf":0,"slot":7,"dashed":"7","hex":"7","dc":null,"ne_slot_id":7}
  ! varnel: 3-: has no slot number after 3-
  [1]

Standard input; each line is answered when it arrives.

  $ printf '3-5\r\n\n   7\nx\nSLOT-2-14' | varnel slot --json 0x1 - 9
  {"text":"0x1","word":1,"shelf":0,"slot":1,"dashed":"1","hex":"1","dc":null,"ne_slot_id":null}
  {"text":"3-5","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":null}
  {"text":"   7","word":7,"shelf":0,"slot":7,"dashed":"7","hex":"7","dc":null,"ne_slot_id":7}
  {"text":"x","word":null,"shelf":null,"slot":null,"dashed":null,"hex":null,"dc":null,"ne_slot_id":null}
  {"text":"SLOT-2-14","word":526,"shelf":2,"slot":14,"dashed":"2-14","hex":"2-e","dc":"214","ne_slot_id":null}
  {"text":"9","word":9,"shelf":0,"slot":9,"dashed":"9","hex":"9","dc":null,"ne_slot_id":9}
  ! varnel: x: does not begin with a shelf or slot number
  [1]
  $ printf '' | varnel slot -
  $ varnel slot - < /
  ! varnel: standard input: cannot read
  [1]
  $ mkfifo questions answers
  $ varnel slot --json - < questions > answers &
  $ exec 3> questions 4< answers
  $ echo 3-5 >&3
  $ read -r -t 20 answer <&4 && echo "$answer"
  {"text":"3-5","word":773,"shelf":3,"slot":5,"dashed":"3-5","hex":"3-5","dc":"305","ne_slot_id":null}
  $ echo 2-7 >&3
  $ exec 3>&-
  $ cat <&4
  {"text":"2-7","word":519,"shelf":2,"slot":7,"dashed":"2-7","hex":"2-7","dc":"207","ne_slot_id":null}

Wrong usage.

  $ for code in x 0x5 1.5 '' +5 ' 5' 5x 2147483648; do varnel slot --generation "$code" 3-5 || echo "status $?"; done
  ! varnel: --generation: "x" is not a decimal number of 32 bits
  ! Try "varnel slot --help".
  status 2
  ! varnel: --generation: "0x5" is not a decimal number of 32 bits
  ! Try "varnel slot --help".
  status 2
  ! varnel: --generation: "1.5" is not a decimal number of 32 bits
  ! Try "varnel slot --help".
  status 2
  ! varnel: --generation: "" is not a decimal number of 32 bits
  ! Try "varnel slot --help".
  status 2
  ! varnel: --generation: "+5" is not a decimal number of 32 bits
  ! Try "varnel slot --help".
  status 2
  ! varnel: --generation: " 5" is not a decimal number of 32 bits
  ! Try "varnel slot --help".
  status 2
  ! varnel: --generation: "5x" is not a decimal number of 32 bits
  ! Try "varnel slot --help".
  status 2
  ! varnel: --generation: "2147483648" is not a decimal number of 32 bits
  ! Try "varnel slot --help".
  status 2
  $ varnel slot
  ! varnel: TEXT is required
  ! Try "varnel slot --help".
  [2]
  $ varnel slot -x
  ! varnel: unknown option: -x
  ! Try "varnel slot --help".
  [2]
  $ varnel slot --json
  ! varnel: TEXT is required
  ! Try "varnel slot --help".
  [2]
  $ varnel slot -- -x
  ! varnel: -x: does not begin with a shelf or slot number
  [1]
  $ varnel slot --json -- -5 7
  {"text":"-5","word":null,"shelf":null,"slot":null,"dashed":null,"hex":null,"dc":null,"ne_slot_id":null}
  {"text":"7","word":7,"shelf":0,"slot":7,"dashed":"7","hex":"7","dc":null,"ne_slot_id":7}
  ! varnel: -5: does not begin with a shelf or slot number
  [1]
