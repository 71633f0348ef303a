"""A widget of any kind on a desk: placed, opened, and read as assistive technology reads it."""

import json
import subprocess
import unittest

from desks.access_tree import AccessTree, start_accessibility
from rig import BUILD, BUNDLES, Desk, wait_for

TAVRIN = str(BUILD / "bin" / "tavrin")
MAGENTA = (250, 0, 250)


class KindTest(unittest.TestCase):
    def setUp(self):
        self.desk = Desk()
        self.addCleanup(self.desk.close)
        start_accessibility(self.desk)
        self.tree = AccessTree(self.desk)
        self.addCleanup(self.tree.close)
        self.desk.env["TAVRIN_BUNDLES"] = str(BUNDLES)

    # Of a widget

    def tavrin(self, *words):
        return self.desk.run(TAVRIN, *words)

    def place(self, kind, *settings, span=1):
        words = [word for setting in settings for word in ("--set", setting)]
        self.tavrin("widgets", "add", kind, "Mine", "--place", "--span", str(span), *words)
        self.slot = self.desk.start_slot(1)
        self.desk.wait_for_name(1)
        self.tile = wait_for(lambda: self.desk.windows(self.slot.pid), "the tile")[0]

    def settings(self):
        widget = json.loads((self.desk.data / "widgets.json").read_text())["widgets"][0]
        payload = next(iter(widget["kind"].values()))
        return payload.get("_0", payload)

    def panel_window(self):
        return next((w for w in self.desk.windows(self.slot.pid) if w[0] != self.tile[0]), None)

    def open(self):
        """By a click on the tile; the keyboard is the panel's."""
        _, x, y, _, height = self.tile
        self.desk.click(x + height / 2, y + height / 2)
        wait_for(self.panel_window, "the panel")
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", "getwindowpid",
                                       check=False).strip() == str(self.slot.pid), "the focus")
        wait_for(lambda: self.tree.panel(self.slot.pid), "the panel's words")

    def close(self):
        self.desk.key("Escape")
        wait_for(lambda: not self.panel_window(), "Escape to close the panel")

    def nodes(self):
        return self.tree.panel(self.slot.pid)

    def words(self):
        return [word for node in self.nodes() for word in (node["name"], node["description"]) if word]

    def says(self, part):
        return any(part in word for word in self.words())

    def tile_words(self):
        node = next((each for each in self.tree.nodes(self.slot.pid)
                     if each["role"] == "push button" and each["depth"] == 1), None)
        return node["description"] if node else ""

    def box(self, name, role=""):
        return next((node["extents"] for node in self.nodes()
                     if node["name"] == name and role in ("", node["role"])), None)

    def click_on(self, name, role=""):
        x, y, width, height = wait_for(lambda: self.box(name, role), name)
        self.desk.click(x + width // 2, y + height // 2)

    def retype(self, words):
        self.desk.key("ctrl+a")
        self.desk.run("xdotool", "type", "--delay", "15", words)

    def focused(self):
        # The toolkit calls a list's current row focused wherever the focus is.
        return next(((node["role"], node["name"]) for node in self.nodes()
                     if node["focused"] and node["role"] not in ("list item", "table cell")), None)

    def tab_to(self, role):
        for _ in range(20):
            before = wait_for(self.focused, "the focus")
            if before[0] == role:
                return
            self.desk.key("Tab")
            wait_for(lambda: self.focused() not in (None, before), "Tab to move")
        self.fail(f"no {role} by Tab")

    def clipboard(self):
        return subprocess.run(["timeout", "2", "xclip", "-selection", "clipboard", "-o"],
                              env=self.desk.env, capture_output=True, text=True,
                              check=False).stdout

    def count(self, colour, window):
        raw = self.desk.pixels(window)
        return sum(raw[i:i + 3] == bytes(colour) for i in range(0, len(raw) - 2, 3))

    def picture(self, path, colour=MAGENTA):
        self.desk.run("convert", "-size", "100x100", "xc:rgb(%d,%d,%d)" % colour, str(path))
        return path
