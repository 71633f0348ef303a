"""Every kind's tile and panel as assistive technology and the keyboard alone find them."""

import unittest

from desks.access_tree import AccessTree, follow_focus, start_accessibility
from desks.panel_probe import KINDS, SLOT, place, start, stop
from rig import BUILD, Desk, wait_for

# What one acts on, and must have a name.
CONTROLS = {"push button", "check box", "radio button", "toggle button", "combo box", "slider",
            "spin button", "text", "entry", "list", "list item", "table", "link", "menu item"}
# What is told by a number.
NUMBERS = {"slider", "spin button"}
# What is pressed.
PRESSED = {"push button", "check box", "radio button", "toggle button"}


class Access(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desk = Desk()
        cls.addClassCleanup(cls.desk.close)
        start_accessibility(cls.desk)
        cls.tree = AccessTree(cls.desk)
        cls.addClassCleanup(cls.tree.close)

    def open(self, process):
        self.desk.toggle(SLOT)
        wait_for(lambda: self.tree.panel(process.pid), "the panel on the bus")
        wait_for(lambda: self.focused(process) is not None, "the focus")

    def focused(self, process):
        held = [node for node in self.tree.panel(process.pid) if node["focused"]]
        # A list has it with its current row.
        for node in held:
            if node["role"] == "list item":
                self.assertEqual(held[0]["role"], "list", f"a row has the focus beside {held[0]}")
        return next((self.key(node) for node in held if node["role"] != "list item"), None)

    @staticmethod
    def key(node):
        return node["role"], node["name"], tuple(node["extents"] or ())

    def test_every_kind(self):
        for kind in KINDS:
            with self.subTest(kind=kind):
                name = f"My {kind}"
                place(self.desk, kind, name)
                process = start(self.desk)
                try:
                    self.open(process)
                    self.check_tile(process, name)
                    self.check_panel(self.tree.panel(process.pid), name)
                    self.check_keyboard(process)
                finally:
                    stop(process)

    def check_tile(self, process, name):
        tile = next((node for node in self.tree.nodes(process.pid)
                     if node["role"] == "push button" and node["depth"] == 1), None)
        self.assertIsNotNone(tile, "no tile on the bus")
        self.assertEqual(tile["name"], name)
        self.assertNotEqual(tile["description"], name)
        self.assertTrue(tile["actions"])
        for node in self.tree.nodes(process.pid):
            if node["role"] == "push button" and node["depth"] == 2:
                self.assertTrue(node["name"] and node["actions"], f"a button of the tile: {node}")

    def test_the_tile_with_the_keyboard_has_the_focus(self):
        place(self.desk, "timer", "Tea")
        process = start(self.desk)
        self.addCleanup(stop, process)

        def tile():
            return next((node for node in self.tree.nodes(process.pid)
                         if node["role"] == "push button" and node["depth"] == 1), {})
        wait_for(lambda: tile().get("focusable"), "a tile that takes the focus")
        self.assertFalse(tile()["focused"])
        self.desk.run(str(BUILD / "bin" / "tavrin"), "strip", "Tea")
        wait_for(lambda: tile()["focused"], "the focus at the tile")
        self.desk.key("Escape")
        wait_for(lambda: not tile()["focused"], "the focus elsewhere")

    def test_a_list_that_gets_the_keyboard_tells_its_row(self):
        told = self.desk.home / "focus.log"
        follow_focus(self.desk, told.name)
        wait_for(told.read_text, "the listener")
        place(self.desk, "emoji", "Faces")
        process = start(self.desk)
        self.addCleanup(stop, process)
        self.open(process)
        for _ in range(10):
            before = self.focused(process)
            if before[0] == "list":
                break
            self.desk.key("Tab")
            wait_for(lambda: self.focused(process) not in (None, before), "Tab to move")
        wait_for(lambda: told.read_text().splitlines()[-1] == "list item", "the row")

    def check_panel(self, panel, name):
        self.assertEqual(panel[0]["name"], name)
        for node in panel[1:]:
            what = f"{node['role']} {node['name']!r}"
            if node["role"] in CONTROLS and (node["focusable"] or node["actions"]):
                self.assertTrue(node["name"], f"a {what} without a name")
            if node["name"]:
                self.assertNotEqual(node["description"], node["name"], what)
            if node["focusable"]:
                self.assertNotEqual(node["role"], "image", f"{what} is no picture but a button")
            # The toolkit tells a choice's value as its name.
            if node["role"] == "combo box":
                self.assertTrue(node["label"], f"a {what} without a label")
            if node["role"] in NUMBERS:
                self.assertIsNotNone(node["value"], what)
            if node["role"] in PRESSED and node["enabled"]:
                self.assertTrue(node["actions"], what)
        choices = [node for node in panel if node["role"] == "radio button"]
        if choices:
            self.assertTrue(any(node["checked"] for node in choices), "nothing is chosen")

    def check_keyboard(self, process):
        """What can have the focus is reached by Tab; a list's rows, tabs and radio buttons by the
        arrows."""
        def wanted():
            return {self.key(node) for node in self.tree.panel(process.pid)
                    if node["focusable"] and node["enabled"] and node["role"] in CONTROLS
                    and node["role"] not in ("list item", "radio button")
                    and not node["name"].startswith("qt_")}
        seen = []
        for _ in range(40):
            now = wait_for(lambda: self.focused(process), "the focus")
            if now in seen:
                break
            seen.append(now)
            before = now
            self.desk.key("Tab")
            if len(wanted()) > 1:
                wait_for(lambda: self.focused(process) not in (None, before), "Tab to move")
        reached = {one[:2] for one in seen}
        self.assertLessEqual({one[:2] for one in wanted()}, reached, "not reached by Tab")


if __name__ == "__main__":
    unittest.main()
