"""The command's own words in another language: the pseudo-language has each text in brackets, so
what stands outside of them was not translated."""

import fcntl
import json
import os
import pathlib
import pty
import re
import struct
import subprocess
import tempfile
import termios
import time
import unittest

from rig import BUILD

TAVRIN = BUILD / "bin" / "tavrin"
# What is typed as it stands: the commands with their options, places for words, what they take.
TYPED = re.compile(
    r"tavrin[^\n]*?(?=  |\n|$)|--?[a-z-]+|\{[a-z,]+\}|\b[A-Z]{2,}\b|\[\d[\d. -]*\]"
    r"|\b(?:printf|source)\b.*|\b[0-9A-F]{8}(?:-[0-9A-F]{4,12})*\b")
WORD = re.compile(r"[A-Za-z]{2,}")


def outside(text):
    """`text` without what stands in brackets, and what stands in these."""
    kept, depth = [], 0
    for letter in text:
        depth += letter == "["
        if depth == 0:
            kept.append(letter)
        depth -= letter == "]" and depth > 0
    return "".join(kept)


class PseudoWords(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="tavrin-words-")
        self.addCleanup(folder.cleanup)
        self.environment = {"HOME": folder.name, "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8",
                            "TAVRIN_LANGUAGE": "en@pseudo"}

    def run_words(self, *words):
        run = subprocess.run([TAVRIN, *words], capture_output=True, text=True, timeout=60,
                             env=self.environment, stdin=subprocess.DEVNULL)
        return run.stdout + run.stderr

    def english(self, text, *known):
        text = re.sub(r"\[(?=[\d.])([\d. -]*)\]", "", text)
        text = TYPED.sub(" ", outside(text))
        for word in known:
            text = text.replace(word, " ")
        return WORD.findall(text)

    def commands(self, *path):
        """All commands, the groups before what they hold."""
        yield path
        help_text = self.run_words(*path, "--help")
        within = re.search(r"^\[Šûb[^\]]*\]:\n((?:  .*\n| {10,}.*\n)+)", help_text, re.M)
        for name in re.findall(r"^  ([a-z]+) ", within.group(1) if within else "", re.M):
            yield from self.commands(*path, name)

    def test_every_help(self):
        all_commands = list(self.commands())
        self.assertGreater(len(all_commands), 50)
        names = {name for path in all_commands for name in path}
        for path in all_commands:
            with self.subTest(path=path):
                found = self.english(self.run_words(*path, "--help"))
                self.assertEqual([], [word for word in found if word not in names])

    def test_what_it_says(self):
        known = ["Tea", "Focus", "timer", "pomodoro", "clock", "launch", "quit"]
        for words in ["widgets", "widgets add timer Tea --place", "widgets add pomodoro Focus",
                      "widgets show Tea", "widgets", "widgets kinds", "widgets kinds pomodoro",
                      "widgets span Focus 2", "widgets rename Focus Tea2", "widgets rename Tea2 Focus",
                      "status", "stop", "widgets release Tea", "widgets remove --yes Focus",
                      "profiles list", "backups list", "backups create", "backups list",
                      "dock backups", "dock show", "doctor", "usage",
                      # What it refuses.
                      "frob", "--frob", "widgets frob", "backups", "widgets add", "widgets set",
                      "widgets set Tea presets=never", "widgets span Tea 9", "widgets show Nobody",
                      "widgets add timer --span", "usage --days 0", "usage --days soon",
                      "profiles create Work --color red", "profiles create Work --empty --from dock",
                      "focus --interval 0", "start 99", "dock find", "dock remove", "widgets place 9"]:
            with self.subTest(words=words):
                text = self.run_words(*words.split())
                self.assertIn("[", text)
                found = self.english(text, *known, *words.split())
                kinds = set(re.findall(r"^([a-zA-Z]+)  ", text, re.M))
                self.assertEqual([], [word for word in found if word not in kinds])

    def on_terminal(self, *words):
        """What it writes on a terminal of 120 columns."""
        main, other = pty.openpty()
        fcntl.ioctl(other, termios.TIOCSWINSZ, struct.pack("HHHH", 50, 120, 0, 0))
        process = subprocess.Popen([TAVRIN, *words], stdin=other, stdout=other, stderr=other,
                                   env={**self.environment, "TERM": "xterm", "NO_COLOR": "1"})
        os.close(other)
        text = b""
        try:
            while piece := os.read(main, 65536):
                text += piece
        except OSError:
            pass
        os.close(main)
        self.assertEqual(0, process.wait(20), text)
        return text.decode().replace("\r", "").split("\n")

    def test_a_chart_and_columns_stand_in_a_language_from_right_to_left(self):
        log = pathlib.Path(self.environment["HOME"], ".claude/projects/-home-u-alpha/session.jsonl")
        log.parent.mkdir(parents=True)
        stamp = time.strftime("%Y-%m-%dT%H:%M:%S.000Z", time.gmtime(time.time() - 600))
        log.write_text(json.dumps({
            "type": "assistant", "timestamp": stamp, "requestId": "r1", "sessionId": "s",
            "message": {"id": "m1", "model": "m", "usage": {
                "input_tokens": 1_000_000, "output_tokens": 234_567,
                "cache_creation_input_tokens": 0, "cache_read_input_tokens": 0}}}) + "\n")
        self.environment |= {"TAVRIN_LANGUAGE": "ar", "LC_ALL": "ar_EG.UTF-8"}
        lines = self.on_terminal("usage")
        text = "\n".join(lines)
        self.assertIn("1,234,567", text)
        self.assertIn("█", text)
        self.assertEqual([], re.findall("[\u0660-\u0669\u06f0-\u06f9]", text), "digits of one script")
        self.assertEqual([], WORD.findall(text.replace("alpha", "")))
        axis = next(i for i, line in enumerate(lines) if "┼" in line)
        # Its days, and the cells of tables, keep their places among letters from right to left.
        for line in [lines[axis + 1], *(line for line in lines if "1,234,567" in line)]:
            pieces = [piece for piece in re.split(" {2,}", line.strip()) if piece]
            self.assertTrue(all("\u200e" in piece for piece in pieces if re.search("[ء-ي]", piece)),
                            line)


if __name__ == "__main__":
    unittest.main()
