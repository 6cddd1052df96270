# Prepares a file for the web pages that ./dev doc makes; see FILTER_PATTERNS in doc/Doxyfile.
#
# Header: its declarations go into the group of its room (doc/rooms.dox), and the comment at its top
# describes the file.
# Markdown: a heading gets the anchor that links within the page expect, with the page's name in
# front, as anchors are common to all pages; the names of classes become links.

BEGIN {
  is_header = ARGV[1] ~ /\.h$/
  parts = split(ARGV[1], path, "/")
  room = path[parts - 1] == "vosmere" ? "cpp" : path[parts - 1]
  page = page_of(ARGV[1])
}

is_header && /^#pragma once/ {
  print described ? "/// @file" : $0
  below_top = 1
  next
}
is_header && !below_top && /^\/\// {
  print "/" $0
  described = 1
  next
}
is_header && /^namespace vosmere.*{$/ { $0 = $0 " /** @addtogroup " room " */ /** @{ */" }
is_header && /^}  \/\/ namespace vosmere/ { $0 = "/** @} */ " $0 }
is_header {
  print
  next
}

# The anchor that links expect, with a number for the second and later headings of the same text.
function anchor(heading,    name) {
  name = tolower(heading)
  gsub(/[^a-z0-9 -]/, "", name)
  gsub(/ /, "-", name)
  return page "-" name (seen[name]++ ? "-" seen[name] - 1 : "")
}

function page_of(path,    parts, count) {
  count = split(path, parts, "/")
  sub(/\.md$/, "", parts[count])
  return tolower(parts[count])
}

# "(#part)" and "(doc/tour.md#part)"
function with_anchors(line,    done, link, file) {
  while (match(line, /\]\([A-Za-z_\/.]*#/)) {
    link = substr(line, RSTART + 2, RLENGTH - 3)
    file = link == "" ? page : page_of(link)
    done = done substr(line, 1, RSTART + 1) "#" file "-"
    line = substr(line, RSTART + RLENGTH)
  }
  return done line
}

function with_class_links(line,    done, name) {
  while (match(line, /`C[A-LN-Z][A-Z]?[a-z]+[A-Za-z0-9]*`/)) {
    name = substr(line, RSTART + 1, RLENGTH - 2)
    done = done substr(line, 1, RSTART - 1) "<code>@ref vosmere::" name " \"" name "\"</code>"
    line = substr(line, RSTART + RLENGTH)
  }
  return done line
}

/^```/ { in_code = !in_code }
in_code || /^    / {
  print
  next
}
/^# / {
  print $0 " {#" page "}"
  next
}
/^##/ {
  heading = $0
  sub(/^#+ /, "", heading)
  print $0 " {#" anchor(heading) "}"
  next
}
{ print with_class_links(with_anchors($0)) }
