"""The settings window by real keys: what is typed with blanks, what Ctrl+Z means where a field has the
keyboard, and a window on a screen that has less room than it would like."""

import os
import signal
import unittest

from rig import wait_for, widget
from desks.settings_window import SettingsTest, Window, stored


class Keys(SettingsTest):
    def open(self):
        self.desk.write_widgets([widget("clock", {}, 1, name="Clock"),
                                 widget("timer", {}, 2, name="Tea")], announce=False)
        window = Window(self.desk)
        window.await_keyboard()
        return window

    def test_the_window_undoes_where_a_field_has_nothing_to_undo(self):
        window = self.open()
        window.await_focus("Search widgets")
        # With the form open the keyboard goes into it, and back with what comes back.
        for is_open in (False, True):
            with self.subTest(is_open=is_open):
                if is_open:
                    window.focus("Tea, place 2 of 2")
                    self.desk.key("Return")
                    window.await_focus("Name", "text")
                else:
                    window.focus("Search widgets")
                x, y = window.centre("Tea, place 2 of 2")
                window.drag((x, y), (x, y + 300))
                self.await_strip("Clock")
                if not is_open:
                    window.focus("Search widgets")
                self.desk.key("ctrl+z")
                self.await_strip("Clock", "Tea")
                self.desk.key("ctrl+shift+z")
                self.await_strip("Clock")
                self.desk.key("ctrl+z")
                self.await_strip("Clock", "Tea")
        window.close()

    def test_a_name_has_blanks_and_its_letters_are_undone_first(self):
        window = self.open()
        window.focus("Tea, place 2 of 2")
        self.desk.key("Return")
        window.await_focus("Name", "text")
        self.desk.key("ctrl+a")
        self.desk.run("xdotool", "type", "--delay", "30", "Green tea for two")
        wait_for(lambda: any(entry["name"] == "Green tea for two" for entry in stored(self.desk)),
                 "the name")
        self.assertFalse([entry["name"] for entry in window.tree()
                          if "elsewhere" in entry["name"]])
        for _ in range(8):
            self.desk.key("ctrl+z")
            if any(entry["name"] == "Tea" for entry in stored(self.desk)):
                break
        wait_for(lambda: any(entry["name"] == "Tea" for entry in stored(self.desk)), "the old name")
        window.close()

    def test_it_stays_on_a_screen_whose_scale_grows(self):
        settings = self.desk.home / "xsettingsd.conf"
        settings.write_text(f"Xft/DPI {96 * 1024}\n")
        manager = self.desk.spawn(["xsettingsd", "-c", str(settings)])
        window = self.open()

        def fits(shown):
            frames = self.desk.windows(shown.process.pid)
            return frames and all(frame[3] <= 1280 and frame[4] <= 900 for frame in frames)
        wait_for(lambda: fits(window), "a window of the screen's size")
        settings.write_text(f"Xft/DPI {144 * 1024}\n")
        os.kill(manager.pid, signal.SIGHUP)
        # It was 920 wide, and is as large as the screen has room for.
        wait_for(lambda: fits(window) and max(
            frame[3] for frame in self.desk.windows(window.process.pid)) > 1000,
                 f"the window to follow, not {self.desk.windows(window.process.pid)}")
        window.close()
        other = Window(self.desk)
        other.await_keyboard()
        wait_for(lambda: fits(other), "another window of the screen's size")
        other.close()


if __name__ == "__main__":
    unittest.main()
