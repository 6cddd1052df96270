"""vosmere browse on a terminal, by tmux: browse_test.py TOOL"""
import pathlib
import subprocess
import sys
import tempfile
import time

tool = sys.argv[1]
DOCUMENT = """<?xml version="1.0" encoding="UTF-8"?>
<rss version="2.0" xmlns:vsm="http://www.vosmere.example/schema/vsm" xmlns:sx="http://www.microsoft.com/schemas/rss/sse">
<channel><title>Mine</title><unknown/><sx:sync id="c" version="1"></sx:sync>
<vsm:folder><title>Folder</title><sx:sync id="f" version="1"></sx:sync></vsm:folder>
<item><title>日本語 page</title><link>http://a.example/</link><description>first line
second line</description><vsm:folderref folderid="f"/><vsm:stat added="1" modified="0" lastVisited="3"/>
<sx:sync id="p" version="1"></sx:sync></item>
<item><title>evil &#x9B;]0;owned &#x202E;name</title><link>http://b.example/</link>
<vsm:stat added="1" modified="2" lastVisited="3"/><sx:sync id="e" version="1"></sx:sync></item>
</channel></rss>
"""


def tmux(*arguments):
    return subprocess.run(["tmux", "-L", server, *map(str, arguments)], capture_output=True, text=True).stdout


def wait_for(what, gone=False):
    """The text of the screen, once it has or no longer has something."""
    for _ in range(200):
        screen = tmux("capture-pane", "-p")
        if (what in screen) != gone:
            return screen
        time.sleep(0.05)
    raise AssertionError(f"{what!r} {'stays' if gone else 'does not appear'}:\n{screen}")


def press(*keys, then, gone=False):
    tmux("send-keys", *keys)
    return wait_for(then, gone)


with tempfile.TemporaryDirectory() as folder:
    file = pathlib.Path(folder) / "list.rss"
    file.write_text(DOCUMENT)

    def browse(name):
        global server
        server = pathlib.Path(folder).name + name
        tmux("-f", "/dev/null", "new-session", "-d", "-x", 60, "-y", 24,
             f"LC_ALL=C.UTF-8 {tool} browse {file}; echo exit code $?; sleep 60")
        return wait_for("+ Folder")

    try:
        screen = browse("1")
        assert "日本語" not in screen and "evil" in screen and "\\u009B]0;owned" in screen and "\\u202E" in screen, screen
        press("Right", then="日本語 page")
        press("Left", then="日本語", gone=True)
        press("/", then="/")
        press("SECOND LINE", "Enter", then="日本語 page")
        note = press("Enter", then="second line")
        assert "link: http://a.example/" in note and "added: 1970-01-01T00:00:01Z" in note, note
        press("x", then="+ ", gone=True)
        press("u", then="(unread)")
        press("q", then="not saved")
        press("q", then="exit code 0")
        assert file.read_text() == DOCUMENT
        tmux("kill-server")

        browse("2")
        press("/", then="/")
        press("page", "Enter", then="日本語 page")
        press("f", then="(flag 1)")
        press("s", then="Not saved yet")  # because of an element that is not known
        press("s", then="Saved")
        press("q", then="exit code 0")
        shown = subprocess.run([tool, "show", file], capture_output=True, text=True).stdout
        assert "日本語 page  http://a.example/  (flag 1)" in shown, shown
    finally:
        tmux("kill-server")
