"""What users of each kind expect of it, done by mouse and keyboard in the program itself and read
as assistive technology reads it."""

import fcntl
import http.server
import json
import os
import pathlib
import pty
import struct
import subprocess
import termios
import threading
import time
import unittest

from desks.kind_desk import MAGENTA, TAVRIN, KindTest
from rig import BUILD, wait_for

SUPPORT = pathlib.Path(__file__).resolve().parent.parent / "Support"
DOUBLE = str(BUILD / "Tests" / "Linux" / "DragDouble")
PYTHON = "/usr/bin/python3"
WARNING = (0xFF, 0xD6, 0x0A)
EXPORT = """<!DOCTYPE NETSCAPE-Bookmark-file-1><TITLE>Bookmarks</TITLE><H1>Bookmarks</H1><DL><p>
<DT><A HREF="https://tides.example/">Tides</A></DL><p>"""
KEPT = {
    "Chromium": {"version": 1, "roots": {"bookmark_bar": {
        "type": "folder", "name": "Bookmarks bar",
        "children": [{"type": "url", "name": "Chromium", "url": "https://one.example/"}]}}},
    "Firefox": {"type": "text/x-moz-place-container", "root": "placesRoot", "children": [
        {"type": "text/x-moz-place-container", "root": "toolbarFolder", "title": "toolbar",
         "children": [{"type": "text/x-moz-place", "title": "Firefox",
                       "uri": "https://two.example/"}]}]},
}
FORECAST = {"timezone": "Europe/Berlin",
            "current": {"temperature_2m": 21.5, "apparent_temperature": 19, "weather_code": 3,
                        "is_day": 1}}


class Designed(KindTest):
    def pick(self, wishes):
        """What is typed brings one of those emoji."""
        for wanted, found in wishes:
            with self.subTest(wanted):
                self.open()
                self.desk.run("xdotool", "type", "--delay", "15", wanted)
                # The table is read in the background: until it is there Return finds nothing.
                wait_for(lambda: (self.desk.key("Return"), not self.panel_window())[1], "a pick",
                         pause=0.2)
                picked = wait_for(self.clipboard, "the emoji")
                self.assertIn(picked, found)

    @unittest.skipUnless(os.path.exists("/usr/share/unicode/cldr/common/annotations/de.xml"),
                         "unicode-cldr-core is not installed")
    def test_emoji_are_found_in_the_users_language_and_in_english(self):
        self.desk.env["TAVRIN_LANGUAGE"] = "de"
        self.place("emoji")
        self.pick((("herz", "❤️"), ("katze", "🐱🐈"), ("heart", "❤️"), ("lol", "😂🤣😆")))

    @unittest.skipUnless(os.path.exists("/usr/share/unicode/emoji/emoji-test.txt"),
                         "unicode-data is not installed")
    def test_emoji_are_found_as_people_call_them(self):
        self.place("emoji")
        self.pick((("heart", "❤️"), (":)", "🙂😊😀☺️"), ("lol", "😂🤣😆")))
        # What was used stands first from then on.
        self.open()
        self.desk.run("xdotool", "type", "--delay", "15", "smile")
        self.desk.key("Right", "Right", "Return")
        wait_for(lambda: not self.panel_window(), "a pick further on")
        used = wait_for(self.clipboard, "the emoji")
        self.open()
        self.desk.run("xdotool", "type", "--delay", "15", "smile")
        self.desk.key("Return")
        wait_for(lambda: not self.panel_window(), "the first one")
        self.assertEqual(self.clipboard(), used)
        # Skin tones: one is chosen, by mouse or by the arrows.
        self.open()
        def chosen():
            return [node["name"] for node in self.nodes()
                    if node["role"] == "radio button" and node["checked"]]
        self.assertEqual(len(chosen()), 1)
        self.click_on("Light", "radio button")
        wait_for(lambda: self.settings().get("skinTone") == "light", "the tone by mouse")
        self.tab_to("radio button")
        self.desk.key("Right")
        wait_for(lambda: self.settings()["skinTone"] == "mediumLight", "the tone by keyboard")
        self.assertEqual(chosen(), ["Medium light"])

    def test_bookmarks_keep_addresses_say_why_not_and_go_from_browser_to_browser(self):
        file = self.desk.home / "export.html"
        file.write_text(EXPORT)
        self.place("bookmarks", "showsIcons=false", "fetchesNames=false")
        self.tavrin("widgets", "import", "Mine", str(file))
        self.open()
        wait_for(lambda: self.says("Tides"), "what was imported")
        # As browsers keep them.
        for name, kept in KEPT.items():
            file.write_text(json.dumps(kept))
            self.tavrin("widgets", "import", "Mine", str(file))
            wait_for(lambda: self.says(name), f"what {name} kept")
        count = len(self.settings()["bookmarks"])
        self.retype("ftp://old.example")
        wait_for(lambda: self.says("http or https"), "why not")
        self.retype("tide.example/two words")
        wait_for(lambda: self.says("tide.example/two%20words"), "the address as a browser writes it")
        self.desk.key("Return")
        wait_for(lambda: len(self.settings()["bookmarks"]) == count + 1, "the link to be added")
        self.assertIn("https://tide.example/two%20words",
                      [each["url"] for each in self.settings()["bookmarks"]])
        # Its name is edited where it stands.
        self.desk.key("ctrl+a", "BackSpace", "Down", "F2")
        self.retype("Moon")
        self.desk.key("Return")
        wait_for(lambda: "Moon" in [each.get("title") for each in self.settings()["bookmarks"]],
                 "the name to be kept")
        written = self.tavrin("widgets", "export", "Mine")
        self.assertIn("Moon", written)
        self.assertIn("two%20words", written)
        # Taken away by mistake, and brought back.
        self.desk.key("Delete")
        wait_for(lambda: len(self.settings()["bookmarks"]) == count, "the link to go")
        self.close()
        self.open()
        # The field has the keyboard, and nothing was typed there.
        self.desk.key("ctrl+z")
        wait_for(lambda: len(self.settings()["bookmarks"]) == count + 1, "the link to come back")
        # All of them, whose list goes with the last one.
        self.desk.key("Down")
        for left in range(count, -1, -1):
            self.desk.key("Delete")
            wait_for(lambda: len(self.settings().get("bookmarks", [])) == left, "a link to go")
        for there in range(1, count + 2):
            self.desk.key("ctrl+z")
            wait_for(lambda: len(self.settings().get("bookmarks", [])) == there,
                     "the link removed last to come back")

    def test_a_converter_reads_what_people_write(self):
        self.place("converter")
        self.open()
        for typed, value in (("10%", 0.1), ("2,5", 2.5), ("1/2", 0.5)):
            with self.subTest(typed):
                self.retype(typed)
                wait_for(lambda: self.settings().get("value") == value, typed)
        # A half, which no key gives, is pasted.
        subprocess.run(["xclip", "-selection", "clipboard"], env=self.desk.env, input="1½".encode(),
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        self.desk.key("ctrl+a", "ctrl+v")
        wait_for(lambda: self.settings()["value"] == 1.5, "the half")
        self.retype("10 EUR")
        wait_for(lambda: self.says("Currencies are left out"), "why there are no currencies")


class Launching(KindTest):
    def entry(self, name, program, more=""):
        folder = self.desk.home / "share" / "applications"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / f"{name}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName={name}\nExec={program}\n{more}")

    def tool(self, name, script):
        file = self.desk.home / name
        file.write_text(f"#!/bin/sh\n{script}\n")
        file.chmod(0o755)
        return file

    def test_a_collection_raises_what_runs_and_starts_what_does_not(self):
        told = self.desk.home / "told"
        self.entry("teller", self.tool("teller", f"(pwd; env) > {told}.new; mv {told}.new {told}"))
        self.entry("xterm", "xterm", "StartupWMClass=XTerm\n")
        self.place("collection")
        self.tavrin("widgets", "set", "Mine", "apps=teller,xterm", "layout=vertical")
        self.assertEqual(len(self.settings()["apps"]), 2)
        self.open()
        self.desk.key("Return")
        wait_for(told.exists, "the program")
        folder, *environment = told.read_text().splitlines()
        self.assertEqual(folder, str(self.desk.home))
        self.assertEqual([each for each in environment if each.startswith("TAVRIN_")], [])
        wait_for(lambda: not self.panel_window(), "the panel to make way")

        def windows():
            return self.desk.run("xdotool", "search", "--class", "XTerm", check=False).split()
        program = self.desk.spawn(["xterm"])
        running = wait_for(windows, "the running application")
        self.desk.run("xdotool", "windowminimize", running[0])
        self.open()
        self.desk.key("Down", "Return")
        wait_for(lambda: self.desk.run("xdotool", "getactivewindow", check=False).strip()
                 in windows(), "it to be raised")
        pids = {self.desk.run("xdotool", "getwindowpid", window, check=False).strip()
                for window in windows()}
        self.assertLessEqual(pids, {str(program.pid), ""}, "and not started again")

    def test_five_icons_fill_four_cells(self):
        icon = self.picture(self.desk.home / "icon.png")
        for i in range(5):
            self.entry(f"app{i}", "/bin/true", f"Icon={icon}\n")
        apps = ",".join(f"app{i}" for i in range(5))
        self.place("collection", f"apps={apps}", span=4)
        def columns():
            _, _, _, width, height = tile = max(self.desk.windows(self.slot.pid),
                                                key=lambda window: window[3])
            raw = self.desk.pixels(tile)
            row = (height // 2) * width * 3
            return [x / width for x in range(width)
                    if raw[row + 3 * x:row + 3 * x + 3] == bytes(MAGENTA)]
        seen = wait_for(columns, "the icons")
        self.assertLess(min(seen), 0.15)
        self.assertGreater(max(seen), 0.85)

    def player(self, name):
        process = self.desk.spawn([PYTHON, str(SUPPORT / "media_player.py"), name],
                                  stdout=subprocess.PIPE, text=True)
        self.assertEqual(process.stdout.readline().strip(), "ready")

    def ask_player(self, name, method, *arguments):
        return self.desk.run("gdbus", "call", "--session", "--dest", f"org.mpris.MediaPlayer2.{name}",
                             "--object-path", "/org/mpris/MediaPlayer2",
                             "--method", f"dev.quellby.Test.{method}", *arguments)

    def test_music_shows_its_cover_raises_its_player_and_offers_all(self):
        cover = self.picture(self.desk.home / "cover.png")
        for name in ("one", "two"):
            self.player(name)
            self.ask_player(name, "Become", json.dumps(
                {"PlaybackStatus": "Playing",
                 "Metadata": {"xesam:title": "Tide", "xesam:artist": ["Quartet"],
                              "mpris:artUrl": cover.as_uri(),
                              "mpris:length": {"type": "Int64", "value": 200_000_000}}}))
        self.place("music", "player=one", span=2)
        def wide():
            return max(self.desk.windows(self.slot.pid), key=lambda window: window[3])
        wait_for(lambda: self.count(MAGENTA, wide()) > 100, "the cover on two cells")
        self.tile = wide()
        # Beside the buttons, which are at the right.
        self.desk.click(self.tile[1] + self.tile[4] * 0.4, self.tile[2] + self.tile[4] - 8)
        wait_for(self.panel_window, "the panel")
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", "getwindowpid",
                                       check=False).strip() == str(self.slot.pid), "the focus")
        name = wait_for(lambda: next((node["name"] for node in self.nodes()
                                      if node["name"].startswith("Show ")), None), "the cover")
        # Space plays; left and right move in the track, not the volume.
        self.desk.key("space")
        wait_for(lambda: "PlayPause" in self.ask_player("one", "Calls"), "Space to pause")
        self.desk.key("Right")
        wait_for(lambda: any(word in self.ask_player("one", "Calls") for word in ("Seek", "SetPos")),
                 "the place to move")
        self.assertNotIn("Volume", self.ask_player("one", "Calls"))
        # The choice has every player, by keyboard.
        self.tab_to("combo box")
        self.desk.key("Down")
        wait_for(lambda: self.settings().get("player") != "one", "another choice")
        self.tavrin("widgets", "set", "Mine", "player=one")
        self.click_on(wait_for(lambda: name if self.box(name) else None, "the cover"))
        wait_for(lambda: "Raise" in self.ask_player("one", "Calls"), "the player to be raised")

    def test_a_wide_shortcut_keeps_its_symbol_and_its_mark_of_failure(self):
        self.place("shortcut", "command=exit 3", "title=A title of some length", span=3)
        def wide():
            return max(self.desk.windows(self.slot.pid), key=lambda window: window[3])
        wait_for(lambda: wide()[3] > 2 * wide()[4], "the wide tile")
        self.tile = wide()
        for symbol in ("heart.fill", "bolt.fill"):
            before = self.desk.pixels(self.tile)
            self.tavrin("widgets", "set", "Mine", f"symbolName={symbol}")
            wait_for(lambda: self.desk.pixels(self.tile) != before, "another symbol to be seen")
        self.assertEqual(self.count(WARNING, self.tile), 0)
        self.open()
        self.desk.key("Return")
        wait_for(lambda: self.count(WARNING, self.tile) > 10, "the warning")
        wait_for(lambda: self.says("3"), "with which status it ended")


class Files(KindTest):
    def drag_over_tile(self, source, file):
        window = wait_for(lambda: self.desk.windows(source.pid), "the window to drag from")[0]
        _, x, y, width, height = self.tile
        start, end = (window[1] + 40, window[2] + 40), (x + width // 2, y + height // 2)
        self.desk.run("xdotool", "mousemove", str(start[0]), str(start[1]), "mousedown", "1")
        for step in range(1, 21):
            self.desk.run("xdotool", "mousemove", *(str(a + (b - a) * step // 20)
                                                    for a, b in zip(start, end)))

    def test_the_badge_says_when_there_are_more(self):
        downloads = self.desk.home / "Downloads"
        downloads.mkdir()
        self.place("files", f"folders={downloads}")
        wait_for(self.tile_words, "the tile's words")
        for i in range(25):
            (downloads / f"file {i}.txt").write_text("new")
        wait_for(lambda: "20+" in self.tile_words(), "the badge")
        # Trashing is undone by keyboard, in the panel and after it has closed.
        self.open()
        self.desk.key("Delete")
        wait_for(lambda: len(list(downloads.iterdir())) == 24, "a file to go")
        self.close()
        self.open()
        self.desk.key("ctrl+z")
        wait_for(lambda: len(list(downloads.iterdir())) == 25, "the file to come back")

    def test_tiles_show_whether_they_take_what_hovers(self):
        file = self.picture(self.desk.home / "one.png")
        for kind in ("shelf", "airdrop", "clock"):
            with self.subTest(kind):
                self.place(kind)
                source = self.desk.spawn([DOUBLE, file.as_uri()], log="double.log")
                wait_for(lambda: "ready" in (self.desk.home / "double.log").read_text(), "the source")
                before = self.desk.pixels(self.tile)
                self.drag_over_tile(source, file)
                def ring():
                    self.desk.run("xdotool", "mousemove_relative", "1", "0",
                                  "mousemove_relative", "--", "-1", "0")
                    return self.desk.pixels(self.tile) != before
                wait_for(ring, "the tile to say so", pause=0.05)
                source.terminate()
                source.wait(10)
                self.desk.run("xdotool", "mouseup", "1")
                self.slot.terminate()
                self.slot.wait(10)
                self.tavrin("widgets", "remove", "Mine", "--yes")


class Charts(KindTest):
    def test_charts_tell_their_numbers(self):
        for kind in ("network", "activity"):
            with self.subTest(kind):
                self.place(kind)
                self.open()
                told = wait_for(lambda: next((node["description"] for node in self.nodes()
                                              if node["name"] == "The last minute"
                                              and any(c.isdigit() for c in node["description"])),
                                             None), "the chart's figures")
                self.assertIn("average", told)
                self.close()
                self.slot.terminate()
                self.slot.wait(10)
                self.tavrin("widgets", "remove", "Mine", "--yes")

    def test_the_weathers_days_tell_low_high_and_rain(self):
        days = [time.strftime("%Y-%m-%d", time.localtime(time.time() + 86_400 * i)) for i in range(3)]
        answer = json.dumps({**FORECAST, "daily": {
            "time": days, "weather_code": [0, 61, 3], "temperature_2m_max": [22, 19, 25],
            "temperature_2m_min": [12, 9, 14], "precipitation_probability_max": [5, 85, 40]}}).encode()

        class Forecast(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                self.send_response(200)
                self.send_header("Content-Type", "application/json")
                self.send_header("Content-Length", str(len(answer)))
                self.end_headers()
                self.wfile.write(answer)

            def log_message(self, *_):
                pass
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Forecast)
        self.addCleanup(server.server_close)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.shutdown)
        self.desk.env["TAVRIN_FORECAST_URL"] = f"http://127.0.0.1:{server.server_port}/v1/forecast"
        self.place("weather", "cityName=Berlin", "latitude=52.5", "longitude=13.4", "unit=celsius",
                   "showsRainChance=yes")
        self.open()
        wait_for(lambda: self.says("85%"), "the chance of rain")
        for figure in ("22°", "9°", "25°"):
            self.assertTrue(self.says(figure), figure)

    def test_thirty_days_of_use_in_the_panel_and_on_a_terminal(self):
        log = self.desk.home / ".claude" / "projects" / "-home-u-alpha" / "session.jsonl"
        log.parent.mkdir(parents=True)
        stamp = time.strftime("%Y-%m-%dT%H:%M:%S.000Z", time.gmtime(time.time() - 600))
        log.write_text(json.dumps({
            "type": "assistant", "timestamp": stamp, "requestId": "r1", "sessionId": "s",
            "cwd": "/home/u/alpha", "message": {
                "id": "m1", "model": "m", "usage": {
                    "input_tokens": 1000, "output_tokens": 2000, "cache_creation_input_tokens": 30000,
                    "cache_read_input_tokens": 400000}}}) + "\n")
        main, other = pty.openpty()
        fcntl.ioctl(other, termios.TIOCSWINSZ, struct.pack("HHHH", 50, 120, 0, 0))
        process = subprocess.Popen([TAVRIN, "usage", "--days", "30"], env={**self.desk.env, "TERM": "xterm"},
                                   stdin=other, stdout=other, stderr=other)
        process.wait(20)
        os.close(other)
        printed = os.read(main, 65536).decode()
        os.close(main)
        self.assertIn("█", printed)
        self.place("claudeUsage")
        self.open()
        told = wait_for(lambda: next((node["description"] for node in self.nodes()
                                      if "hirty" in node["name"] and node["description"]), None)
                        or next((word for word in self.words() if "433" in word), None),
                        "the figures of use")
        self.assertTrue(any(c.isdigit() for c in told), told)


if __name__ == "__main__":
    unittest.main()
