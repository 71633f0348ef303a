"""Collection, music, shortcut and AirDrop: placed by the command, used by mouse and by keyboard."""

import json
import os
import pathlib
import random
import subprocess
import time
import unittest

from rig import PATIENCE, BUILD, BUNDLES, DeskTest, wait_for

SUPPORT = pathlib.Path(__file__).resolve().parent.parent / "Support"
PYTHON = "/usr/bin/python3"


class Launching(DeskTest):
    def setUp(self):
        super().setUp()
        self.desk.env["TAVRIN_BUNDLES"] = str(BUNDLES)
        self.applications = self.desk.home / "share" / "applications"
        self.applications.mkdir(parents=True)

    # The command

    def tavrin(self, *words):
        return self.desk.run(str(BUILD / "bin" / "tavrin"), *words)

    def place(self, kind, *settings):
        self.tavrin("widgets", "add", kind, "Mine", "--place")
        if settings:
            self.tavrin("widgets", "set", "Mine", *settings)
        self.process = self.desk.start_slot(1, "--background")
        self.desk.wait_for_name(1)
        self.tile = wait_for(lambda: self.desk.windows(self.process.pid), "the tile")[0]
        self.look = self.desk.pixels(self.tile)

    def wait_for_look(self, what):
        """Until the tile looks unlike it did."""
        wait_for(lambda: self.desk.pixels(self.tile) != self.look, what)
        self.look = self.desk.pixels(self.tile)

    def stored(self):
        widgets = json.loads((self.desk.data / "widgets.json").read_text())["widgets"]
        return next(iter(widgets[0]["kind"].values()))

    # The panel

    def panel(self):
        others = [each for each in self.desk.windows(self.process.pid) if each[0] != self.tile[0]]
        return others[0] if others else None

    def click_tile(self):
        _, x, y, width, height = self.tile
        self.desk.click(x + width / 2, y + height / 2)

    def open(self):
        self.click_tile()
        wait_for(self.panel, "the panel")
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", "getwindowpid",
                                       check=False).strip() == str(self.process.pid), "the focus")

    def close(self):
        self.desk.key("Escape")
        wait_for(lambda: not self.panel(), "Escape to close the panel")

    def click_panel(self, x, y):
        """A place in the panel's window, from its top left; from its bottom where negative."""
        _, left, top, width, height = self.panel()
        self.desk.click(left + (x if x >= 0 else width + x), top + (y if y >= 0 else height + y))

    def entry(self, name, exec_line, more=""):
        file = self.applications / f"{name}.desktop"
        file.write_text(f"[Desktop Entry]\nType=Application\nName={name}\nExec={exec_line}\n{more}")
        return file

    # Collection

    def test_a_collection_opens_apps_by_mouse_and_by_keyboard(self):
        marks = [self.desk.home / f"opened-{name}" for name in ("one", "two")]
        files = [self.entry(f"App{i}", f"/usr/bin/touch {mark}") for i, mark in enumerate(marks)]
        apps = json.dumps([{"path": str(file)} for file in files])
        self.place("collection", f"apps={apps}", "layout=vertical")
        self.open()
        self.click_panel(150, 64)
        wait_for(marks[0].exists, "the first app to be opened")
        wait_for(lambda: not self.panel(), "the panel to make way")
        self.open()
        self.desk.key("Down")
        self.desk.key("Return")
        wait_for(marks[1].exists, "the second app to be opened")

    def test_an_opened_app_outlives_its_slot(self):
        mark = self.desk.home / "alive"
        tool = self.desk.home / "tool"
        tool.write_text(f"#!/bin/sh\necho $$ > {mark}.new; mv {mark}.new {mark}; exec sleep 60\n")
        tool.chmod(0o755)
        self.place("collection", f"apps={json.dumps([{'path': str(self.entry('Tool', tool))}])}")
        self.open()
        self.desk.key("Return")
        wait_for(mark.exists, "the app")
        self.process.terminate()
        self.process.wait(PATIENCE)
        pid = int(mark.read_text())
        self.addCleanup(lambda: os.kill(pid, 9))
        os.kill(pid, 0)

    def test_apps_are_added_by_keyboard_and_from_outside_while_open(self):
        self.entry("Chess", "/bin/true")
        self.entry("Draughts", "/bin/true")
        self.place("collection")
        self.open()
        self.desk.key("space")
        self.desk.key("c", "h", "e")
        self.desk.key("Return")
        wait_for(lambda: [app["displayName"] for app in self.stored()["apps"]] == ["Chess"],
                 "the app to be added")
        self.wait_for_look("the app on the tile")
        self.desk.key("Escape")  # empties the search first
        self.close()
        self.open()
        before = self.panel()[4]
        apps = [{"path": str(self.applications / f"{name}.desktop")}
                for name in ("Chess", "Draughts", "Gone")]
        self.tavrin("widgets", "set", "Mine", f"apps={json.dumps(apps)}", "layout=vertical")
        wait_for(lambda: self.panel() and self.panel()[4] > before, "the panel to grow")

    # Music

    def player(self, name):
        process = subprocess.Popen([PYTHON, str(SUPPORT / "media_player.py"), name],
                                   env=self.desk.env, stdout=subprocess.PIPE, text=True)
        self.desk.processes.append(process)
        self.assertEqual(process.stdout.readline().strip(), "ready")
        return process

    def ask_player(self, name, method, *arguments):
        return self.desk.run("gdbus", "call", "--session",
                             "--dest", f"org.mpris.MediaPlayer2.{name}",
                             "--object-path", "/org/mpris/MediaPlayer2",
                             "--method", f"dev.quellby.Test.{method}", *arguments)

    def test_music_is_played_by_mouse_and_by_keyboard(self):
        self.place("music")
        self.player("one")
        length = {"type": "Int64", "value": 200_000_000}
        self.ask_player("one", "Become", json.dumps(
            {"PlaybackStatus": "Playing",
             "Metadata": {"xesam:title": "Tide", "xesam:artist": ["Quartet"],
                          "mpris:length": length}}))
        self.wait_for_look("the player on the tile")
        self.open()
        self.desk.key("Return")
        wait_for(lambda: "PlayPause" in self.ask_player("one", "Calls"), "Return to pause")
        # The button in the middle, above volume and footer.
        self.click_panel(140, -112)
        wait_for(lambda: self.ask_player("one", "Calls").count("PlayPause") == 2,
                 "the click to play")
        height = self.panel()[4]
        self.tavrin("widgets", "set", "Mine", "showsCover=no")
        wait_for(lambda: self.panel()[4] < height, "the cover to go")
        self.close()

    def test_the_buttons_of_a_wide_music_tile_work(self):
        self.player("one")
        self.ask_player("one", "Become", json.dumps({"PlaybackStatus": "Playing"}))
        self.tavrin("widgets", "add", "music", "Mine", "--place")
        self.tavrin("widgets", "span", "Mine", "3")
        self.process = self.desk.start_slot(1, "--background")
        self.desk.wait_for_name(1)
        self.tile = wait_for(lambda: [window for window in self.desk.windows(self.process.pid)
                                      if window[3] > 2 * window[4]], "the wide tile")[0]
        _, x, y, width, height = self.tile

        def press():
            # The action at the right end of the tile is the next track.
            self.desk.click(x + width - 0.35 * height, y + height / 2)
            return "Next" in self.ask_player("one", "Calls")
        wait_for(press, "the next track", pause=0.2)
        if self.panel():
            self.close()  # the player was not known yet when the tile was first clicked
        press()
        self.assertIsNone(self.panel(), "a button of the tile opens no panel")

    # Shortcut

    @staticmethod
    def has_ended(group):
        try:
            os.killpg(group, 0)
        except ProcessLookupError:
            return True
        return False

    def test_a_shortcut_runs_and_is_stopped_by_mouse_and_by_keyboard(self):
        mark = self.desk.home / "ran"
        self.place("shortcut", f"command=touch {mark}; echo written", "title=Do It")
        press = {"mouse": lambda: self.click_panel(160, 108),
                 "keyboard": lambda: self.desk.key("Return")}
        self.open()
        for name, act in press.items():
            with self.subTest(by=name):
                act()
                wait_for(mark.exists, "the command")
                self.wait_for_look("the run on the tile")
                mark.unlink()
        for name, act in press.items():
            with self.subTest(by=name):
                started = self.desk.home / f"started by {name}"
                # From outside, while the panel is open.
                before = self.desk.pixels(self.panel())
                self.tavrin("widgets", "set", "Mine", f"title=By {name}", "command=trap '' TERM; "
                            f"(trap '' TERM; sleep 77) & echo $$ > '{started}'; wait")
                wait_for(lambda: self.desk.pixels(self.panel()) != before, "the other command")
                act()
                wait_for(lambda: started.exists() and started.read_text().strip(), "it to run")
                group = int(started.read_text())
                act()
                wait_for(lambda: self.has_ended(group), "the whole group to end, deaf as it is")

    def test_a_widget_put_back_at_once_has_its_slot(self):
        """The slot that has lost it is about to end, and whoever starts slots may see it run."""
        self.tavrin("widgets", "add", "clock", "Mine", "--place")
        self.tavrin("start")
        text = (self.desk.data / "widgets.json").read_text()
        empty = text.replace('"slot"', '"other"')
        self.assertNotEqual(text, empty)
        for number in range(1, 41):
            before = self.owner()
            self.desk.write_widgets_text(empty)
            wait_for(lambda n=number: self.log().count("quitting") == n,
                     "the slot to see that its widget has gone", pause=0.0005)
            time.sleep(random.uniform(0, 0.03))
            self.desk.write_widgets_text(text, announce=False)
            self.tavrin("start", "1")
            # Whether it began anew or another was started, it has a connection of its own.
            wait_for(lambda old=before: self.owner() not in ("", old), "a slot that stays")

    def owner(self):
        return self.desk.run("gdbus", "call", "--session", "-d", "org.freedesktop.DBus", "-o", "/",
                             "-m", "org.freedesktop.DBus.GetNameOwner",
                             self.desk.bundle_identifier(1), check=False)

    def log(self):
        """Of the slot that the command has started."""
        file = self.desk.home / "state" / "tavrin" / "slot-1.log"
        return file.read_text() if file.exists() else ""

    def test_a_command_ends_with_its_slot(self):
        started = self.desk.home / "started"
        self.place("shortcut", f"command=echo $$ > {started}; sleep 77", "timeLimit=60")
        self.open()
        self.desk.key("Return")
        wait_for(lambda: started.exists() and started.read_text().strip(), "the command")
        group = int(started.read_text())
        self.process.terminate()
        self.process.wait(PATIENCE)
        wait_for(lambda: self.has_ended(group), "the command to end")

    # AirDrop

    def services(self, kind):
        log = f"{kind}.log"
        self.desk.spawn([PYTHON, str(SUPPORT / "nearby_services.py"), kind], log=log)
        path = self.desk.home / log
        wait_for(lambda: "ready" in path.read_text(), kind)
        return path

    def test_dropped_files_go_to_the_device_chosen_by_keyboard(self):
        log = self.services("connect")
        self.place("airdrop")
        files = []
        for name in ("a b.txt", "ü.txt"):
            file = self.desk.home / name
            file.write_text("content")
            files.append(file.as_uri())
        self.desk.run("gdbus", "call", "--session", "--dest", self.desk.bundle_identifier(1),
                      "--object-path", "/dev/quellby/Tavrin/Slot1", "--method",
                      "org.freedesktop.Application.Open", json.dumps(files), "{}")
        wait_for(self.panel, "the panel to ask where to")
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", "getwindowpid",
                                       check=False).strip() == str(self.process.pid), "the focus")

        def send():
            self.desk.key("Return")
            return "shared phone" in log.read_text()
        wait_for(send, "the phone to get the files", pause=0.3)
        shared = log.read_text()
        self.assertIn("a%20b.txt", shared)
        self.assertIn("%C3%BC.txt", shared)

    def test_a_drag_from_another_program_is_sent_by_mouse(self):
        log = self.services("connect")
        self.place("airdrop")
        file = self.desk.home / "dragged.txt"
        file.write_text("content")
        source = self.desk.spawn([str(BUILD / "Tests" / "Linux" / "DragDouble"), file.as_uri()],
                                 log="drag.log")
        window = wait_for(lambda: self.desk.windows(source.pid), "the window to drag from")[0]
        _, x, y, width, height = self.tile
        self.desk.run("xdotool", "mousemove", str(window[1] + 40), str(window[2] + 40),
                      "mousedown", "1")
        for step in range(1, 21):
            self.desk.run("xdotool", "mousemove",
                          str(int(window[1] + 40 + (x + width / 2 - window[1] - 40) * step / 20)),
                          str(int(window[2] + 40 + (y + height / 2 - window[2] - 40) * step / 20)))
        self.desk.run("sleep", "0.3")
        self.desk.run("xdotool", "mouseup", "1")
        wait_for(self.panel, "the panel to ask where to")
        self.wait_for_look("the file on the tile")
        # From outside, while it is open.
        self.tavrin("widgets", "span", "Mine", "2")
        wait_for(lambda: max(each[3] for each in self.desk.windows(self.process.pid)
                             if each[0] != self.panel()[0]) > width, "the tile to grow")

        def choose():
            if self.panel():
                self.click_panel(150, 138)
            return "shared phone" in log.read_text()
        wait_for(choose, "the phone to get the file", pause=0.3)

    # Settings that are wrong

    def test_wrong_settings_leave_the_file_as_it_is(self):
        for kind, wrong in (("shortcut", {"timeLimit": "long"}), ("shortcut", {"title": 7}),
                            ("music", {"player": 7}), ("music", {"showsCover": "yes"}),
                            ("collection", {"apps": [7]}), ("collection", {"layout": "grid"}),
                            ("collection", {"apps": [], "layout": "round"})):
            with self.subTest(kind=kind, wrong=wrong):
                payload = wrong if kind == "collection" else {"_0": wrong}
                entry = {"id": "11111111-2222-4333-8444-555555555555", "name": "Wrong", "slot": 1,
                         "span": 1, "kind": {kind: payload}}
                self.desk.write_widgets([entry], announce=False)
                slot = self.desk.start_slot(1)
                self.assertEqual(slot.wait(10), 0)
                self.assertIn("has no widget", self.desk.log(1))
                self.tavrin("widgets", "add", "clock", "Other")
                widgets = json.loads((self.desk.data / "widgets.json").read_text())["widgets"]
                self.assertIn(entry, widgets)


if __name__ == "__main__":
    unittest.main()
