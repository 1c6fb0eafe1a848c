# Prints a document with its marked blocks filled from files: project/PATH, or work/1.out and so on for sessions.
# With collect set, it writes the sessions to those files instead.

function copy(file,   line, status) {
  while ((status = (getline line < file)) > 0) print line
  if (status < 0) {
    print FILENAME ":" FNR ": no file " file > "/dev/stderr"
    exit 1
  }
  close(file)
}

inside && $0 == "```" {
  if (source != "" && !collect) copy(source)
  inside = 0
  source = mark = ""
  print
  next
}
inside {
  if (source == "") print
  else if (collect && mark == "session") print > source
  next
}
/^```/ {
  inside = 1
  if (mark == "session") source = work "/" ++sessions ".out"
  else if (mark ~ /\//) source = project "/" mark
}
!inside && NF > 0 { mark = "" }
/^<!-- [^ ]+ -->$/ { mark = $2 }
{ print }
