"""What the clipboard's slot costs, and how soon a copy is on its tile.

Run by scripts/bench, beside a keyring of its own.
"""

import os
import statistics
import subprocess
import time

from slots import Desk, memory, missed, observe, row, wait_for, widget

ITEMS = 200


def start_keyring(desk):
    keyring = subprocess.Popen(
        ["gnome-keyring-daemon", "--unlock", "--components=secrets", "--foreground"], env=desk.env,
        stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    keyring.stdin.write(b"test")
    keyring.stdin.close()
    desk.processes.append(keyring)
    desk.run("gdbus", "wait", "--session", "--timeout", "10", "org.freedesktop.secrets")


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


def bench():
    desk = Desk()
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
        time.sleep(8)
        [(wakeups, share)] = observe([process.pid], 20)
        row(f"private dirty with {ITEMS} items", memory(process.pid)["Private_Dirty"], "MB", 6)
        row("of a core while nothing is copied", share, "%", 0.1)
        row("wake-ups while nothing is copied", wakeups, "/s", 0)
    finally:
        desk.close()


if __name__ == "__main__":
    bench()
    if missed:
        print("Missed: " + "; ".join(missed))
