#!/usr/bin/env python3
"""Runs the sections of the report, one by one, and joins them.

    run.py                 runs all sections in their long form and writes doc/report.md with its plots
    run.py --only NAME     runs one section (may be repeated), keeps it in build/report and joins nothing
    run.py --join          writes doc/report.md from the sections in build/report
    run.py --short         runs the short forms and writes build/report.md; fails when a section fails
    run.py --builds        prints what has to be built for the other options: a preset and its targets in a line

A section is a program or a script that prints Markdown. It takes --short, and the name of a file for the
numbers of its plot, which report/NAME.gnuplot draws. It exits with 1 when something is wrong, and says on
stderr what.
"""
import argparse
import collections
import datetime
import json
import os
import pathlib
import platform
import re
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
KEPT = ROOT / "build/report"  # NAME.md and NAME.json for each section that was run in its long form
DOC = ROOT / "doc"

# A section's programs: {preset: targets}. Its command gets --short and the data file. isLong: only run when
# the long report is made.
Section = collections.namedtuple("Section", "name builds command isLong", defaults=[False])
LONG_PRESETS = {"fuzz", "coverage", "arm64", "windows32"}  # not built for the short form


def program(name, preset="release"):
    """The section that report/NAME.cc is."""
    return Section(name, {preset: [f"report_{name}"]}, [f"build/{preset}/bin/report_{name}"])


def script(name, builds, isLong=False):
    """The section that report/NAME.py is."""
    return Section(name, builds, [sys.executable, f"report/{name}.py"], isLong)


FUZZ_TARGETS = sorted(path.stem for path in (ROOT / "fuzz").glob("*_fuzz.cc"))

# In the order of the report.
SECTIONS = [
    script("fuzzing", {"clang": FUZZ_TARGETS, "fuzz": FUZZ_TARGETS}),
    script("conformance", {"release": ["report_conformance_trees", "report_conformance_ways"],
                           "windows": ["report_conformance_trees"]}),
    program("parser_ways"),
    program("sizes"),
    script("generated", {preset: ["report_generated_documents"] for preset in ("release", "clang", "windows", "arm64", "windows32")}),
    program("memory_faults"),
    Section("memory_faults_asan", {"clang": ["report_memory_faults"]}, ["build/clang/bin/report_memory_faults"]),
    program("io_faults"),
    program("scheduler_stress", "tsan"),
    program("growth"),
    Section("growth_windows", {"windows": ["report_growth"]},
            ["env", f"WINEPREFIX={ROOT}/build/wine", "WINEDEBUG=-all", "wine", "build/windows/bin/report_growth.exe"]),
    script("coverage", {"coverage": ["vosmere_tests"]}, isLong=True),
    script("hardening", {"release": ["vosmerebase", "vosmere"], "windows": ["vosmerebase", "vosmere"]}),
]


def git(*words):
    return subprocess.run(["git", *words], cwd=ROOT, check=True, stdout=subprocess.PIPE, text=True).stdout.strip()


def commit():
    """The commit, with a plus when files of it have changed since."""
    written = ":!doc/report*", ":!report/fuzzing.tsv"
    changed = git("status", "--porcelain", "--untracked-files=no", "--", ".", *written)
    return git("rev-parse", "--short=12", "HEAD") + ("+" if changed else "")


def run(section, short):
    """Runs a section; what it printed, or None when something is wrong."""
    KEPT.mkdir(parents=True, exist_ok=True)
    data = KEPT / f"{section.name}.dat"
    begin, at = time.monotonic(), commit()
    done = subprocess.run(section.command + (["--short"] if short else []) + [str(data)], cwd=ROOT,
                          stdout=subprocess.PIPE, text=True)
    seconds = time.monotonic() - begin
    print(f"report: {section.name}: {'fine' if done.returncode == 0 else 'WRONG'}, {seconds:.0f} s", file=sys.stderr)
    if not short:
        (KEPT / f"{section.name}.md").write_text(done.stdout)
        (KEPT / f"{section.name}.json").write_text(json.dumps({
            "commit": at, "date": str(datetime.date.today()), "seconds": seconds, "fine": done.returncode == 0}))
    return done.stdout if done.returncode == 0 else None


def draw(section, place):
    """Draws the section's plot, if it has one; returns its Markdown."""
    plot, data = ROOT / f"report/{section.name}.gnuplot", KEPT / f"{section.name}.dat"
    if not plot.exists() or not data.exists():
        return ""
    image = place / f"report_{section.name}.svg"
    subprocess.run(["gnuplot", "-e", f"data='{data}'; set output '{image}'", plot], check=True)
    return f"\n![{section.name.replace('_', ' ').capitalize()}]({image.name})\n"


def head(short):
    processor = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text())
    return (ROOT / "report/report.md").read_text().format(
        form="short" if short else "long", commit=commit(), date=datetime.date.today(),
        processor=processor[1] if processor else platform.machine(), cores=os.cpu_count(),
        memory=round(os.sysconf("SC_PHYS_PAGES") * os.sysconf("SC_PAGE_SIZE") / 2**30), kernel=platform.release())


def in_words(seconds):
    return f"{seconds:.0f} s" if seconds < 100 else f"{seconds / 60:.0f} min"


def join():
    """Writes doc/report.md from what is kept; whether every section is there and fine."""
    parts, missing = [head(short=False)], []
    for section in SECTIONS:
        kept = KEPT / f"{section.name}.json"
        told = json.loads(kept.read_text()) if kept.exists() else {"fine": False}
        if not told["fine"]:
            missing.append(section.name)
            continue
        parts.append((KEPT / f"{section.name}.md").read_text() + draw(section, DOC) +
                     f"\nRun at {told['commit']} on {told['date']}, {in_words(told['seconds'])}.\n")
    parts.append((ROOT / "report/found.md").read_text())
    (DOC / "report.md").write_text("\n".join(parts))
    if missing:
        print("report: left out, because they have not been run or something was wrong:", *missing, file=sys.stderr)
    return not missing


def short_report(sections):
    texts = [run(section, short=True) for section in sections]
    (ROOT / "build/report.md").write_text("\n".join([head(short=True)] + [text for text in texts if text]))
    return None not in texts


def chosen(options):
    unknown = set(options.only) - {section.name for section in SECTIONS}
    if unknown:
        sys.exit(f"report: no such section: {' '.join(sorted(unknown))}; there are "
                 + ", ".join(section.name for section in SECTIONS))
    return [section for section in SECTIONS
            if section.name in options.only or not (options.only or options.short and section.isLong)]


def print_builds(sections, short):
    targets = collections.defaultdict(set)
    for section in sections:
        for preset, names in section.builds.items():
            if not (short and preset in LONG_PRESETS):
                targets[preset].update(names)
    for preset, names in targets.items():
        print(preset, *sorted(names))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--only", action="append", default=[], metavar="NAME")
    for option in ("short", "join", "builds"):
        parser.add_argument(f"--{option}", action="store_true")
    options = parser.parse_args()
    sections = chosen(options)
    if options.builds:
        return options.join or print_builds(sections, options.short) or True
    if options.join:
        return join()
    if options.short:
        return short_report(sections)
    fine = [run(section, short=False) is not None for section in sections]
    return all(fine) and (bool(options.only) or join())


sys.exit(not main())
