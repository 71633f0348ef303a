"""The desktop's scale changes while tiles and a panel are shown, as a settings manager tells it."""

import os
import signal
import unittest

from desks.kind_desk import KindTest
from rig import DeskTest, wait_for, widget

TILE = 48
PANEL_GAP = 2


class SettingsManager:
    """An XSETTINGS manager that tells one setting."""

    def __init__(self, desk, setting):
        self.file = desk.home / "xsettingsd.conf"
        self.file.write_text(setting)
        self.process = desk.spawn(["xsettingsd", "-c", str(self.file)])

    def tell(self, setting):
        self.file.write_text(setting)
        os.kill(self.process.pid, signal.SIGHUP)


class Scale(DeskTest):
    def setUp(self):
        super().setUp()
        self.manager = SettingsManager(self.desk, self.dpi(96))
        self.desk.write_widgets([widget("timer", {}, 1), widget("note", {"text": "Hallo"}, 2)],
                                announce=False)
        self.slots = [self.start(1), self.start(2)]
        for slot in self.slots:
            wait_for(lambda s=slot: self.desk.windows(s.pid), "a tile")

    def start(self, slot):
        process = self.desk.start_slot(slot)
        self.desk.wait_for_name(slot)
        return process

    @staticmethod
    def dpi(value):
        return f"Xft/DPI {value * 1024}\n"

    def become(self, dpi):
        self.manager.tell(self.dpi(dpi))

    def tile(self, slot=1):
        return min(self.desk.windows(self.slots[slot].pid), key=lambda window: window[4])

    def panel(self, slot=1):
        found = [window for window in self.desk.windows(self.slots[slot].pid)
                 if window[0] != self.tile(slot)[0]]
        return found[0] if found else None

    def is_right(self, scale, width):
        """The tile has its size, and the panel stands above it in the same scale."""
        _, _, top, _, height = self.tile()
        panel = self.panel()
        return panel is not None and abs(height - TILE * scale) <= 1 and \
            abs(top + height - 800) <= 1 and abs(panel[3] - width * scale) <= 2 and \
            abs(panel[2] + panel[4] + PANEL_GAP * scale - top) <= scale + 0.5

    def test_tiles_and_an_open_panel_follow(self):
        self.desk.toggle(2)
        panel = wait_for(self.panel, "the panel")
        wait_for(lambda: self.is_right(1, panel[3]), "the panel at its tile")
        at_first = self.desk.pixels(self.tile(0))
        for dpi in (192, 144, 96):
            self.become(dpi)
            wait_for(lambda d=dpi: self.is_right(d / 96, panel[3]), f"tile and panel at {dpi}")
            if dpi == 192:
                self.compare_with_new_process()
        wait_for(lambda: self.desk.pixels(self.tile(0)) == at_first, "the tile as it was")

    def compare_with_new_process(self):
        """What is painted is all of the picture, not the old size's part of it."""
        seen = []

        def is_painted():
            # A server shows a window's new size before what is painted in it.
            seen.append(self.desk.pixels(self.tile(0)))
            return len(seen) > 5 and len(set(seen[-5:])) == 1
        wait_for(is_painted, "the tile to be painted", pause=0.2)
        followed = seen[-1]
        self.kill(self.slots[0])
        self.slots[0] = self.start(1)
        wait_for(lambda: self.desk.windows(self.slots[0].pid), "the tile")
        wait_for(lambda: self.desk.pixels(self.tile(0)) == followed, "a new process's tile")


class ResourceScale(Scale):
    """Without a settings manager the scale stands in the server's resource database."""

    def setUp(self):
        DeskTest.setUp(self)
        self.desk.write_widgets([widget("timer", {}, 1), widget("note", {"text": "Hallo"}, 2)],
                                announce=False)
        self.slots = [self.start(1), self.start(2)]
        for slot in self.slots:
            wait_for(lambda s=slot: self.desk.windows(s.pid), "a tile")

    def become(self, dpi):
        self.desk.run("xrdb", "-merge", input=f"Xft.dpi:\t{dpi}\n")

    def test_tiles_and_an_open_panel_follow(self):
        """A panel as soon as it is closed: somebody may be typing into it."""
        def is_tile(slot, scale):
            found = self.desk.windows(self.slots[slot].pid)
            return len(found) == 1 and abs(found[0][4] - TILE * scale) <= 1 and \
                abs(found[0][2] + found[0][4] - 800) <= 1
        self.desk.toggle(2)
        panel = wait_for(self.panel, "the panel")
        self.become(192)
        wait_for(lambda: is_tile(0, 2), "the tile at twice its size")
        self.assertEqual(self.panel()[3:], panel[3:], "as long as it is open")
        self.desk.toggle(2)
        wait_for(lambda: is_tile(1, 2), "the other tile, too")
        self.desk.wait_for_name(2)
        self.desk.toggle(2)
        wait_for(lambda: self.panel() and self.is_right(2, panel[3]), "the panel at its tile")


class TextSize(KindTest):
    """Panels are made anew for another size of texts, under the hands of who types in one."""

    def setUp(self):
        super().setUp()
        self.manager = SettingsManager(self.desk, self.font(10))

    @staticmethod
    def font(points):
        return f'Gtk/FontName "Inter {points}"\n'

    def become(self, points):
        before = self.panel_window()
        self.manager.tell(self.font(points))
        wait_for(lambda: self.panel_window() and self.panel_window()[3] != before[3],
                 "the panel in another size")

    def type(self, words):
        self.desk.run("xdotool", "type", "--delay", "15", words)

    def test_a_note_keeps_its_cursor(self):
        self.place("note")
        self.open()
        self.type("hello world")
        self.desk.key(*["Left"] * 5)
        self.become(15)
        self.type("X")
        wait_for(lambda: self.settings().get("text") == "hello Xworld", "the letter in its place")

    def test_a_field_keeps_its_text_and_cursor(self):
        self.place("converter")
        self.open()
        self.type("123")
        self.desk.key("Left")
        self.become(15)
        self.type("0")
        wait_for(lambda: self.settings().get("value") == 1203, "the digit in its place")


if __name__ == "__main__":
    unittest.main()
