"""Every stored document has a RELAX NG schema: schemas_test.py TOOL SOURCES

The golden documents match theirs, and so does what the tool writes when it has read a document with some
of their elements, attributes and texts replaced or gone.
"""
import pathlib
import random
import re
import subprocess
import sys
import tempfile

tool, sources = sys.argv[1], pathlib.Path(sys.argv[2])
data, schemas = sources / "tests/data", sources / "doc/schema"


def root_of(document):
    return re.search(r"<([A-Za-z]\w*)", document)[1]


def faults(*documents):
    schema = schemas / f"{root_of(documents[0].read_text())}.rng"
    done = subprocess.run(["xmllint", "--noout", "--relaxng", schema, *documents], capture_output=True, text=True)
    return done.stderr if done.returncode else ""


def changed(document, chance):
    """The document with values replaced, and elements without children and attributes removed, at random."""
    words = ["", "x", "7", "-1", "true", "a &amp; b", "日本語", "y" * 300]
    start = document.index(">", document.index("<" + root_of(document))) + 1

    def rarely(make):
        return lambda match: make(match) if chance.random() < 0.2 else match[0]

    body = re.sub(r"<(?!/)([^<> ]+)(?: [^<>]*)?(?:/>|>[^<]*</\1>)", rarely(lambda m: ""), document[start:])
    body = re.sub(r' [\w:]+="[^"]*"', rarely(lambda m: ""), body)
    body = re.sub(r'="[^"]*"', rarely(lambda m: f'="{chance.choice(words)}"'), body)
    body = re.sub(r">[^<>]+</", rarely(lambda m: f">{chance.choice(words)}</"), body)
    return document[:start] + body


with tempfile.TemporaryDirectory() as folder:
    folder = pathlib.Path(folder)
    goldens = [path.with_suffix("") for path in data.glob("*.json")]
    assert {root_of(path.read_text()) for path in goldens} == {path.stem for path in schemas.glob("*.rng")} - {"items"}
    for golden in goldens:
        text, root = golden.read_text(), root_of(golden.read_text())
        written = list((data / "written" / root).glob("*.out"))
        found = faults(golden, *(path for path in written if path.name != "markup.out"))  # which is not well-formed
        assert not found, found
        at = text.rindex("</")
        (folder / "wrong").write_text(text[:at] + "<wrong/>" + text[at:])
        assert faults(folder / "wrong"), golden
        copies = []
        for seed in range(30):
            (folder / "in").write_text(changed(text, random.Random(seed)))
            copies.append(folder / f"{root}-{seed}")
            subprocess.run([tool, "copy", folder / "in", copies[-1]], check=True, capture_output=True)
        found = faults(*copies)
        assert not found, found
    for name, kind in (("tree", "opml"), ("collection", "rss")):
        subprocess.run([tool, "import", data / "favorites.html", "-o", folder / f"{name}.{kind}"], check=True,
                       capture_output=True)
        found = faults(folder / f"{name}.{kind}")
        assert not found, found
