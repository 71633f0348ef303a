"""Screenshots, files and the shelf under a real X server: placed by the command, seen on the tile,
used by mouse and by keyboard alone, changed from outside, and dragged from and to another program.

Pictures of one plain colour each are what is looked for on the screen.
"""

import json
import os
import pathlib
import re
import subprocess
import time
import unittest

from rig import BUILD, DeskTest, wait_for

TAVRIN = str(BUILD / "bin" / "tavrin")
DOUBLE = str(BUILD / "Tests" / "Linux" / "DragDouble")
MAGENTA, LIME, ORANGE = (250, 0, 250), (10, 240, 20), (250, 140, 10)


class FilesTest(DeskTest):
    def setUp(self):
        super().setUp()
        home = self.desk.home
        self.downloads = home / "Downloads"
        self.shots = home / "Pictures" / "Screenshots"
        for folder in (self.downloads, self.shots, home / "bin", home / "config"):
            folder.mkdir(parents=True, exist_ok=True)
        self.opened = home / "opened"
        opener = home / "bin" / "xdg-open"
        opener.write_text(f'#!/bin/sh\necho "$1" >> "{self.opened}"\n')
        opener.chmod(0o755)
        self.desk.env["PATH"] = f"{home / 'bin'}:{self.desk.env['PATH']}"
        self.start_file_manager()

    def start_file_manager(self):
        name = "org.freedesktop.FileManager1"
        self.desk.spawn(["/usr/bin/python3", "-m", "dbusmock", "--session", name,
                         "/org/freedesktop/FileManager1", name], log="file-manager.log")
        self.desk.run("gdbus", "wait", "--session", "--timeout", "10", name)
        self.desk.run("gdbus", "call", "--session", "--dest", name, "--object-path",
                      "/org/freedesktop/FileManager1", "--method",
                      "org.freedesktop.DBus.Mock.AddMethod", name, "ShowItems", "ass", "", "")

    def revealed(self):
        return (self.desk.home / "file-manager.log").read_text(errors="replace")

    def place(self, kind, name, span, *settings):
        words = [word for setting in settings for word in ("--set", setting)]
        self.desk.run(TAVRIN, "widgets", "add", kind, name, "--place", "--span", str(span), *words)
        self.slot = self.desk.start_slot(1)
        self.desk.wait_for_name(1)
        self.tile = wait_for(self.find_tile, "the tile")

    def find_tile(self):
        for window in self.desk.windows(self.slot.pid):
            if "DOCK" in self.desk.run("xprop", "-id", window[0], "_NET_WM_WINDOW_TYPE", check=False):
                return window
        return None

    def panel(self):
        return next((w for w in self.desk.windows(self.slot.pid) if w[0] != self.tile[0]), None)

    def click_tile(self):
        _, x, y, _, height = self.tile
        self.desk.click(x + height / 2, y + height - 8)
        return wait_for(self.panel, "the panel")

    def open_by_keyboard(self):
        self.desk.toggle(1)
        window = wait_for(self.panel, "the panel")
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", check=False).strip() == window[0],
                 "the keyboard to be in the panel", pause=0.02)

    def wait_closed(self):
        wait_for(lambda: self.panel() is None, "the panel to close")

    def picture(self, path, colour, size="320x200"):
        self.desk.run("convert", "-size", size, "xc:rgb(%d,%d,%d)" % colour, str(path))

    def seen(self, colour, window=None):
        """Centre and number of a colour's points on the screen, inside a window."""
        raw = subprocess.run("import -silent -window root -depth 8 rgb:-", shell=True,
                             env=self.desk.env, capture_output=True, check=True).stdout
        _, left, top, width, height = window or (0, 0, 0, 1280, 800)
        points = []
        for match in re.finditer(re.escape(bytes(colour)), raw):
            at = match.start()
            x, y = at // 3 % 1280, at // 3 // 1280
            if at % 3 == 0 and left <= x < left + width and top <= y < top + height:
                points.append((x, y))
        if len(points) < 30:
            return None
        xs, ys = sorted(p[0] for p in points), sorted(p[1] for p in points)
        return xs[len(xs) // 2], ys[len(ys) // 2], len(points)

    def wait_seen(self, colour, window, what):
        return wait_for(lambda: self.seen(colour, window), what, pause=0.05)

    def opened_addresses(self):
        return self.opened.read_text().split() if self.opened.exists() else []

    def widget(self):
        return json.loads((self.desk.data / "widgets.json").read_text())["widgets"][0]

    def settings(self):
        return next(iter(self.widget()["kind"].values()))["_0"]

    def drag(self, start, end, entering=False):
        """`entering`: what is dragged goes to the other program, which says when it is there."""
        self.desk.run("xdotool", "mousemove", str(start[0]), str(start[1]), "mousedown", "1")
        for step in range(1, 13):
            x = start[0] + (end[0] - start[0]) * step // 12
            y = start[1] + (end[1] - start[1]) * step // 12
            self.desk.run("xdotool", "mousemove", str(x), str(y))
            time.sleep(0.05)
        if entering:
            # A drag that begins late sees only what the pointer does from then on.
            def has_entered():
                self.desk.run("xdotool", "mousemove_relative", "--", "1", "0", "mousemove_relative",
                              "--", "-1", "0")
                return "entered" in self.said()
            wait_for(has_entered, "the drag over the other program", pause=0.05)
        else:
            time.sleep(0.3)
        self.desk.run("xdotool", "mouseup", "1")

    def start_double(self, *addresses):
        self.desk.spawn([DOUBLE, *addresses], log="double.log")
        wait_for(lambda: "ready" in self.said(), "the other program")

    def said(self):
        return (self.desk.home / "double.log").read_text()

    def test_screenshots(self):
        first = self.shots / "first one.png"
        self.picture(first, MAGENTA)
        self.place("screenshots", "Shots", 1)
        self.wait_seen(MAGENTA, self.tile, "the picture on the tile")
        newer = self.shots / "newer.png"
        self.picture(newer, LIME)
        self.wait_seen(LIME, self.tile, "the newer picture on the tile")
        # By mouse.
        panel = self.click_tile()
        self.wait_seen(LIME, panel, "the newest in the panel")
        x, y, _ = self.wait_seen(MAGENTA, panel, "the picture in the panel")
        self.desk.run("xdotool", "mousemove", str(x), str(y), "click", "--repeat", "2", "--delay",
                      "60", "1")
        wait_for(lambda: self.opened_addresses() == [first.as_uri()], "the picture to open")
        self.wait_closed()
        # By keyboard alone: the newest is chosen, the next one copied.
        self.open_by_keyboard()
        self.desk.key("ctrl+c")
        self.wait_closed()
        copied = wait_for(lambda: subprocess.run(
            ["xclip", "-selection", "clipboard", "-t", "image/png", "-o"], env=self.desk.env,
            capture_output=True, check=False).stdout, "the copy")
        self.assertEqual(copied, newer.read_bytes())
        self.open_by_keyboard()
        self.desk.key("Right", "Return")
        wait_for(lambda: len(self.opened_addresses()) == 2, "the next to open")
        self.assertEqual(self.opened_addresses()[1], first.as_uri())
        # From outside, while it is open.
        other = self.desk.home / "Other"
        other.mkdir()
        self.picture(other / "other.png", ORANGE)
        self.wait_closed()
        panel = self.click_tile()
        self.desk.run(TAVRIN, "widgets", "set", "Shots", f"folder={other}")
        self.wait_seen(ORANGE, self.panel() or panel, "the other folder's picture")
        self.wait_seen(ORANGE, self.tile, "it on the tile")
        self.assertIsNone(self.seen(LIME))
        self.desk.key("Delete")
        wait_for(lambda: not (other / "other.png").exists(), "it to go to the trash")
        trash = self.desk.home / "share" / "Trash"
        self.assertTrue((trash / "files" / "other.png").exists())
        self.assertIn(f"Path={other / 'other.png'}", (trash / "info" / "other.png.trashinfo").read_text())
        self.assertIsNone(self.slot.poll())

    def test_files(self):
        old = self.downloads / "old\nname.png"
        self.picture(old, MAGENTA, "100x100")
        self.place("files", "Downloads", 3)
        (self.downloads / "film.mkv.part").write_bytes(b"beginning")
        newest = self.downloads / "newest.png"
        self.picture(newest, LIME, "100x100")
        self.wait_seen(LIME, self.tile, "the newest file's picture on the tile")
        os.mkfifo(self.downloads / "pipe")
        (self.downloads / "loop").symlink_to("loop")
        (self.downloads / "zero").symlink_to("/dev/zero")
        (pathlib.Path(os.fsdecode(os.fsencode(self.downloads) + b"/\xff\xfe.txt"))).write_text("")
        panel = self.click_tile()
        x, y, _ = self.wait_seen(MAGENTA, panel, "the picture in the panel")
        wait_for(lambda: "seenUntil" in self.settings(), "the marks to be forgotten")
        self.desk.click(x + 40, y)
        wait_for(lambda: self.opened_addresses() == [old.as_uri()], "the file to open")
        self.wait_closed()
        # By keyboard alone: the second row is revealed by its first button.
        self.open_by_keyboard()
        self.desk.key("Home", "Right", "Return")
        wait_for(lambda: "ShowItems" in self.revealed(), "the file manager")
        self.wait_closed()
        other = self.desk.home / "Other"
        other.mkdir()
        self.picture(other / "other.png", ORANGE, "100x100")
        # A window that comes takes the keyboard from an open panel.
        self.start_double()
        panel = self.click_tile()
        self.desk.run(TAVRIN, "widgets", "set", "Downloads", f"folders={other}")
        self.wait_seen(ORANGE, self.panel() or panel, "the other folder's file")
        # And dragged to another program.
        x, y, _ = wait_for(lambda: self.seen(ORANGE, self.panel()), "the file in the panel")
        self.drag((x + 40, y), (190, 90), entering=True)
        wait_for(lambda: "dropped copy" in self.said(), "the drop")
        self.assertIn((other / "other.png").as_uri(), self.said())
        self.assertTrue((other / "other.png").exists())

    def test_shelf(self):
        names = [self.desk.home / "one.png", self.desk.home / "two words.txt"]
        self.picture(names[0], MAGENTA, "100x100")
        names[1].write_text("some words to look at\n")
        self.place("shelf", "Shelf", 3)
        # An X drag from another program, which offers a move first.
        self.start_double(names[0].as_uri(), "file:///tmp/%FF%FE")
        self.drag((60, 90), (self.tile[1] + 60, self.tile[2] + 24))
        wait_for(lambda: "dragged copy" in self.said(), "the drop on the tile")
        dropped = [str(names[0]), "file:///tmp/%FF%FE"]
        wait_for(lambda: self.settings()["paths"] == dropped, "the shelf to keep them")
        self.wait_seen(MAGENTA, self.tile, "the picture on the tile")
        # The desktop's own way to open files with an application.
        self.desk.run("gdbus", "call", "--session", "--dest", self.desk.bundle_identifier(1),
                      "--object-path", "/dev/quellby/Tavrin/Slot1", "--method",
                      "org.freedesktop.Application.Open", f"['{names[1].as_uri()}']", "{}")
        wait_for(lambda: len(self.settings()["paths"]) == 3, "the second file")
        panel = self.click_tile()
        x, y, small = self.wait_seen(MAGENTA, panel, "the picture in the panel")
        self.drag((x + 40, y), (190, 90), entering=True)
        wait_for(lambda: "dropped copy" in self.said(), "the drop")
        self.assertIn(names[0].as_uri(), self.said())
        # By keyboard alone: a look into the second, which fills the panel; then back and off it.
        if self.panel():
            self.desk.key("Escape")
            self.wait_closed()
        self.open_by_keyboard()
        self.desk.key("Home", "Down", "space")
        wait_for(lambda: (found := self.seen(MAGENTA, self.panel())) and found[2] > 4 * small,
                 "the look into the picture", pause=0.05)
        self.desk.key("space")
        wait_for(lambda: (found := self.seen(MAGENTA, self.panel())) and found[2] <= small * 2,
                 "the list", pause=0.05)
        self.desk.key("Home", "Delete")
        wait_for(lambda: str(names[1]) not in self.settings()["paths"], "it to be taken off")
        self.assertTrue(names[1].exists())
        # A file that goes, and one put on from outside, while the panel is open.
        names[0].unlink()
        wait_for(lambda: not self.seen(MAGENTA), "the picture to go", pause=0.05)
        other = self.desk.home / "other.png"
        self.picture(other, ORANGE, "100x100")
        self.desk.run(TAVRIN, "widgets", "set", "Shelf", f"paths={other}")
        self.wait_seen(ORANGE, self.panel(), "the other file")
        self.assertEqual(self.settings()["paths"], [str(other)])


if __name__ == "__main__":
    unittest.main()
