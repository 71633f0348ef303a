"""The clipboard's slot beside real programs: an X server, a keyring, an owner that copies a series.

TAVRIN_COPIES and TAVRIN_INTERVAL set how many copies the series has and the milliseconds between
them. The defaults allow for a machine that is busy with other tests.
"""

import json
import os
import pathlib
import random
import resource
import signal
import subprocess
import sys
import time
import unittest

from rig import BUILD, DeskTest, wait_for, widget

OWNER = BUILD / "Tests" / "Linux" / "SelectionOwner"
READER = pathlib.Path(__file__).parent.parent / "Support" / "clipboard_file.py"
COPIES = int(os.environ.get("TAVRIN_COPIES", "60"))
INTERVAL = int(os.environ.get("TAVRIN_INTERVAL", "150"))


def start_keyring(desk):
    keyring = subprocess.Popen(
        ["gnome-keyring-daemon", "--unlock", "--components=secrets", "--foreground"], env=desk.env,
        stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    keyring.stdin.write(b"test")
    keyring.stdin.close()
    desk.processes.append(keyring)
    desk.run("gdbus", "wait", "--session", "--timeout", "10", "org.freedesktop.secrets")


def items_of(desk):
    """What the sealed file holds, read by another program."""
    file = desk.data / "clipboard.json.enc"
    # The tool adds no line break where its output is no terminal.
    key = subprocess.run(["secret-tool", "lookup", "service", "dev.quellby.tavrin.clipboard",
                          "account", "primary"], env=desk.env, capture_output=True,
                         check=False).stdout
    if not file.exists() or len(key) != 32:
        return []
    opened = subprocess.run([sys.executable, str(READER), "open", str(file), key.hex()],
                            capture_output=True, check=True)
    return json.loads(opened.stdout)


class ClipboardTest(DeskTest):
    def setUp(self):
        super().setUp()
        start_keyring(self.desk)
        self.desk.write_widgets([widget("clipboard", {"historyLimit": 5000}, 3, "Clipboard")],
                                announce=False)
        self.slot = self.desk.start_slot(3)
        self.desk.wait_for_name(3)
        self.warm_up()

    def warm_up(self):
        """Copies until the slot is seen to listen."""
        def is_kept():
            self.copy("warm")
            time.sleep(0.3)
            return self.items()
        wait_for(is_kept, "the slot to listen")

    def copy(self, text):
        subprocess.run(["xclip", "-selection", "clipboard"], env=self.desk.env, input=text.encode(),
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)

    def items(self):
        return items_of(self.desk)

    def start_series(self, count):
        return self.desk.spawn(["sh", "-c", f"sleep 999 | {OWNER} series {count} {INTERVAL}"],
                               log="owner.log", start_new_session=True)

    def end_series(self, owner):
        os.killpg(owner.pid, 15)

    def copies_made(self):
        return (self.desk.home / "owner.log").read_text().count("copied")

    def test_a_series_is_kept_in_order_and_survives_a_restart(self):
        owner = self.start_series(COPIES)
        self.addCleanup(self.end_series, owner)
        wait_for(lambda: self.copies_made() >= COPIES, "the series", 30 + COPIES * 0.1, 0.2)
        expected = [number for number in range(COPIES) if number % 4 != 3]
        def all_saved():
            # The warm-up's copies stand before them.
            items = [item for item in self.items() if item.get("text") != "warm"]
            return items if len(items) >= len(expected) else None
        try:
            items = wait_for(all_saved, "the saved history", pause=0.2)
        except AssertionError:
            items = [item for item in self.items() if item.get("text") != "warm"]
        found = []
        for item in reversed(items):
            kind = item["kind"]
            self.assertEqual("beside" in item.get("text", ""), False)
            found.append((kind, item.get("text") or item.get("fileURL") or item["byteSize"]))
        self.assertEqual(found, [
            ("text", f"item {n}") if n % 4 == 0 else
            ("image", 8 + len(f"item {n}")) if n % 4 == 1 else
            ("file", f"file:///tmp/item%20{n}") for n in expected])
        self.assertEqual((self.desk.data / "clipboard.json.enc").stat().st_mode & 0o777, 0o600)
        print(f"\n{len(found)} of {COPIES} copies kept; the rest was hinted as secret")

    def test_a_kill_at_any_moment_leaves_a_file_that_opens(self):
        owner = self.start_series(400)
        self.addCleanup(self.end_series, owner)
        for _ in range(5):
            time.sleep(random.uniform(0.1, 1.2))
            self.kill(self.slot)
            before = self.items()
            self.assertTrue(before)
            self.slot = self.desk.start_slot(3)
            self.desk.wait_for_name(3)
        self.assertNotIn("Failed", self.desk.log(3))

    def test_a_crash_leaves_no_memory_behind(self):
        unlimited = (resource.RLIM_INFINITY, resource.RLIM_INFINITY)
        try:
            resource.prlimit(self.slot.pid, resource.RLIMIT_CORE, unlimited)
        except PermissionError:
            self.skipTest("the limit of another process cannot be raised")
        os.kill(self.slot.pid, signal.SIGABRT)
        _, status = os.waitpid(self.slot.pid, 0)
        self.slot.returncode = -signal.SIGABRT
        self.assertEqual(os.WTERMSIG(status), signal.SIGABRT)
        self.assertFalse(os.WCOREDUMP(status))

    def test_what_was_copied_outlives_its_owner(self):
        owner = self.start_series(1)
        wait_for(lambda: self.copies_made() == 1, "the copy")
        wait_for(self.items, "the save", pause=0.2)
        self.end_series(owner)
        wait_for(lambda: self.desk.run("timeout", "2", "xclip", "-selection", "clipboard", "-o", check=False)
                 == "item 0", "the slot to offer it", 10, 0.1)


if __name__ == "__main__":
    unittest.main()
