"""Writes what the page of each public class says beside its own comment, and fails on a class
without a comment or an example: classes.py OUT

What a comment does not mention follows from the rules that hold everywhere (README.md); a derived
class has those of its base."""
import itertools
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).parent.parent
# Facet, words by which a comment mentions it, what holds otherwise.
FACETS = [
    ("Ownership", r"\b(owns?|owned|owner|frees?|freed|cop(y|ies|ied)|plain|no state)\b",
     "Setters copy, and the object owns what a getter returns. An operation whose result the caller "
     "owns says so."),
    ("Null", r"\b(null|empty)\b",
     "Arguments are not null unless the operation says what null means."),
    ("Errors", r"\b(false|fails?|failed|failure|errors?|throws?|thrown|memory runs out)\b",
     "Operations return false or null on failure. Nothing but std::bad_alloc is thrown, and only "
     "where the operation says so."),
    ("Threads", r"\bthreads?\b|[Tt]hread-safe",
     "Not thread-safe: one thread at a time."),
]
RECORD = {  # a struct without operations
    "Ownership": "A plain record: what its pointers point at belongs to others.",
    "Null": "What may be null says so.",
    "Errors": "It has no operations that could fail.",
}
CLASS = re.compile(r"(class|struct)(?: \[\[nodiscard\]\])?(?: VOSMERE_API)? (\w+)( :[^{]*)?(?: \{|$)")


def classes():
    """Yields (header, kind, name with namespaces, bases, comment, body) of every public class."""
    headers = [h for h in sorted(ROOT.glob("vosmere/**/*.h"))
               if not {"internal", "posix", "win32"} & set(h.parts)]
    for header in headers:
        space, comment = [], []
        lines = header.read_text().splitlines()
        for i, line in enumerate(lines):
            if match := re.match(r"namespace ([\w:]+) \{$", line):
                space.append(match[1])
            elif re.match(r"\}  // namespace", line):
                space.pop()
            elif line.startswith("///"):
                comment.append(line)
            elif not re.match(r"template|requires", line):
                match = CLASS.match(line)
                if match and "detail" not in "::".join(space):
                    body = itertools.takewhile(lambda inside: inside != "};", lines[i + 1:])
                    code = [re.sub("//.*", "", inside) for inside in body]
                    name = "::".join(space + [match[2]])
                    yield header, match[1], name, match[3] or "", "\n".join(comment), "\n".join(code)
                comment = []


def examples():
    return {path.name: path.read_text() for path in sorted(ROOT.glob("examples/*.cc"))}


def main(out):
    known = list(classes())
    documented = {name.split("::")[-1] for _, _, name, *_ in known}
    shown, gaps, pages = examples(), [], []
    for header, kind, name, bases, comment, body in known:
        short = name.split("::")[-1]
        uses = [file for file, text in shown.items() if re.search(rf"\b{short}\b", text)]
        where = f"{header.relative_to(ROOT)}: {short}"
        if not comment:
            gaps.append(f"{where} has no comment")
        if not uses:
            gaps.append(f"{where} is in no example")
        page = [f"@{kind} {name}"]
        is_record = kind == "struct" and "(" not in body
        base = next((b for b in re.findall(r"\w+", bases) if b in documented), None)
        for title, words, otherwise in FACETS:
            if not re.search(words, comment):
                page += [f"@par {title}", f"As for {base}." if base else
                         RECORD.get(title, otherwise) if is_record else otherwise]
        if "@since" not in comment:
            page.append("@since 1.0")
        page.append("@par Examples")
        page.append(", ".join(f'<a href="{file[:-3]}_8cc-example.html">{file}</a>' for file in uses))
        pages.append("\n".join(f"/// {line}" for line in page))
    pathlib.Path(out).write_text("\n\n".join(pages) + "\n")
    print(*gaps, sep="\n", end="\n" if gaps else "")
    return bool(gaps)


sys.exit(main(sys.argv[1]))
