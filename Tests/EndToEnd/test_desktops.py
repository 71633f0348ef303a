"""The strip and its panels under each window manager: one row of a table for each, a column for
each thing that a desktop must let them do.

    test_desktops.py [On_MANAGER ...]     runs the rows; a manager that is not here is named and skipped
    test_desktops.py --table FOLDER       prints the table of all rows that have run
"""

import itertools
import json
import pathlib
import plistlib
import sys
import time
import unittest

from desks.compositors import DESKTOPS
from desks.layer_desk import LayerDesk
from desks.managed_desk import MANAGERS, NAMES, SCREEN, ManagedDesk
from rig import BUILD, wait_for

# Cells that cannot be "yes", and why; docs/desktops.md says more.
EXPLAINED = {
    ("none", "fullscreen"): "nobody makes windows fullscreen",
    ("none", "room"): "nobody keeps windows off an edge",
    ("none", "desktops"): "there is one desktop",
    ("none", "killed"): "there is no manager",
    **{(compositor, column): reason for compositor in DESKTOPS for column, reason in {
        "titles": "surfaces of a layer shell have none",
        "monitor": "Linux.Layers has outputs come and go",
        "killed": "a compositor's programs end with it",
    }.items()},
}
RESULTS = BUILD / "desktops"


class Row(ManagedDesk):
    """The columns of the table, for one manager."""
    steps = itertools.count()
    double_env = None

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.cells = {}
        cls.addClassCleanup(cls.write_row)

    @classmethod
    def write_row(cls):
        RESULTS.mkdir(exist_ok=True)
        (RESULTS / f"{cls.manager}.json").write_text(json.dumps(cls.cells, indent=1))

    # The columns

    def column_geometry(self):
        self.settle()

    def column_titles(self):
        def name(window):
            return self.desk.run("xprop", "-id", window[0], "_NET_WM_NAME", check=False)
        for number, title in enumerate(NAMES):
            wait_for(lambda: f'"{title}"' in name(self.tile(number)), "the tile's title")
        panel = self.open(1)
        wait_for(lambda: f'"{NAMES[1]}"' in name(panel), "the panel's title")
        self.close(1)

    def cover(self):
        """A red window over the strip, raised and with the focus."""
        window = self.open_terminal("cover", "60x14+400+300", "red")
        left = self.tile(0)[1]

        def lies_over():
            if self.manager == "i3":
                self.desk.run("i3-msg", f'[title="^cover$"] floating enable, move position '
                              f"{left - 60} 660", check=False)
            self.desk.run("xdotool", "windowmove", window, str(left - 60), str(SCREEN[1] - 120))
            if self.frame(window)[3] > SCREEN[1] - 20:
                return True
            # Some managers let nobody but the user do that, by the title bar.
            at = self.frame(window)
            self.desk.run("xdotool", "mousemove", str(at[0] + 80), str(at[1] - 8), "mousedown", "1",
                          "sleep", "0.1", "mousemove_relative", "20", "20", "sleep", "0.1",
                          "mousemove", str(left + 20), str(SCREEN[1] - 130), "sleep", "0.1",
                          "mouseup", "1")
            if self.frame(window)[3] > SCREEN[1] - 20:
                return True
            self.desk.run("xdotool", "keydown", "super", "mousemove", str(at[0] + 80),
                          str(at[1] + 40), "mousedown", "1", "sleep", "0.1", "mousemove_relative",
                          "20", "20", "sleep", "0.1", "mousemove", str(left + 20),
                          str(SCREEN[1] - 90), "sleep", "0.1", "mouseup", "1", "keyup", "super")
            return self.frame(window)[3] > SCREEN[1] - 20
        wait_for(lies_over, "a window over the strip", pause=0.1)
        self.desk.run("xdotool", "windowraise", window)
        self.focus(window)
        return window

    def column_above(self):
        self.cover()
        wait_for(self.sees_tile, "the tile above an ordinary window")
        self.assertTrue(self.sees_tile())

    def column_fullscreen(self):
        window = self.open_terminal("full", colour="red")
        self.focus(window)
        self.desk.run("wmctrl", "-i", "-r", window, "-b", "add,fullscreen")
        wait_for(self.sees_red, "the fullscreen window above the tiles")
        self.desk.run("wmctrl", "-i", "-r", window, "-b", "remove,fullscreen")
        wait_for(self.sees_tile, "the tiles to come back")
        self.settle()

    def column_room(self):
        window = self.open_terminal("big", colour="red")
        self.focus(window)
        self.desk.run("wmctrl", "-i", "-r", window, "-b", "add,maximized_vert,maximized_horz")
        top = self.tile(0)[2]
        wait_for(lambda: top - 40 < self.frame(window)[3] <= top,
                 "a maximized window above the tiles")

    def column_desktops(self):
        if self.manager == "i3":
            def go(number):
                self.desk.run("i3-msg", "workspace", str(number + 1))
        else:
            self.desk.run("wmctrl", "-n", "3")

            def go(number):
                self.desk.run("wmctrl", "-s", str(number))
        if self.manager != "i3":
            wait_for(lambda: "= 1" not in self.desk.run("xprop", "-root", "_NET_NUMBER_OF_DESKTOPS"),
                     "a second desktop")

        def current():
            return self.desk.run("xprop", "-root", "_NET_CURRENT_DESKTOP").strip()[-1]
        before = current()
        # An empty desktop of a tiling manager goes when it is left.
        window = self.open_terminal("stays", "20x4+20+20")
        go(1)
        wait_for(lambda: current() != before, "the other desktop")
        self.settle()
        wait_for(self.sees_tile, "the tile there")
        self.works(1, "d")
        go(0)
        wait_for(lambda: current() == before, "the first desktop")
        self.settle()
        self.assertTrue(window)

    def column_click(self):
        for number in range(len(NAMES)):
            _, x, y, width, height = self.open(number)
            tile = self.tile(number)
            self.assertLessEqual(y + height, tile[2] + 20, "above the tile")
            self.assertAlmostEqual(x + width / 2, tile[1] + tile[3] / 2, delta=2)
            self.close(number)

    def column_typing(self):
        self.open(1)
        self.type(1, "t")
        self.close(1)

    def column_escape(self):
        self.open(1)
        wait_for(lambda: self.owns_focus(1), "the panel's keyboard")
        self.desk.key("Escape")
        self.wait_closed(1)

    def column_second(self):
        x, y = self.centre(1)
        self.open(1)
        self.close(1)
        self.desk.run("xdotool", "mousemove", str(x), str(y), "click", "--repeat", "10", "--delay",
                      "60", "1")
        self.wait_closed(1)
        self.works(1, "s")

    def column_other(self):
        """A press of any length on another tile opens its panel and closes the one that is open."""
        self.open(0)
        at = 0
        for length in (0, 0, 0, 0, 0, 0, 0, 0, 40, 40, 200, 200):
            other = (at + 1) % len(NAMES)
            self.press(other, length)
            wait_for(lambda: self.panel(other), f"the other panel, after {length} ms")
            self.wait_closed(at)
            at = other
        wait_for(lambda: self.panel(at), "the last panel, still there")
        self.close(at)

    def column_elsewhere(self):
        terminal = self.open_terminal()
        self.focus(terminal)
        left, top, _, _ = self.frame(terminal)
        self.open(1)
        wait_for(lambda: self.owns_focus(1), "the panel's keyboard")
        self.desk.click(left + 9, top + 9)
        self.wait_closed(1)
        if self.manager != "none":
            wait_for(lambda: self.focused() == terminal, "the clicked window's focus")

    def column_bare(self):
        self.open(1)
        wait_for(lambda: self.owns_focus(1), "the panel's keyboard")
        self.desk.click(40, 300)
        self.wait_closed(1)

    def column_back(self):
        terminal = self.open_terminal()
        self.focus(terminal)
        for close in (lambda: self.desk.key("Escape"), lambda: self.press(1)):
            self.open(1)
            wait_for(lambda: self.owns_focus(1), "the panel's keyboard")
            close()
            self.wait_closed(1)
            wait_for(lambda: self.focused() == terminal, "the focus to come back")

    def column_monitor(self):
        half = SCREEN[0] // 2
        self.desk.run("xrandr", "--setmonitor", "L", f"{half}/160x{SCREEN[1]}/200+0+0", "screen")
        self.desk.run("xrandr", "--setmonitor", "R", f"{half}/160x{SCREEN[1]}/200+{half}+0", "none")
        try:
            wait_for(lambda: self.are_in_place((0, 0, half, SCREEN[1])), "the strip on one monitor")
            self.works(1, "m")
            self.open(1)
            self.desk.click(half + 200, 300)
            self.wait_closed(1)
        finally:
            self.desk.run("xrandr", "--delmonitor", "R")
            self.desk.run("xrandr", "--delmonitor", "L")
        self.settle()
        self.works(2, "m")

    def column_chosen(self):
        """A strip on the screen that is chosen, at the edge and in the size that are preferred."""
        half = SCREEN[0] // 2
        preferences = self.desk.home / "Library" / "Preferences" / "com.apple.dock.plist"
        preferences.parent.mkdir(parents=True, exist_ok=True)
        self.desk.run("xrandr", "--setmonitor", "L", f"{half}/160x{SCREEN[1]}/200+0+0", "screen")
        self.desk.run("xrandr", "--setmonitor", "R", f"{half}/160x{SCREEN[1]}/200+{half}+0", "none")
        slot = self.slots[0]
        try:
            for edge, size in (("bottom", 16), ("bottom", 256), ("right", 64)):
                with self.subTest(edge=edge, size=size):
                    slot.terminate()
                    slot.wait()
                    preferences.write_bytes(plistlib.dumps({"orientation": edge, "tilesize": size}))
                    slot = self.desk.start_slot(1, env={"TAVRIN_STRIP_SCREEN": "R"})
                    self.slots[0] = slot

                    # Three cells and both insets have to find room on the screen.
                    fitted = min(size, int(half / (3 * 1.0625 + 0.25)))

                    def is_there():
                        tile = self.windows(0)[0]
                        if tile is None:
                            return False
                        _, x, y, width, height = tile
                        at_edge = (x + width == SCREEN[0] if edge == "right"
                                   else x >= half and y + height == SCREEN[1])
                        across = width if edge == "right" else height
                        return at_edge and across == fitted
                    wait_for(is_there, "the tile there")
                    self.open(0)
                    self.close(0)
        finally:
            preferences.unlink()
            self.desk.run("xrandr", "--delmonitor", "R")
            self.desk.run("xrandr", "--delmonitor", "L")
            slot.terminate()
            slot.wait()
            self.slots[0] = self.desk.start_slot(1)
            self.settle()

    def maximized(self):
        """Opens a window that has all the room there is; what answers its lower edge."""
        window = self.open_terminal("big", colour="red")
        self.focus(window)
        self.desk.run("wmctrl", "-i", "-r", window, "-b", "add,maximized_vert,maximized_horz")
        return lambda: self.frame(window)[3]

    def column_walk(self):
        """By the keyboard alone: from tile to tile, into a panel, and back to where it came from."""
        terminal = self.open_terminal()
        self.focus(terminal)
        centres = [self.centre(number) for number in range(len(NAMES))]
        self.desk.run(BUILD / "bin" / "tavrin", "strip", NAMES[0])
        wait_for(lambda: self.ring(centres) == 0, "the keyboard at the first tile")
        self.desk.key("Right")
        wait_for(lambda: self.ring(centres) == 1, "the keyboard at the second tile")
        self.desk.key("Return")
        wait_for(lambda: self.panel(1), "the panel")
        self.type(1, "w")
        self.desk.key("Escape")
        self.wait_closed(1)
        wait_for(lambda: self.ring(centres) == 1, "the keyboard back at its tile")
        self.desk.key("Left")
        wait_for(lambda: self.ring(centres) == 0, "the keyboard at the first tile")
        self.desk.key("Escape")
        wait_for(lambda: self.ring(centres) is None, "no ring")
        wait_for(lambda: self.focused() == terminal, "the focus to come back")

    def point(self, x, y):
        self.desk.run("xdotool", "mousemove", str(x), str(y))

    def column_hidden(self):
        """Hidden where that is preferred, and there as long as it is wanted."""
        places = [self.centre(number) for number in range(len(NAMES))]
        top, edge = self.tile(0)[2], self.size[1] - 1
        self.point(40, 300)
        bottom = None if self.manager == "none" else self.maximized()
        with self.preferences(autohide=True):
            wait_for(self.is_hidden, "the strip to go")
            if bottom:
                wait_for(lambda: bottom() > top, "its room for others")

            self.point(places[1][0], edge)
            wait_for(self.is_shown, "all tiles at the pointer's coming")
            if bottom:
                self.assertGreater(bottom(), top, "no window moves for them")
            # Along the strip, and from there into a panel.
            for x, y in reversed(places):
                self.point(x, y)
            _, x, y, width, height = self.open(0)
            self.point(x + width // 2, y + height // 2)
            self.type(0, "h")
            # Longer than a strip stays that nobody wants.
            time.sleep(2)
            self.assertTrue(self.is_shown(), "the strip below its panel")
            self.desk.key("Escape")
            self.wait_closed(0)
            wait_for(self.is_hidden, "the strip to go after its panel")

            # By the keyboard, one tile after the other.
            self.desk.run(BUILD / "bin" / "tavrin", "strip", NAMES[0])
            wait_for(self.is_shown, "the strip at the keyboard's coming")
            time.sleep(2)
            self.assertTrue(self.is_shown(), "the strip that has the keyboard")
            self.desk.key("Escape")
            wait_for(self.is_hidden, "the strip to go after the keyboard")
            self.drag_to_the_edge(places[2], edge)
            wait_for(self.is_hidden, "the strip to go after the drag")
        self.settle()
        if bottom:
            wait_for(lambda: bottom() <= top, "the room again")

    def drag_to_the_edge(self, place, edge):
        log = self.desk.home / "drag.log"
        source = self.desk.spawn([BUILD / "Tests" / "Linux" / "DragDouble", "file:///tmp/one.txt"],
                                 log="drag.log", env=self.double_env)
        self.addCleanup(source.wait)
        self.addCleanup(source.terminate)
        x, y = wait_for(lambda: self.find((128, 128, 0)), "the window to drag from", pause=0.1)
        try:
            self.desk.run("xdotool", "mousemove", str(x), str(y), "mousedown", "1")

            def begins():
                self.point(x + next(self.steps) % 30, y)
                return "begins" in log.read_text()
            wait_for(begins, "the drag", pause=0.05)

            def is_there():
                # A source tells of its place when that changes.
                self.point(place[0] + next(self.steps) % 2, edge)
                # The tile below may be dimmed: it takes no files.
                return not self.is_hidden()
            wait_for(is_there, "the strip for what is dragged", pause=0.05)
            self.point(*place)
            self.desk.run("sleep", "2")
            self.assertFalse(self.is_hidden(), "the strip under what is dragged")
            self.point(40, 300)
        finally:
            self.desk.run("xdotool", "mouseup", "1")
        wait_for(lambda: "dragged" in log.read_text(), "the drag's end")
        source.terminate()

    def column_killed(self):
        """In every state of panel and focus."""
        for state in ("nothing", "terminal", "panel", "panel over terminal"):
            with self.subTest(state):
                if "terminal" in state:
                    self.focus(self.open_terminal(f"t{len(state)}"))
                if "panel" in state:
                    self.open(1)
                self.kill_manager()
                self.close_settled(1)
                self.settle()
                self.works(1, "k")
                if "panel" in state:
                    self.open(1)
                self.start_manager()
                self.settle()
                self.close_settled(1)
                # A manager that has just come may lay its windows over the tiles.
                self.open(1)
                self.works_open(1, "b")
                self.column_room()
                self.doCleanups()


COLUMNS = [name.removeprefix("column_") for name in vars(Row) if name.startswith("column_")]


def recorded(name, row=Row):
    """The column's test; what comes of it is a cell of the table."""
    test = getattr(row, f"column_{name}")

    def run(self):
        explained = EXPLAINED.get((self.manager, name))
        if explained:
            self.cells[name] = explained
            self.skipTest(explained)
        self.cells[name] = "no"
        # What a test before left open is not this one's.
        self.addCleanup(lambda: [self.close(number) for number in range(len(NAMES))])
        test(self)
        self.cells[name] = "yes"
    run.__doc__ = test.__doc__
    return run


for manager in MANAGERS:
    columns = {f"test_{index:02}_{name}": recorded(name) for index, name in enumerate(COLUMNS)}
    globals()[f"On_{manager}"] = type(f"On_{manager}", (Row, unittest.TestCase),
                                      {**columns, "manager": manager})


class LayerRow(LayerDesk, Row):
    """The same for a Wayland compositor with a layer shell."""


for manager in DESKTOPS:
    columns = {f"test_{index:02}_{name}": recorded(name, LayerRow)
               for index, name in enumerate(COLUMNS)}
    globals()[f"On_{manager}"] = type(f"On_{manager}", (LayerRow, unittest.TestCase),
                                      {**columns, "manager": manager})


def table(folder):
    rows = [(manager, json.loads(path.read_text())) for manager in [*MANAGERS, *DESKTOPS]
            if (path := pathlib.Path(folder) / f"{manager}.json").exists()]
    print("| | " + " | ".join(manager for manager, _ in rows) + " |")
    print("|---" * (len(rows) + 1) + "|")
    for name in COLUMNS:
        cells = ["—" if (manager, name) in EXPLAINED else row.get(name, "not run")
                 for manager, row in rows]
        print(f"| {name} | " + " | ".join(cells) + " |")


if __name__ == "__main__":
    if sys.argv[1:2] == ["--table"]:
        table(sys.argv[2])
    else:
        unittest.main(verbosity=2)
