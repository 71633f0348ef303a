"""Panels by keyboard alone, and what assistive technology is told."""

import json
import subprocess
import unittest

from desks.access_tree import AccessTree, start_accessibility
from rig import Desk, DeskTest, wait_for, widget

WIDGETS = [
    ("pomodoro", {}, "Deep work"), ("timer", {}, "Tea"), ("clock", {}, "Here"),
    ("stopwatch", {}, "Laps"), ("note", {"text": "Milk"}, "List"),
    ("countdown", {"target": 900000000, "countsUpAfter": False}, "Launch"),
    ("timeProgress", {"scope": "week"}, "My week"),
]
POMODORO, TIMER, CLOCK, STOPWATCH, NOTE, COUNTDOWN, PROGRESS = range(1, 8)


class Keyboard(DeskTest):
    def setUp(self):
        self.desk = Desk()
        self.addCleanup(self.desk.close)
        start_accessibility(self.desk)
        self.access = AccessTree(self.desk)
        self.desk.write_widgets(
            [widget(kind, settings, slot, name=name)
             for slot, (kind, settings, name) in enumerate(WIDGETS, start=1)], announce=False)

    def start(self, slot):
        """The slot with its panel open and focused."""
        self.slot = slot
        process = self.desk.start_slot(slot, "--background")
        self.desk.wait_for_name(slot)
        tile = wait_for(lambda: self.desk.windows(process.pid), "the tile")
        self.desk.toggle(slot)
        wait_for(lambda: len(self.desk.windows(process.pid)) > len(tile), "the panel")
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", "getwindowpid",
                                       check=False).strip() == str(process.pid), "the focus")
        return process

    def is_open(self, process):
        return len(self.desk.windows(process.pid)) > 1

    def tree(self, process):
        return [(node["role"], node["name"], node["focused"], node["focusable"],
                 len(node["actions"])) for node in self.access.nodes(process.pid)]

    def focused(self, process):
        return next((name for _, name, focused, _, _ in self.tree(process) if focused), None)

    def tab_order(self, process, key="Tab", most=24):
        """The names that Tab goes through until it comes round."""
        names = []
        for _ in range(most):
            self.desk.key(key)
            before = names[-1] if names else None
            name = wait_for(lambda: (lambda now: now if now != before else None)(
                self.focused(process)), "the focus to move")
            if name in names:
                break
            names.append(name)
        return names

    def stored(self, key):
        value = self.desk.defaults(self.slot).get(key)
        return json.loads(value) if isinstance(value, str) else value

    def test_tab_goes_through_every_control_and_back(self):
        for slot, wanted in (
                (POMODORO, {"Start", "Skip", "Edit Pomodoro…"}),
                (TIMER, {"5m", "45m", "Start", "Edit Timer…"}),
                (CLOCK, {"Edit Clock…"}), (STOPWATCH, {"Start", "Edit Stopwatch…"}),
                (NOTE, {"Note", "Edit Note…"}), (COUNTDOWN, {"Edit Countdown…"}),
                (PROGRESS, {"Edit Time Progress…"})):
            with self.subTest(kind=WIDGETS[slot - 1][0]):
                process = self.start(slot)
                if len(wanted) > 1 and slot != NOTE:
                    there = self.tab_order(process)
                    self.assertLessEqual(wanted, set(there))
                    self.assertEqual(len(there), len(set(there)))
                    back = self.tab_order(process, "shift+Tab")
                    self.assertEqual(set(back), set(there))
                else:
                    names = {name for _, name, _, focusable, _ in self.tree(process) if focusable}
                    self.assertLessEqual(wanted, names)
                self.desk.key("Escape")
                wait_for(lambda: not self.is_open(process), "Escape to close the panel")

    def test_every_control_has_a_name_and_the_panel_its_title(self):
        for slot, (kind, _, name) in enumerate(WIDGETS, start=1):
            with self.subTest(kind=kind):
                process = self.start(slot)
                tree = wait_for(lambda p=process: self.tree(p), "the program on the bus")
                for role, label, _, focusable, _ in tree:
                    if focusable and role not in ("application", "filler", "frame", "window"):
                        self.assertTrue(label, f"a {role} without a name in {tree}")
                self.assertIn(name, [label for _, label, _, _, _ in tree], "the panel's title")
                self.desk.key("Escape")
                wait_for(lambda p=process: not self.is_open(p), "Escape")

    def test_return_and_space_press_what_has_the_focus(self):
        process = self.start(POMODORO)
        for key in ("space", "Return"):
            while self.focused(process) not in ("Start", "Pause", "Resume"):
                self.desk.key("Tab")
            before = self.focused(process)
            self.desk.key(key)
            wait_for(lambda: self.focused(process) not in (before, None), f"{key} to press")
            self.assertTrue(self.is_open(process))
        self.assertEqual(self.focused(process), "Resume")

    def test_the_focus_ring_is_seen_when_tab_moves(self):
        process = self.start(STOPWATCH)

        def picture(name):
            path = self.desk.home / name
            self.desk.screenshot(path)
            return path

        # A picture taken too early would be that of where two more steps lead round to.
        before = wait_for(lambda: self.focused(process), "the focus of a control")
        self.desk.key("Tab")
        wait_for(lambda: self.focused(process) not in (before, None), "the focus to move")
        first = picture("first.png")
        self.desk.key("Tab")

        def differing():
            result = subprocess.run(["compare", "-metric", "AE", str(first), str(picture("second.png")),
                                     "null:"], capture_output=True, text=True)
            return float(result.stderr.split()[0])

        wait_for(lambda: differing() > 200, "a ring that moves")
        self.assertTrue(self.is_open(process))

    def test_a_note_takes_typing_at_once(self):
        process = self.start(NOTE)
        self.desk.run("xdotool", "type", "and bread ")
        self.desk.key("Escape")
        wait_for(lambda: not self.is_open(process), "Escape to close the panel")
        wait_for(lambda: "and bread" in (self.desk.data / "widgets.json").read_text(),
                 "the note to be saved")


if __name__ == "__main__":
    unittest.main()
