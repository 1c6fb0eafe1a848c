# Compares include directives with a table of the folders that each folder may use: awk -f includes.awk DOCUMENT FILES
#
# The table is the block of the document after the line <!-- folders -->, with lines such as "src -> include, ace". A line
# names only folders further down, so that there is no cycle, and other libraries by the first part of their headers'
# names.

function complain(text) {
  print text > "/dev/stderr"
  failures++
}

function add_row(line,   sides, count, names, i) {
  if (line !~ /->/) line = last_folder " -> " line
  count = split(line, sides, / *-> */)
  last_folder = sides[1]
  gsub(/^ +| +$/, "", last_folder)
  if (!(last_folder in row)) row[last_folder] = ++rows
  count = split(sides[2], names, /[ ,]+/)
  for (i = 1; i <= count; i++)
    if (names[i] != "") allowed[last_folder, names[i]] = 1
}

function folder_of(file,   name) {
  for (name = file; sub(/\/[^\/]*$/, "", name);)
    if (name in row) return name
  return ""
}

# The file to which an include directive refers: one in the same folder, else one whose folder may be used, else any.
function resolve(from, header,   folder, count, found, i) {
  folder = from
  sub(/[^\/]*$/, "", folder)
  if ((folder header) in files) return folder header
  sub(/^varnel_common\//, "", header)
  while (sub(/^\.\.\//, "", header)) continue
  count = split(ending[header], found, " ")
  for (i = 1; i <= count; i++)
    if ((folder_of(from), folder_of(found[i])) in allowed || folder_of(from) == folder_of(found[i])) return found[i]
  return found[1]
}

function depend(from, file, header, on) {
  if (from == on) return
  used[from, on] = 1
  if (!((from, on) in allowed)) complain(file " includes " header ": " from " may not depend on " on)
}

function read_includes(file,   line, header, target, from) {
  from = folder_of(file)
  while ((getline line < file) > 0) {
    if (line !~ /^ *# *include *[<"]/) continue
    header = line
    sub(/^ *# *include *[<"]/, "", header)
    sub(/[>"].*$/, "", header)
    target = resolve(file, header)
    directives++
    if (target != "") depend(from, file, header, folder_of(target))
    else if (header ~ /\// && header !~ /^(sys|arpa|netinet|linux)\//) depend(from, file, header, substr(header, 1, index(header, "/") - 1))
  }
  close(file)
}

FNR == NR {
  if (inside && /^```/) inside = 0
  else if (inside) add_row($0)
  else if (marked && /^```/) inside = 1
  marked = $0 == "<!-- folders -->" || (marked && $0 == "")
  next
}

{
  files[$0] = 1
  order[++count] = $0
  for (name = $0; name != ""; name = (index(name, "/") ? substr(name, index(name, "/") + 1) : ""))
    ending[name] = ending[name] " " $0
}

END {
  if (rows == 0) complain("no table of folders")
  for (i = 1; i <= count; i++) {
    if (!(folder_of(order[i]) in row)) complain(order[i] " is in no folder of the table")
    read_includes(order[i])
  }
  if (directives == 0) complain("no include directive was found")
  for (pair in allowed) {
    split(pair, ends, SUBSEP)
    if (!(pair in used)) complain(ends[1] " -> " ends[2] ": nothing includes it")
    if (ends[2] in row && row[ends[2]] <= row[ends[1]]) complain(ends[1] " -> " ends[2] ": it is named above")
  }
  exit failures > 0
}
