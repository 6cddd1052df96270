#!/usr/bin/env python3
"""The section about what XML 1.0 and Namespaces in XML accept: tests/data/conformance.txt through the fast
path, through libxml2 and through the DOM of Windows (Wine's)."""
import collections
import os
import pathlib
import re
import struct
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TABLE = ROOT / "tests/data/conformance.txt"
DOCUMENTS = ROOT / "build/report/conformance.documents"
ESCAPES = {b"r": b"\r", b"n": b"\n", b"t": b"\t", b"0": b"\0"}

Row = collections.namedtuple("Row", "heading expected text")


def rows():
    heading = ""
    for line in TABLE.read_bytes().splitlines():
        if line[1:2] == b"|" and line[:1] in b"+-LW":
            yield Row(heading, line[:1].decode(), line[2:])
        elif line:
            heading = line.decode()


def unescaped(text):
    return re.sub(rb"\\(?:x([0-9A-F]{2})|([rnt0]))",
                  lambda found: bytes([int(found[1], 16)]) if found[1] else ESCAPES[found[2]], text)


def lines_of(*command):
    done = subprocess.run([*command, str(DOCUMENTS)], cwd=ROOT, check=True, stdout=subprocess.PIPE,
                          env={**os.environ, "WINEPREFIX": str(ROOT / "build/wine"), "WINEDEBUG": "-all"})
    return done.stdout.decode().splitlines()


def shown(text):
    """As code in a cell of a table. Doxygen ends code with a single grave accent at an apostrophe."""
    return "``" + text.decode().replace("|", "\\|").replace("`", "") + "``"


def main():
    table = list(rows())
    DOCUMENTS.parent.mkdir(parents=True, exist_ok=True)
    with open(DOCUMENTS, "wb") as out:
        for row in table:
            document = unescaped(row.text)
            out.write(struct.pack("<I", len(document)) + document)
    ways = lines_of("build/release/bin/report_conformance_ways")
    linux = lines_of("build/release/bin/report_conformance_trees")
    windows = lines_of("wine", "build/windows/bin/report_conformance_trees.exe")
    if not len(ways) == len(linux) == len(windows) == len(table):
        sys.exit("a program did not come to the end of the documents")

    counts = collections.defaultdict(collections.Counter)
    wrong, differing = [], []
    for row, way, here, there in zip(table, ways, linux, windows):
        count = counts[row.heading]
        count["accepted" if row.expected in "+L" else "refused"] += 1
        count["fast"] += way[0] == "+"
        count["libxml2"] += way[1] == "+"
        count["windows"] += there[0] == "+"
        if "different" in way or way[:2] == "+-":
            wrong.append(f"the fast path differs from libxml2: {row.text.decode()}")
        for system, own, result in (("Linux", "L", here), ("Windows", "W", there)):
            if (result[0] == "+") != (row.expected in "+" + own):
                wrong.append(f"{system} has {result[0]}, expected {row.expected}: {row.text.decode()}")
        if here != there:
            differing.append(f"| {shown(row.text)} | {shown(here[1:].encode())} | "
                             + (shown(there[1:].encode()) if there[0] == "+" else "refused") + " |")

    print("## XML 1.0 and Namespaces in XML\n")
    print("`tests/data/conformance.txt` has documents for the productions and constraints of XML 1.0 (fifth "
          "edition), each with what the recommendation says. They were loaded by the fast path, which leaves "
          "to libxml2 what is not plain, by libxml2, and on Windows by the DOM of the system, here Wine's. "
          "What is accepted against the recommendation is in the last rows, and in `xml/read_xml.h`.\n")
    print("| Productions and constraints | To accept | To refuse | Fast path accepts | libxml2 accepts | Wine accepts |")
    print("|---|---:|---:|---:|---:|---:|")
    total = collections.Counter()
    columns = ("accepted", "refused", "fast", "libxml2", "windows")
    for heading, count in counts.items():
        total += count
        print(f"| {heading.replace('|', ' ')} |", *(f"{count[column]} |" for column in columns))
    print(f"| **all {len(table)}** |", *(f"{total[column]} |" for column in columns))
    print(f"\nOther than expected: {len(wrong)}. Documents that the platforms read differently: {len(differing)}, "
          "a node in brackets, with the number of its type.\n")
    print("| Document | Linux | Wine |\n|---|---|---|", *differing, sep="\n")
    for what in wrong:
        print(what, file=sys.stderr)
    return not wrong


if __name__ == "__main__":
    sys.exit(not main())
