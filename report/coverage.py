#!/usr/bin/env python3
"""The section about what the tests reach and notice: lines and branches that they run, by room, and the mutants
of the sources that they catch (report/mutation.tsv: room, tried, caught)."""
import collections
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/coverage"
MUTATION = ROOT / "report/mutation.tsv"
WORK = {"line": "lines", "branch": "branches"}


def room_of(path):
    parts = path.split("/")
    return parts[1] if parts[0] == "vosmere" and len(parts) > 2 else None


def run_tests():
    for old in BUILD.rglob("*.gcda"):
        old.unlink()
    done = subprocess.run([BUILD / "bin/vosmere_tests", "--gtest_brief=1"], cwd=ROOT, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace")
    (BUILD / "tests.log").write_text(done.stdout)
    return done.returncode == 0


def measured():
    """{room: Counter of lines and branches, all and run}."""
    out = BUILD / "coverage.json"
    subprocess.run(["gcovr", "--root", str(ROOT), "--filter", "vosmere/", "--exclude-throw-branches",
                    "--exclude-unreachable-branches", "--object-directory", str(BUILD / "vosmere"),
                    "--json-summary", "--output", str(out), str(BUILD / "vosmere")], cwd=ROOT, check=True, stdout=subprocess.DEVNULL)
    rooms = collections.defaultdict(collections.Counter)
    for file in json.loads(out.read_text())["files"]:
        if room := room_of(file["filename"]):
            for what in WORK:
                rooms[room][what] += file[f"{what}_total"]
                rooms[room][f"{what} run"] += file[f"{what}_covered"]
    return rooms


def share(part, whole):
    return f"{100 * part / whole:.1f} %" if whole else ""


def print_coverage(rooms):
    print("The tests were run once, natively, with GCC's `--coverage` and without optimisation. Branches are those of "
          "the sources; the ones that only an exception takes are not counted. Code for Windows alone is not in the "
          "table, and neither is what processes do that a test kills.\n")
    print("| Room | Lines | Run | Share | Branches | Taken | Share |\n|---|---:|---:|---:|---:|---:|---:|")
    total = collections.Counter()
    for room, count in sorted(rooms.items()):
        total += count
        print_row(room, count)
    print_row("**all**", total)


def print_row(name, count):
    cells = [cell for what in WORK for cell in (f"{count[what]:,}", f"{count[f'{what} run']:,}",
                                                share(count[f"{what} run"], count[what]))]
    print(f"| {name} | {' | '.join(cells)} |")


def print_mutation():
    print("\nFaults were put into the sources, one at a time, as `./dev mutate` does it; those that change nothing "
          "that a test could see are not counted:\n")
    print("| Room | Tried | Noticed | Share |\n|---|---:|---:|---:|")
    tried, caught = 0, 0
    for line in MUTATION.read_text().splitlines():
        room, *numbers = line.split("\t")
        if not numbers or not numbers[0].isdigit():
            continue
        more, noticed = map(int, numbers[:2])
        tried, caught = tried + more, caught + noticed
        print(f"| {room} | {more:,} | {noticed:,} | {share(noticed, more)} |")
    print(f"| **all** | {tried:,} | {caught:,} | {share(caught, tried)} |")


def main():
    print("## What the tests reach\n")
    fine = run_tests()
    if not fine:
        print("a test failed: see build/coverage/tests.log", file=sys.stderr)
    print_coverage(measured())
    if MUTATION.exists():
        print_mutation()
    return fine


if __name__ == "__main__":
    sys.exit(not main())
