"""The keyboard walks the strip: from tile to tile, into a panel, into a tile's actions, and back."""

import subprocess
import unittest

from desks.managed_desk import ManagedDesk, MANAGERS
from rig import BUILD, wait_for, widget

COMMAND = BUILD / "bin" / "tavrin"


class Walk(ManagedDesk):
    def walk(self, *names):
        self.desk.run(str(COMMAND), "strip", *names)

    def await_tile(self, number):
        """It has the keyboard, and wears the ring."""
        tile = self.tile(number)[0]
        wait_for(lambda: int(self.focused() or 0) == int(tile, 0), f"the keyboard at tile {number}")
        wait_for(lambda: self.has_ring(number), f"the ring round tile {number}")
        for other in range(3):
            if other != number:
                wait_for(lambda: not self.has_ring(other), f"no ring round tile {other}")

    def has_ring(self, number):
        _, x, y, width, height = self.tile(number)
        shot = subprocess.run(["import", "-silent", "-window", "root", "-crop",
                               f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-"],
                              env=self.desk.env, capture_output=True, check=True).stdout
        blue = sum(shot[i] < 90 and 90 < shot[i + 1] < 160 and shot[i + 2] > 220
                   for i in range(0, len(shot), 3))
        return blue > 40

    def test_arrows_walk_return_opens_escape_leads_back(self):
        terminal = self.open_terminal("other")
        self.focus(terminal)
        self.walk()
        self.await_tile(0)
        key = self.desk.key
        key("Left")
        key("Right")
        self.await_tile(1)
        key("Tab")
        self.await_tile(2)
        key("Right")
        key("shift+Tab")
        self.await_tile(1)
        key("Home")
        self.await_tile(0)
        key("End")
        self.await_tile(2)
        key("Return")
        self.type(2, "x")
        key("Escape")
        self.wait_closed(2)
        self.await_tile(2)
        key("Escape")
        wait_for(lambda: self.focused() == terminal, "the terminal's focus")
        wait_for(lambda: not self.has_ring(2), "no ring")

    def test_a_slot_that_does_not_run_is_passed_by(self):
        self.slots[1].terminate()
        self.slots[1].wait()
        try:
            self.walk("First")
            self.desk.key("Right")
            self.await_tile_2()
        finally:
            self.slots[1] = self.desk.start_slot(2)
            self.settle()
        self.desk.key("Escape")

    def await_tile_2(self):
        tile = self.tile(2)[0]
        wait_for(lambda: int(self.focused() or 0) == int(tile, 0), "the keyboard at the last tile")

    def test_the_menu_lists_what_the_tile_does(self):
        self.walk("Second")
        self.await_tile(1)
        for keys in ("Menu", "shift+F10"):
            before = len(self.desk.windows(self.slots[1].pid))
            self.desk.key(keys)
            wait_for(lambda: len(self.desk.windows(self.slots[1].pid)) > before, "the menu")
            self.desk.key("Escape")
            wait_for(lambda: len(self.desk.windows(self.slots[1].pid)) == before, "its end")
            self.await_tile(1)
        self.desk.key("Menu")
        wait_for(lambda: len(self.desk.windows(self.slots[1].pid)) > before, "the menu")
        self.desk.key("Return")
        self.type(1, "y")
        self.desk.key("Escape")
        self.wait_closed(1)
        self.await_tile(1)
        # Who goes elsewhere takes the keyboard along.
        terminal = self.open_terminal("other")
        self.focus(terminal)
        wait_for(lambda: not self.has_ring(1), "no ring")


for manager in ("openbox", "none"):
    globals()[f"On_{manager}"] = type(f"On_{manager}", (Walk, unittest.TestCase),
                                      {"manager": manager})

if __name__ == "__main__":
    unittest.main()
