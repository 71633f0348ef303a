"""Dock layouts in the settings window, by a person's means, and what follows their shortcuts."""

import base64
import json
import plistlib
import unittest

from rig import wait_for
from desks.settings_window import COMMAND, SettingsTest, Window


class DockLayouts(SettingsTest):
    def show(self, *names):
        """What is in the Dock's preferences."""
        self.preferences.parent.mkdir(parents=True, exist_ok=True)
        tiles = [{"tile-type": "file-tile", "tile-data": {
            "file-label": name, "file-data": {"_CFURLString": f"file:///Applications/{name}.app/",
                                              "_CFURLStringType": 15}}} for name in names]
        temporary = self.preferences.with_suffix(".new")
        temporary.write_bytes(plistlib.dumps({"persistent-apps": tiles, "persistent-others": []}))
        temporary.rename(self.preferences)

    def shown(self):
        tiles = plistlib.loads(self.preferences.read_bytes())["persistent-apps"]
        return [tile["tile-data"]["file-label"] for tile in tiles]

    def test_without_a_dock_it_follows_the_file_and_writes_it(self):
        self.preferences = self.desk.home / "Library" / "Preferences" / "com.apple.dock.plist"
        self.show("Mail", "Notes")
        window = Window(self.desk)
        window.press("Dock Layouts", "radio button")
        window.press("New from the Dock")
        window.await_name("It is what is written already.")
        self.show("Mail")
        window.await_name("Writing it adds Notes.")
        window.press("Add…")
        window.await_focus("Application, path or address", "text")
        self.desk.run("xdotool", "type", "x://a/b")
        self.desk.key("Return")
        window.await_name("Writing it adds Notes and x://a/b.")
        window.press("Undo Add an Item to Layout")
        window.await_name("Writing it adds Notes.")
        self.assertTrue(any("No Dock runs on this computer" in entry["name"]
                            for entry in window.tree()))
        window.press("Write")
        wait_for(lambda: self.shown() == ["Mail", "Notes"], "the layout in the file")
        window.await_name("It is what is written already.")
        self.assertFalse(any("killall" in entry["name"] for entry in window.tree()))
        window.press("Undo Apply Layout")
        wait_for(lambda: self.shown() == ["Mail"], "the file as it was")
        # Layouts that others make are there too.
        self.desk.run(str(COMMAND), "profiles", "rename", "Layout", "Work")
        window.await_name("Work")
        # The Dock itself has a place beside them.
        window.press("The Dock Now")
        window.await_name("No Dock runs; this is written for one that starts. "
                          "No layout keeps these items.")
        self.assertIsNone(window.find("Notes", "push button"))
        self.show("Mail", "Notes")
        window.await_name("Notes", "push button")
        window.await_name("No Dock runs; this is written for one that starts. Kept by Work.")
        window.press("Widgets", "radio button")
        window.await_name("Search widgets")
        wait_for(lambda: window.astray() == [], "the rows of the page that was left to be hidden")
        window.close()

    def layout(self):
        return json.loads((self.desk.data / "profiles.json").read_text())["profiles"][0]

    def items(self):
        names = [next(iter(item.values()))["_0"] for item in self.layout()["items"]]
        return [name if isinstance(name, str) else name.get("displayName", name.get("path"))
                for name in names]

    def others(self):
        return [next(iter(item.values()))["_0"] for item in self.layout()["others"]]

    def open_layout(self):
        self.preferences = self.desk.home / "Library" / "Preferences" / "com.apple.dock.plist"
        (self.desk.home / "Loads").mkdir()
        self.show("Mail", "Notes", "Music")
        self.desk.run(str(COMMAND), "dock", "add", str(self.desk.home / "Loads"), "--no-restart")
        window = Window(self.desk)
        window.press("Dock Layouts", "radio button")
        window.press("New from the Dock")
        window.await_name("It is what is written already.")
        return window

    def test_items_are_set_by_the_accessibility_tree_alone(self):
        window = self.open_layout()
        window.press("Mail")
        window.type_text("Item's name", "Post", "text")
        wait_for(lambda: self.items() == ["Post", "Notes", "Music"], "the name")
        window.press("Move Right")
        wait_for(lambda: self.items() == ["Notes", "Post", "Music"], "the place")
        window.press("Loads")
        for choice in ("Fan", "Added", "Folder"):
            window.press(choice, "radio button")
        options = lambda: plistlib.loads(base64.b64decode(self.others()[0]["tile"]))["tile-data"]
        wait_for(lambda: [options()[key] for key in ("showas", "arrangement", "displayas")]
                 == [1, 2, 1], "how the folder looks")
        window.press("Write")
        wait_for(lambda: self.shown() == ["Notes", "Post", "Music"], "the names in the file")
        tile = plistlib.loads(self.preferences.read_bytes())["persistent-others"][0]["tile-data"]
        self.assertEqual((tile["showas"], tile["arrangement"], tile["displayas"]), (1, 2, 1))
        window.press("Notes")
        window.press("Remove")
        wait_for(lambda: self.items() == ["Post", "Music"], "it gone")
        window.press("Undo Remove an Item from Layout")
        wait_for(lambda: self.items() == ["Notes", "Post", "Music"], "it back")
        window.close()

    def test_items_are_moved_and_set_by_keys_and_by_the_mouse(self):
        window = self.open_layout()
        key = self.desk.key
        window.await_keyboard()
        window.focus("Mail")
        key("ctrl+Right")
        wait_for(lambda: self.items() == ["Notes", "Mail", "Music"], "one place")
        window.await_focus("Mail")
        key("End")
        window.await_focus("Loads")
        key("m")
        window.await_focus("Mail")
        key("Return")
        window.await_focus("Item's name", "text")
        key("ctrl+a")
        self.desk.run("xdotool", "type", "Post")
        key("Return")
        window.await_focus("Post")
        self.assertEqual(self.items(), ["Notes", "Post", "Music"])
        # Over the divider, and a spacer of each width before the end.
        x, y = window.centre("Loads")
        window.drag(window.centre("Music"), (x + 30, y))
        wait_for(lambda: self.items() == ["Notes", "Post"], "it on the other side")
        self.assertEqual([other["displayName"] for other in self.others()], ["Loads", "Music"])
        for words, spacer in (("small", "small-spacer-tile"), ("flex", "flex-spacer-tile")):
            window.click("Add…")
            window.await_focus("Application, path or address", "text")
            self.desk.run("xdotool", "type", words)
            wait_for(lambda: len([entry for entry in window.tree()
                                  if entry["role"] == "list item" and "spacer" in entry["name"]])
                     == 1, "the spacer alone")
            key("Return")
            wait_for(lambda: self.items()[-1] == spacer, spacer)
        window.click("Small spacer")
        window.click("Stretches", "radio button")
        wait_for(lambda: self.items()[2:] == ["flex-spacer-tile"] * 2, "its width")
        key("Escape")
        # By its path, whether it is there or not.
        window.click("Add…")
        window.await_focus("Application, path or address", "text")
        self.desk.run("xdotool", "type", str(self.desk.home / "Loads") + "/gone.txt")
        window.await_name(f"{self.desk.home}/Loads/gone.txt, It is not on this computer",
                          "list item")
        key("Return")
        wait_for(lambda: self.others()[-1]["path"].endswith("gone.txt"), "a file by its path")
        window.close()


class Following(SettingsTest):
    """A layout that follows Focus in the window does so until it is told otherwise."""

    def follower(self):
        names = self.desk.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                              "--object-path", "/", "--method", "org.freedesktop.DBus.ListNames")
        found = [name.strip(" '") for name in names.strip("()[],\n").split(",")
                 if "dev.quellby.Tavrin.Focus" in name]
        return self.owner(found[0].strip("[]() '")) if found else None

    def test_it_begins_in_the_window_and_comes_back_with_tavrin_start(self):
        self.addCleanup(self.desk.run, str(COMMAND), "stop", check=False)
        self.desk.run(str(COMMAND), "profiles", "create", "Calm", "--empty")
        window = Window(self.desk)
        window.press("Dock Layouts", "radio button")
        window.press("When it begins", "radio button")
        first = wait_for(self.follower, "what follows")
        window.await_name("Followed until you log out: Tavrin does not start with the session.")
        window.press("Start It With the Session")
        window.await_name("Followed now and whenever you log in.")
        window.close()
        self.assertEqual(self.follower(), first, "it outlives the window")
        self.desk.run(str(COMMAND), "stop")
        wait_for(lambda: self.follower() is None, "its end")
        # As the session does; there is no widget beside it.
        self.desk.run(str(COMMAND), "start")
        second = wait_for(self.follower, "what follows again")
        self.desk.run(str(COMMAND), "start")
        self.assertEqual(self.follower(), second)
        # It ends with its display, though the bus goes on.
        self.desk.server.kill()
        self.desk.server.wait()
        wait_for(lambda: self.follower() is None, "its end with the display")


if __name__ == "__main__":
    unittest.main()
