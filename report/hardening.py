#!/usr/bin/env python3
"""A section of the report: what protects the binaries of a release, and the libraries that see hostile bytes."""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LINUX = [ROOT / "build/release/lib/libvosmerebase.so", ROOT / "build/release/bin/vosmere"]
WINDOWS = [ROOT / "build/windows/bin/libvosmerebase.dll", ROOT / "build/windows/bin/vosmere.exe"]
# Those that SECURITY.md names.
LIBRARIES = ["libxml2", "libcurl4", "libssl3", "libhivex0", "libc6", "libuuid1"]

wrong = []


def output(*words):
    return subprocess.run(words, check=True, stdout=subprocess.PIPE, text=True).stdout


def imported(path):
    return {name.split("@")[0] for name in re.findall(r"UND (\S+)", output("readelf", "--dyn-syms", "-W", path))}


def linux_checks(path):
    segments, dynamic, names = output("readelf", "-lW", path), output("readelf", "-dW", path), imported(path)
    code = output("objdump", "-d", "--no-show-raw-insn", path)
    stack = re.search(r"GNU_STACK.*", segments)
    return {
        "addresses chosen at random (PIE, PIC)": "Type:                              DYN" in output("readelf", "-hW", path),
        "GOT read-only after the start (RELRO, BIND_NOW)": "GNU_RELRO" in segments and "NOW" in dynamic,
        "stack and data not executable": bool(stack) and "RWE" not in segments,
        "stack protector": "__stack_chk_fail" in names,
        "checked calls of the C library (_FORTIFY_SOURCE)": any(name.endswith("_chk") and name != "__stack_chk_fail" for name in names),
        "indirect jumps only to marked places (-fcf-protection)": code.count("endbr64") > 100,
    }


def windows_checks(path):
    head = output("x86_64-w64-mingw32-objdump", "-p", path)
    flags = head[head.find("DllCharacteristics"):][:400]
    symbols = output("x86_64-w64-mingw32-nm", path)
    return {
        "addresses chosen at random (ASLR)": "DYNAMIC_BASE" in flags,
        "of 64 bits (high entropy)": "HIGH_ENTROPY_VA" in flags,
        "stack and data not executable (NX)": "NX_COMPAT" in flags,
        "stack protector": "__stack_chk_fail" in symbols,
    }


def table(files, checks):
    found = {path.name: checks(str(path)) for path in files}
    print(f"\n| Protection | {' | '.join(found)} |\n|---|{'---|' * len(found)}")
    for what in next(iter(found.values())):
        print(f"| {what} | {' | '.join('yes' if found[name][what] else 'NO' for name in found)} |")
        wrong.extend(f"{name}: no {what}" for name in found if not found[name][what])


def versions():
    print("\n| Library | Version on this machine |\n|---|---|")
    for name in LIBRARIES:
        done = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", name], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, text=True)
        if done.returncode == 0:
            print(f"| {name} | {done.stdout} |")


print("## Protections of a release\n\nRead from the binaries that the release presets built.")
table(LINUX, linux_checks)
table(WINDOWS, windows_checks)
print("\nThe libraries that see hostile bytes on Linux; SECURITY.md says what stands before them:")
versions()
for what in wrong:
    print(what, file=sys.stderr)
sys.exit(bool(wrong))
