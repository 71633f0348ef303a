"""`tavrin focus` on a real session bus and X server: what it hears and what it switches to."""

import json
import signal
import unittest
from pathlib import Path

from rig import PATIENCE, BUILD, Desk, wait_for

TAVRIN = BUILD / "bin" / "tavrin"
TEMPLATE = Path(__file__).resolve().parent.parent / "Support" / "portal_template.py"
SERVER = "org.freedesktop.Notifications"
PATH = "/org/freedesktop/Notifications"


class FocusTest(unittest.TestCase):
    display = False

    def setUp(self):
        self.desk = Desk(display=self.display, window_manager=False)
        self.addCleanup(self.desk.close)
        for name, more in (("Day", ["--activate"]), ("Calm", ["--focus", "on"])):
            self.desk.run(str(TAVRIN), "profiles", "create", name, *more)
        self.process = None

    def start(self, *options):
        self.process = self.desk.spawn([str(TAVRIN), "focus", "--interval", "0.2", "--no-restart",
                                        *options], log="focus.log")

    def active(self):
        listed = json.loads(self.desk.run(str(TAVRIN), "profiles", "list", "--json"))
        return next(one["name"] for one in listed if one["active"])

    def expect(self, name):
        wait_for(lambda: self.active() == name, f"the profile {name}", pause=0.05)

    def said(self):
        return (self.desk.home / "focus.log").read_text()

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.process.wait(PATIENCE), 0, self.said())

    def switches(self, keys, profile):
        self.desk.run("xdotool", "key", keys)
        return self.active() == profile

    def wait_for_service(self, name):
        self.desk.run("gdbus", "wait", "--session", "--timeout", "10", name)


class Inhibited(FocusTest):
    def test_follows_the_notification_server(self):
        self.desk.spawn(["/usr/bin/python3", "-m", "dbusmock", "--session", SERVER, PATH, SERVER])
        self.wait_for_service(SERVER)
        call = ("gdbus", "call", "--session", "-d", SERVER, "-o", PATH, "-m")
        self.desk.run(*call, "org.freedesktop.DBus.Mock.AddProperty", SERVER, "Inhibited",
                      "<false>")
        self.start()
        wait_for(lambda: self.desk.data.joinpath("workspace-backups").exists(), "the backup")
        for state, profile in (("true", "Calm"), ("false", "Day"), ("true", "Calm")):
            self.desk.run(*call, "org.freedesktop.DBus.Mock.UpdateProperties", SERVER,
                          f"{{'Inhibited': <{state}>}}")
            self.expect(profile)
        self.assertIn("focus changed: isFocused=true", self.said())
        self.stop()
        reasons = [one["reason"] for one in
                   json.loads(self.desk.run(str(TAVRIN), "backups", "list", "--json"))]
        self.assertEqual(reasons, ["quit", "launch"])


class DoNotDisturb(FocusTest):
    def test_follows_the_desktop_setting(self):
        self.desk.spawn(["/usr/bin/python3", "-m", "dbusmock", "--session", "org.xfce.Xfconf",
                         "/org/xfce/Xfconf", "org.xfce.Xfconf"])
        self.wait_for_service("org.xfce.Xfconf")
        call = ("gdbus", "call", "--session", "-d", "org.xfce.Xfconf", "-o", "/org/xfce/Xfconf",
                "-m", "org.freedesktop.DBus.Mock.AddMethod", "org.xfce.Xfconf", "GetProperty",
                "ss", "v")
        self.start()
        for state, profile in (("True", "Calm"), ("False", "Day")):
            self.desk.run(*call, f"ret = dbus.Boolean({state})")
            self.expect(profile)
        self.stop()


class Dunst(FocusTest):
    display = True

    def test_follows_a_paused_server(self):
        self.desk.spawn(["dunst"])
        self.wait_for_service(SERVER)
        self.start()
        for state, profile in (("true", "Calm"), ("false", "Day")):
            self.desk.run("dunstctl", "set-paused", state)
            self.expect(profile)
        self.stop()


class Shortcuts(FocusTest):
    display = True

    def test_keys_switch_profiles(self):
        self.start()
        wait_for(lambda: self.switches("ctrl+alt+2", "Calm"), "the second shortcut", pause=0.1)
        self.desk.run("xdotool", "key", "ctrl+alt+1")
        self.expect("Day")
        # A profile's own shortcut is taken up while the program runs; Num Lock does not matter.
        self.desk.run(str(TAVRIN), "profiles", "hotkey", "Calm", "super+shift+k")
        wait_for(lambda: self.switches("super+shift+k", "Calm"), "the new shortcut", seconds=15,
                 pause=0.2)
        self.desk.run("xdotool", "key", "Num_Lock")
        self.desk.run("xdotool", "key", "ctrl+alt+1")
        self.expect("Day")
        self.stop()

    def test_keys_without_a_modifier_stay_everybodys(self):
        self.desk.run(str(TAVRIN), "profiles", "create", "Work")
        self.desk.run(str(TAVRIN), "profiles", "hotkey", "Work", "super+shift+k")
        file = self.desk.data / "profiles.json"
        profiles = json.loads(file.read_text())
        calm = next(one for one in profiles["profiles"] if one["name"] == "Calm")
        calm["hotkey"] = {"keyCode": 0, "modifiers": 0}
        file.write_text(json.dumps(profiles))
        self.start()
        wait_for(lambda: "Failed to register A because it lacks a modifier key" in self.said(),
                 "the refusal of A")
        self.desk.run("xdotool", "key", "a", "super+shift+k")
        self.expect("Work")
        self.desk.run("xdotool", "key", "a")
        self.stop()
        self.assertNotIn('"Calm" is the active profile', self.said())

    def test_says_which_keys_are_taken(self):
        other = self.desk.spawn([str(TAVRIN), "focus", "--no-restart"], log="other.log")
        wait_for(lambda: self.switches("ctrl+alt+2", "Calm"), "the first program", pause=0.1)
        self.start()
        wait_for(lambda: "Failed to register Ctrl+Alt+1 because the keys are taken" in self.said(),
                 "the refusal")
        other.send_signal(signal.SIGINT)
        self.assertEqual(other.wait(PATIENCE), 0)
        self.stop()


class PortalTest(FocusTest):
    """Shortcuts through the desktop's portal."""

    PORTAL = "org.freedesktop.portal.Desktop"

    def start_portal(self, **parameters):
        portal = self.desk.spawn(["/usr/bin/python3", "-m", "dbusmock", "--session", "--template",
                                  str(TEMPLATE), "--parameters", json.dumps(parameters)],
                                 log="portal.log")
        self.wait_for_service(self.PORTAL)
        return portal

    def call(self, method, *arguments):
        return self.desk.run("gdbus", "call", "--session", "-d", self.PORTAL, "-o",
                             "/org/freedesktop/portal/desktop", "-m",
                             f"dev.quellby.test.Portal.{method}", *arguments)

    def bound(self):
        return self.call("State")

    def wait_for_keys(self, *keys):
        wait_for(lambda: all(f"'{one}'" in self.bound() for one in keys), f"the shortcuts {keys}")


class Portal(PortalTest):
    def test_keys_switch_profiles(self):
        for early in (False, True):
            with self.subTest(early=early):
                portal = self.start_portal(early=early)
                self.start()
                self.wait_for_keys("CTRL+ALT+1", "CTRL+ALT+2")
                self.assertIn("'dev.quellby.Tavrin'", self.bound())
                self.call("Press", "CTRL+ALT+2")
                self.expect("Calm")
                self.call("Press", "CTRL+ALT+1")
                self.expect("Day")
                self.stop()
                self.assertEqual(self.said().count("Failed"), 0, self.said())
                portal.terminate()
                portal.wait(PATIENCE)

    def test_takes_up_a_changed_shortcut(self):
        self.start_portal()
        self.start()
        self.wait_for_keys("CTRL+ALT+2")
        self.desk.run(str(TAVRIN), "profiles", "hotkey", "Calm", "super+shift+k")
        self.wait_for_keys("SHIFT+LOGO+k", "CTRL+ALT+1")
        self.assertIn(", 1,", self.bound(), "the session before was closed")
        self.call("Press", "SHIFT+LOGO+k")
        self.expect("Calm")
        self.stop()

    def test_says_what_was_declined(self):
        cases = (("some", ["Ctrl+Alt+1 because it was declined"]),
                 ("decline", ["Ctrl+Alt+1 because it was declined", "Ctrl+Alt+2 because it was declined"]))
        for answer, sentences in cases:
            with self.subTest(answer=answer):
                portal = self.start_portal(answer=answer)
                self.start()
                for sentence in sentences:
                    wait_for(lambda: "Failed to register " + sentence in self.said(), sentence)
                self.assertEqual(self.said().count("Failed to register"), len(sentences))
                self.stop()
                portal.terminate()
                portal.wait(PATIENCE)

    def test_says_what_was_taken_back(self):
        self.start_portal()
        self.start()
        self.wait_for_keys("CTRL+ALT+2")
        self.call("TakeBack")
        wait_for(lambda: "Ctrl+Alt+2 because the desktop has taken it back" in self.said(), "the remark")
        self.stop()


class PortalWithDisplay(PortalTest):
    display = True

    def test_a_portal_that_fails_leaves_the_keys_to_the_display(self):
        for answer in ("fail", "die"):
            with self.subTest(answer=answer):
                portal = self.start_portal(answer=answer)
                self.start()
                wait_for(lambda: self.switches("ctrl+alt+2", "Calm"), "the grabbed keys", pause=0.1)
                self.desk.run("xdotool", "key", "ctrl+alt+1")
                self.expect("Day")
                self.stop()
                portal.terminate()
                portal.wait(PATIENCE)

    def test_a_portal_that_ends_leaves_the_keys_to_the_display(self):
        portal = self.start_portal()
        self.start()
        self.wait_for_keys("CTRL+ALT+2")
        self.assertFalse(self.switches("ctrl+alt+2", "Calm"), "the keys are the portal's")
        portal.kill()
        portal.wait(PATIENCE)
        wait_for(lambda: self.switches("ctrl+alt+2", "Calm"), "the grabbed keys", pause=0.1)
        self.stop()


class NothingThere(FocusTest):
    def test_says_what_is_missing(self):
        self.desk.env["DBUS_SESSION_BUS_ADDRESS"] = "disabled:"
        self.start()
        wait_for(lambda: "there is no X server to register keys with" in self.said(), "the remark")
        self.assertIn("The Focus state cannot be read here", self.said())
        self.stop()


if __name__ == "__main__":
    unittest.main(verbosity=2)
