#!/usr/bin/env python3
"""The section about documents that are generated and saved on several systems: the bytes and what is shown of
them must be the same everywhere."""
import os
import pathlib
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
HERE = ("GCC, Linux", ["build/release/bin/report_generated_documents"])
OTHERS = [("Clang with sanitizers, Linux", ["build/clang/bin/report_generated_documents"]),
          ("MinGW, Windows (Wine)", ["wine", "build/windows/bin/report_generated_documents.exe"])]
# In the long form only.
MORE = [("GCC, Linux on ARM64 (QEMU)", ["qemu-aarch64-static", "-L", "build/arm64-system",
                                        "build/arm64/bin/report_generated_documents"]),
        ("MinGW, 32-bit Windows (Wine)", ["./dev", "in-i386", "wine", f"{ROOT}/build/windows32/bin/report_generated_documents.exe"])]
COUNT, SHORT_COUNT = 11_000, 550


def digests(command, count):
    done = subprocess.run([*command, str(count)], cwd=ROOT, check=True, stdout=subprocess.PIPE, text=True,
                          env={**os.environ, "TZ": "UTC", "WINEPREFIX": str(ROOT / "build/wine"), "WINEDEBUG": "-all"})
    return [line.split("\t") for line in done.stdout.splitlines()]


def compared(name, lines, here, madeUp):
    """Counts what is the same; prints a row and yields what differs."""
    bytesDiffer = [a[0] for a, b, new in zip(here, lines, madeUp) if not new and a[2] != b[2]]
    shownDiffer = [a[0] for a, b, new in zip(here, lines, madeUp) if not new and a[3] != b[3]]
    readDiffer = [a[0] for a, b in zip(here, lines) if a[:2] != b[:2]]
    print(f"| {name} | {len(lines):,} | {len(readDiffer):,} | {len(bytesDiffer):,} | {len(shownDiffer):,} |")
    yield from sorted(set(readDiffer + bytesDiffer + shownDiffer))


def main():
    short = "--short" in sys.argv
    count = SHORT_COUNT if short else COUNT
    here = digests(HERE[1], count)
    time.sleep(1.1)  # so that a time that was made up is another one
    again = digests(HERE[1], count)
    madeUp = [a != b for a, b in zip(here, again)]
    kinds = {line[1] for line in here} - {"refused"}
    refused = sum(line[1] == "refused" for line in here)
    print("## The same on every platform\n")
    print(f"From seeds, {count:,} documents of {len(kinds)} kinds were made: those of `tests/data` with elements doubled, "
          "moved and left out, and values replaced. Each was loaded, saved, loaded again and shown as "
          "`vosmere show --json` does; the digests of what was saved and of what was shown were compared with those of "
          f"{HERE[0]}. The {len(here) - count} documents of `tests/data` themselves are among them. "
          f"{refused:,} are refused, {sum(madeUp):,} get an identity or a time that is new in every run; "
          "of those only the kind is compared.\n")
    print("| System | Documents | Read differently | Other bytes | Shown differently |\n|---|---:|---:|---:|---:|")
    differing = []
    for name, command in OTHERS + ([] if short else MORE):
        lines = digests(command, count)
        if len(lines) != len(here):
            sys.exit(f"{name} has not come to the end")
        differing += [f"{name}: document {number}" for number in compared(name, lines, here, madeUp)]
    for what in differing[:20]:
        print(f"differs: {what}; report_generated_documents 0 NUMBER shows it", file=sys.stderr)
    return not differing


if __name__ == "__main__":
    sys.exit(not main())
