"""What a timer's end says at a real notification server: dunst, which reads bodies as markup."""

import calendar
import shutil
import signal
import time
import unittest
import xml.etree.ElementTree
from pathlib import Path

import dbus

from rig import PATIENCE, DeskTest, reference_now, wait_for, widget

MANAGER = Path(__file__).resolve().parent.parent / "Support" / "manager_template.py"
SERVICE_MANAGER = "org.freedesktop.systemd1"
SERVER = "org.freedesktop.Notifications"
PATH = "/org/freedesktop/Notifications"
DUNST = "org.dunstproject.cmd0"
LENGTH = 1500
CONFIG = """[global]
font = Sans 10
markup = full
format = "%s\\n%b"
mouse_left_click = do_action, close_current
stack_duplicates = false
idle_threshold = 0
[urgency_normal]
timeout = 0
"""
# What a name holds, and what is to be seen of it.
HOSTILE = (
    ("<b>Tea</b> <img src=/dev/zero> &amp; <a href='x'>",) * 2,
    ("\u202egpj\u2066.exe\u200f", "\ufffdgpj\ufffd.exe"),
    ("%s %b \\n 100 %",) * 2,
    ("\x1b]0;taken\x07", "\ufffd]0;taken\ufffd"),
    ("two\nlines",) * 2,
    ("\U0001f469\u200d\U0001f4bb",) * 2,
)


@unittest.skipUnless(shutil.which("dunst"), "dunst is not installed")
class Notices(DeskTest):
    def setUp(self):
        super().setUp()
        self.desk.spawn(["/usr/bin/python3", "-m", "dbusmock", "--session", "--template", str(MANAGER)],
                        log="manager.log")
        self.wait_for_service(SERVICE_MANAGER)
        (self.desk.home / "dunstrc").write_text(CONFIG)
        self.server = self.start_server()
        self.bus = dbus.bus.BusConnection(self.desk.env["DBUS_SESSION_BUS_ADDRESS"])
        self.addCleanup(self.bus.close)

    def wait_for_service(self, name):
        self.desk.run("gdbus", "wait", "--session", "--timeout", str(int(PATIENCE)), name,
                      timeout=PATIENCE + 10)

    # The server

    def start_server(self):
        server = self.desk.spawn(["dunst", "-conf", str(self.desk.home / "dunstrc")], log="dunst.log")
        self.wait_for_service(SERVER)
        return server

    def ask_server(self, interface, method, *arguments):
        return dbus.Interface(self.bus.get_object(SERVER, PATH, introspect=False),
                              interface).get_dbus_method(method)(*arguments)

    def count(self, what="displayed"):
        return self.ask_server(dbus.PROPERTIES_IFACE, "Get", DUNST, f"{what}Length")

    def await_notices(self, count):
        wait_for(lambda: self.count() == count, f"{count} notices on the screen")

    def take_all(self):
        """What was on the screen, as (summary, body, message); nothing is there any more."""
        known = {one["id"] for one in self.ask_server(DUNST, "NotificationListHistory")}
        self.ask_server(DUNST, "NotificationCloseAll")
        self.await_notices(0)
        return [(str(one["summary"]), str(one["body"]), str(one["message"]))
                for one in self.ask_server(DUNST, "NotificationListHistory")
                if one["id"] not in known]

    def show_foreign_notice(self):
        """Another program's."""
        self.ask_server(SERVER, "Notify", "Other", dbus.UInt32(0), "", "Other", "",
                        ["default", "Open"], dbus.Dictionary(signature="sv"), -1)
        self.await_notices(1)

    # The timer

    def timers(self):
        manager = self.bus.get_object(SERVICE_MANAGER, "/org/freedesktop/systemd1", introspect=False)
        return [[str(word) for word in one]
                for one in dbus.Interface(manager, "dev.quellby.test.Manager").Timers()]

    def run_timer(self):
        """A slot with a timer that runs, and when it will have run out."""
        self.name_timer("Tea", announce=False)
        slot = self.desk.start_slot(1)
        wait_for(lambda: self.desk.defaults(1).get("timerRun"), "the first save")
        self.kill(slot)
        self.desk.write_run(1, "timerRun", {"mode": "countdown", "duration": LENGTH,
                                            "startedAt": reference_now(), "accumulated": 0})
        end = time.time() + LENGTH
        slot = self.desk.start_slot(1)
        wait_for(self.timers, "the timer at the manager")
        self.desk.wait_for_name(1)
        return slot, end

    def name_timer(self, name, announce=True):
        self.record = getattr(self, "record", None) or widget("timer", {}, 1)
        self.record["name"] = name
        self.desk.write_widgets([self.record], announce=announce)

    def start_notice(self, identifier="id", title="Tea", body="Time's up"):
        """The process that the manager starts."""
        return self.desk.spawn([str(self.desk.program(1)), "--notify", identifier, title, body])

    def show_notice(self, *words):
        """One more on the screen."""
        count = self.count()
        process = self.start_notice(*words)
        self.await_notices(count + 1)
        return process

    def click_notice(self):
        windows = self.desk.run("xdotool", "search", "--onlyvisible", "--class", "Dunst").split()
        shell = self.desk.run("xdotool", "getwindowgeometry", "--shell", windows[0])
        place = {key: int(value) for key, value in (line.split("=") for line in shell.split())}
        self.desk.click(place["X"] + place["WIDTH"] // 2, place["Y"] + place["HEIGHT"] // 2)

    def await_panel(self, process):
        wait_for(lambda: len(self.desk.windows(process.pid)) > 1, "the panel")

    # Tests

    def test_a_timer_whose_slot_is_gone_says_that_it_ended(self):
        slot, end = self.run_timer()
        self.kill(slot)
        (when, *_, program, flag, identifier, title, body), = self.timers()
        due = calendar.timegm(time.strptime(when, "%Y-%m-%d %H:%M:%S UTC"))
        self.assertTrue(end - 2 <= due <= end + 2, (end, due))
        self.assertEqual([program, flag, title], [str(self.desk.program(1)), "--notify", "Tea"])
        process = self.show_notice(identifier, title, body)
        self.assertEqual(self.take_all(), [("Tea", "Time's up", "Tea\nTime's up")])
        self.assertEqual(process.wait(PATIENCE), 0)

    def test_hostile_words_are_shown_letter_by_letter(self):
        self.run_timer()
        for hostile, plain in HOSTILE:
            with self.subTest(hostile=hostile):
                self.name_timer(hostile)
                told = wait_for(lambda text=plain: [one for one in self.timers() if one[-2] == text],
                                f"{plain!r} at the manager")
                wait_for(lambda: len(self.timers()) == 1, "the others to give place to the newest")
                _, *descriptions, _, _, identifier, title, _ = told[0]
                self.assertNotIn("\n", "".join(descriptions))
                self.show_notice(identifier, title, title)
                (summary, _, message), = self.take_all()
                self.assertEqual(summary, plain)
                # The server's own way to the screen is markup: nothing of it may be an element.
                shown = xml.etree.ElementTree.fromstring(f"<shown>{message}</shown>")
                self.assertEqual((len(shown), shown.text), (0, f"{plain}\n{plain}"))

    def test_a_notice_takes_the_place_of_its_namesake(self):
        first, other = self.show_notice("one", "First"), self.show_notice("two", "Other")
        second = self.start_notice("one", "Second")
        self.assertEqual(first.wait(PATIENCE), 0)
        self.await_notices(2)
        self.assertIsNone(other.poll())
        self.assertIsNone(second.poll())
        self.assertEqual({summary for summary, _, _ in self.take_all()}, {"Other", "Second"})

    def test_a_click_opens_the_panel(self):
        self.name_timer("Tea", announce=False)
        process = self.show_notice()
        self.click_notice()
        self.await_panel(process)
        self.desk.key("Escape")
        wait_for(lambda: len(self.desk.windows(process.pid)) == 1, "the panel to close")
        # This time a slot is there.
        second = self.show_notice()
        self.ask_server(DUNST, "NotificationAction", dbus.UInt32(0))
        self.await_panel(process)
        self.assertEqual(second.wait(PATIENCE), 0)
        self.assertIsNone(process.poll())

    def test_a_server_that_is_started_again_shows_the_next_notice(self):
        self.name_timer("Tea", announce=False)
        for end in (signal.SIGKILL, signal.SIGTERM):
            with self.subTest(end=end):
                lost = self.show_notice()
                self.server.send_signal(end)
                self.server.wait(PATIENCE)
                self.server = self.start_server()
                # Its numbers begin anew, so this has that of the notice that is gone.
                self.show_foreign_notice()
                self.ask_server(DUNST, "NotificationAction", dbus.UInt32(0))
                self.assertEqual(lost.wait(PATIENCE), 0, "nobody clicked it")
                self.ask_server(DUNST, "NotificationCloseAll")
                self.await_notices(0)
        process = self.show_notice()
        self.click_notice()
        self.await_panel(process)

    def test_a_notice_that_is_due_without_a_server_waits_for_one(self):
        self.name_timer("Tea", announce=False)
        self.server.kill()
        self.server.wait(PATIENCE)
        asked = self.desk.home / "asked.log"
        with asked.open("w") as log:
            self.desk.spawn(["dbus-monitor", "--session", "member='NameHasOwner',arg0='" + SERVER + "'"],
                            stdout=log)
        wait_for(lambda: asked.stat().st_size, "the monitor")

        def questions():
            return asked.read_text().count("member=NameHasOwner")

        def start_waiting(count, *words):
            process = self.start_notice(*words)
            wait_for(lambda: questions() == count, f"{count} processes to find no server")
            return process

        first = start_waiting(1, "one", "First")
        second = start_waiting(2, "one", "Second")
        first.wait(PATIENCE)
        other = start_waiting(3, "two", "Other")
        self.server = self.start_server()
        self.await_notices(2)
        self.assertEqual({summary for summary, _, _ in self.take_all()}, {"Other", "Second"})
        self.assertEqual([one.wait(PATIENCE) for one in (second, other)], [0, 0])


if __name__ == "__main__":
    unittest.main()
