# Prepares a Markdown page for Doxygen, where pages lie in one folder and places in them have names of their own: links
# lose their "../", and headings get the names that links from other pages and within the page use.

function place(page, name) {
  return "#" page "-" name
}

# The name that a code forge gives to a heading.
function nameOf(heading) {
  heading = tolower(heading)
  gsub(/[^a-z0-9_ -]/, "", heading)
  gsub(/ /, "-", heading)
  return heading
}

# "docs/formats.md" is the page "formats".
function pageOf(path) {
  sub(/^.*\//, "", path)
  sub(/\.md$/, "", path)
  return path
}

function withPlaces(line,    before, link, hash) {
  before = ""
  while (match(line, /\]\(([A-Za-z0-9_.\/-]*\.md)?#[^)]*\)/)) {
    link = substr(line, RSTART + 2, RLENGTH - 3)
    hash = index(link, "#")
    before = before substr(line, 1, RSTART + 1) \
      place(hash == 1 ? pageOf(FILENAME) : pageOf(substr(link, 1, hash - 1)), substr(link, hash + 1)) ")"
    line = substr(line, RSTART + RLENGTH)
  }
  return before line
}

/^```/ { fenced = !fenced }
fenced { print; next }
{
  gsub(/\]\(\.\.\//, "](")
  gsub(/\]\(README\.md\)/, "](index.html)")
  $0 = withPlaces($0)
}
/^##+ / { $0 = $0 " {" place(pageOf(FILENAME), nameOf(substr($0, index($0, " ") + 1))) "}" }
{ print }
