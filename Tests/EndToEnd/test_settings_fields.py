"""Every setting of every kind in the settings window by keys alone: found by its title and role as
assistive technology is told them, set, and read back from the file."""

import json
import subprocess
import time
import unittest

from desks.access_tree import start_accessibility
from rig import BUILD, Desk, DeskTest, wait_for, widget
from desks.settings_window import COMMAND, SettingsTest, Window, end_slots, stored

# What a line of text takes, by the setting's key; the value stored need not be the words.
WORDS = {"presets": "7m", "tintHex": "#102030", "colorHex": "#102030", "text": "Milk",
         "title": "Do it", "command": "true", "workingFolder": "/tmp", "repositories": "ann/paper",
         "folder": "/tmp", "folders": "/tmp", "paths": "/etc/hostname", "value": "3"}
# Set together with another one, by one control; no control of their own; nothing to choose from on
# a desk without calendars, players and a network.
COVERED = {"latitude", "longitude"}
HIDDEN = {"seenUntil"}
NOTHING_THERE = {"calendars", "listID", "player", "interface", "cityName", "desktopAction"}
# What adds to a list is named by what it adds.
ADDS = {"Add app…": "apps", "Add bookmark": "bookmarks", "Add folder": "folders",
        "Add preset": "presets", "Add repository": "repositories", "Add file": "paths"}


class EveryField(DeskTest):
    def setUp(self):
        self.desk = Desk(screens=("1280x900",))
        self.addCleanup(self.desk.close)
        self.addCleanup(end_slots, self.desk)
        self.desk.env["TAVRIN_BUNDLES"] = str(BUILD / "none")
        applications = self.desk.home / "share" / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        (applications / "editor.desktop").write_text(
            "[Desktop Entry]\nType=Application\nName=Editor\nExec=true\nActions=new;\n"
            "[Desktop Action new]\nName=New\nExec=true\n")
        start_accessibility(self.desk)

    def command(self, *words):
        return self.desk.run(str(COMMAND), *words)

    def settings(self, name):
        kind = next(entry for entry in stored(self.desk) if entry["name"] == name)["kind"]
        record = next(iter(kind.values()))
        return record.get("_0", record)

    def act(self, name, field, stop):
        """Presses what sets the control that has the keyboard. False where it is none that sets."""
        key, role, words = self.desk.key, stop["role"], WORDS.get(field["key"])
        if role == "check box":
            key("space")
        elif role in ("radio button", "combo box", "spin button"):
            # The first or the last of them may be chosen already.
            back, on = ("Left", "Right") if role == "radio button" else ("Down", "Up")
            before = self.settings(name).get(field["key"])
            key(on)
            if not self.changes(name, field, before, 1):
                key(back)
        elif role in ("text", "entry"):
            if field["type"] == "date":
                key("Up")
            elif words:
                key("ctrl+a")
                self.desk.run("xdotool", "type", words)
                key("Return")
            else:
                return False
        elif role in ("push button", "button"):
            key("space")
            if field["key"] == "hotkey":
                key("ctrl+alt+k")
            elif field["key"] == "bookmarks":
                # What is added is kept with its first valid address.
                self.await_stop("Title")
                key("Tab")
                self.await_stop("Address")
                self.desk.run("xdotool", "type", "https://tavrin.example")
                key("Return")
            elif field["type"] != "list" or field["key"] == "apps":
                self.await_choices(field)
                if not field.get("choices"):
                    key("Down", "Down", "Return")
                    return True
                before = self.settings(name).get(field["key"])
                key("Down", "Return")
                # The last of them may be chosen already.
                if not self.changes(name, field, before, 1):
                    key("Up")
                    self.await_choices(field)
                    key("Home", "Return")
        else:
            return False
        return True

    def await_choices(self, field):
        wait_for(lambda: any(entry["role"] in ("list item", "table cell", "icon")
                             for entry in self.window.tree()), f"choices of {field['key']}")

    def await_stop(self, name):
        wait_for(lambda: (self.window.focused() or {}).get("name") == name, f"the keyboard at {name}")

    def changes(self, name, field, before, seconds):
        try:
            return wait_for(lambda: self.settings(name).get(field["key"]) != before, "", seconds)
        except AssertionError:
            return False

    def set_all(self, kind, name):
        """The titles of the settings that could not be set."""
        fields = {field["title"]: field for field in kind["fields"]
                  if field["key"] not in COVERED | HIDDEN | NOTHING_THERE}
        keys = {field["key"]: field for field in fields.values()}
        left, seen, last = dict(fields), [], None
        for _ in range(80):
            if not left:
                break
            self.desk.key("Tab")
            # The keyboard has arrived when it is elsewhere.
            deadline = time.monotonic() + 2
            stop = self.window.focused()
            while time.monotonic() < deadline and (stop is None or stop["extents"] == last):
                stop = self.window.focused()
            if stop is None:
                continue
            last = stop["extents"]
            seen.append((stop["role"], stop["name"], stop["within"], stop["label"]))
            self.assertTrue(stop["name"], f"{name}: the keyboard is where nothing says what it is: "
                                          f"{stop}")
            field = (keys.get(ADDS.get(stop["name"])) or left.get(stop["label"])
                     or left.get(stop["name"]) or left.get(stop["within"]))
            if field is None or field["title"] not in left:
                continue
            before = self.settings(name).get(field["key"])
            if not self.act(name, field, stop):
                continue
            if self.changes(name, field, before, 8):
                del left[field["title"]]
        return {title: [entry for entry in seen if title in entry] for title in left}

    maxDiff = None

    def test_is_set_by_keys_and_stored(self):
        kinds = [json.loads(self.command("widgets", "kinds", kind["key"], "--json"))
                 for kind in json.loads(self.command("widgets", "kinds", "--json"))]
        self.assertEqual(len(kinds), 31)
        for kind in kinds:
            self.command("widgets", "add", kind["key"], f"My {kind['key']}")
        self.window = Window(self.desk)
        unset = {}
        for kind in kinds:
            name = f"My {kind['key']}"
            self.command("settings", name)
            self.window.await_name("All Widgets")
            wait_for(lambda: any(entry["name"] == name and entry["role"] in ("label", "heading")
                                 for entry in self.window.tree()), f"the page of {name}")
            self.window.focus("All Widgets")
            left = self.set_all(kind, name)
            if left:
                unset[name] = left
        self.assertEqual(unset, {})


class BadValues(SettingsTest):
    def sentence(self, name, key, title, value):
        """What the command says of the value, as a form does."""
        told = subprocess.run([str(COMMAND), "widgets", "set", name, f"{key}={value}"],
                              env=self.desk.env, capture_output=True, text=True).stderr
        words = told.splitlines()[0].removeprefix("tavrin: ").replace(f'"{key}"', f"“{title}”")
        return words[0].upper() + words[1:]

    def test_are_told_in_the_window_in_the_commands_words(self):
        self.desk.write_widgets([
            widget("timer", {}, None, name="Tea"), widget("screenshots", {}, None, name="Shots"),
            widget("clock", {"timeZoneID": "Mars/Olympus"}, None, name="There")], announce=False)
        window = Window(self.desk)
        told = lambda words: any(words in entry["name"] for entry in window.tree())
        for name, kind, key, value, is_taken in (
                ("Tea", "timer", "tintHex", "purple", False),
                ("Shots", "screenshots", "folder", "/nowhere", True)):
            fields = json.loads(self.desk.run(str(COMMAND), "widgets", "kinds", kind, "--json"))
            title = next(each["title"] for each in fields["fields"] if each["key"] == key)
            window.press(name)
            window.await_name("All Widgets")
            window.type_text(title, value, "text")
            wait_for(lambda: told(f"“{value}") or told(f'"{value}'), f"a word on {value}")
            self.assertEqual(self.settings(name).get(key) == value, is_taken)
            words = self.sentence(name, key, title, value)
            wait_for(lambda: told(words), words)
            window.press("All Widgets")
        window.press("There")
        wait_for(lambda: told("Mars/Olympus"), "the zone that there is not")
        window.close()


if __name__ == "__main__":
    unittest.main()
