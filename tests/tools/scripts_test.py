"""The tool in scripts and on a terminal: scripts_test.py TOOL SOURCES

What every verb prints with --json is checked against the schema in doc.
"""
import http.server
import json
import os
import pathlib
import pty
import shutil
import subprocess
import sys
import tempfile
import threading
import time

import jsonschema

tool, sources = sys.argv[1], pathlib.Path(sys.argv[2])
data = sources / "tests/data"
schema = json.loads((sources / "doc/tool.schema.json").read_text())
BY_LINE = {"check", "date", "log", "recover"}
seen = set()


def run(verb, *arguments, codes=(0,), stdin=None):
    done = subprocess.run([tool, verb, "--json", *map(str, arguments)], input=stdin, capture_output=True)
    text = done.stdout.decode()  # which fails unless it is UTF-8
    assert done.returncode in codes, (verb, arguments, done)
    assert text, (verb, arguments, done)
    for value in text.splitlines() if verb in BY_LINE else [text]:
        jsonschema.validate(json.loads(value), {**schema, "$ref": f"#/$defs/{verb}"})
    seen.add(verb)


class Server(http.server.BaseHTTPRequestHandler):
    def do_POST(self):
        self.rfile.read(int(self.headers["Content-Length"]))
        self.send_response(200 if self.path == "/fine" else 500)
        self.end_headers()
        self.wfile.write("gespeichert: ä\n".encode())

    def log_message(self, *_):
        pass


with tempfile.TemporaryDirectory() as folder:
    out = pathlib.Path(folder) / "out"
    for document in sorted(p.with_suffix("") for p in data.glob("*.json")):
        run("show", document)
        run("check", document)
        run("copy", document, out)
    run("check", data / "hosts.txt", codes=(1,))
    tree, other = data / "collection_tree.opml", pathlib.Path(folder) / "other.opml"
    other.write_text(tree.read_text().replace("Morning", "Evening").replace("description=", "remark="))
    base = pathlib.Path(folder) / "base.opml"
    base.write_text(tree.read_text().replace("Morning", "Noon"))
    run("diff", tree, other, codes=(1,))
    run("diff", tree, tree)
    run("merge", tree, other, "--base", base, "-o", out)
    run("merge", tree, other, "--base", base, "--dry-run")
    run("import", data / "favorites.html", "-o", out)
    run("import", data / "favorites.html", "--into", other)
    run("note", tree, "Morning", out)
    run("date", "1994-11-06", "Sun, 06 Nov 1994 08:49:37 EST", "-", codes=(1,), stdin=b"never\n\xff\n")
    favorites = pathlib.Path(folder) / "Favorites"
    favorites.mkdir()
    (favorites / "page.url").write_text("[InternetShortcut]\r\nURL=http://a.example/\r\n")
    (favorites / "notes.txt").write_text("")
    run("favorites", favorites)
    store = pathlib.Path(folder) / "store"
    shutil.copytree(data / "store", store)
    run("log", store)
    run("recover", store)
    run("recover", store, "--restore", 1)
    server = http.server.HTTPServer(("127.0.0.1", 0), Server)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    host = f"127.0.0.1:{server.server_port}"
    run("post", host, "/fine", tree)
    run("post", host, "/broken", tree, codes=(1,))



def on_terminal(pause):
    """What check prints on a terminal for a file that comes after a pause, and when it has ended."""
    master, slave = pty.openpty()
    with tempfile.TemporaryDirectory() as folder:
        pipe = pathlib.Path(folder) / "pipe"
        os.mkfifo(pipe)
        check = subprocess.Popen([tool, "check", pipe], stdout=slave, stderr=slave)
        with open(pipe, "wb") as write:
            time.sleep(pause)
            write.write((data / "tags.xml").read_bytes())
        check.wait()
    os.close(slave)
    return os.read(master, 1 << 16).decode()


assert "] reading" not in on_terminal(0)
slow = on_terminal(1.5)
assert "[#####               ] reading" in slow and "\r\x1b[K" in slow, slow

verbs = {name for name in schema["$defs"] if name not in {"text", "place", "warnings", "conflicts"}}
assert seen == verbs, seen ^ verbs
shown = subprocess.run([tool, "--help"], capture_output=True, text=True).stdout
listed = {line.split()[0] for line in shown.split("Subcommands:")[1].splitlines() if line.startswith("  ")}
assert listed - {"browse"} == verbs, listed ^ verbs  # which is for people only
