"""The widgets come back with the session, also after its display has ended."""

import json
import shlex
import unittest

from rig import BUILD, BUNDLES, Desk, wait_for, widget

TAVRIN = str(BUILD / "bin" / "tavrin")


class Autostart(unittest.TestCase):
    def setUp(self):
        self.desk = Desk(window_manager=False)
        self.addCleanup(self.desk.close)
        self.desk.env["TAVRIN_BUNDLES"] = str(BUNDLES)
        self.desk.write_widgets([widget("clock", {}, 1), widget("note", {"text": "a"}, 2)],
                                announce=False)
        self.addCleanup(self.desk.run, TAVRIN, "stop", check=False)
        self.entries = self.desk.home / "config" / "autostart"

    def status(self):
        return json.loads(self.desk.run(TAVRIN, "autostart", "status", "--json"))

    def running(self):
        slots = json.loads(self.desk.run(TAVRIN, "status", "--json"))
        return {slot["slot"]: slot["process"] for slot in slots if slot["isRunning"]}

    def begin_session(self):
        """What a session does with its entries: runs each "Exec", of which only quotes are used."""
        for entry in self.entries.glob("*.desktop"):
            lines = dict(line.split("=", 1) for line in entry.read_text().splitlines()
                         if "=" in line)
            self.assertEqual(lines["Type"], "Application")
            self.desk.spawn(shlex.split(lines["Exec"]))

    def test_the_slots_come_back_when_the_display_has_ended_and_a_session_begins_anew(self):
        self.assertFalse(self.status()["isOn"])
        self.begin_session()
        self.assertEqual(self.running(), {})
        self.desk.run(TAVRIN, "autostart", "on")
        self.assertTrue(self.status()["isOn"])
        self.begin_session()
        wait_for(lambda: set(self.running()) == {1, 2}, "both slots")
        before = self.running()

        self.desk.server.kill()
        self.desk.server.wait()
        wait_for(lambda: self.running() == {}, "the slots to end with their display")
        self.desk._start_display(("1280x800",))
        self.begin_session()
        wait_for(lambda: set(self.running()) == {1, 2}, "both slots again")
        self.assertFalse(set(before.values()) & set(self.running().values()))
        wait_for(lambda: all(self.desk.windows(process) for process in self.running().values()),
                 "their tiles")

        self.desk.run(TAVRIN, "autostart", "off")
        self.assertFalse(self.status()["isOn"])
        self.assertEqual(list(self.entries.iterdir()), [])

    def test_where_the_users_systemd_runs_the_session_it_starts_the_slots(self):
        mock = self.desk.spawn(["/usr/bin/python3", "-m", "dbusmock", "--session",
                                "org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                                "org.freedesktop.systemd1.Manager"])
        self.desk.run("gdbus", "wait", "--session", "--timeout", "20", "org.freedesktop.systemd1")

        def method(name, given, answer, code):
            self.desk.run("gdbus", "call", "--session", "-d", "org.freedesktop.systemd1", "-o",
                          "/org/freedesktop/systemd1", "-m", "org.freedesktop.DBus.Mock.AddMethod",
                          "org.freedesktop.systemd1.Manager", name, given, answer, code)
        method("Reload", "", "", "")
        method("ListUnitsByNames", "as", "a(ssssssouso)",
               "ret = [(args[0][0], 'd', 'loaded', 'active', 'active', '', '/', 0, '', '/')]")
        self.desk.run(TAVRIN, "autostart", "on")
        folder = self.desk.home / "config" / "systemd" / "user"
        link = folder / "graphical-session.target.wants" / "tavrin.service"
        self.assertEqual(link.resolve(), (folder / "tavrin.service").resolve())
        self.assertIn("PartOf=graphical-session.target", link.read_text())
        self.assertIn(f'ExecStart="{TAVRIN}" start', link.read_text())
        self.assertFalse(self.entries.exists() and list(self.entries.iterdir()))
        self.assertIn("tavrin.service", self.status()["sentence"])
        # In a session that systemd does not run, the same wish takes the other way.
        mock.terminate()
        mock.wait()
        self.desk.run(TAVRIN, "autostart", "on")
        self.assertFalse(link.is_symlink())
        self.assertEqual(len(list(self.entries.iterdir())), 1)


if __name__ == "__main__":
    unittest.main()
