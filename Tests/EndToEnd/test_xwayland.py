"""The strip through XWayland, under a compositor without a layer shell: mutter, with a window on an X
server, so that there are a pointer and keys."""

import json
import shutil
import subprocess
import unittest

from rig import Desk, wait_for, widget

NAMES = ["First", "Second", "Third"]


@unittest.skipIf(shutil.which("mutter") is None, "mutter is not installed")
class OnMutter(unittest.TestCase):
    def setUp(self):
        self.desk = Desk(window_manager=False)
        self.addCleanup(self.desk.close)
        told = self.desk.home / "told"
        self.desk.spawn(["mutter", "--wayland", "--nested", "--wayland-display=wayland-mutter", "--",
                         "sh", "-c", f"env > {told}.new; mv {told}.new {told}; sleep 1000"],
                        log="mutter.log", env={"MUTTER_DEBUG_DUMMY_MODE_SPECS": "1280x800"})
        wait_for(told.exists, "the compositor")
        inner = dict(line.split("=", 1) for line in told.read_text().splitlines() if "=" in line)
        self.inner = {"WAYLAND_DISPLAY": "wayland-mutter",
                      **{name: inner[name] for name in ("DISPLAY", "XAUTHORITY") if name in inner}}
        self.desk.write_widgets([widget("note", {"text": f"n{slot}"}, slot, name=name)
                                 for slot, name in enumerate(NAMES, start=1)], announce=False)
        # No one before them asks for the X server.
        self.slots = [self.desk.start_slot(slot, env=self.inner) for slot in (1, 2, 3)]
        for slot in (1, 2, 3):
            self.desk.wait_for_name(slot)

    def ask(self, *command):
        return subprocess.run(command, env={**self.desk.env, **self.inner}, capture_output=True,
                              text=True).stdout

    def windows(self, number):
        """(top, left, width, height) of a slot's tile and panel, the lowest first."""
        found = []
        for window in self.ask("xdotool", "search", "--onlyvisible", "--all", "--pid",
                               str(self.slots[number].pid)).split():
            shell = self.ask("xdotool", "getwindowgeometry", "--shell", window)
            values = dict(line.split("=") for line in shell.split())
            # Not the clear window that hears of presses elsewhere.
            if values and values["WIDTH"] != "1280":
                found.append(tuple(int(values[key]) for key in ("Y", "X", "WIDTH", "HEIGHT")))
        return sorted(found, reverse=True)

    def tile(self, number):
        return wait_for(lambda: self.windows(number)[:1], "the tile")[0]

    def press(self, number):
        top, left, width, height = self.tile(number)
        self.desk.click(left + width // 2, top + height // 2)

    def open(self, number):
        self.press(number)
        wait_for(lambda: len(self.windows(number)) == 2, "the panel")

    def wait_closed(self, number):
        wait_for(lambda: len(self.windows(number)) == 1, "the panel to close")

    def text(self, number):
        document = json.loads((self.desk.data / "widgets.json").read_text())
        return document["widgets"][number]["kind"]["note"]["_0"]["text"]

    def test_the_strip_stands_and_its_panels_open_and_close(self):
        wait_for(lambda: all(self.tile(number)[0] == 800 - 48 for number in range(3)), "the strip")
        self.open(1)

        def is_typed():
            self.desk.run("xdotool", "type", "g")
            return "g" in self.text(1)
        wait_for(is_typed, "the typed letter in the note", pause=0.2)
        self.desk.click(60, 300)
        self.wait_closed(1)
        self.open(1)
        self.press(2)
        self.wait_closed(1)
        wait_for(lambda: len(self.windows(2)) == 2, "the other panel")
        self.desk.key("Escape")
        self.wait_closed(2)


if __name__ == "__main__":
    unittest.main()
