"""The strip under a real X server and window manager, driven with mouse and keyboard."""

import math
import subprocess
import unittest

from rig import PATIENCE, DeskTest, wait_for, widget

TILE = 48
PITCH = TILE * 1.0625
WIDGETS = [
    ("pomodoro", {}, 2), ("timer", {}, 1), ("clock", {}, 1), ("stopwatch", {}, 1), ("note", {}, 1),
]


class Strip(DeskTest):
    def setUp(self):
        super().setUp()
        self.desk.write_widgets(
            [widget(kind, settings, slot, name=kind.title(), span=span)
             for slot, (kind, settings, span) in enumerate(WIDGETS, start=1)], announce=False)
        self.slots = [self.desk.start_slot(slot) for slot in range(1, len(WIDGETS) + 1)]
        for slot in range(1, len(WIDGETS) + 1):
            self.desk.wait_for_name(slot)
        self.tiles = [wait_for(lambda p=p: self.tile_of(p), "a tile") for p in self.slots]

    def tile_of(self, process):
        for window in self.desk.windows(process.pid):
            if "DOCK" in self.desk.run("xprop", "-id", window[0], "_NET_WM_WINDOW_TYPE"):
                return window
        return None

    def panel_of(self, process):
        tile = self.tiles[self.slots.index(process)][0]
        return next((w for w in self.desk.windows(process.pid) if w[0] != tile), None)

    def focused(self):
        return self.desk.run("xdotool", "getwindowfocus", check=False).strip()

    def start_terminal(self):
        self.terminal = self.desk.spawn(["xterm", "-T", "other", "-geometry", "40x10+20+20"])
        window = self.desk.run("xdotool", "search", "--sync", "--onlyvisible", "--name",
                               "^other$").split()[0]
        self.desk.run("xdotool", "windowactivate", "--sync", window)
        wait_for(lambda: self.focused() == window, "the terminal's focus")
        return window

    def open_by_click(self, number):
        # The body's left part: the right end of a wide tile holds its buttons.
        _, x, y, _, height = self.tiles[number]
        self.desk.click(x + height / 2, y + height / 2)
        return wait_for(lambda: self.panel_of(self.slots[number]), "the panel")

    def wait_closed(self, number):
        wait_for(lambda: self.panel_of(self.slots[number]) is None, "the panel to close")

    def test_tiles_stand_in_slot_order_at_the_bottom_edge(self):
        spans = [span for _, _, span in WIDGETS]
        lefts = [tile[1] for tile in self.tiles]
        self.assertEqual(lefts, sorted(lefts))
        for (_, x, y, width, height), span in zip(self.tiles, spans):
            self.assertLessEqual(800 - (y + height), 24, "at the bottom edge")
            self.assertAlmostEqual(height, TILE, delta=math.ceil(PITCH - TILE) + 1)
        for number in range(len(lefts) - 1):
            self.assertAlmostEqual(lefts[number + 1] - lefts[number], PITCH * spans[number],
                                   delta=1.5)
        whole = lefts[0] + self.tiles[-1][1] + self.tiles[-1][3]
        self.assertAlmostEqual(whole / 2, 640, delta=3, msg="centred")

    def work_area(self):
        area = self.desk.run("xprop", "-root", "_NET_WORKAREA").split("=")[1]
        return [int(number) for number in area.split(",")[:4]]

    def test_the_strip_keeps_its_edge_free_and_stays_there(self):
        top = self.tiles[0][2]
        wait_for(lambda: self.work_area() == [0, 0, 1280, top], "the work area above the tiles")
        other = self.start_terminal()
        self.desk.run("wmctrl", "-i", "-r", other, "-b", "add,maximized_vert,maximized_horz")

        def height():
            return next(window for window in self.desk.windows(self.terminal.pid))[4]
        wait_for(lambda: top - 40 < height() < top, "a maximized window above the tiles")

        # A panel at the edge moves the strip up; its end brings it back.
        self.desk.run("xprop", "-id", other, "-f", "_NET_WM_STRUT_PARTIAL", "32c", "-set",
                      "_NET_WM_STRUT_PARTIAL", "0, 0, 0, 60, 0, 0, 0, 0, 0, 0, 0, 1279")

        def tops():
            return {(self.tile_of(slot) or (0, 0, None))[2] for slot in self.slots}
        wait_for(lambda: tops() == {top - 60}, "the strip to move up")
        wait_for(lambda: self.work_area() == [0, 0, 1280, top - 60], "the room of both")
        self.terminal.terminate()
        wait_for(lambda: tops() == {top}, "the strip to come back")
        wait_for(lambda: self.work_area() == [0, 0, 1280, top], "the room of one")
        for slot in self.slots:
            slot.terminate()
        wait_for(lambda: self.work_area() == [0, 0, 1280, 800], "the room to be given back")

    def test_each_click_opens_its_panel_above_with_the_arrow_at_the_tile(self):
        for number in range(len(WIDGETS)):
            panel = self.open_by_click(number)
            tile = self.tiles[number]
            centre = tile[1] + tile[3] / 2
            self.assertLessEqual(panel[2] + panel[4], tile[2] + 16, "above the tile")
            self.assertGreaterEqual(panel[1], -30)
            self.assertLessEqual(panel[1] + panel[3], 1280 + 30)
            self.assertAlmostEqual(panel[1] + panel[3] / 2, centre, delta=2, msg="centred on it")
            # Another tile's click closes this panel and opens its own.
        self.desk.key("Escape")
        self.wait_closed(len(WIDGETS) - 1)
        for number in range(len(WIDGETS)):
            self.wait_closed(number)

    def test_second_click_escape_and_a_click_elsewhere_close_and_focus_goes_back(self):
        terminal = self.start_terminal()

        def second_click():
            x, y, height = self.tiles[1][1], self.tiles[1][2], self.tiles[1][4]
            self.desk.click(x + height / 2, y + height / 2)

        for close in (second_click, lambda: self.desk.key("Escape")):
            self.open_by_click(1)
            wait_for(lambda: self.focused() != terminal, "the panel's focus")
            close()
            self.wait_closed(1)
            wait_for(lambda: self.focused() == terminal, "the focus to come back")
        self.open_by_click(1)
        self.desk.click(900, 100)
        self.wait_closed(1)
        self.open_by_click(1)
        self.desk.click(60, 80)
        self.wait_closed(1)
        wait_for(lambda: self.focused() == terminal, "the clicked window's focus")

    def test_ten_quick_clicks_end_as_they_began(self):
        x, y, height = self.tiles[2][1], self.tiles[2][2], self.tiles[2][4]
        self.desk.run("xdotool", "mousemove", str(int(x + height / 2)), str(int(y + height / 2)),
                      "click", "--repeat", "10", "--delay", "60", "1")
        self.wait_closed(2)

    def test_the_buttons_of_a_wide_tile_work_without_opening_the_panel(self):
        _, x, y, width, height = self.tiles[0]
        # Two round buttons at the right end; the left one starts and pauses.
        body = TILE * 0.805
        right = x + width - (TILE - body) / 2 - 0.12 * body
        side = 0.44 * body
        for dx in (1.6, 1.7, 1.5):
            self.desk.click(right - dx * side, y + height / 2)
            if self.desk.defaults(1).get("pomodoroRun"):
                break
        run = wait_for(lambda: self.desk.defaults(1).get("pomodoroRun"), "the run to be saved")
        self.assertIsNotNone(run)
        self.assertIsNone(self.panel_of(self.slots[0]))

    def test_the_reopen_request_over_the_bus_toggles_the_panel_at_its_own_tile(self):
        self.desk.run("xdotool", "mousemove", "5", "5")
        self.desk.toggle(3)
        panel = wait_for(lambda: self.panel_of(self.slots[2]), "the panel")
        tile = self.tiles[2]
        self.assertAlmostEqual(panel[1] + panel[3] / 2, tile[1] + tile[3] / 2, delta=2)
        self.desk.toggle(3)
        self.wait_closed(2)

    def test_the_panel_follows_its_tile_when_the_strip_moves(self):
        self.desk.toggle(3)
        wait_for(lambda: self.panel_of(self.slots[2]), "the panel")
        before = self.tiles[2]
        # One tile fewer: the strip is shorter and centred anew.
        self.desk.write_widgets([widget(kind, settings, slot, name=kind.title(), span=1)
                                 for slot, (kind, settings, _) in enumerate(WIDGETS, start=1)])
        tile = wait_for(lambda: (moved := self.tile_of(self.slots[2]))
                        and moved[1] != before[1] and moved, "the tile to move")

        def is_centred():
            panel = self.panel_of(self.slots[2])
            return panel and abs(panel[1] + panel[3] / 2 - tile[1] - tile[3] / 2) <= 2
        wait_for(is_centred, "the panel to follow")

    def test_an_open_panel_that_is_asked_for_stays_open(self):
        for _ in range(2):
            self.desk.run("gdbus", "call", "--session", "--dest", self.desk.bundle_identifier(3),
                          "--object-path", "/dev/quellby/Tavrin/Slot3", "--method",
                          "org.freedesktop.Application.ActivateAction", "open", "[]", "{}")
            panel = wait_for(lambda: self.panel_of(self.slots[2]), "the panel")
        self.desk.toggle(3)
        self.wait_closed(2)
        self.assertIsNotNone(panel)

    def test_a_second_start_hands_over_to_the_first(self):
        second = self.desk.start_slot(3, "--noted")
        self.assertEqual(second.wait(PATIENCE), 0)
        wait_for(lambda: self.panel_of(self.slots[2]), "the first process's panel")
        again = self.desk.start_slot(3, "--background")
        self.assertEqual(again.wait(PATIENCE), 0)


if __name__ == "__main__":
    unittest.main()
