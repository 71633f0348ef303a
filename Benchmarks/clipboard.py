"""What the clipboard's slot costs, and how soon a copy is on its tile.

Run by scripts/bench, beside a keyring and a web site of its own.
"""

import os
import statistics
import subprocess
import time

from slots import Desk, memory, missed, observe, row, wait_for, widget

from internet import enter, start_site
from test_clipboard import items_of, start_keyring

ITEMS = 200


def copy(desk, text):
    subprocess.run(["xclip", "-selection", "clipboard"], env=desk.env, input=text.encode(),
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)


def seconds_to_tile(desk, picture, text):
    """From before the copying program starts until the tile's picture has been replaced."""
    before = os.stat(picture).st_ino
    began = time.monotonic()
    copy(desk, text)
    wait_for(lambda: os.stat(picture).st_ino != before, "the tile", 5, 0.001)
    return time.monotonic() - began


def preview_link(desk):
    """Copies a link; back when its page's title and picture are in the file."""
    link = "http://tides.com/march"
    copy(desk, link)
    wait_for(lambda: any(item.get("text") == link and "ogImageData" in item
                         for item in items_of(desk)), "the preview", 20, 0.2)


def show_panel(desk, process):
    """Opens the panel, looks at it for a moment and closes it."""
    desk.activate(1)
    wait_for(lambda: desk.windows(process.pid), "the panel", 10)
    time.sleep(1)
    desk.key("Escape")
    wait_for(lambda: not desk.windows(process.pid), "the panel to close", 10)


def measure(process, name):
    """Once all has come to rest."""
    time.sleep(8)
    row(f"private dirty {name}", memory(process.pid)["Private_Dirty"], "MB", 6)


def bench():
    desk = Desk()
    site = start_site()
    try:
        print("The clipboard's slot")
        start_keyring(desk)
        desk.env["TAVRIN_SURFACE"] = "picture"
        desk.write_widgets([widget("clipboard", {"historyLimit": ITEMS}, 1)], announce=False)
        process = desk.start_slot(1)
        desk.wait_for_name(1)
        picture = desk.picture(1)
        wait_for(picture.exists, "the first tile", 10)
        time.sleep(1)
        delays = [seconds_to_tile(desk, picture, f"copy {number} of a text of usual length " * 3)
                  for number in range(ITEMS)]
        row("copy to tile, median, the copying program's start included",
            statistics.median(delays) * 1000, "ms", 30)
        wait_for(lambda: (desk.data / "clipboard.json.enc").exists(), "the file", 10)
        measure(process, f"with {ITEMS} items")
        preview_link(desk)
        measure(process, "after the first link's preview")
        show_panel(desk, process)
        measure(process, "after a panel too")
        [(wakeups, share)] = observe([process.pid], 20)
        row("of a core while nothing is copied", share, "%", 0.1)
        row("wake-ups while nothing is copied", wakeups, "/s", 0)
    finally:
        desk.close()
        site.shutdown()
        site.server_close()
    if missed:
        print("Missed: " + "; ".join(missed))


if __name__ == "__main__":
    enter(bench)
