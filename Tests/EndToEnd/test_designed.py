"""Converter, emoji, bookmarks and pet: placed by the command, used by mouse and by keyboard alone."""

import json
import os
import subprocess
import unittest

from rig import BUILD, DeskTest, wait_for

TAVRIN = BUILD / "bin" / "tavrin"
SLOT = 1


class DesignedWidgets(DeskTest):
    def setUp(self):
        super().setUp()
        tools = self.desk.home / "tools"
        tools.mkdir()
        self.opened = self.desk.home / "opened"
        opener = tools / "xdg-open"
        opener.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$1\" >> {self.opened}\n")
        opener.chmod(0o755)
        self.desk.env["PATH"] = f"{tools}:{self.desk.env['PATH']}"

    def tavrin(self, *words):
        return self.desk.run(str(TAVRIN), *words)

    def place(self, kind, name, *settings):
        self.tavrin("widgets", "add", kind, name, "--place")
        self.tavrin("widgets", "span", name, "2")
        if settings:
            self.tavrin("widgets", "set", name, *settings)
        process = self.desk.start_slot(SLOT)
        self.desk.wait_for_name(SLOT)
        self.tile = wait_for(lambda: self.desk.windows(process.pid), "the tile")
        return process

    def open(self, process):
        self.desk.toggle(SLOT)
        wait_for(lambda: len(self.desk.windows(process.pid)) > len(self.tile), "the panel")
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", "getwindowpid",
                                       check=False).strip() == str(process.pid), "the focus")

    def panel(self, process):
        """Of the panel its window's place and size."""
        known = {window[0] for window in self.tile}
        return next(window for window in self.desk.windows(process.pid) if window[0] not in known)

    def is_closed(self, process):
        return len(self.desk.windows(process.pid)) == len(self.tile)

    def settings(self, kind):
        widgets = json.loads((self.desk.data / "widgets.json").read_text())["widgets"]
        return next(w["kind"][kind]["_0"] for w in widgets if kind in w["kind"])

    def clipboard(self):
        return subprocess.run(["timeout", "2", "xclip", "-selection", "clipboard", "-o"],
                              env=self.desk.env, capture_output=True, text=True,
                              check=False).stdout

    def test_converter(self):
        process = self.place("converter", "Units")
        before = self.desk.pixels(self.tile[0])
        self.open(process)
        # By keyboard: the value has the focus, its text is selected, Return copies.
        self.desk.run("xdotool", "type", "26.2")
        self.desk.key("Return")
        wait_for(lambda: self.clipboard() == "16.2799252366", "the result to be copied")
        wait_for(lambda: self.settings("converter")["value"] == 26.2, "the value to be saved")
        self.assertNotEqual(self.desk.pixels(self.tile[0]), before)
        # From outside, while it is open.
        self.tavrin("widgets", "set", "Units", "category=mass", "from=kg", "to=g", "value=2")
        self.desk.key("Return")
        wait_for(lambda: (self.desk.key("Return"), self.clipboard())[1] == "2000", "the other pair")
        self.desk.key("Escape")
        wait_for(lambda: self.is_closed(process), "Escape")
        # By mouse: the button on the wide tile changes the units' places.
        _, x, y, width, height = max(self.tile, key=lambda window: window[3])
        self.desk.click(x + width - height * 0.42, y + height / 2)
        wait_for(lambda: self.settings("converter")["from"] == "g", "the tile's button")

    @unittest.skipUnless(os.path.exists("/usr/share/unicode/emoji/emoji-test.txt"),
                         "unicode-data is not installed")
    def test_emoji(self):
        process = self.place("emoji", "Faces")
        self.open(process)
        self.desk.run("xdotool", "type", "fox")
        # The table is read in the background: until it is there Return finds nothing.
        wait_for(lambda: (self.desk.key("Return"), self.is_closed(process))[1], "a pick", pause=0.2)
        self.assertEqual(self.clipboard(), "🦊")
        recents = json.loads((self.desk.data / "emoji.json").read_text())["recents"]
        self.assertEqual(recents[0]["emoji"], "🦊")
        # The first on the wide tile is the one used last; a click copies another one.
        _, x, y, width, height = max(self.tile, key=lambda window: window[3])
        self.desk.click(x + width * 0.5, y + height / 2)
        wait_for(lambda: self.clipboard() not in ("", "🦊"), "a pick on the tile")
        # The tone from outside, while it is open.
        self.open(process)
        self.tavrin("widgets", "set", "Faces", "skinTone=dark")
        self.desk.run("xdotool", "type", "waving hand")
        wait_for(lambda: (self.desk.key("Return"), self.is_closed(process))[1], "a pick", pause=0.2)
        wait_for(lambda: self.clipboard() == "👋🏿", "the hand in the tone")

    def test_bookmarks(self):
        process = self.place("bookmarks", "Links", "showsIcons=false", "fetchesNames=false")
        self.open(process)
        self.desk.run("xdotool", "type", "example.com/a")
        self.desk.key("Return")
        wait_for(lambda: self.settings("bookmarks")["bookmarks"], "the link to be added")
        self.desk.run("xdotool", "type", "exam")
        self.desk.key("Return")
        wait_for(lambda: self.opened.exists(), "the link to be opened")
        self.assertEqual(self.opened.read_text(), "https://example.com/a\n")
        wait_for(lambda: self.is_closed(process), "the panel to make way")
        # By mouse, on the wide tile.
        _, x, y, _, height = max(self.tile, key=lambda window: window[3])
        self.desk.click(x + height * 0.5, y + height / 2)
        wait_for(lambda: self.opened.read_text().count("\n") == 2, "the tile's link")
        # From outside, while it is open.
        self.open(process)
        small = self.panel(process)[4]
        settings = {"bookmarks": [{"url": f"https://site{i}.example"} for i in range(8)],
                    "showsIcons": False}
        widgets = json.loads((self.desk.data / "widgets.json").read_text())["widgets"]
        widgets[0]["kind"] = {"bookmarks": {"_0": settings}}
        self.desk.write_widgets(widgets)
        wait_for(lambda: self.panel(process)[4] > small + 100, "the panel to grow")
        grown = self.panel(process)[4]
        self.desk.run("xdotool", "type", "site3")
        self.assertEqual(self.panel(process)[4], grown, "nothing jumps while one searches")
        self.desk.key("Return")
        wait_for(lambda: "site3" in self.opened.read_text(), "what was found to be opened")

    def shows(self, colour, window):
        return self.desk.pixels(window).count(bytes.fromhex(colour)) > 10

    def test_pet(self):
        self.desk.env["TZ"] = "UTC"
        process = self.place("pet", "Minka", "sleepsAtNight=false")
        tile = self.tile[0]
        seen = set()
        wait_for(lambda: (seen.add(self.desk.pixels(tile)), len(seen) > 3)[1], "the pet to move", 30)
        # By mouse: a click strokes it, and opens the panel.
        _, x, y, width, height = tile
        heart = "ff4d6d"
        self.desk.click(x + width / 2, y + height / 2)
        wait_for(lambda: self.shows(heart, tile), "the pet to be happy")
        wait_for(lambda: not self.is_closed(process), "the panel")
        wait_for(lambda: not self.shows(heart, tile), "its joy to pass")
        # By keyboard: the panel's button has the focus.
        self.desk.key("Return")
        wait_for(lambda: self.shows(heart, tile), "the pet to be happy again")
        # From outside, while it is open.
        shell = "c79a55"
        self.assertFalse(self.shows(shell, tile))
        self.tavrin("widgets", "set", "Minka", "species=turtle")
        wait_for(lambda: self.shows(shell, tile), "another animal on the tile")
        wait_for(lambda: self.shows(shell, self.panel(process)), "and in the panel")
        self.desk.key("Escape")
        wait_for(lambda: self.is_closed(process), "Escape")
        self.assertIsNone(process.poll())


if __name__ == "__main__":
    unittest.main()
