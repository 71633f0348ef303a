"""What a slot costs as a client of a Wayland compositor, beside the same one on an X server.

Both are looked at in the same way, by the pixels of the X server on which the compositor, a sway, has
its window: the window-clock knows windows of X alone.
"""

import ctypes
import shutil
import statistics
import subprocess
import sys
import time

from figures import ratio, section
from slots import memory, observe

from desks.compositors import SIZE, start_sway
from rig import BUILD, Desk, wait_for, widget

TILE = 48
# The tile's paper, above its words' end; and its panel.
TILE_PLACE = (SIZE[0] // 2, SIZE[1] - TILE // 2 + 8)
# Within the bare window, wherever a manager puts it.
BARE_PLACE = (610, 710)
PANEL_PLACE = (SIZE[0] // 2, SIZE[1] - TILE - 60)
ALL_PLANES = ctypes.c_ulong(-1)
Z_PIXMAP = 2


class Screen:
    """The X server's pixels, one at a time."""

    def __init__(self, desk):
        self.x = ctypes.CDLL("libX11.so.6")
        for name in ("XOpenDisplay", "XGetImage", "XDefaultRootWindow"):
            getattr(self.x, name).restype = ctypes.c_void_p
        self.x.XGetPixel.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(desk.env["DISPLAY"].encode()))
        self.root = ctypes.c_void_p(self.x.XDefaultRootWindow(self.display))

    def at(self, place):
        image = ctypes.c_void_p(self.x.XGetImage(self.display, self.root, *place, 1, 1, ALL_PLANES,
                                                 Z_PIXMAP))
        pixel = self.x.XGetPixel(image, 0, 0)
        self.x.XFree(image)
        return pixel & 0xFFFFFF

    def changes(self, place, act):
        """Milliseconds from the act to another pixel there."""
        before = self.at(place)
        start = time.perf_counter()
        result = act()
        wait_for(lambda: self.at(place) != before, "another pixel", pause=0.0005)
        return (time.perf_counter() - start) * 1000, result


def bare_start(desk, env, rounds):
    """Until the window of a program that is nothing but the toolkit is seen."""
    screen, starts = Screen(desk), []
    for _ in range(rounds):
        empty = screen.at(BARE_PLACE)
        took, process = screen.changes(
            BARE_PLACE, lambda: desk.spawn([str(BUILD / "Benchmarks" / "bare-window")], env=env))
        starts.append(took)
        process.terminate()
        process.wait()
        wait_for(lambda: screen.at(BARE_PLACE) == empty, "the window's end")
    return statistics.median(starts)


def figures_on(desk, env, bare_env, quick):
    bare = bare_start(desk, bare_env, 3 if quick else 15)
    desk.write_widgets([widget("note", {"text": "Milk"}, 1)], announce=False)
    screen = Screen(desk)
    starts, first, later, dirty, opened, wakeups = [], [], [], [], [], []
    for _ in range(2 if quick else 5):
        desk.run("xdotool", "mousemove", "20", "20")
        empty = screen.at(TILE_PLACE)
        took, slot = screen.changes(TILE_PLACE, lambda: desk.start_slot(1, env=env))
        starts.append(took)
        time.sleep(4)
        dirty.append(memory(slot.pid)["Private_Dirty"])
        wakeups.append(observe([slot.pid], 4 if quick else 10)[0][0])
        desk.run("xdotool", "mousemove", str(TILE_PLACE[0]), str(TILE_PLACE[1]))
        time.sleep(1)
        took = []
        for _ in range(4):
            took.append(screen.changes(PANEL_PLACE, lambda: desk.run("xdotool", "click", "1"))[0])
            time.sleep(0.5)
            opened.append(memory(slot.pid)["Private_Dirty"])
            screen.changes(PANEL_PLACE, lambda: desk.run("xdotool", "key", "Escape"))
            time.sleep(0.5)
        first.append(took[0])
        later += took[1:]
        slot.terminate()
        slot.wait()
        wait_for(lambda: screen.at(TILE_PLACE) == empty, "the tile's end")
    return [bare, statistics.median(starts), statistics.median(dirty), statistics.median(opened),
            statistics.median(wakeups), statistics.median(first), statistics.median(later)]


def bench(quick):
    if shutil.which("sway") is None:
        print("no sway: no figures of a native slot", file=sys.stderr)
        return
    section("A native slot under sway beside one on an X server")
    size = "x".join(map(str, SIZE))
    desk = Desk(screens=(size,))
    try:
        subprocess.run(["xsetroot", "-solid", "#335577"], env=desk.env, check=True)
        plain = figures_on(desk, None, None, quick)
    finally:
        desk.close()
    cleanups = []
    desk = Desk(window_manager=False, screens=(size,))
    try:
        start_sway(desk, f"output X11-1 bg #335577 solid_color mode --custom {size}@60Hz\n"
                   "xwayland disable\ndefault_border none\n",
                   lambda call, *values, **options: cleanups.append((call, values, options)))
        screen = Screen(desk)
        wait_for(lambda: screen.at((20, 20)) == 0x335577, "the desktop")
        native = figures_on(desk, {"DISPLAY": ""}, {"QT_QPA_PLATFORM": "wayland"}, quick)
    finally:
        desk.close()
        for call, values, options in cleanups:
            call(*values, **options)
    # The compositor shows what it has with its next frame, whoever starts.
    bare, plain_bare = native[0], plain[0]
    ratio("start of a bare window, until it is seen", bare, plain_bare, None, "ms", "ms")
    ratio("start of a slot, beside a bare window's there", native[1] / bare, plain[1] / plain_bare,
          1.05, "x", "x")
    for name, unit, goal, mine, other in zip(
            ("start, until the tile is seen", "private memory", "private memory, a panel open",
             "wake-ups a second, nothing to do", "click until the panel is seen, the first time",
             "click until the panel is seen, later"),
            ("ms", "MB", "MB", "", "ms", "ms"), (None, 1.05, 1.05, 1.05, 1.5, 1.5), native[1:],
            plain[1:]):
        # Neither wakes up where there is nothing to do.
        ratio(name, mine or 1e-9, other or 1e-9, goal, unit, unit)
