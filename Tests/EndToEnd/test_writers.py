"""Forty commands of all sorts that write, all started at once, while three slots write too: what
each said is in the files afterwards."""

import json
import os
import plistlib
import shutil
import signal
import subprocess
import time
import unittest
import uuid

from rig import BUILD, BUNDLES, DeskTest, wait_for, widget

TAVRIN = str(BUILD / "bin" / "tavrin")
ROUNDS = int(os.environ.get("TAVRIN_WRITER_ROUNDS", "2"))
SHELVES = (1, 2)
DROPS = 10
POURS = 20
GLASS = 50


class Writers(DeskTest):
    display = False

    def setUp(self):
        super().setUp()
        self.desk.env |= {"QT_QPA_PLATFORM": "offscreen", "TAVRIN_SURFACE": "picture"}
        self.dock = self.desk.home / "Library" / "Preferences" / "com.apple.dock.plist"
        self.dock.parent.mkdir(parents=True)
        # The slots' own records stay as the slots make them.
        self.shelves = [str(uuid.uuid4()).upper() for _ in SHELVES]
        self.desk.write_widgets(
            [*(widget("shelf", {}, slot, f"Shelf {slot}", identifier=identifier)
               for slot, identifier in zip(SHELVES, self.shelves)),
             widget("water", {"glass": GLASS, "goal": 6000}, 3, "Water")], announce=False)

    def begin(self, *words):
        return words, subprocess.Popen([TAVRIN, *words], env=self.desk.env, text=True,
                                       stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                       stderr=subprocess.PIPE)

    def answers(self, begun):
        found = []
        for words, process in begun:
            output, errors = process.communicate(timeout=60)
            self.assertEqual(process.returncode, 0, (words, errors))
            found.append(output)
        return found

    def dock_adds(self, addresses):
        """A Dock that others keep for two seconds is refused: then it was not said to be done."""
        begun = [(address, *self.begin("dock", "add", address, "--no-restart"))
                 for address in addresses]

        def said():
            found = set()
            for address, words, process in begun:
                _, errors = process.communicate(timeout=60)
                if process.returncode == 0:
                    found.add(address)
                else:
                    self.assertIn("another process is changing it", errors, words)
            self.assertTrue(found)
            return found
        return said

    def widgets(self):
        document = json.loads((self.desk.data / "widgets.json").read_text())
        return {each["id"]: each for each in document["widgets"]}

    def profiles(self):
        return json.loads((self.desk.data / "profiles.json").read_text())["profiles"]

    def settings(self, identifier):
        return next(iter(self.widgets()[identifier]["kind"].values()))["_0"]

    def start_pours(self, start):
        bundle = self.desk.home / "Tavrin Slot 3.app"
        shutil.copytree(BUNDLES / bundle.name, bundle, ignore=shutil.ignore_patterns("MacOS"),
                        dirs_exist_ok=True)
        program = bundle / "Contents" / "MacOS" / "TavrinSlot"
        program.parent.mkdir(exist_ok=True)
        shutil.copy(BUILD / "Tests" / "Linux" / "WaterDouble", program)
        env = {"POURS": str(POURS), "SECONDS": "1.5", "START": str(start)}
        return self.desk.spawn([str(program)], log="slot3.log", env=env)

    def start_drops(self, slot, files):
        """One after another, as a hand drops them; the slot adds each to its shelf."""
        script = "\n".join(
            f"gdbus call --session --dest {self.desk.bundle_identifier(slot)} "
            f"--object-path /dev/quellby/Tavrin/Slot{slot} "
            f"--method org.freedesktop.Application.Open \"['{file.as_uri()}']\" '{{}}' || exit 1"
            for file in files)
        return f"drops on slot {slot}", subprocess.Popen(
            ["sh", "-c", script], env=self.desk.env, text=True, stdout=subprocess.PIPE,
            stderr=subprocess.PIPE)

    def files_to_drop(self, name):
        files = {slot: [self.desk.home / f"{name}-{slot}-{index}.txt" for index in range(DROPS)]
                 for slot in SHELVES}
        for file in sum(files.values(), []):
            file.write_text("x")
        return files

    def check_slots(self, files):
        """What the slots wrote while the commands did."""
        for slot, identifier in zip(SHELVES, self.shelves):
            wanted = {str(file) for file in files[slot]}
            wait_for(lambda: wanted <= set(self.settings(identifier)["paths"]),
                     f"all that was dropped on slot {slot}")
        water = json.loads((self.desk.data / "water.json").read_text())
        self.assertEqual(sum(day["millilitres"] for day in water["days"]), POURS * GLASS)

    def prepare(self):
        """Widgets that the commands of a round change."""
        slots = [each for each in self.widgets().values() if each.get("slot") in (*SHELVES, 3)]
        timers = [widget("timer", {}, None, f"Timer {index}") for index in range(18)]
        for timer in timers[:3]:
            timer["slot"] = 10 + timers.index(timer)
        self.desk.write_widgets([*slots, *timers])
        for name in ("profiles.json", "water.json"):
            (self.desk.data / name).unlink(missing_ok=True)
        self.dock.write_bytes(plistlib.dumps({}))
        self.answers([self.begin("profiles", "create", "--empty", "Old")])
        return timers

    def round(self, number):
        timers = self.prepare()
        names = [timer["name"] for timer in timers]
        files = self.files_to_drop(f"{number}")
        pourer = self.start_pours(time.time() + 0.8)
        drops = [self.start_drops(slot, files[slot]) for slot in SHELVES]
        made = [self.begin("widgets", "add", "clock", f"Clock {number}-{index}", "--json")
                for index in range(8)]
        others = [self.begin("widgets", "release", names[index]) for index in range(3)]
        others += [self.begin("widgets", "remove", "--yes", names[index]) for index in range(3, 6)]
        others += [self.begin("widgets", "rename", names[index], f"Named {index}")
                   for index in range(6, 9)]
        others += [self.begin("widgets", "set", names[index], f"presets={index}m")
                   for index in range(9, 12)]
        others += [self.begin("widgets", "set", names[12], words)
                   for words in ("presets=7m", "tintHex=#010203", "span=2")]
        others += [self.begin("widgets", "place", names[index]) for index in range(13, 16)]
        dock_adds = self.dock_adds([f"x://{number}/{index}" for index in range(8)])
        others += [self.begin("profiles", "create", "--empty", f"Profile {index}")
                   for index in range(5)]
        others += [self.begin("profiles", "rename", "Old", "New")]
        self.assertEqual(len(made) + len(others), 32)
        ids = [json.loads(text)["id"] for text in self.answers(made)]
        self.answers(others + drops)
        added = dock_adds()
        self.assertEqual(pourer.wait(30), 0, self.desk.log(3))

        widgets = self.widgets()
        for identifier in ids:
            self.assertIn(identifier, widgets)
        by_index = [widgets.get(timer["id"]) for timer in timers]
        self.assertEqual([by_index[index].get("slot") for index in range(3)], [None] * 3)
        self.assertEqual(by_index[3:6], [None] * 3)
        self.assertEqual([each["name"] for each in by_index[6:9]],
                         [f"Named {index}" for index in range(6, 9)])
        presets = [self.settings(timers[index]["id"])["presets"] for index in range(9, 12)]
        self.assertEqual(presets, [[60 * index] for index in range(9, 12)])
        settings = self.settings(timers[12]["id"])
        self.assertEqual((settings["presets"], settings["tintHex"], by_index[12]["span"]),
                         ([420], "#010203", 2))
        slots = [each["slot"] for each in widgets.values() if each.get("slot")]
        self.assertTrue(all(by_index[index].get("slot") for index in range(13, 16)))
        self.assertEqual(len(slots), len(set(slots)), "two widgets in one slot")
        dock = plistlib.loads(self.dock.read_bytes())["persistent-others"]
        self.assertLessEqual(added,
                             {tile["tile-data"]["url"]["_CFURLString"] for tile in dock})
        self.refused += 8 - len(added)
        self.assertEqual({each["name"] for each in self.profiles()},
                         {"New"} | {f"Profile {index}" for index in range(5)})
        self.check_slots(files)
        self.assertEqual([each for each in os.listdir(self.desk.data) if each.endswith(".lock")],
                         [])

    def start_slots(self):
        self.prepare()
        for slot in SHELVES:
            self.desk.start_slot(slot)
            self.desk.wait_for_name(slot)

    def rounds(self, what, play):
        self.start_slots()
        spent = []
        self.refused = 0
        for number in range(ROUNDS):
            start = time.monotonic()
            play(number)
            spent.append(time.monotonic() - start)
        print(f"\n{ROUNDS} rounds of {what}, nothing lost, {self.refused} refused; "
              f"a round took {min(spent):.1f} to {max(spent):.1f} s")

    def test_all_that_was_said_is_in_the_files(self):
        self.rounds("40 commands and 3 slots", self.round)

    def edit(self, name, script):
        """An editor that a person could have; a terminal is what it wants to run in."""
        editor = self.desk.home / ("editor-" + name.replace(" ", "-"))
        editor.write_text(f"#!/bin/sh\n{script}\n")
        editor.chmod(0o700)
        words = ["script", "-qefc", f"'{TAVRIN}' edit '{name}'", "/dev/null"]
        env = self.desk.env | {"EDITOR": str(editor), "VISUAL": "", "SHELL": "/bin/sh"}
        return words, subprocess.Popen(words, env=env, text=True, stdin=subprocess.DEVNULL,
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def other_sorts(self, number):
        """Editors, imports, shortcuts, Focus states, deletions, switches, backups."""
        timers = self.prepare()
        marks = [widget("bookmarks", {}, None, f"Marks {index}") for index in range(2)]
        self.desk.write_widgets([*self.widgets().values(), *marks])
        for index in range(16):
            self.answers([self.begin("profiles", "create", "--empty", f"Profile {index}")])
        layouts = ("x://left", "x://right")
        for index, address in enumerate(layouts):
            self.dock.write_bytes(plistlib.dumps({}))
            self.answers([self.begin("dock", "add", address, "--no-restart")])
            self.answers([self.begin("profiles", "create", f"Layout {index}")])
        exported = self.desk.home / "exported.json"
        self.answers([self.begin("profiles", "export", "Profile 15", "-o", str(exported))])
        pages = []
        for index in range(6):
            pages.append(self.desk.home / f"marks{index}.html")
            pages[-1].write_text("<!DOCTYPE NETSCAPE-Bookmark-file-1><DL><p><DT>"
                                 f"<A HREF=\"https://{number}-{index}.example/\">P</A></DL>")
        files = self.files_to_drop(f"s{number}")
        pourer = self.start_pours(time.time() + 0.8)
        begun = [self.start_drops(slot, files[slot]) for slot in SHELVES]
        begun += [self.edit(timers[index]["name"],
                            f"sed -i 's/#[0-9A-Fa-f]\\{{6\\}}/#00000{index}/' \"$1\"")
                  for index in range(6)]
        begun += [self.begin("widgets", "import", marks[index % 2]["name"], str(pages[index]))
                  for index in range(6)]
        begun += [self.begin("profiles", "hotkey", f"Profile {index}", f"ctrl+alt+{index}")
                  for index in range(4)]
        begun += [self.begin("profiles", "focus", f"Profile {index}", "on")
                  for index in range(4, 8)]
        begun += [self.begin("profiles", "delete", f"Profile {index}")
                  for index in range(8, 12)]
        begun += [self.begin("profiles", "import", str(exported)) for _ in range(4)]
        begun += [self.begin("profiles", "switch", f"Layout {index}", "--no-restart")
                  for index in range(2)]
        begun += [self.begin("backups", "create") for _ in range(4)]
        begun += [self.begin("widgets", "add", "clock", f"Late {number}-{index}")
                  for index in range(6)]
        self.assertEqual(len(begun), 42)
        self.answers(begun)
        self.assertEqual(pourer.wait(30), 0, self.desk.log(3))

        widgets = self.widgets()
        self.assertEqual([self.settings(timers[index]["id"]).get("tintHex") for index in range(6)],
                         [f"#00000{index}" for index in range(6)])
        for place, each in enumerate(marks):
            urls = {mark["url"] for mark in self.settings(each["id"])["bookmarks"]}
            self.assertEqual(urls, {f"https://{number}-{index}.example/"
                                    for index in range(place, 6, 2)})
        names = {each["name"] for each in widgets.values()}
        self.assertLessEqual({f"Late {number}-{index}" for index in range(6)}, names)
        profiles = self.profiles()
        by_name = {each["name"]: each for each in profiles}
        for index in range(4):
            self.assertIn("hotkey", by_name[f"Profile {index}"])
            self.assertEqual(by_name[f"Profile {index + 4}"]["focusModeBinding"], "on")
            self.assertNotIn(f"Profile {index + 8}", by_name)
        self.assertEqual(sum(each["name"].startswith("Profile 15") for each in profiles), 5)
        dock = plistlib.loads(self.dock.read_bytes())["persistent-others"]
        shown = [tile["tile-data"]["url"]["_CFURLString"] for tile in dock]
        document = json.loads((self.desk.data / "profiles.json").read_text())
        active = next(each for each in profiles if each["id"] == document["activeProfileId"])
        self.assertEqual(shown, [layouts[int(active["name"][-1])]], "the Dock is not the active one")
        self.check_slots(files)

    def test_all_other_sorts(self):
        self.rounds("40 other commands and 3 slots", self.other_sorts)

    def test_what_a_restored_backup_replaces_is_kept(self):
        """Each widget that was said to be made is there, or in the copy that restoring makes."""
        self.prepare()
        self.answers([self.begin("backups", "create")])
        begun = [self.begin("widgets", "add", "clock", f"Clock {index}") for index in range(12)]
        begun += [self.begin("backups", "restore", "latest")]
        begun += [self.begin("widgets", "add", "clock", f"Clock {index}") for index in range(12, 24)]
        self.answers(begun)
        kept = {each["name"] for each in self.widgets().values()}
        for copy in self.desk.data.glob("**/widgets.json"):
            kept |= {each["name"] for each in json.loads(copy.read_text())["widgets"]}
        self.assertLessEqual({f"Clock {index}" for index in range(24)}, kept)

    def test_a_killed_command_spoils_nothing(self):
        """Killed at any moment, a command leaves whole files, and no lock that stays."""
        self.prepare()
        for moment in range(20):
            _, process = self.begin("widgets", "add", "clock", "Killed")
            time.sleep(0.002 * moment)
            os.kill(process.pid, signal.SIGKILL)
            process.communicate()
            self.answers([self.begin("widgets", "add", "clock", f"Whole {moment}")])
        names = [each["name"] for each in self.widgets().values()]
        self.assertEqual(sum(name.startswith("Whole") for name in names), 20)
        self.assertFalse((self.desk.data / ".widgets.json.lock").exists())


if __name__ == "__main__":
    unittest.main()
