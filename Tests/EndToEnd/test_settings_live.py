"""The window's strip shows what the slots show: what runs as it is, what does not as a preview."""

import time
import unittest

from access_tree import start_accessibility
from rig import BUILD, Desk, DeskTest, wait_for, widget
from settings_window import Window, end_slots


class LiveStrip(DeskTest):
    def setUp(self):
        self.desk = Desk(screens=("1280x900",))
        self.addCleanup(self.desk.close)
        self.addCleanup(end_slots, self.desk)
        self.desk.env["TAVRIN_BUNDLES"] = str(BUILD / "bundles")
        start_accessibility(self.desk)

    def pixels(self, window, name):
        x, y, width, height = window.await_name(name)["extents"]
        return self.desk.pixels((None, x, y, width, height))

    def is_preview(self, window, name):
        return "A preview" in window.await_name(name)["description"]

    def test_a_tile_is_as_its_slot_shows_it_and_says_where_none_does(self):
        self.desk.write_widgets([widget("stopwatch", {}, 1, name="Watch", span=2),
                                 widget("note", {"text": "Milk"}, 2, name="List")], announce=False)
        slot = self.desk.start_slot(1)
        self.desk.wait_for_name(1)
        window = Window(self.desk)
        watch, note = "Watch, place 1 of 2", "List, place 2 of 2"
        wait_for(lambda: not self.is_preview(window, watch), "the slot's own picture")
        wait_for(lambda: self.is_preview(window, note), "the preview of what does not run")
        # It stands still, as the sample of its kind does not.
        resting = self.pixels(window, watch)
        time.sleep(2.5)
        self.assertEqual(self.pixels(window, watch), resting)
        # Its first button, started where it stands on the desktop.
        _, x, y, width, height = wait_for(lambda: self.desk.windows(slot.pid), "the tile")[0]
        self.desk.click(x + width * 0.6, y + height / 2)
        running = wait_for(lambda: (now := self.pixels(window, watch)) != resting and now, "it to run")
        wait_for(lambda: self.pixels(window, watch) != running, "the next second")
        # Another start, and its end.
        self.desk.start_slot(2)
        wait_for(lambda: not self.is_preview(window, note), "the other one's picture")
        self.kill(slot)
        wait_for(lambda: self.is_preview(window, watch), "the end")


if __name__ == "__main__":
    unittest.main()
