"""A desk under one window manager, for the tests that go through all of them: what is on its screen,
and what its user does there."""

import contextlib
import itertools
import json
import plistlib
import re
import shutil
import subprocess
import unittest

from rig import BUILD, Desk, wait_for, widget

# A tiling manager would give a floating test window no place of its own.
I3_CONFIG = "font pango:monospace 8\nfor_window [title=\"^cover$\"] floating enable\n"

MANAGERS = {
    "i3": ["i3", "-c", "{config}"],
    "xfwm4": ["xfwm4"],
    "openbox": ["openbox"],
    "metacity": ["metacity"],
    "kwin_x11": ["kwin_x11"],
    "mutter": ["mutter", "--x11"],
    "none": None,
}
TILE = 48
PITCH = TILE * 1.0625
SCREEN = (1280, 800)
NAMES = ["First", "Second", "Third"]


class ManagedDesk:
    """Made once for all tests of a class, each of which leaves it as it found it."""
    manager = ""
    size = SCREEN
    # Beside the desk's own, for slots.
    slot_env = None

    @classmethod
    def setUpClass(cls):
        command = MANAGERS.get(cls.manager, [cls.manager])
        if command and shutil.which(command[0]) is None:
            raise unittest.SkipTest(f"{cls.manager} is not installed")
        cls.desk = Desk(window_manager=False)
        cls.addClassCleanup(cls.desk.close)
        cls.wm = None
        cls.start_manager()
        cls.desk.write_widgets([widget("note", {"text": f"n{slot}"}, slot, name=name)
                                for slot, name in enumerate(NAMES, start=1)], announce=False)
        cls.slots = [cls.desk.start_slot(slot, env=cls.slot_env)
                     for slot in range(1, len(NAMES) + 1)]
        for slot in range(1, len(NAMES) + 1):
            cls.desk.wait_for_name(slot)
        cls.settle()

    @classmethod
    def start_manager(cls):
        if MANAGERS[cls.manager] is None:
            return
        config = cls.desk.home / "i3.conf"
        config.write_text(I3_CONFIG)
        command = [word.format(config=config) for word in MANAGERS[cls.manager]]
        cls.wm = cls.desk.start_window_manager(command, log="wm.log")

    @classmethod
    def kill_manager(cls):
        cls.wm.kill()
        cls.wm.wait()

    # What is on the screen

    @classmethod
    def windows(cls, number):
        """A slot's visible windows: its tile and its panel, each (id, x, y, width, height)."""
        tile = panel = None
        for window in cls.desk.windows(cls.slots[number].pid):
            kind = cls.desk.run("xprop", "-id", window[0], "_NET_WM_WINDOW_TYPE", "_TAVRIN_ROOM",
                                check=False)
            if "_TAVRIN_ROOM(" in kind:
                continue
            if "DOCK" in kind:
                tile = window
            else:
                panel = window
        return tile, panel

    @classmethod
    def tile(cls, number):
        return wait_for(lambda: cls.windows(number)[0], "the tile")

    @classmethod
    def panel(cls, number):
        return cls.windows(number)[1]

    @classmethod
    def centre(cls, number):
        _, x, y, width, height = cls.tile(number)
        return x + width // 2, y + height // 2

    @classmethod
    def are_in_place(cls, screen=(0, 0, *SCREEN)):
        tiles = [cls.windows(number)[0] for number in range(len(NAMES))]
        if not all(tiles):
            return False
        left, top, width, height = screen
        lefts = [tile[1] for tile in tiles]
        middle = (lefts[0] + tiles[-1][1] + tiles[-1][3]) / 2
        return (all(abs(b - a - PITCH) <= 1.5 for a, b in zip(lefts, lefts[1:]))
                and all(tile[2] + tile[4] == top + height for tile in tiles)
                and all(tile[4] == TILE and abs(tile[3] - PITCH) <= 1 for tile in tiles)
                and abs(middle - left - width / 2) <= 3)

    @classmethod
    def settle(cls):
        wait_for(cls.are_in_place, "the strip at the bottom edge")

    @classmethod
    def is_shown(cls):
        """As far as it can be seen through what its tiles wear."""
        return cls.are_in_place()

    @classmethod
    def is_hidden(cls):
        return all(cls.windows(number)[0] is None for number in range(len(NAMES)))

    def find(self, colour):
        """A place of the screen in that colour, and that far to all sides; none without one."""
        shot = subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "rgb:-"],
                              env=self.desk.env, capture_output=True, check=True).stdout
        width = len(shot) // 3 // SCREEN[1]

        def at(x, y):
            start = 3 * (y * width + x)
            return tuple(shot[start:start + 3])
        return next(((x + 16, y + 16) for y in range(0, self.size[1] - 32, 8)
                     for x in range(0, self.size[0] - 32, 8)
                     if at(x, y) == colour == at(x + 32, y + 32)), None)

    @contextlib.contextmanager
    def preferences(self, **entries):
        """The Dock's, while the slots run."""
        path = self.desk.home / "Library" / "Preferences" / "com.apple.dock.plist"
        path.parent.mkdir(parents=True, exist_ok=True)
        new = path.with_suffix(".new")
        new.write_bytes(plistlib.dumps(entries))
        new.rename(path)
        try:
            yield
        finally:
            path.unlink()

    def colour(self, number):
        """At the tile's upper middle, which its note's paper fills."""
        x, y = self.centre(number)
        shot = subprocess.run(["import", "-silent", "-window", "root", "-crop",
                               f"1x1+{x}+{y - 12}", "-depth", "8", "rgb:-"], env=self.desk.env,
                              capture_output=True, check=True).stdout
        return tuple(shot)

    def ring(self, centres):
        """The tile that wears the keyboard's."""
        def is_there(centre):
            shot = subprocess.run(["import", "-silent", "-window", "root", "-crop",
                                   f"{TILE}x{TILE}+{centre[0] - TILE // 2}+{centre[1] - TILE // 2}",
                                   "-depth", "8", "rgb:-"], env=self.desk.env, capture_output=True,
                                  check=True).stdout
            blue = sum(shot[i] < 90 and 90 < shot[i + 1] < 160 and shot[i + 2] > 220
                       for i in range(0, len(shot), 3))
            return blue > 40
        found = [number for number, centre in enumerate(centres) if is_there(centre)]
        return found[0] if len(found) == 1 else None

    def sees_tile(self, number=1):
        red, green, blue = self.colour(number)
        return red > 180 and green > 140 and blue < 190 and green > blue

    def sees_red(self, number=1):
        return self.colour(number) == (255, 0, 0)

    # What others have on it

    def open_terminal(self, title="other", geometry="40x10+20+20", colour="white"):
        terminal = self.desk.spawn(["xterm", "-T", title, "-bg", colour, "-fg", colour, "-geometry",
                                    geometry])

        def end():
            terminal.terminate()
            terminal.wait()
            wait_for(lambda: not self.desk.run("xdotool", "search", "--onlyvisible", "--name",
                                               f"^{title}$", check=False).strip(), "its end")
        self.addCleanup(end)
        # Not its own waiting: it ends where a window goes while it looks.
        return wait_for(lambda: self.desk.run("xdotool", "search", "--onlyvisible", "--name",
                                              f"^{title}$", check=False).split(),
                        "the terminal")[0]

    def frame(self, window):
        """Where a client's own window is: left, top, right, bottom. xdotool counts frames twice."""
        said = self.desk.run("xwininfo", "-id", window)
        left, top, width, height = (
            int(re.search(rf"{word}:\s+(-?\d+)", said)[1])
            for word in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        return left, top, left + width, top + height

    def focused(self):
        return self.desk.run("xdotool", "getwindowfocus", check=False).strip()

    def focus(self, window):
        tries = itertools.count(1)

        def has_it():
            self.desk.run("xdotool", "windowactivate" if self.manager_lives() else "windowfocus",
                          window, check=False)
            if next(tries) % 20 == 0:
                # A request bears no time: one that a server takes for older than the last change of
                # the focus is lost, and its manager does not know. A press bears one.
                left, top, _, _ = self.frame(window)
                self.desk.click(left + 9, top + 9)
            return self.focused() == window
        wait_for(has_it, "the terminal's focus", pause=0.1)

    def manager_lives(self):
        return self.wm is not None and self.wm.poll() is None

    def press(self, number, milliseconds=60):
        x, y = self.centre(number)
        self.desk.run("xdotool", "mousemove", str(x), str(y))
        if milliseconds == 0:
            self.desk.run("xdotool", "click", "1")
        else:
            self.desk.run("xdotool", "mousedown", "1", "sleep", str(milliseconds / 1000),
                          "mouseup", "1")

    def open(self, number):
        self.press(number)
        return wait_for(lambda: self.panel(number), "the panel")

    def wait_closed(self, number):
        wait_for(lambda: self.panel(number) is None, "the panel to close")

    def close(self, number):
        if self.panel(number):
            self.press(number)
            self.wait_closed(number)

    def close_settled(self, number):
        """Whoever has the keys when a manager has gone or come: with them the panel stays open,
        without it closes, and a press before that is settled may be either's."""
        wait_for(lambda: self.panel(number) is None or self.owns_focus(number),
                 "the panel's keyboard, or its end")
        self.close(number)

    def text(self, number):
        document = json.loads((self.desk.data / "widgets.json").read_text())
        return document["widgets"][number]["kind"]["note"]["_0"]["text"]

    def type(self, number, letter):
        """The panel has the keyboard once it can be seen to; what is typed must reach its note."""
        wait_for(lambda: self.owns_focus(number), "the panel's keyboard")
        self.desk.run("xdotool", "type", letter)
        wait_for(lambda: letter in self.text(number), "the typed letter in the note")

    def owns_focus(self, number):
        window = self.focused()
        pid = self.desk.run("xdotool", "getwindowpid", window, check=False).strip()
        return pid == str(self.slots[number].pid)

    def works(self, number, letter):
        """A panel opens, takes the keyboard and closes on Escape."""
        self.open(number)
        self.works_open(number, letter)

    def works_open(self, number, letter):
        """An open panel takes the keyboard and closes on Escape."""
        self.type(number, letter)
        self.desk.key("Escape")
        self.wait_closed(number)
