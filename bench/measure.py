#!/usr/bin/env python3
"""Runs the benchmarks and compares this library with its peers.

    measure.py PROGRAM                    measures the rows of goals.tsv, and writes doc/performance.md
                                          with its plots, and ratios.tsv
    measure.py PROGRAM REGEX              prints the ratios of the benchmarks whose names match
    measure.py PROGRAM --check [--short]  measures the rows, and fails when one is worse than in
                                          ratios.tsv by more than the tolerance

A time is the median of five repetitions, and those of all benchmarks are interleaved. A row whose peer
shows a spread above 30 % (from the fastest to the slowest repetition, by the median) is measured again,
up to three times, and then not quoted.
"""
import argparse
import collections
import datetime
import json
import math
import os
import pathlib
import re
import statistics
import subprocess
import sys

BENCH = pathlib.Path(__file__).resolve().parent
DOC = BENCH.parent / "doc"
RATIOS = BENCH / "ratios.tsv"
LISTS = "Lists/"  # + operation + "/" + count: the time should grow linearly
SIZES = "Size/"  # + items + one of these, which are plotted
SIZED = ("load/vosmere", "load/pugixml", "save/vosmere")
MOST_SPREAD = 0.30
MOST_EXPONENT = 1.1

Row = collections.namedtuple("Row", "work ours peer goal note")
Form = collections.namedtuple("Form", "min_time repetitions rounds ratio exponent")  # the last two: tolerances
FULL = Form(0.05, 5, 4, 1.25, 0.1)
SHORT = Form(0.01, 3, 2, 3, 0.5)  # for a machine that does other work at the same time


def read_table(name):
    for line in (BENCH / name).read_text().splitlines():
        if not line.startswith("#"):
            yield line.split("\t")


def read_rows():
    for work, ours, peer, goal, *note in read_table("goals.tsv"):
        yield Row(work, ours, peer, float(goal), "".join(note))


class Results:
    """What was measured, by the names of the benchmarks."""

    def __init__(self, program, form):
        self.program, self.form = program, form
        self.times = {}  # lists of seconds
        self.runs = {}  # the last repetition, with its counters
        self.failed = False

    def measure(self, pattern):
        out = pathlib.Path(self.program).with_name("results.json")
        subprocess.run([self.program, "--benchmark_enable_random_interleaving=true",
                        f"--benchmark_filter={pattern}", f"--benchmark_out={out}",
                        f"--benchmark_min_time={self.form.min_time}",
                        f"--benchmark_repetitions={self.form.repetitions}"],
                       check=True, stdout=subprocess.DEVNULL)
        times = collections.defaultdict(list)
        for run in json.loads(out.read_text())["benchmarks"]:
            self.take(run, times)
        self.times.update(times)

    def take(self, run, times):
        name = re.sub(r"/(min_time|iterations|repeats):[^/]*|/(manual|real)_time", "", run["run_name"])
        if run.get("error_occurred"):
            print(f"{name}: {run['error_message']}", file=sys.stderr)
            self.failed = True
        elif run["run_type"] == "iteration":
            clock = "real_time" if re.search("/(manual|real)_time", run["run_name"]) else "cpu_time"
            times[name].append(run[clock] * {"ns": 1e-9, "us": 1e-6, "ms": 1e-3}[run["time_unit"]])
            self.runs[name] = run

    def measure_names(self, names, more=""):
        names = "|".join(sorted(set(names)))
        self.measure(f"^({names})(/(min_time|iterations|repeats|manual_time|real_time).*)?${more}")

    def measure_rows(self, rows, more):
        """Measures all rows, then again those whose peers were not steady."""
        todo = [name.partition("#")[0] for row in rows for name in (row.ours, row.peer) if name]
        extra = more
        for _ in range(self.form.rounds):
            self.measure_names(todo, extra)
            todo = [name for row in rows if self.value(row) is None for name in (row.ours, row.peer)]
            extra = ""
            if not todo:
                break

    def time(self, name):
        return statistics.median(self.times[name])

    def is_steady(self, name):
        return max(self.times[name]) - min(self.times[name]) <= MOST_SPREAD * self.time(name)

    def value(self, row):
        """The ratio of times, or the counter when there is no peer; None when the peer is not steady."""
        if row.peer:
            return self.time(row.ours) / self.time(row.peer) if self.is_steady(row.peer) else None
        ours, counter = row.ours.split("#")
        return self.runs[ours][counter]

    def growth(self):
        """Yields each list operation with {count: seconds} and the exponent."""
        operations = collections.defaultdict(dict)
        for name in self.times:
            if name.startswith(LISTS):
                _, what, count = name.split("/")
                operations[what][int(count)] = self.time(name)
        for what, times in sorted(operations.items()):
            least, most = min(times), max(times)
            if least < most:
                yield what, times, math.log(times[most] / times[least]) / math.log(most / least)

    def values(self, rows):
        """Everything that can become worse: {name: value}."""
        found = {f"{row.ours} : {row.peer}": self.value(row) for row in rows}
        return found, {LISTS + what: exponent for what, _, exponent in self.growth()}


def in_words(seconds):
    unit, name = next((u for u in ((1e-9, "ns"), (1e-6, "µs"), (1e-3, "ms")) if seconds < 1000 * u[0]),
                      (1, "s"))
    return f"{seconds / unit:.3g} {name}"


def shown(value):
    return "not steady" if value is None else f"{value:.2f}" if value >= 0.095 else f"{value:.3f}"


def peer_of(row):
    """The part of the peer's name that differs from ours."""
    return next((part for part in row.peer.split("/") if part not in row.ours.split("/")), "")


def print_ratios(results):
    for name in sorted(results.times):
        before, ours, after = name.partition("vosmere")
        for peer in sorted(results.times):
            if ours and peer != name and peer.startswith(before) and peer.endswith(after):
                row = Row("", name, peer, 0, "")
                print(f"{name:40} {in_words(results.time(name)):>8} : {in_words(results.time(peer)):<8} "
                      f"{peer_of(row):14} {shown(results.value(row))}")
    for what, times, exponent in results.growth():
        print(f"{what:50} {' '.join(in_words(times[count]) for count in sorted(times))}: n^{exponent:.2f}")


def worse_than(before, results, rows):
    """Yields (the names of benchmarks, a line about them) for what has become worse."""
    ratios, exponents = results.values(rows)
    for row, (name, value) in zip(rows, ratios.items()):
        if value is not None and value > results.form.ratio * float(before.get(name, "inf")):
            names = [part.partition("#")[0] for part in (row.ours, row.peer) if part]
            yield names, f"{name}: {shown(value)}, was {before[name]}"
    for name, value in exponents.items():
        if value > results.form.exponent + max(MOST_EXPONENT, float(before.get(name, "inf"))):
            yield [f"{name}/[0-9]*"], f"{name}: n^{value:.2f}, was n^{before[name]}"


def compare(results, rows):
    """Prints what is worse than before; whether nothing is. What is worse is measured again, because
    other programs on the machine can slow down a part of the benchmarks."""
    before = dict(line.split("\t") for line in RATIOS.read_text().splitlines())
    worse = list(worse_than(before, results, rows))
    for _ in range(results.form.rounds):
        if worse:
            results.measure_names(name for names, _ in worse for name in names)
            worse = list(worse_than(before, results, rows))
    unsteady = sum(results.value(row) is None for row in rows)
    print(*(line for _, line in worse),
          f"{len(rows)} rows, {len(worse)} worse than before (by more than {results.form.ratio:g} times), "
          f"{unsteady} without a steady peer", sep="\n")
    return not worse


def bold(text, isShort):
    return f"**{text}**" if isShort else text


def page(results, rows, quiet):
    """The text of doc/performance.md."""
    compiler = subprocess.run(["g++", "-dumpfullversion"], stdout=subprocess.PIPE, text=True).stdout.strip()
    processor = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text())[1]
    yield (BENCH / "performance.md").read_text().format(
        date=datetime.date.today(), processor=processor, cores=os.cpu_count(), compiler=compiler,
        load=quiet, seconds=results.form.min_time, repetitions=results.form.repetitions)
    yield "## Beside other libraries\n"
    yield "| Work | Peer | Ours | Theirs | Ratio | Goal |\n|---|---|---:|---:|---:|---:|"
    for row in rows:
        value = results.value(row)
        times = [in_words(results.time(name)) if row.peer else "" for name in (row.ours, row.peer)]
        what = shown(value) + ("" if row.peer else " bytes per byte")
        yield (f"| {row.work} | {peer_of(row)} | {' | '.join(times)} | "
               f"{bold(what, value is not None and value > row.goal)} | {row.goal:g} |")
    yield ("\n![Ratios and goals](performance_ratios.svg)\n\n## What stops the rest\n\n"
           "Instructions are counted by callgrind, page faults and the time in the system by the system.\n")
    yield from (f"- {row.work}{' (' + peer_of(row) + ')' if row.peer else ''}: {row.note}" for row in rows if row.note)
    yield "\n## Growth\n\nThe time of operations on lists and trees of n things is n to the power of the exponent.\n"
    growth = list(results.growth())
    counts = sorted({count for _, times, _ in growth for count in times})
    yield f"| Operation | {' | '.join(f'{count:,}' for count in counts)} | Exponent |"
    yield "|---" + "|---:" * (len(counts) + 1) + "|"
    for what, times, exponent in growth:
        cells = " | ".join(in_words(times[count]) for count in counts)
        yield f"| {what.capitalize()} | {cells} | {bold(f'{exponent:.2f}', exponent > MOST_EXPONENT)} |"
    yield "\nWhy some grow faster than linearly: instructions, and misses of a cache of 1 MB, for each thing (callgrind).\n"
    yield from (f"- {what.capitalize()}: {note}" for what, note in read_table("growth.tsv"))
    yield "\n![Time and peak memory over the size of the document](performance_sizes.svg)"


def draw(results, rows):
    """Draws the plots from tables that are written beside the program."""
    place = pathlib.Path(results.program).parent
    with open(place / "ratios.dat", "w") as out:
        for row in reversed([row for row in rows if row.peer and results.value(row) is not None]):
            print(f"{row.work} ({peer_of(row)})".replace("`", ""), results.value(row), row.goal, sep="\t", file=out)
    with open(place / "sizes.dat", "w") as out:
        for items in sorted({int(name.split("/")[1]) for name in results.times if name.startswith(SIZES)}):
            names = [f"{SIZES}{items}/{what}" for what in SIZED]
            print(items, *map(results.time, names), *(results.runs[name]["peak"] for name in names), file=out)
    for what in ("ratios", "sizes"):
        subprocess.run(["gnuplot", "-e", f"data='{place}/{what}.dat'; set output '{DOC}/performance_{what}.svg'",
                        BENCH / f"{what}.gnuplot"], check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("regex", nargs="?")
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--short", action="store_true")
    options = parser.parse_args()
    quiet = "{:.1f}".format(os.getloadavg()[0])
    results, rows = Results(options.program, SHORT if options.short else FULL), list(read_rows())
    if options.regex:
        results.measure(options.regex)
        print_ratios(results)
        return not results.failed
    results.measure_rows(rows, f"|^{LISTS}" + ("" if options.check else f"|^{SIZES}"))
    if options.check:
        return compare(results, rows) and not results.failed
    (DOC / "performance.md").write_text("\n".join(page(results, rows, quiet)) + "\n")
    RATIOS.write_text("".join(f"{name}\t{value:.3f}\n" for values in results.values(rows)
                              for name, value in values.items() if value is not None))
    draw(results, rows)
    return not results.failed


sys.exit(not main())
