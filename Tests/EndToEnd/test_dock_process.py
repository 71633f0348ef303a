"""Restarting a Dock: the real killall against a process named Dock that a supervisor starts again.

Everything runs in a process namespace of its own, so that no other process of that name is hit.
"""

import contextlib
import ctypes
import json
import os
import pathlib
import plistlib
import signal
import subprocess
import sys
import time
import unittest

if os.environ.get("TAVRIN_CAGED") != "1":
    user = ["-Ur"] if os.getuid() != 0 else []
    os.environ["TAVRIN_CAGED"] = "1"
    os.execvp("unshare", ["unshare", *user, "-pf", "--mount-proc", "--kill-child", sys.executable,
                          *sys.argv])

import test_dock
from test_dock import app

PR_SET_NAME = 15


class StandIn:
    """Starts a process named Dock and starts it again when it ends, as it is told:

    keeps     it takes no notice of being ended
    delay     seconds until the next one
    rewrites  how often an ending Dock writes its old items back
    """

    def __init__(self, plist, keeps=False, delay=0.0, rewrites=0):
        self.plist, self.keeps, self.delay = plist, keeps, delay
        self.starts_file = plist.with_name("starts")
        self.starts_file.write_text("")
        self.supervisor = os.fork()
        if self.supervisor == 0:
            self.supervise(rewrites)
            os._exit(0)
        test_wait(lambda: self.starts() > 0)

    def starts(self):
        return len(self.starts_file.read_text())

    def supervise(self, rewrites):
        old = self.plist.read_bytes()
        while True:
            child = os.fork()
            if child == 0:
                self.be_a_dock(old if rewrites > 0 else None)
            os.waitpid(child, 0)
            rewrites -= 1
            time.sleep(self.delay)

    def be_a_dock(self, old):
        def end(*_):
            if self.keeps:
                return
            if old is not None:
                temporary = self.plist.with_name("old")
                temporary.write_bytes(old)
                temporary.rename(self.plist)
            os._exit(0)

        signal.signal(signal.SIGTERM, end)
        ctypes.CDLL(None).prctl(PR_SET_NAME, b"Dock", 0, 0, 0)
        with self.starts_file.open("a") as log:
            log.write(".")
        while True:
            signal.pause()

    def close(self):
        os.kill(self.supervisor, signal.SIGKILL)
        os.waitpid(self.supervisor, 0)
        subprocess.run(["/usr/bin/killall", "-9", "Dock"], capture_output=True)
        # This is the first process of its namespace: orphans are its own to bury.
        while True:
            try:
                os.waitpid(-1, 0)
            except ChildProcessError:
                return


def test_wait(condition):
    end = time.monotonic() + 30
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("the stand-in Dock did not start")
        time.sleep(0.01)


def is_dock_running():
    return subprocess.run(["pgrep", "-x", "Dock"], capture_output=True).returncode == 0


class Restart(test_dock.DockTest):
    def change(self, age=2.1, status=0, **habits):
        """Changes the Dock after the stand-in has run for a while; gives what came of it."""
        self.put({"persistent-apps": [app(1), app(2)]})
        # What a start under the tracer takes on this machine, as busy as it is.
        start = time.monotonic()
        self.tavrin("dock", "--help", wrapper=("strace", "-o", os.devnull, "-e", "trace=rename"))
        born = time.monotonic()
        self.start_time = born - start
        dock = StandIn(self.dock, **habits) if habits.pop("exists", True) else None
        if dock:
            self.addCleanup(dock.close)
        time.sleep(age)
        before = dock.starts() if dock else 0
        log = self.home / "renames"
        start = time.monotonic()
        self.age = start - born
        result = self.tavrin("dock", "remove", "App1", status=status,
                             wrapper=("strace", "-o", str(log), "-e", "trace=rename"))
        took = time.monotonic() - start
        writes = sum(f'"{self.dock}"' in line for line in log.read_text().splitlines())
        test_wait(lambda: not dock or habits.get("keeps") or dock.starts() > before or took > 4.9)
        return result, took, writes, (dock.starts() if dock else 0) - before

    def assertTook(self, took, seconds):
        """At most so long, and what the machine makes of it."""
        self.assertLess(took, seconds + 10 * self.start_time)

    def test_a_dock_that_behaves(self):
        result, took, writes, restarts = self.change()
        self.assertEqual((writes, restarts, self.labels()), (1, 1, ["App2"]), result.stderr)
        self.assertTook(took, 1.5)
        self.tavrin("dock", "undo")
        self.assertEqual(self.labels(), ["App1", "App2"])

    def test_a_young_dock_is_given_time(self):
        _, took, writes, restarts = self.change(age=0.5)
        self.assertEqual((writes, restarts, self.labels()), (1, 1, ["App2"]))
        self.assertGreater(self.age + took, 1.9)
        self.assertTook(took, 3.5)

    def test_a_dock_that_comes_late(self):
        _, took, writes, restarts = self.change(delay=3)
        self.assertEqual((writes, restarts), (1, 1))
        self.assertGreater(took, 2.8)
        self.assertTook(took, 5)

    def test_a_dock_that_comes_too_late(self):
        result, took, writes, _ = self.change(delay=7, status=15)
        self.assertIn("tavrin: Failed to reload dock because the Dock did not relaunch\n",
                      result.stderr)
        self.assertEqual((writes, self.labels()), (1, ["App2"]))
        self.assertGreater(took, 4.8)
        self.assertTook(took, 7)

    def test_a_dock_that_keeps_its_process(self):
        result, took, writes, restarts = self.change(keeps=True, status=15)
        self.assertIn("tavrin: Failed to reload dock because the Dock did not relaunch\n",
                      result.stderr)
        self.assertEqual((writes, restarts), (1, 0))
        self.assertIn("`tavrin dock undo` brings it back", result.stderr)
        self.assertTook(took, 7)

    def test_a_dock_that_writes_its_old_items_once(self):
        _, took, writes, restarts = self.change(rewrites=1)
        self.assertEqual((writes, restarts, self.labels()), (2, 2, ["App2"]))
        self.assertGreater(took, 1.8)
        self.assertTook(took, 4)

    def test_a_dock_that_always_does(self):
        result, took, writes, restarts = self.change(rewrites=99, status=15)
        self.assertIn("tavrin: Failed to reload dock because the Dock kept its previous items; "
                      "try again\n", result.stderr)
        self.assertEqual((writes, restarts, self.labels()), (2, 2, ["App1", "App2"]))
        self.assertTook(took, 7)

    def test_no_dock(self):
        result, took, writes, _ = self.change(age=0, exists=False, status=15)
        self.assertIn("tavrin: Failed to reload dock because killall exited with 1: "
                      "Dock: no process found\n", result.stderr)
        self.assertEqual((writes, self.labels()), (1, ["App2"]))
        self.assertTook(took, 2)
        self.tavrin("dock", "undo", "--no-restart")
        self.assertEqual(self.labels(), ["App1", "App2"])

    def kill_when(self, condition, age, **habits):
        """Ends the program while it restarts the Dock, and brings that back by the command it named.
        Gives the items it left, or nothing where it was done before it could be ended."""
        self.put({"persistent-apps": [app(1), app(2)]})
        with contextlib.closing(StandIn(self.dock, **habits)) as dock:
            time.sleep(age)
            starts = dock.starts()
            program = subprocess.Popen([str(test_dock.TAVRIN), "dock", "remove", "App1"],
                                       env=self.env, text=True, stderr=subprocess.PIPE,
                                       stdout=subprocess.DEVNULL)
            # Said before anything is written.
            self.assertTrue(
                program.stderr.readline().endswith("; `tavrin dock undo` brings it back\n"))
            test_wait(lambda: condition(dock.starts() - starts) or program.poll() is not None)
            is_late = program.poll() is not None
            program.kill()
            program.communicate()
            test_wait(is_dock_running)
            left = self.labels()
            self.tavrin("dock", "undo")
            self.assertEqual(self.labels(), ["App1", "App2"])
            return None if is_late else left

    def assertKilled(self, lefts, condition, age=2.1, **habits):
        """A busy machine may see the moment when it has passed: it is tried until it is caught."""
        seen = []
        while len(seen) < 8 and (not seen or seen[-1] not in lefts):
            seen.append(self.kill_when(condition, age, **habits))
        self.assertIn(seen[-1], lefts, seen)

    def test_killed_while_the_dock_settles(self):
        backups = len(list(self.data.glob("backups/*.plist")))
        def has_new_backup(_):
            return len(list(self.data.glob("backups/*.plist"))) > backups
        self.assertKilled([["App1", "App2"]], has_new_backup, age=0.1)

    def test_killed_while_no_dock_runs(self):
        self.assertKilled([["App2"]], lambda _: not is_dock_running(), delay=1.5)

    def test_killed_in_the_second_round(self):
        self.assertKilled([["App1", "App2"], ["App2"]], lambda starts: starts == 1, rewrites=1)

    def test_killed_after_the_second_write(self):
        # The delay leaves time to see it.
        self.assertKilled([["App2"]], lambda starts: starts == 1 and self.labels() == ["App2"],
                          rewrites=1, delay=0.5)

    def test_many_changes_restart_once(self):
        self.put({"persistent-apps": [app(i) for i in range(500)]})
        dock = StandIn(self.dock)
        self.addCleanup(dock.close)
        time.sleep(2.1)
        script = self.home / "script"
        script.write_text("".join(f"remove App{i}\n" for i in range(100)) + "spacer\n")
        self.tavrin("dock", "edit", str(script))
        test_wait(lambda: dock.starts() == 2)
        self.assertEqual(len(self.labels()), 401)


if __name__ == "__main__":
    unittest.main(verbosity=2)
