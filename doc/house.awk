# Reads lines of the form `file:#include "vosmere/..."`, as grep prints them, and draws the rooms of the library.
#
# Prints each room with the rooms that it uses, and writes the same as a graph to the file `graph`.
# Exits with 1 if an include points up, or to another room on the same floor. If every arrow points to a
# lower floor, there cannot be a circle.
BEGIN {
  floors = split("base|platform|text|tree sched|xml net|" \
                 "collections engines tags tabs toolbars pages ftp notify favorites|" \
                 "storage import merge|cpp|tools", floor_rooms, "|")
  for (floor = 1; floor <= floors; floor++) {
    count = split(floor_rooms[floor], names, " ")
    for (i = 1; i <= count; i++) floor_of[names[i]] = floor
  }
}

function room(path,    parts) {
  if (path ~ /^tools\//) return "tools"
  return split(path, parts, "/") > 2 ? parts[2] : parts[2] == "cpp.h" ? "cpp" : ""
}

function complain(what) {
  print what > "/dev/stderr"
  failed = 1
}

{
  file = $0
  sub(/:.*/, "", file)
  header = $0
  sub(/^[^"]*"/, "", header)
  sub(/".*/, "", header)
  from = room(file)
  to = room(header)
  if (from == "" || to == "") next  # vosmere.h belongs to no room
  used[from] = 1
  used[to] = 1
  if (from == "tools" && header ~ /\/(internal|posix|win32)\//)
    complain(file ": " header " is internal to the library")
  if (from == to) next
  if (!(from in floor_of)) complain(file ": the room " from " has no floor")
  else if (!(to in floor_of)) complain(header ": the room " to " has no floor")
  else if (floor_of[to] >= floor_of[from]) complain(file ": " header " is not below " from)
  arrows[from, to]++
}

END {
  print "digraph house {\n  graph [rankdir=TB, splines=true, nodesep=0.3, ranksep=0.45, bgcolor=transparent]" > graph
  print "  node [shape=box, style=\"rounded,filled\", fillcolor=\"#eef3fa\", color=\"#5b7ba8\"," > graph
  print "        fontname=Helvetica, fontsize=12]\n  edge [color=\"#8a9bb3\", arrowsize=0.6]" > graph
  for (floor = floors; floor >= 1; floor--) {
    count = split(floor_rooms[floor], names, " ")
    row = ""
    for (i = 1; i <= count; i++) {
      from = names[i]
      if (!(from in used)) continue
      row = row " " from ";"
      line = sprintf("%-12s", from)
      for (below = floor - 1; below >= 1; below--) {
        lower = split(floor_rooms[below], others, " ")
        for (j = 1; j <= lower; j++)
          if ((from, others[j]) in arrows) {
            line = line " " others[j] " " arrows[from, others[j]]
            print "  " from " -> " others[j] > graph
          }
      }
      print line
    }
    if (row != "") print "  { rank=same;" row " }" > graph
  }
  print "}" > graph
  exit failed
}
