"""Shows the library's values in GDB as a programmer thinks of them.

GDB loads it itself if the library is installed in /usr; else
    source debugger/vosmere_gdb.py
Wide texts are printed as texts, items and links with their names, and a link with its children.
"""
import gdb
import gdb.printing

MOST_UNITS = 500
KINDS = {0: "folder", 1: "page", 2: "collection"}


def wide(pointer, size=None):
    """The text at a pointer to code units, in quotes; up to the zero unless the size is given."""
    address = int(pointer)
    if address == 0:
        return "null"
    units = b""
    memory = gdb.selected_inferior()
    while len(units) < 2 * MOST_UNITS and (size is None or len(units) < 2 * size):
        unit = memory.read_memory(address + len(units), 2).tobytes()
        if size is None and unit == b"\0\0":
            break
        units += unit
    end = "..." if len(units) == 2 * MOST_UNITS else ""
    text = units.decode("utf-16-le", "replace").replace('"', '\\"')
    terminal = gdb.host_charset()  # without a locale it is ASCII
    return '"' + text.encode(terminal, "backslashreplace").decode(terminal) + '"' + end


class WideText:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return wide(self.value)


class WideView:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return wide(self.value["data"], int(self.value["size"]))


class OwnedText:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return wide(self.value["text_"])


class Item:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return f"{self.value.type.strip_typedefs().unqualified().name} {wide(self.value['name_']['text_'])}"

    def children(self):
        for field in ("description_", "stat_", "uuid_", "version_", "deleted_"):
            value = self.value[field]
            yield field.rstrip("_"), wide(value[0].address) if field == "uuid_" else value


def chain(head):
    """The cells of a chain; a broken one ends where it comes back."""
    seen, at = set(), head
    while int(at) and int(at) not in seen:
        seen.add(int(at))
        yield at
        at = at["next"]


class Link:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        item = self.value["item"]
        name = wide(item["name_"]["text_"]) if int(item) else "without an item"
        return f"{KINDS.get(int(self.value['type']), 'unknown link')} {name}"

    def children(self):
        for number, cell in enumerate(chain(self.value["firstChild"])):
            yield f"[{number}]", cell.dereference()


class List:
    """A cell of a list, with all that come after it."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return "list"

    def children(self):
        for number, cell in enumerate(chain(self.value.address)):
            yield f"[{number}]", cell["data"]

    def display_hint(self):
        return "array"


def lookup(value):
    if value.type.code == gdb.TYPE_CODE_PTR:
        return WideText(value) if str(value.type.target().unqualified()) == "vosmere::WChar" else None
    type_ = value.type.strip_typedefs().unqualified()
    name = type_.name or ""
    if name == "vosmere::WideView":
        return WideView(value)
    if name.startswith("vosmere::OwnedText<"):
        return OwnedText(value)
    if name.startswith("vosmere::TList<"):
        return List(value)
    if name == "vosmere::RNode":
        return Link(value)
    bases = []
    while type_ and type_.code == gdb.TYPE_CODE_STRUCT:
        bases.append(type_.name)
        type_ = next((field.type for field in type_.fields() if field.is_base_class), None)
    return Item(value) if "vosmere::CBaseNode" in bases else None


lookup.name, lookup.enabled = "vosmere", True
gdb.printing.register_pretty_printer(gdb.current_objfile(), lookup, replace=True)
