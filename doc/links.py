"""Fails if a web page below a folder links to a file or a place that is not there: links.py FOLDER"""
import pathlib
import re
import sys
import urllib.parse

folder = pathlib.Path(sys.argv[1])
pages = {page.name: page.read_text() for page in folder.glob("*.html")}
places = {name: set(re.findall(r'(?:id|name)="([^"]+)"', text)) for name, text in pages.items()}
dead = set()
for name, text in pages.items():
    for link in re.findall(r'(?:href|src|data)="([^"]+)"', text):
        file, _, place = urllib.parse.unquote(link).partition("#")
        # Doxygen lists private classes at the top of a page, and then leaves them out.
        if re.match(r"[a-z]+:", file) or place == "nested-classes":
            continue
        if not (folder / (file or name)).exists() or (place and place not in places.get(file or name, {place})):
            dead.add(f"{name}: {link}")
print(*sorted(dead), sep="\n", end="")
sys.exit(bool(dead))
