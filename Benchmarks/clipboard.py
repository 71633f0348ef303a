"""What the clipboard's slot costs, how soon a copy is on its tile, and sealing beside openssl.

Beside a keyring and a web site of its own: it runs in a network of its own, as a process of its own.
"""

import json
import os
import re
import statistics
import subprocess
import sys
import time

import figures
from figures import ratio, row, section, timed
from programs import benchmarks
from slots import Desk, memory, observe, wait_for, widget

from desks.internet import enter, start_site
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
    desk.toggle(1)
    wait_for(lambda: desk.windows(process.pid), "the panel", 10)
    time.sleep(1)
    desk.key("Escape")
    wait_for(lambda: not desk.windows(process.pid), "the panel to close", 10)


def measure_memory(process, name):
    """Once all has come to rest."""
    time.sleep(8)
    row(f"private memory {name}", memory(process.pid)["Private_Dirty"], "MB", 6)


def use_slot():
    desk = Desk()
    site = start_site()
    try:
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
            statistics.median(delays) * 1000, "ms")
        wait_for(lambda: (desk.data / "clipboard.json.enc").exists(), "the file", 10)
        measure_memory(process, f"with {ITEMS} items")
        preview_link(desk)
        measure_memory(process, "after the first link's preview")
        show_panel(desk, process)
        measure_memory(process, "after a panel too")
        [(wakeups, share)] = observe([process.pid], 20)
        row("of a core while nothing is copied", share, "%", 0.1)
        row("wake-ups while nothing is copied", wakeups, "/s", 0)
    finally:
        desk.close()
        site.shutdown()
        site.server_close()


def bench_sealing():
    """As fast as the library it is done with can be."""
    found = benchmarks(("sealHistory", "openHistory"))
    output = subprocess.run(["openssl", "speed", "-seconds", "1", "-bytes", "1048576",
                             "-evp", "aes-256-gcm"], capture_output=True, text=True,
                            check=True).stdout
    peer = float(re.search(r"^AES-256-GCM\s+([0-9.]+)k", output, re.M | re.I)[1]) * 1000
    for key, name in (("sealHistory", "sealing"), ("openHistory", "opening")):
        ours = found[key]["bytes_per_second"]
        # Time for the same bytes.
        ratio(f"{name} the history, beside openssl", 1e9 / ours, 1e9 / peer, 1.25, "ns a byte",
              "ns")


def bench(quick):
    section("The clipboard")
    bench_sealing()
    if quick:
        return
    # Its network is another; the figures come back by its output.
    output = subprocess.run([sys.executable, __file__], stdout=subprocess.PIPE, text=True,
                            check=True).stdout
    figures.add(json.loads(output)["figures"])


def main():
    use_slot()
    figures.write_json(sys.stdout)


if __name__ == "__main__":
    enter(main)
