# Compares include directives with a table of what may depend on what: awk -v kind=rooms|modules DOCUMENT LIST-OF-FILES
#
# The table is the block of the document behind the line <!-- rooms --> or <!-- modules -->, a line for each: "src ->
# include, ace". A line names only what stands further down, so that there is no cycle. Rooms are folders and, by the
# first part of their headers' names, other libraries; modules are what src/ and include/ hold under one name.
# varnel_export.h, which every public header includes, counts for none.

function complain(text) {
  print text > "/dev/stderr"
  failures++
}

function add_row(line,   sides, count, names, i) {
  if (line !~ /->/) line = last_room " -> " line
  count = split(line, sides, / *-> */)
  last_room = sides[1]
  gsub(/^ +| +$/, "", last_room)
  if (!(last_room in row)) row[last_room] = ++rows
  count = split(sides[2], names, /[ ,]+/)
  for (i = 1; i <= count; i++)
    if (names[i] != "") allowed[last_room, names[i]] = 1
}

function room_of(file,   name) {
  for (name = file; sub(/\/[^\/]*$/, "", name);)
    if (name in row) return name
  return ""
}

function module_of(file,   name, base) {
  if (file ~ /^platform\//) return "platform"
  name = file
  sub(/^.*\//, "", name)
  sub(/\..*$/, "", name)
  base = name
  sub(/_.*$/, "", base)
  return ("include/" base ".h") in files ? base : name  # str_path.cpp is a part of the module str
}

function owner(file) { return kind == "rooms" ? room_of(file) : module_of(file) }

# The file that an include directive means: one beside it, else one whose room may be used, else any.
function resolve(from, header,   folder, count, found, i) {
  folder = from
  sub(/[^\/]*$/, "", folder)
  if ((folder header) in files) return folder header
  sub(/^varnel_common\//, "", header)
  while (sub(/^\.\.\//, "", header)) continue
  count = split(ending[header], found, " ")
  for (i = 1; i <= count; i++)
    if ((room_of(from), room_of(found[i])) in allowed || room_of(from) == room_of(found[i])) return found[i]
  return found[1]
}

function depend(from, file, header, on) {
  if (from == on || on == "varnel_export") return
  used[from, on] = 1
  if (!((from, on) in allowed)) complain(file " includes " header ": " from " may not depend on " on)
}

function read_includes(file,   line, header, target, from) {
  from = owner(file)
  while ((getline line < file) > 0) {
    if (line !~ /^ *# *include *[<"]/) continue
    header = line
    sub(/^ *# *include *[<"]/, "", header)
    sub(/[>"].*$/, "", header)
    target = resolve(file, header)
    directives++
    if (target != "") depend(from, file, header, owner(target))
    else if (kind == "rooms" && header ~ /\// && header !~ /^(sys|arpa)\//) depend(from, file, header, substr(header, 1, index(header, "/") - 1))
  }
  close(file)
}

FNR == NR {
  if (inside && /^```/) inside = 0
  else if (inside) add_row($0)
  else if (marked && /^```/) inside = 1
  marked = $0 == "<!-- " kind " -->" || (marked && $0 == "")
  next
}

{
  files[$0] = 1
  order[++count] = $0
  for (name = $0; name != ""; name = (index(name, "/") ? substr(name, index(name, "/") + 1) : ""))
    ending[name] = ending[name] " " $0
}

END {
  if (rows == 0) complain("no table of " kind)
  for (i = 1; i <= count; i++) {
    if (kind == "modules" && order[i] !~ /^(src|include)\// || order[i] == "include/varnel_export.h") continue
    if (!(owner(order[i]) in row)) complain(order[i] " belongs to none of the " kind)
    read_includes(order[i])
  }
  if (directives == 0) complain("no include directive was found")
  for (pair in allowed) {
    split(pair, ends, SUBSEP)
    if (!(pair in used)) complain(ends[1] " -> " ends[2] ": nothing includes it")
    if (ends[2] in row && row[ends[2]] <= row[ends[1]]) complain(ends[1] " -> " ends[2] ": what it names stands above it")
  }
  exit failures > 0
}
