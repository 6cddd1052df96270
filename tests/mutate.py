#!/usr/bin/env python3
"""Puts faults into the sources, one at a time, and checks whether the tests notice.

    mutate.py [-s SEED] [-j JOBS] [-o ONLY] COUNT     random faults in files whose names begin with ONLY
    mutate.py -f FILE                                 the faults listed in FILE, as they are printed

Each fault is built and tested in a copy of the tree under build/mutate. A fault that does not
compile is replaced by another one. Prints the survivors and, at the end, how many were caught.
"""
import argparse
import json
import os
import pathlib
import queue
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys
import threading
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
PLACE = TOP / "build" / "mutate"
MEMORY = 6 << 30  # bytes; a fault may allocate for ever, and a test maps a file of 4 GiB
NEAREST = 6  # objects of each kind that are built first for a fault in a header


def masked(text):
    """The text with everything in comments and literals blanked, so that no fault is put there."""
    blank = lambda match: re.sub(r"[^\n]", "\0", match.group())
    return re.sub(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'', blank, text,
                  flags=re.S)


def balanced(text):
    depth = 0
    for char in text:
        depth += (char == "(") - (char == ")")
        if depth < 0:
            return False
    return depth == 0


OTHER = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||",
         "||": "&&", "+": "-", "-": "+"}


def faults_of_line(line, before):
    """Yields (start, end, replacement) for one masked line; `before` is the one above it."""
    body = line.strip()
    if not body or body.startswith(("#", "template", "using", "static_assert", "namespace", "class",
                                    "struct", "friend", "extern")):
        return
    for match in re.finditer(r" (==|!=|<=|>=|<|>|&&|\|\||\+|-) ", line):
        yield match.start(1), match.end(1), OTHER[match.group(1)]
    for match in re.finditer(r"(?<![\w.'])\d+(?![\w.'])", line):
        yield match.start(), match.end(), str(int(match.group()) + 1)
    for match in re.finditer(r"\b(if|while) \((.*)\)", line):
        if balanced(match.group(2)) and "=" not in match.group(2).replace("==", "").replace(
                "!=", "").replace("<=", "").replace(">=", "") and ";" not in match.group(2):
            yield match.start(2), match.end(2), "!(" + match.group(2) + ")"
    for match in re.finditer(r"\breturn ([^;]+);", line):
        value = match.group(1)
        if value not in ("0", "nullptr", "{}"):
            yield match.start(1), match.end(1), {"true": "false", "false": "true"}.get(value, "{}")
    for match in re.finditer(r"\w\(([\w.>*&-]+), ([\w.>*&-]+)\)", line):
        yield match.start(1), match.end(2), match.group(2) + ", " + match.group(1)
    statement = re.match(r"\s*((?:\+\+|--)?\*?[\w.\[\]:>-]+ ?(?:=|\+=|-=|\|=|&=|\(|\+\+|--).*);$", line)
    if statement and balanced(statement.group(1)) and not body.endswith("= delete;") and not re.match(
            r"\s*(return|delete|using|case|default|else)\b", line) and re.search(r"([;{}:)]|else)$",
                                                                         before):
        yield statement.start(1), statement.end(1), ""


def all_faults():
    names = subprocess.run(["git", "ls-files", "vosmere", "tools"], cwd=TOP, text=True, check=True,
                           stdout=subprocess.PIPE).stdout.split()
    for name in names:
        if not name.endswith((".h", ".cc")) or "win32" in name:
            continue
        text = (TOP / name).read_text()
        lines, before = text.split("\n"), ""
        for number, line in enumerate(masked(text).split("\n")):
            for start, end, new in faults_of_line(line, before):
                if "\0" in new:  # it holds a literal: take the line as it was
                    new = new.replace(line[start:end], lines[number][start:end])
                if "\0" not in new:
                    yield name, number, start, end, lines[number][start:end], new
            if line.strip("\0 "):
                before = line.rstrip("\0 ")


def listed_faults(path):
    """Reads `file:line<tab>column<tab>old -> new`."""
    for row in pathlib.Path(path).read_text().splitlines():
        place, column, change = row.split("\t")[:3]
        name, number = place.split(":")
        old, new = change.split(" -> ", 1)
        start = int(column) - 1
        yield name, int(number) - 1, start, start + len(old), old, new


def describe(fault):
    name, number, start, _, old, new = fault
    return f"{name}:{number + 1}\t{start + 1}\t{old} -> {new}"


class Worker:
    """A copy of the tree with its own build."""

    left_out = []  # tests

    def __init__(self, index):
        self.source = PLACE / f"tree{index}"
        self.build = PLACE / f"build{index}"
        self.scratch = PLACE / f"scratch{index}"
        files = subprocess.run(["git", "ls-files"], cwd=TOP, text=True, check=True,
                               stdout=subprocess.PIPE).stdout.split("\n")[:-1]
        if self.source.exists():  # removes from the copy what was removed from the tree
            for old in self.source.rglob("*"):
                if old.is_file() and str(old.relative_to(self.source)) not in files:
                    old.unlink()
        for name in files:
            source, copy = TOP / name, self.source / name
            copy.parent.mkdir(parents=True, exist_ok=True)
            if not copy.exists() or copy.read_bytes() != source.read_bytes():
                shutil.copyfile(source, copy)
                shutil.copymode(source, copy)
        self.quick = PLACE / f"quick{index}"
        self.quick.mkdir(exist_ok=True)
        self.run(["cmake", "-G", "Ninja", "-S", self.source, "-B", self.build,
                  "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O0 -w -fuse-ld=mold"])
        self.read_commands()
        if not self.make(os.cpu_count()):
            sys.exit("mutate: the tree does not build")
        self.clean = True
        self.read_includes()
        self.seconds = 600

    def ninja(self, *arguments):
        return subprocess.run(["ninja", "-C", self.build, *arguments], text=True, check=True,
                              stdout=subprocess.PIPE).stdout

    def read_commands(self):
        """How each object is compiled, and how the tests are linked."""
        wanted = ("vosmere_tests.dir/", "vosmere_objects.dir/")
        self.compile = {entry["output"]: shlex.split(entry["command"])
                        for entry in json.loads(self.ninja("-t", "compdb"))
                        if any(target in entry["output"] for target in wanted)
                        and entry["output"].endswith(".o")}
        link = self.ninja("-t", "commands", "vosmere_tests").splitlines()[-1]
        self.link = shlex.split(link)[2:-2]

    def read_includes(self):
        """Which files of the tree each object is made of."""
        self.made_of, files = {}, set()
        for line in self.ninja("-t", "deps").splitlines():
            if line and not line[0].isspace():
                self.made_of[line.split(":")[0]] = files = set()
            else:  # a compiler cache may have made the path relative
                path = os.path.normpath(self.build / line.strip())
                if path.startswith(f"{self.source}/"):
                    files.add(path.removeprefix(f"{self.source}/"))

    def users(self, name, most):
        """The objects that are likeliest to show a fault: of the same name, its room's, the smallest.
        At most so many of the tests, and of the library."""
        room, stem = os.path.dirname(name).split("/", 1)[1], pathlib.Path(name).stem
        users = [o for o in self.compile if name in self.made_of.get(o, ())]
        users.sort(key=lambda o: (stem not in o, f".dir/{room}/" not in o, len(self.made_of[o])))
        return [o for target, number in zip(("vosmere_tests.dir/", "vosmere_objects.dir/"), most)
                for o in [o for o in users if target in o][:number]]

    def make_quickly(self, users):
        """Builds the tests with only these objects new, which go before all others: unoptimised, a
        function of a header is taken from the first object that has it. Returns the program and
        the suites that are worth running, or None when the fault does not compile."""
        fresh = {}
        for number, built in enumerate(users):
            command = [word for word in self.compile[built] if word != "ccache"]  # which never helps
            fresh[built] = self.quick / f"{number}.o"
            command[command.index("-o") + 1] = fresh[built]
            del command[command.index("-MD"):command.index("-o")]
            if self.run(command, cwd=self.build).returncode:
                return None
        program = self.quick / "vosmere_tests"
        words = [word for word in self.link if word not in fresh]
        words[words.index("-o") + 1] = program
        words[1:1] = fresh.values()
        if self.run(words, cwd=self.build).returncode:
            return None
        sources = [self.compile[built][-1] for built in fresh if "vosmere_tests.dir/" in built]
        return program, suites_in(map(pathlib.Path, sources))

    def run(self, command, seconds=None, **more):
        return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              stdin=subprocess.DEVNULL, timeout=seconds, errors="replace", **more)

    def make(self, jobs=1):
        return self.run(["ninja", "-C", self.build, "-j", str(jobs), "vosmere_tests"]).returncode == 0

    def first_failure(self, tests, program=None):
        """The first test that fails, "" when none does, "(ended)" for a crash, "(time)" for a hang."""
        if self.left_out:
            tests += (":" if "-" in tests else "-") + ":".join(self.left_out)
        shutil.rmtree(self.scratch, ignore_errors=True)
        self.scratch.mkdir()
        process = subprocess.Popen(
            [program or self.build / "bin" / "vosmere_tests", f"--gtest_filter={tests}", "--gtest_fail_fast",
             "--gtest_brief=1"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            stdin=subprocess.DEVNULL, errors="replace", cwd=self.scratch, process_group=0,
            env={**os.environ, "TMPDIR": str(self.scratch)},
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY)))
        try:
            output = process.communicate(timeout=self.seconds)[0]
        except subprocess.TimeoutExpired:
            return "(time)"
        finally:
            try:
                os.killpg(process.pid, 9)  # also servers and tools that a test has left running
            except ProcessLookupError:
                pass
            process.wait()
        if process.returncode == 0:
            return ""
        failed = re.search(r"^\[  FAILED  \] (\S+?)(?:,| \(|$)", output, re.M)
        return failed.group(1) if failed else "(ended)"

    def killer(self, tests, program=None):
        """The test that notices, or ""."""
        found = self.first_failure(tests, program)
        # On a slow machine a test may fail once by chance; a real fault makes it fail again.
        if found and (found.startswith("(") or self.first_failure(found, program)):
            return found
        return ""

    def try_library(self, name):
        """The likeliest tests first, in a program that is built quickly, then all."""
        nearest, users = self.users(name, (NEAREST, NEAREST)), self.users(name, (NEAREST, None))
        quick = self.make_quickly(nearest)
        if quick is None:
            return None
        program, suites = quick
        own = ":".join(filter(None, [suites_of(name), suites]))
        found = (own and self.killer(own, program)) or self.killer("-" + own if own else "*", program)
        if found or not name.endswith(".h"):
            return found or self.try_whole(name)
        if len(users) > len(nearest):
            again = self.make_quickly(users)
            found = again and self.killer("*", again[0])
        if found == "" and name.startswith("vosmere/cpp/"):  # which the tool is made of, too
            return self.try_whole(name)
        return found

    def try_whole(self, name):
        self.clean = False
        if not self.make():
            return None
        if name.startswith("vosmere/"):  # all else has run already
            return self.killer(suites_of("tools/"))
        own = suites_of(name)
        return self.killer(own) or self.killer("-" + own if own else "*")

    def try_fault(self, fault):
        """The test that caught the fault, "" if none did, or None if the fault does not compile."""
        name, number, start, end, old, new = fault
        if not self.clean and not self.make():  # the objects of the fault before
            raise RuntimeError("the tree does not build any more")
        self.clean = True
        path = self.source / name
        whole, times = path.read_text(), path.stat()
        lines = whole.split("\n")
        if lines[number][start:end] != old:
            return None
        lines[number] = lines[number][:start] + new + lines[number][end:]
        path.write_text("\n".join(lines))
        try:
            return self.try_library(name) if name.startswith("vosmere/") else self.try_whole(name)
        finally:
            path.write_text(whole)
            if self.clean:
                os.utime(path, ns=(times.st_atime_ns, times.st_mtime_ns))


def suites_in(paths):
    found = set()
    for path in paths:
        for macro, suite in re.findall(r"^\s*(TEST\w*|TYPED_TEST\w*)\((\w+)", path.read_text(), re.M):
            found.update([f"{suite}.*"] if macro in ("TEST", "TEST_F") else [f"*{suite}*"])
    return ":".join(sorted(found))


def suites_of(name):
    """Those of the tests of its folder, or of the nearest folder around it that has tests; for the
    tool, of all tests that run it."""
    if name.startswith("tools/"):
        return suites_in(path for path in (TOP / "tests").glob("**/*.cc")
                         if "tests/support/tool.h" in path.read_text())
    folder = pathlib.Path(name.removeprefix("vosmere/")).parent
    while not (TOP / "tests" / folder).exists():
        folder = folder.parent
    return suites_in((TOP / "tests" / folder).glob("**/*.cc"))


def main():
    options = argparse.ArgumentParser()
    options.add_argument("-s", "--seed", type=int, default=1)
    options.add_argument("-f", "--faults")
    options.add_argument("-j", "--jobs", type=int, default=os.cpu_count())
    options.add_argument("-o", "--only", default="", help="the beginning of the names of files to change")
    options.add_argument("count", type=int, nargs="?", default=100)
    options = options.parse_args()

    if options.faults:
        faults = list(listed_faults(options.faults))
        options.count = len(faults)
    else:
        faults = [fault for fault in all_faults() if fault[0].startswith(options.only)]
        random.Random(options.seed).shuffle(faults)
    PLACE.mkdir(parents=True, exist_ok=True)
    todo = queue.SimpleQueue()
    for fault in faults:
        todo.put(fault)
    lock, tried, caught = threading.Lock(), {}, {}

    def work(worker):
        while sum(tried.values()) < options.count and not todo.empty():
            fault = todo.get()
            killer = worker.try_fault(fault)
            part = fault[0].split("/")[0]
            with lock:
                if killer is None:
                    if options.faults:
                        print(describe(fault) + "\tnot built", flush=True)
                    continue
                tried[part] = tried.get(part, 0) + 1
                caught[part] = caught.get(part, 0) + bool(killer)
                print(f"{describe(fault)}\t{killer or 'SURVIVED'}", flush=True)

    workers = [Worker(index) for index in range(options.jobs)]
    for worker in workers:
        began = time.monotonic()
        while failed := worker.first_failure("*"):
            if failed.startswith("("):
                sys.exit("mutate: the tests do not end without a fault")
            print(f"left out, fails without a fault: {failed}", file=sys.stderr)
            Worker.left_out.append(failed)
        worker.seconds = max(60, 6 * (time.monotonic() - began))  # a fault may hang
    threads = [threading.Thread(target=work, args=[worker]) for worker in workers]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    for part in sorted(tried):
        print(f"{part}: {caught[part]} of {tried[part]} caught,"
              f" {100 * caught[part] / tried[part]:.1f} %")


if __name__ == "__main__":
    main()
