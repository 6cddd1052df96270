#!/usr/bin/env python3
"""The section about the fuzz targets.

    fuzzing.py [FILE]                     runs every target until it has had RUNS runs, or for FUZZ_SECONDS of the
                                          environment (600), then a part under the sanitizers, and prints the
                                          section; with 0 seconds replays the known inputs, like --short
    fuzzing.py --short                    replays the known inputs under the sanitizers, and prints the section
    fuzzing.py --seconds N [NAME...]      runs targets for so long each, and counts the runs; prints nothing

A run is what libFuzzer counts as one: one input through the target. fuzzing.tsv has the number of runs of each
target since the beginning, without and with the sanitizers; runs of earlier forms of a target count too.
"""
import argparse
import fcntl
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
COUNTS = ROOT / "report/fuzzing.tsv"
FOUND = ROOT / "build/fuzz/corpus"
RUNS = 10_000_000
LONGEST = int(os.environ.get("FUZZ_SECONDS", 600))
MOST_BYTES = 1024  # longer inputs are slower, and rarely reach more
FAST, CHECKING = "fuzz", "clang"  # the presets


def targets():
    return sorted(path.stem.removesuffix("_fuzz") for path in (ROOT / "fuzz").glob("*_fuzz.cc"))


def read_counts():
    counts = {name: [0, 0] for name in targets()}
    if COUNTS.exists():
        for line in COUNTS.read_text().splitlines():
            name, fast, checked = line.split("\t")
            if name in counts:
                counts[name] = [int(fast), int(checked)]
    return counts


def add_counts(name, fast, checked):
    with open(ROOT / "build/fuzz/counts.lock", "w") as lock:  # several may run at the same time
        fcntl.flock(lock, fcntl.LOCK_EX)
        change_counts(name, fast, checked)


def change_counts(name, fast, checked):
    counts = read_counts()
    counts[name] = [counts[name][0] + fast, counts[name][1] + checked]
    COUNTS.write_text("".join(f"{name}\t{fast}\t{checked}\n" for name, (fast, checked) in sorted(counts.items())))


def run(preset, name, *limits):
    """Runs a target, if there are limits, and otherwise replays the kept inputs; how many runs there were, and
    whether all were fine."""
    own, found = ROOT / "fuzz/corpus" / name, FOUND / name
    found.mkdir(parents=True, exist_ok=True)
    words = ROOT / f"fuzz/{name}.dict"
    scratch = "/dev/shm" if os.path.isdir("/dev/shm") else "/tmp"
    done = subprocess.run(
        [ROOT / f"build/{preset}/bin/{name}_fuzz", *(limits or ["-runs=0"]), "-timeout=20", "-rss_limit_mb=2048", "-print_final_stats=1",
         f"-artifact_prefix={ROOT}/build/fuzz/{name}-", *([f"-dict={words}"] if words.exists() else []),
         *([found] if limits else []), own],
        stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, env={**os.environ, "TMPDIR": scratch})
    log = done.stderr.decode(errors="replace")
    (ROOT / f"build/fuzz/{name}.{preset}.log").write_text(log)
    runs = re.search(r"stat::number_of_executed_units: *(\d+)", log)
    if done.returncode:
        artifact = re.search(r"Test unit written to (\S+)", log)
        print(f"fuzzing: {name} ({preset}) failed: {artifact[1] if artifact else 'see build/fuzz'}", file=sys.stderr)
    return int(runs[1]) if runs else 0, done.returncode == 0


def run_for(name, seconds, most):
    """Both kinds of runs: all without the sanitizers, and a tenth of the time with them."""
    runs, fine = run(FAST, name, f"-max_total_time={seconds}", f"-runs={most}", f"-max_len={MOST_BYTES}")
    add_counts(name, runs, 0)
    if fine:
        runs, fine = run(CHECKING, name, f"-max_total_time={max(seconds // 10, 5)}")
        add_counts(name, 0, runs)
    return fine


def says(name):
    """The first sentence of a target: what it asserts."""
    text = (ROOT / f"fuzz/{name}_fuzz.cc").read_text()
    comment = " ".join(re.match(r"(?://.*\n)+", text)[0].replace("//", "").split())
    return re.match(r".*?[.](?= |$)", comment)[0]


def inputs(name):
    return [path for path in (ROOT / "fuzz/corpus" / name).iterdir()]


def print_section(isShort):
    counts = read_counts()
    print("## Fuzzing\n")
    print("Every target is a libFuzzer program that is given mutations of the inputs in `fuzz/corpus`. It stops at a "
          "crash, at an input that takes more than 20 seconds or 2 GB, and when what it says in the table does not "
          "hold. Most runs are without sanitizers, because these make a run several times slower; the last column "
          "has those under the address and undefined-behaviour sanitizers. Runs are counted since the beginning; "
          f"the aim is {RUNS:,} for each target. The kept inputs are those that reach code which the others do "
          "not.\n")
    print("| Target | What must hold | Kept inputs | KB | Runs | Runs under the sanitizers |\n|---|---|---:|---:|---:|---:|")
    for name, (fast, checked) in counts.items():
        kept = inputs(name)
        print(f"| {name} | {says(name)} | {len(kept)} | {sum(path.stat().st_size for path in kept) / 1024:.0f} | "
              f"{fast:,} | {checked:,} |")
    fast, checked = (sum(column) for column in zip(*counts.values()))
    print(f"| **all** | | | | {fast:,} | {checked:,} |")
    fewer = [name for name, (fast, _) in counts.items() if fast < RUNS]
    if fewer and not isShort:
        print(f"\nFewer than {RUNS:,} runs, because one run is slow or machine time was short: {', '.join(fewer)}.")
    print("\nThe kept inputs were replayed under the sanitizers. No input is known that breaks a target.")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--short", action="store_true")
    parser.add_argument("--seconds", type=int)
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    if options.seconds:
        return all([run_for(name, options.seconds, -1) for name in options.names or targets()])
    if options.short or LONGEST == 0:
        fine = all([run(CHECKING, name)[1] for name in targets()])
    else:
        counts = read_counts()
        fine = all([run_for(name, LONGEST, max(RUNS - counts[name][0], 100_000)) and run(CHECKING, name)[1]
                    for name in targets()])
    if fine:
        print_section(options.short)
    return fine


if __name__ == "__main__":
    sys.exit(not main())
