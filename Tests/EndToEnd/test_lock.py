"""The keyboard lock of a real slot: its tile, its screens, and everything that must end it."""

import os
import re
import signal
import subprocess
import time
import unittest

from rig import PATIENCE, Desk, DeskTest, wait_for, widget

LIMIT = 5


class LockTest(DeskTest):
    screens = ["1280x800"]
    hold_seconds = 1

    def setUp(self):
        self.desk = Desk(screens=self.screens)
        self.addCleanup(self.desk.close)
        self.desk.start_system_bus("logind")
        self.other = self.desk.spawn(["xev", "-geometry", "300x300+10+40", "-name", "elsewhere"],
                                     log="xev.log")
        self.window = wait_for(lambda: self.desk.run(
            "xdotool", "search", "--onlyvisible", "--name", "^elsewhere$", check=False).strip(),
            "another program's window").splitlines()[0]
        self.desk.run("xdotool", "windowactivate", "--sync", self.window)
        settings = {"holdSeconds": self.hold_seconds, "autoUnlockMinutes": 2, "playsSound": False,
                    "locksPointer": True}
        self.desk.write_widgets([widget("keyboardLock", settings, 1, "Cleaning", span=2)],
                                announce=False)
        self.start()

    def start(self):
        self.slot = self.desk.start_slot(1)
        self.desk.wait_for_name(1)
        self.tile = wait_for(lambda: self.desk.windows(self.slot.pid), "the tile")[0]

    def seen(self, event):
        return len(re.findall(rf"^{event} event", (self.desk.home / "xev.log").read_text(), re.M))

    def reaches(self, *keys):
        """Whether keys reach the other window; a property set afterwards tells that all is there."""
        before, marks = self.seen("KeyPress"), self.seen("PropertyNotify")
        self.desk.key(*keys or ("a",))
        self.desk.run("xprop", "-id", self.window, "-f", "TAVRIN_MARK", "32c", "-set",
                      "TAVRIN_MARK", "1")
        wait_for(lambda: self.seen("PropertyNotify") > marks, "the mark")
        return self.seen("KeyPress") > before

    def overlays(self):
        return [window for window in self.desk.windows(self.slot.pid) if window[0] != self.tile[0]]

    def lock(self):
        """Presses the tile's button."""
        self.assertTrue(self.reaches("a"))
        _, x, y, width, height = self.tile
        self.desk.click(x + width - height * 0.3, y + height / 2)
        wait_for(self.overlays, "the overlay")
        self.assertFalse(self.reaches("a", "Return", "ctrl+alt+t", "XF86AudioMute"))

    def freed_after(self):
        start = time.monotonic()
        wait_for(lambda: self.reaches("a"), "keys to reach the other window again", seconds=20)
        return time.monotonic() - start


class Lock(LockTest):
    def test_the_tile_locks_and_a_held_click_unlocks(self):
        self.lock()
        self.desk.click(640, 400)
        self.assertFalse(self.reaches("a"), "a short click unlocked")
        self.desk.run("xdotool", "mousedown", "1")
        wait_for(lambda: not self.overlays(), "the overlay to go")
        self.desk.run("xdotool", "mouseup", "1")
        self.assertTrue(self.reaches("a"))
        self.lock()

    def test_a_killed_slot_lets_go(self):
        self.lock()
        self.kill(self.slot)
        self.assertLess(self.freed_after(), 2)
        self.start()
        self.lock()

    def test_a_slot_that_stands_still_lets_go(self):
        self.lock()
        os.kill(self.slot.pid, signal.SIGSTOP)
        try:
            self.assertLess(self.freed_after(), LIMIT)
        finally:
            os.kill(self.slot.pid, signal.SIGCONT)
        wait_for(lambda: not self.overlays(), "the overlay to go")
        self.lock()

    def test_a_locked_screen_and_suspending_let_go(self):
        events = {
            "screen saver": ["gdbus", "emit", "--session", "-o", "/org/gnome/ScreenSaver", "-s",
                             "org.gnome.ScreenSaver.ActiveChanged", "{}"],
            "suspend": ["gdbus", "call", "--system", "-d", "org.freedesktop.login1", "-o",
                        "/org/freedesktop/login1", "-m", "org.freedesktop.DBus.Mock.EmitSignal",
                        "org.freedesktop.login1.Manager", "PrepareForSleep", "b", "[<{}>]"],
        }
        for name, command in events.items():
            with self.subTest(event=name):
                self.lock()
                self.desk.run(*[word.format("true") for word in command])
                self.assertLess(self.freed_after(), 1)
                wait_for(lambda: not self.overlays(), "the overlay to go")
                self.desk.run(*[word.format("false") for word in command])

    def test_removing_the_widget_lets_go(self):
        self.lock()
        self.desk.write_widgets([])
        self.assertLess(self.freed_after(), 2)
        self.slot.wait(PATIENCE)


class TwoScreens(LockTest):
    screens = ["1280x800", "1024x768"]
    hold_seconds = 6

    def colours(self, x, y, width, height):
        """How many colours a part of the screen has."""
        picture = self.desk.home / "screen.png"
        self.desk.screenshot(picture)
        return int(subprocess.run(
            ["convert", str(picture), "-crop", f"{width}x{height}+{x}+{y}", "+repage", "-format",
             "%k", "info:"], capture_output=True, text=True, check=True).stdout)

    def ring(self, place):
        """How much of the ring's tint an overlay shows, in pixels."""
        x, y, width, height = place
        picture = self.desk.home / "ring.png"
        self.desk.screenshot(picture)
        result = subprocess.run(
            ["convert", str(picture), "-crop", f"{width}x{height}+{x}+{y}", "+repage", "-fuzz", "12%",
             "-fill", "white", "-opaque", "#0A84FF", "-fuzz", "0%", "-fill", "black", "+opaque",
             "white", "-format", "%[fx:mean*w*h]", "info:"], capture_output=True, text=True, check=True)
        return float(result.stdout)

    def test_each_is_covered_and_shows_the_hold(self):
        self.lock()
        places = wait_for(lambda: (lambda found: found if len(found) == 2 else None)(
            sorted(window[1:] for window in self.overlays())), "two overlays")
        self.assertEqual(places, [(0, 0, 1280, 800), (1280, 0, 1024, 768)])
        for place in places:
            wait_for(lambda p=place: self.colours(p[0], p[1], p[2], p[3]) > 8, "its words")
        if folder := os.environ.get("TAVRIN_PICTURES"):
            self.desk.screenshot(f"{folder}/locked.png")
        before = [self.ring(place) for place in places]
        self.desk.run("xdotool", "mousemove", "1800", "300", "mousedown", "1")
        wait_for(lambda: all(self.ring(place) > then + 100
                             for place, then in zip(places, before)), "progress on both")
        if folder:
            self.desk.screenshot(f"{folder}/held.png")
        wait_for(lambda: not self.overlays(), "the overlays to go", seconds=10)
        self.desk.run("xdotool", "mouseup", "1")
        self.assertTrue(self.reaches("a"))


if __name__ == "__main__":
    unittest.main()
