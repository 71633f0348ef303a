"""Ten thousand hostile strings at a real terminal and in the script of the status line."""

import json
import os
import pathlib
import pty
import random
import re
import subprocess
import unittest

from rig import BUILD, DeskTest, wait_for, widget

TAVRIN = str(BUILD / "bin" / "tavrin")
COUNT = 10_000
PIECES = ["<b>bold</b>", "<img src=/dev/zero>", "&amp;", "\u202egpj.exe", "\u2066a\u2069", "\u200f\u200e",
          "\ufeff", "\u2028\u2029", "\0", "\n", "\r\n", "\t", "\x1b[31m", "\x1b]0;taken\x07",
          "\x1b]2;taken\x1b\\", "\x1b[8;10;20t", "\x1b[6n", "\x1bc", "\x1b[2J", "\x9b2J", "\x07", "\x7f",
          "\U0001f469\u200d\U0001f4bb", "'; touch taken #", "$(touch taken)", "`touch taken`", "%s%n",
          "name", "Übergröße", "שלום", " "]
# What only bytes can hold, and what only an escape of JSON can.
BROKEN = [b"\xed\xa0\x80", b"\xc0\xaf", b"\xff\xfe", b"\xf0\x9f\x98", b"\\ud800", b"\\udfff", b"\\u0000"]
STEERING = re.compile("[\x00-\x08\x0b-\x1f\x7f-\x9f\u200e\u200f\u061c\u2028-\u202e\u2066-\u2069\ufeff]")
OWN_COLOURS = re.compile(r"\x1b\[(0|1|2|22|39|90)?m")


def hostile_texts(count):
    chance = random.Random(20260601)
    return ["".join(chance.choice(PIECES) for _ in range(chance.randint(1, 6))) for _ in range(count)]


class Hostile(DeskTest):
    def check(self, text):
        found = STEERING.search(text)
        self.assertIsNone(found, found and repr(text[max(0, found.start() - 40):found.end() + 20]))

    def on_terminal(self, *words):
        """What the command writes where it takes its output for a terminal."""
        main, other = pty.openpty()
        process = subprocess.Popen([TAVRIN, *words], env=self.desk.env, stdin=other, stdout=other,
                                   stderr=other)
        os.close(other)
        parts = []
        while True:
            try:
                part = os.read(main, 1 << 16)
            except OSError:
                part = b""
            if not part:
                break
            parts.append(part)
        process.wait()
        os.close(main)
        # The terminal's driver ends a line with both.
        return OWN_COLOURS.sub("", b"".join(parts).decode().replace("\r\n", "\n"))

    def test_the_command_on_a_terminal(self):
        texts = hostile_texts(COUNT)
        per_file = COUNT // 4
        for start in range(0, COUNT, per_file):
            names = [f"{start + i} {text}" for i, text in enumerate(texts[start:start + per_file])]
            self.desk.write_widgets([widget("note", {"text": name}, None, name=name)
                                     for name in names], announce=False)
            listed = self.on_terminal("widgets")
            self.check(listed)
            self.assertGreaterEqual(listed.count("\n"), per_file,
                                    listed[:500])
            told = json.loads(subprocess.run([TAVRIN, "widgets", "list", "--json"], env=self.desk.env,
                                             capture_output=True, check=True).stdout)
            self.assertEqual([each["name"] for each in told["widgets"]], names)
        for text in texts[:40]:
            self.check(self.on_terminal("widgets", "show", text.replace("\0", "")))
        for name in names[:40]:
            self.check(self.on_terminal("widgets", "show", name.split(" ")[0]))
        self.show_in_a_real_terminal()

    def show_in_a_real_terminal(self):
        """It keeps its title and its size, and nothing was run."""
        done = self.desk.home / "done"
        self.desk.spawn(["xterm", "-xrm", "XTerm*allowWindowOps: true", "-geometry", "80x24", "-e", "sh",
                         "-c", f"printf '\\033]0;mine\\007'; '{TAVRIN}' widgets; touch '{done}'; sleep 99"])
        window = wait_for(lambda: self.desk.run("xdotool", "search", "--onlyvisible", "--name", "^mine$",
                                                check=False).split(), "the terminal")[0]
        size = self.desk.run("xdotool", "getwindowgeometry", "--shell", window)
        wait_for(done.exists, "the list", 120)
        self.assertEqual(self.desk.run("xdotool", "getwindowname", window).strip(), "mine")
        self.assertEqual(self.desk.run("xdotool", "getwindowgeometry", "--shell", window), size)
        self.assertFalse(list(self.desk.home.rglob("taken")))

    def test_the_script_of_the_status_line(self):
        (self.desk.home / ".claude").mkdir()
        subprocess.run([TAVRIN, "usage", "connect"], env=self.desk.env, capture_output=True, check=True)
        line = json.loads((self.desk.home / ".claude" / "settings.json").read_text())["statusLine"]
        chance = random.Random(7)
        texts = [json.dumps(text, ensure_ascii=False)[1:-1].encode() for text in hostile_texts(COUNT)]
        together = 50
        for start in range(0, COUNT, together):
            parts = texts[start:start + together] + [chance.choice(BROKEN) for _ in range(3)]
            chance.shuffle(parts)
            model, folder = b"".join(parts[::2]), b"".join(parts[1::2])
            payload = (b'{"model": {"display_name": "' + model + b'"}, "workspace": {"current_dir": "/'
                       + folder + b'"}}')
            done = subprocess.run(["sh", "-c", line["command"]], env=self.desk.env, input=payload,
                                  capture_output=True, cwd=self.desk.home, check=True)
            self.assertEqual(done.stderr, b"")
            shown = done.stdout.decode()
            self.assertTrue(shown.endswith("\n"))
            self.check(shown)
            self.assertEqual(shown.count("\n"), 1)
        self.assertFalse(list(pathlib.Path(self.desk.home).rglob("taken")))


if __name__ == "__main__":
    unittest.main()
