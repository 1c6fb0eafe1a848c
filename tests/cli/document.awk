# Converts a Markdown document to a .t file: sessions and listings indented, every other line after "|".
#
# The block after <!-- session --> is a session in a folder with the sample files as "data", the one after
# <!-- PATH --> is the file PATH of the project. Lines that are only in the .t file begin with "  $ : document;".

BEGIN { print "  $ : document; ln -s \"$DATA\" data" }
/^<!-- (session|[^ ]+\/[^ ]+) -->$/ { mark = $2 }
inside && $0 == "```" { inside = 0 }
inside {
  if ($0 ~ /^\(exit status [0-9]+\)$/) $0 = "[" substr($0, 14, length($0) - 14) "]"
  print "  " $0
  next
}
{ print "|" $0 }
mark != "" && /^```/ {
  inside = 1
  if (mark != "session") print "  $ : document; cat \"$PROJECT/" mark "\""
}
!/^<!--/ && NF > 0 { mark = "" }
