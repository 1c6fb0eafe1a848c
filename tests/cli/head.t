  $ . "$SUPPORT/session.sh"
  $ make_sample
  $ varnel head sample.pkg
  directory header at offset 0
       0  ulMagic       0x51584444  1364739140
       4  ulCheckSum    0x00000005  5
       8  usValue08     0x0000  0
      10  usValue10     0x0000  0
      12  ulValue12     0x00000000  0
      16  aucBytes16    000000000000
      22  usValue22     0x0000  0
      24  usValue24     0x0000  0
      26  usGapLen26    0x0003  3
      28  ulValue28     0x00000000  0
      32  usGapLen32    0x0000  0
      34  usGapLen34    0x0000  0
      36  usGapLen36    0x0002  2
      38  aucBytes38    00000000000000000000000000000000000000000000
      60  ulValue60     0x00000000  0
    checksum 0x00000005 stored, 0x00000005 computed: correct
  file header at offset 69
       0  ulMagic       0x51584646  1364739654
       4  ulCheckSum    0x0000002b  43
       8  usValue08     0x0000  0
      10  usValue10     0x0000  0
      12  aucBytes12    000000000000000000000000
      24  ulValue24     0x00000000  0
      28  ulValue28     0x00000000  0
      32  usFileType    0x0002  2
      34  usValue34     0x0000  0
      36  ulValue36     0x00000000  0
      40  ulValue40     0x00000000  0
      44  usSkipLen     0x0004  4
      46  usLinkLen     0x0013  19
      48  usVersionLen  0x000d  13
      50  usTailLen     0x0005  5
      52  aucBytes52    0000000000000000
      60  ulValue60     0x00000000  0
    checksum 0x0000002b stored, 0x0000002b computed: correct
  sample.pkg: good
  $ varnel head --json sample.pkg
  {"path":"sample.pkg","ok":true,"error":null,"directory":{"ulMagic":1364739140,"ulCheckSum":5,"usValue08":0,"usValue10":0,"ulValue12":0,"aucBytes16":"000000000000","usValue22":0,"usValue24":0,"usGapLen26":3,"ulValue28":0,"usGapLen32":0,"usGapLen34":0,"usGapLen36":2,"aucBytes38":"00000000000000000000000000000000000000000000","ulValue60":0},"file":{"ulMagic":1364739654,"ulCheckSum":43,"usValue08":0,"usValue10":0,"aucBytes12":"000000000000000000000000","ulValue24":0,"ulValue28":0,"usFileType":2,"usValue34":0,"ulValue36":0,"ulValue40":0,"usSkipLen":4,"usLinkLen":19,"usVersionLen":13,"usTailLen":5,"aucBytes52":"0000000000000000","ulValue60":0},"stored":{"directory":5,"file":43},"computed":{"directory":5,"file":43}}
  $ cat sample.pkg | varnel head - | tail -n 1
  -: good
  $ varnel head absent.pkg
  absent.pkg: bad: No such file or directory
  [1]
  $ varnel head --json absent.pkg
  {"path":"absent.pkg","ok":false,"error":"No such file or directory","directory":null,"file":null,"stored":{"directory":null,"file":null},"computed":{"directory":null,"file":null}}
  [1]

The first of several faults.

  $ cp sample.pkg damaged.pkg
  $ put damaged.pkg 0 ABCD
  $ varnel head damaged.pkg
  directory header at offset 0
       0  ulMagic       0x41424344  1094861636
       4  ulCheckSum    0x00000005  5
       8  usValue08     0x0000  0
      10  usValue10     0x0000  0
      12  ulValue12     0x00000000  0
      16  aucBytes16    000000000000
      22  usValue22     0x0000  0
      24  usValue24     0x0000  0
      26  usGapLen26    0x0003  3
      28  ulValue28     0x00000000  0
      32  usGapLen32    0x0000  0
      34  usGapLen34    0x0000  0
      36  usGapLen36    0x0002  2
      38  aucBytes38    00000000000000000000000000000000000000000000
      60  ulValue60     0x00000000  0
    checksum 0x00000005 stored, 0x00000005 computed: correct
  damaged.pkg: bad: directory header: magic word 0x41424344, not 0x51584444 ("QXDD")
  [1]
  $ varnel head --json damaged.pkg
  {"path":"damaged.pkg","ok":false,"error":"directory header: magic word 0x41424344, not 0x51584444 (\"QXDD\")","directory":{"ulMagic":1094861636,"ulCheckSum":5,"usValue08":0,"usValue10":0,"ulValue12":0,"aucBytes16":"000000000000","usValue22":0,"usValue24":0,"usGapLen26":3,"ulValue28":0,"usGapLen32":0,"usGapLen34":0,"usGapLen36":2,"aucBytes38":"00000000000000000000000000000000000000000000","ulValue60":0},"file":null,"stored":{"directory":5,"file":null},"computed":{"directory":5,"file":null}}
  [1]
  $ cp sample.pkg damaged.pkg
  $ put damaged.pkg 90 X
  $ varnel head damaged.pkg
  directory header at offset 0
       0  ulMagic       0x51584444  1364739140
       4  ulCheckSum    0x00000005  5
       8  usValue08     0x0000  0
      10  usValue10     0x0000  0
      12  ulValue12     0x00000000  0
      16  aucBytes16    000000000000
      22  usValue22     0x0000  0
      24  usValue24     0x0000  0
      26  usGapLen26    0x0003  3
      28  ulValue28     0x00000000  0
      32  usGapLen32    0x0000  0
      34  usGapLen34    0x0000  0
      36  usGapLen36    0x0002  2
      38  aucBytes38    00000000000000000000000000000000000000000000
      60  ulValue60     0x00000000  0
    checksum 0x00000005 stored, 0x00000005 computed: correct
  file header at offset 69
       0  ulMagic       0x51584646  1364739654
       4  ulCheckSum    0x0000002b  43
       8  usValue08     0x0000  0
      10  usValue10     0x0000  0
      12  aucBytes12    000000000000000000580000
      24  ulValue24     0x00000000  0
      28  ulValue28     0x00000000  0
      32  usFileType    0x0002  2
      34  usValue34     0x0000  0
      36  ulValue36     0x00000000  0
      40  ulValue40     0x00000000  0
      44  usSkipLen     0x0004  4
      46  usLinkLen     0x0013  19
      48  usVersionLen  0x000d  13
      50  usTailLen     0x0005  5
      52  aucBytes52    0000000000000000
      60  ulValue60     0x00000000  0
    checksum 0x0000002b stored, 0x00000083 computed: wrong
  damaged.pkg: bad: file header: checksum 0x0000002b stored, 0x00000083 computed
  [1]
  $ varnel head --json damaged.pkg
  {"path":"damaged.pkg","ok":false,"error":"file header: checksum 0x0000002b stored, 0x00000083 computed","directory":{"ulMagic":1364739140,"ulCheckSum":5,"usValue08":0,"usValue10":0,"ulValue12":0,"aucBytes16":"000000000000","usValue22":0,"usValue24":0,"usGapLen26":3,"ulValue28":0,"usGapLen32":0,"usGapLen34":0,"usGapLen36":2,"aucBytes38":"00000000000000000000000000000000000000000000","ulValue60":0},"file":{"ulMagic":1364739654,"ulCheckSum":43,"usValue08":0,"usValue10":0,"aucBytes12":"000000000000000000580000","ulValue24":0,"ulValue28":0,"usFileType":2,"usValue34":0,"ulValue36":0,"ulValue40":0,"usSkipLen":4,"usLinkLen":19,"usVersionLen":13,"usTailLen":5,"aucBytes52":"0000000000000000","ulValue60":0},"stored":{"directory":5,"file":43},"computed":{"directory":5,"file":131}}
  [1]
