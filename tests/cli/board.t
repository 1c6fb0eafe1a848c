  $ . "$SUPPORT/session.sh"
  $ varnel board vcua VCUA vcuf XSCCY vb22 61vcu 61vcu2 'a:b' tl1 board
  vcua: a system-control board
  VCUA: a system-control board
  vcuf: not a system-control board
  XSCCY: a system-control board
  vb22: a system-control board
  61vcu: a system-control board
  61vcu2: not a system-control board
  a:b: not a system-control board
  tl1: not a system-control board
  board: not a system-control board
  $ varnel board --json vcu vb23
  {"name":"vcu","system_control":true}
  {"name":"vb23","system_control":false}
  $ printf 'vcua\r\n\nmainboard\nvmu' | varnel board scc - sce --ne - --generation 1
  scc: a system-control board
  vcua: a system-control board
  mainboard: not a system-control board
  vmu: a system-control board
  sce: a system-control board
  -: not of the Korvane family

The family of an element.

  $ varnel board --ne KVA-4210 --generation 52099
  KVA-4210: of the Korvane family
  $ varnel board --ne KVA-4210 --generation 52100
  KVA-4210: not of the Korvane family
  $ varnel board --ne 'my kva-x-4210b' --generation -1 vcu
  vcu: a system-control board
  my kva-x-4210b: of the Korvane family
  $ varnel board --json --generation 050000 --ne OTHER vcu
  {"name":"vcu","system_control":true}
  {"ne":"OTHER","generation":50000,"korvane":false}
  $ varnel board --json --generation 50000 --ne '' vcu
  {"name":"vcu","system_control":true}
  {"ne":"","generation":50000,"korvane":null}
  ! varnel: : is empty
  [1]

Wrong usage.

  $ varnel board
  ! varnel: NAME or --ne is required
  ! Try "varnel board --help".
  [2]
  $ varnel board --json
  ! varnel: NAME or --ne is required
  ! Try "varnel board --help".
  [2]
  $ varnel board --ne KVA-4210
  ! varnel: --ne requires --generation
  ! Try "varnel board --help".
  [2]
  $ varnel board --ne KVA-4210 vcu
  ! varnel: --ne requires --generation
  ! Try "varnel board --help".
  [2]
  $ varnel board --generation 50000 vcu
  ! varnel: --generation requires --ne
  ! Try "varnel board --help".
  [2]
  $ varnel board --generation 5x --ne KVA-4210
  ! varnel: --generation: "5x" is not a decimal number of 32 bits
  ! Try "varnel board --help".
  [2]
  $ varnel board --ne one --ne two --generation 1
  ! varnel: --ne: is given more than once
  ! Try "varnel board --help".
  [2]
  $ varnel board -x vcu
  ! varnel: unknown option: -x
  ! Try "varnel board --help".
  [2]
  $ varnel board -- -x
  -x: not a system-control board
