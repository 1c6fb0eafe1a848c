  $ . "$SUPPORT/session.sh"
  $ printf 'a\nx [COLDPATCH] y\n' > patch.txt
  $ printf '[coldpatch]\n' > script.txt
  $ varnel coldpatch patch.txt
  patch.txt: yes
  $ varnel coldpatch script.txt
  script.txt: no
  [1]
  $ varnel coldpatch patch.txt script.txt absent.txt .
  patch.txt: yes
  script.txt: no
  ! varnel: absent.txt: No such file or directory
  ! varnel: .: is a folder
  [1]
  $ varnel coldpatch --json patch.txt script.txt absent.txt
  {"path":"patch.txt","cold_patch":true}
  {"path":"script.txt","cold_patch":false}
  {"path":"absent.txt","cold_patch":null}
  ! varnel: absent.txt: No such file or directory
  [1]
  $ echo '[COLDPATCH]' | varnel coldpatch -
  -: yes
