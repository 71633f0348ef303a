"""A newcomer's first minutes, begun at the desktop entry: three widgets are placed, each is set, one is
moved, what was done is taken back, and the strip is as shown. By the mouse alone, by the keyboard
alone, and by the accessibility tree alone."""

import unittest

from rig import wait_for
from desks.settings_window import SettingsTest, stored


class Newcomer(SettingsTest):
    def setUp(self):
        super().setUp()
        self.window, self.pid = self.started_by_the_entry()

    def record(self, name):
        return next(entry for entry in stored(self.desk) if entry["name"] == name)

    def await_setting(self, name, key, value):
        wait_for(lambda: self.settings(name).get(key) == value, f"{key} of {name}")

    def await_end(self, *names):
        """The window has gone; the slots of the strip run, each with its tile, and no others."""
        wait_for(lambda: self.owner() is None, "the window's end")
        self.await_strip(*names)
        for name in names:
            self.desk.wait_for_name(self.record(name)["slot"])
        pids = [self.owner(self.desk.bundle_identifier(self.record(name)["slot"])) for name in names]
        lefts = [wait_for(lambda: self.desk.windows(pid), "a tile")[0][1] for pid in pids]
        self.assertEqual(lefts, sorted(lefts))

    def test_by_mouse_alone(self):
        window = self.window
        window.click("Add Clock")
        self.await_strip("Clock")
        window.click("Add Timer")
        # The third one between the first two.
        tile = window.await_name("Timer, place 2 of 2")["extents"]
        window.drag(window.centre("Add Pomodoro"), (tile[0] + 4, tile[1] + tile[3] / 2))
        self.await_strip("Clock", "Pomodoro", "Timer")
        # To the end, wider, and off the strip.
        clock = window.centre("Clock, place 1 of 3")
        timer = window.await_name("Timer, place 3 of 3")["extents"]
        window.drag(clock, (timer[0] + timer[2] - 4, clock[1]))
        self.await_strip("Pomodoro", "Timer", "Clock")
        window.await_name("“Clock” is at place 3 of 3.")
        x, y, width, height = window.await_name("Pomodoro, place 1 of 3")["extents"]
        window.drag((x + width - 4, y + height / 2), (x + width + width, y + height / 2))
        wait_for(lambda: self.record("Pomodoro")["span"] == 2, "the wide Pomodoro")
        window.drag(window.centre("Timer, place 2 of 3"), (x + 200, y + 400))
        self.await_strip("Pomodoro", "Clock")
        window.click("Undo Take Off Timer")
        self.await_strip("Pomodoro", "Timer", "Clock")
        window.click("Clock, place 3 of 3")
        window.await_name("All Widgets")
        window.click("Show seconds", "check box")
        self.await_setting("Clock", "showsSeconds", True)
        window.click("Timer, place 2 of 3")
        self.scroll_to("Green")
        window.click("Green")
        self.await_setting("Timer", "tintHex", "#30D158")
        window.click("Pomodoro, place 1 of 3")
        before = self.settings("Pomodoro")["startsBreaksAutomatically"]
        window.click("Start breaks automatically", "check box")
        self.await_setting("Pomodoro", "startsBreaksAutomatically", not before)
        self.desk.click(*self.close_button())
        self.await_end("Pomodoro", "Timer", "Clock")

    def frame(self):
        return wait_for(lambda: next((entry["extents"] for entry in self.window.tree()
                                      if entry["depth"] == 1), None), "the window")

    def scroll_to(self, name):
        """Turns the wheel over the form until it is in sight."""
        x, y, _, height = self.frame()
        lowest = y + height - 80
        self.desk.run("xdotool", "mousemove", str(x + 200), str(lowest))
        for _ in range(20):
            _, y, _, height = self.window.await_name(name)["extents"]
            if y + height < lowest:
                return
            self.desk.run("xdotool", "click", "5")
            wait_for(lambda: self.window.await_name(name)["extents"][1] != y, "it to scroll")

    def close_button(self):
        """The window manager's, at the right end of the frame's title."""
        window = max(self.desk.windows(self.pid), key=lambda each: each[3] * each[4])[0]
        extents = self.desk.run("xprop", "-id", window, "_NET_FRAME_EXTENTS")
        top = int(extents.split("=")[1].split(",")[2])
        x, y, width, _ = self.frame()
        return x + width - 10, y - top / 2

    def go(self, name, keys="Tab"):
        """Presses a key until what goes by that name has the keyboard."""
        reached = []
        while name not in reached:
            self.assertLess(len(reached), 60, reached)
            if reached:
                self.desk.key(keys)
            reached.append(wait_for(lambda: (now := (self.window.focused() or {}).get("name"))
                                    and now != (reached or [None])[-1] and now,
                                    f"the keyboard to move on from {reached[-1:]}"))

    def test_by_keyboard_alone(self):
        window, key = self.window, self.desk.key
        window.desk.run("xdotool", "search", "--sync", "--onlyvisible", "--pid", str(self.pid))
        wait_for(lambda: window.focused(), "the keyboard")
        for number, word in enumerate(("clock", "tomato", "water")):
            key("ctrl+f")
            window.await_focus("Search widgets")
            key("ctrl+a")
            self.desk.run("xdotool", "type", word)
            key("Return")
            self.await_strip(*("Clock", "Pomodoro", "Water")[:number + 1])
        self.go("Water, place 3 of 3", "shift+Tab")
        key("Home")
        window.await_focus("Clock, place 1 of 3")
        key("ctrl+Right")
        self.await_strip("Pomodoro", "Clock", "Water")
        window.await_focus("Clock, place 2 of 3")
        key("shift+Right")
        wait_for(lambda: self.record("Clock")["span"] == 2, "the wide clock")
        for tile, lead, setting, name, field, value in (
                ("Clock, place 2 of 3", None, "Show seconds", "Clock", "showsSeconds", True),
                ("Pomodoro, place 1 of 3", "Left", "Start breaks automatically", "Pomodoro",
                 "startsBreaksAutomatically", None),
                ("Water, place 3 of 3", "End", "Show the count on the tile", "Water",
                 "showsCountOnTile", None)):
            if lead is not None:
                key(lead)
            window.await_focus(tile)
            before = self.settings(name).get(field)
            key("Return")
            window.await_focus("Name", "text")
            self.go(setting)
            key("space")
            wait_for(lambda: self.settings(name).get(field) != before, setting)
            key("Escape")
            window.await_focus(tile)
        key("Delete")
        self.await_strip("Pomodoro", "Clock")
        key("ctrl+z")
        self.await_strip("Pomodoro", "Clock", "Water")
        # Three settings, the width, the move; and all of it again.
        for _ in range(5):
            key("ctrl+z")
        self.await_strip("Clock", "Pomodoro", "Water")
        wait_for(lambda: self.record("Clock")["span"] == 1, "the narrow clock")
        for _ in range(5):
            key("ctrl+shift+z")
        self.await_strip("Pomodoro", "Clock", "Water")
        self.await_setting("Clock", "showsSeconds", True)
        key("ctrl+w")
        self.await_end("Pomodoro", "Clock", "Water")

    def test_by_the_accessibility_tree_alone(self):
        window = self.window
        for name in ("Clock", "Note", "Weather"):
            window.press(f"Add {name}")
            wait_for(lambda: any(entry["name"] == name for entry in stored(self.desk)), name)
        window.press("Move Left")
        self.await_strip("Clock", "Weather", "Note")
        window.press("Wider")
        wait_for(lambda: self.record("Weather")["span"] == 2, "the wide tile")
        window.press("Take Off the Strip")
        self.await_strip("Clock", "Note")
        window.press("Undo Take Off Weather")
        self.await_strip("Clock", "Weather", "Note")
        window.press("Note, place 3 of 3")
        window.type_text("Text", "Milk", "text")
        self.await_setting("Note", "text", "Milk")
        window.press("Clock, place 1 of 3")
        window.press("Analog face", "check box")
        self.await_setting("Clock", "isAnalog", True)
        window.press("Undo Set Up Clock")
        wait_for(lambda: not self.settings("Clock").get("isAnalog"), "the digits")
        window.press("Weather, place 2 of 3")
        window.press("Show the felt temperature", "check box")
        self.await_setting("Weather", "showsApparent", False)
        # Everything that takes the keyboard says what it is.
        for entry in window.tree():
            if entry["focusable"] and entry["role"] not in ("frame", "scroll pane", "filler"):
                self.assertTrue(entry["name"], entry)
        self.desk.run("xdotool", "search", "--sync", "--onlyvisible", "--pid", str(self.pid))
        self.desk.key("ctrl+w")
        self.await_end("Clock", "Weather", "Note")


if __name__ == "__main__":
    unittest.main()
