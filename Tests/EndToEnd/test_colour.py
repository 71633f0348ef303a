"""The colour picker's slot: its shortcut, the desktop's portal, and the screen itself."""

import json
import pathlib
import time
import unittest

from rig import PATIENCE, DeskTest, wait_for, widget

TEMPLATE = pathlib.Path(__file__).resolve().parent.parent / "Support" / "screenshot_portal.py"
PORTAL = "org.freedesktop.portal.Desktop"
# C, with command and control.
SHORTCUT = {"keyCode": 8, "modifiers": 5}
KEYS = "ctrl+super+c"


class ColourTest(DeskTest):
    def start(self, portal=None):
        if portal is not None:
            self.portal = self.desk.spawn(
                ["/usr/bin/python3", "-m", "dbusmock", "--session", "--template", str(TEMPLATE),
                 "--parameters", json.dumps(portal)], log="portal.log")
            self.desk.run("gdbus", "wait", "--session", "--timeout", "10", PORTAL)
        self.desk.write_widgets([widget("colourPicker", {"hotkey": SHORTCUT}, 3, "Colours")],
                                announce=False)
        self.slot = self.desk.start_slot(3)
        self.desk.wait_for_name(3)
        self.tiles = wait_for(lambda: self.desk.windows(self.slot.pid), "the tile")

    def colours(self):
        file = self.desk.data / "colours.json"
        if not file.exists():
            return []
        return [(each["red"], each["green"], each["blue"])
                for each in json.loads(file.read_text())["colours"]]

    def copied(self):
        return self.desk.run("timeout", "2", "xclip", "-selection", "clipboard", "-o", check=False)

    def press(self, keys=KEYS):
        self.desk.run("xdotool", "key", keys)

    def press_until(self, condition, what):
        """A shortcut comes to be in its own time; until then it does nothing."""
        def pressed():
            self.press()
            end = time.monotonic() + 1
            while not condition() and time.monotonic() < end:
                time.sleep(0.02)
            return condition()
        wait_for(pressed, what)

    def asked(self):
        """How often the portal was."""
        return (self.desk.home / "portal.log").read_text().count("PickColor")

    def magnifier(self):
        return len(self.desk.windows(self.slot.pid)) > len(self.tiles)

    def leave_magnifier(self):
        """It gets the keyboard once the shortcut lets go of it."""
        def left():
            self.press("Escape")
            return not self.magnifier()
        wait_for(left, "the magnifier to go", pause=0.1)

    def stop(self):
        self.kill(self.slot)
        self.portal.kill()
        self.portal.wait(PATIENCE)
        (self.desk.data / "colours.json").unlink(missing_ok=True)

    def test_the_shortcut_picks_through_the_portal(self):
        for manner in ({}, {"when": "early"}, {"path": "own"}):
            with self.subTest(**manner):
                self.start({"colour": [1.0, 0.5, 0.0], **manner})
                self.press_until(self.colours, "the colour")
                self.assertEqual(self.colours(), [(255, 128, 0)])
                wait_for(lambda: self.copied() == "#FF8000", "its copy", pause=0.1)
                self.stop()

    def test_what_the_portal_does_not_give_changes_nothing(self):
        for answer in ({"code": 1}, {"code": 2}, {"code": 0}):
            with self.subTest(**answer):
                self.start(answer)
                # That it asks again shows that it is done with the answer before.
                for count in (1, 2, 3):
                    self.press_until(lambda: self.asked() >= count, "the question")
                self.assertEqual(self.colours(), [])
                self.assertIsNone(self.slot.poll())
                self.stop()

    def test_without_a_portal_the_screen_itself_is_picked_from(self):
        self.start()
        self.desk.run("xdotool", "mousemove", "100", "100")
        self.press_until(self.magnifier, "the magnifier")
        self.leave_magnifier()
        self.assertEqual(self.colours(), [])
        # The keys go to the magnifier although the shortcut's were just held.
        self.desk.run("xdotool", "keydown", "ctrl", "keydown", "super", "keydown", "c")
        wait_for(self.magnifier, "the magnifier")
        self.desk.run("xdotool", "keyup", "c", "keyup", "super", "keyup", "ctrl")
        wait_for(lambda: self.press("Return") or self.colours(), "the colour", pause=0.1)
        self.assertEqual(len(self.colours()), 1)

    def test_a_taken_shortcut_is_said(self):
        self.desk.write_widgets([widget("colourPicker", {"hotkey": SHORTCUT}, 3, "One"),
                                 widget("colourPicker", {"hotkey": SHORTCUT}, 4, "Two")],
                                announce=False)
        self.slot = self.desk.start_slot(3)
        self.tiles = wait_for(lambda: self.desk.windows(self.slot.pid), "the tile")
        self.press_until(self.magnifier, "the magnifier")
        self.leave_magnifier()
        self.desk.start_slot(4)
        wait_for(lambda: "Failed to register the shortcut because the keys are taken"
                 in self.desk.log(4), "the refusal")
        self.assertNotIn("Failed", self.desk.log(3))


if __name__ == "__main__":
    unittest.main()
