"""The completion scripts, loaded and used in the shells themselves, on a terminal."""

import os
import pty
import re
import select
import shutil
import time
import unittest

from rig import BUILD, Desk

TAVRIN = BUILD / "bin" / "tavrin"

# How each shell starts plainly, and how it loads the script.
SHELLS = {
    "bash": (["bash", "--norc", "--noprofile", "-i"], "source <(tavrin completion bash)"),
    "zsh": (["zsh", "-f", "-i"],
            "unsetopt beep; autoload -U compinit; compinit -u -D; source <(tavrin completion zsh)"),
    "fish": (["fish", "--no-config", "-i"], "tavrin completion fish | source"),
}


class Terminal:
    """A shell on a terminal of its own."""

    def __init__(self, command, environment):
        self.process, self.file = pty.fork()
        if self.process == 0:
            os.execvpe(command[0], command, {**environment, "TERM": "xterm", "COLUMNS": "200"})
        self.text = ""

    def type(self, keys):
        self.text = ""
        os.write(self.file, keys.encode())

    def wait_for(self, pattern, seconds=20):
        end = time.monotonic() + seconds
        while True:
            # Colours and the cursor's movements apart.
            plain = re.sub(r"\x1b\[[0-9;?]*[A-Za-z]|\x1b[=>]|\x1b\]0;[^\x07]*\x07", "", self.text)
            found = re.search(pattern, plain)
            if found:
                return found
            if time.monotonic() > end:
                raise AssertionError(f"waited for {pattern!r}, there is {plain!r}")
            if select.select([self.file], [], [], 0.1)[0]:
                self.text += os.read(self.file, 65536).decode(errors="replace")

    def close(self):
        os.close(self.file)
        os.waitpid(self.process, 0)


class Completion(unittest.TestCase):
    # Typed before the key, what the shell writes then, and the words of the line.
    CASES = (
        ("tavrin wid", "gets", ["tavrin", "widgets"]),
        ("tavrin widgets show my", "focus", ["tavrin", "widgets", "show", "My focus"]),
        ("tavrin widgets show 'My f", "ocus", ["tavrin", "widgets", "show", "My focus"]),
        ("tavrin widgets set 'My focus' ringsAtTheEnd=n", "o",
         ["tavrin", "widgets", "set", "My focus", "ringsAtTheEnd=no"]),
        ("tavrin widgets set My\\ focus ringsAtTheEnd=n", "o",
         ["tavrin", "widgets", "set", "My focus", "ringsAtTheEnd=no"]),
        ("tavrin profiles list --js", "on", ["tavrin", "profiles", "list", "--json"]),
    )

    def setUp(self):
        self.desk = Desk(display=False, bus=False)
        self.addCleanup(self.desk.close)
        programs = self.desk.home / "bin"
        programs.mkdir()
        (programs / "tavrin").symlink_to(TAVRIN)
        self.desk.env["PATH"] = f"{programs}:{self.desk.env['PATH']}"
        self.desk.run("tavrin", "widgets", "add", "pomodoro", "My focus")

    def complete(self, shell):
        command, load = SHELLS[shell]
        if not shutil.which(command[0]):
            self.skipTest(f"{shell} is not installed")
        terminal = Terminal(command, self.desk.env)
        self.addCleanup(terminal.close)
        terminal.type(f"{load}\rprintf 'rea%s\\n' dy\r")
        terminal.wait_for("ready")
        for typed, shown, words in self.CASES:
            with self.subTest(shell=shell, typed=typed):
                terminal.type(typed)
                terminal.wait_for(re.escape(typed[-3:]))
                terminal.type("\t")
                terminal.wait_for(re.escape(shown))
                # To the front of the line, which is then an argument list.
                terminal.type("\x01printf '<%s>' \r")
                # A shell may write the words one by one: they end where its prompt begins.
                found = terminal.wait_for(r"(?:<[^<>%]*>)+(?=[^<])").group()
                self.assertEqual(re.findall("<([^<>]*)>", found), words)

    def test_bash(self):
        self.complete("bash")

    def test_zsh(self):
        self.complete("zsh")

    def test_fish(self):
        self.complete("fish")


if __name__ == "__main__":
    unittest.main(verbosity=2)
