"""Calendar and reminders widgets at the desktop's real calendar service."""

import datetime
import hashlib
import time
import unittest
import zoneinfo

from desks.calendars import CalendarServer, add, change, component, remove
from rig import DeskTest, wait_for, widget

ENVIRONMENT = {"QT_QPA_PLATFORM": "offscreen", "TAVRIN_SURFACE": "picture"}


class CalendarSlots(DeskTest):
    display = False

    def start(self, kind, settings):
        self.desk.write_widgets([widget(kind, settings, 1)], announce=False)
        process = self.desk.start_slot(1, env=ENVIRONMENT)
        wait_for(self.desk.picture(1).exists, "the tile")
        return process

    def shown(self):
        return hashlib.sha256(self.desk.picture(1).read_bytes()).hexdigest()

    def settled(self, seconds=1.0):
        """The picture once it has stood still."""
        before = self.shown()
        since = time.monotonic()
        while time.monotonic() - since < seconds:
            time.sleep(0.05)
            if self.shown() != before:
                before = self.shown()
                since = time.monotonic()
        return before

    def follow(self, seconds, what, act):
        before = self.shown()
        act()
        wait_for(lambda: self.shown() != before, what, seconds)
        return self.settled()

    def test_a_library_without_its_settings_takes_nobody_down(self):
        CalendarServer(self.desk)
        self.desk.env["XDG_DATA_DIRS"] = "/nonexistent"
        process = self.start("calendar", {})
        self.settled()
        self.assertIsNone(process.poll(), self.desk.log(1))
        process.terminate()
        self.assertEqual(process.wait(10), 0)

    def test_the_tile_follows_another_program(self):
        server = CalendarServer(self.desk)
        calendar = server.calendar()
        process = self.start("calendar", {"style": "nextEvent"})
        empty = self.settled()
        # As the slot has it: this process may be in another zone.
        zone = zoneinfo.ZoneInfo(self.desk.env["TZ"])
        today = datetime.datetime.now(zone).strftime("%Y%m%d")

        def event(title):
            return component("VEVENT", UID="day", SUMMARY=title, DTSTART_VALUE_DATE=today)

        first = self.follow(5, "the new event", lambda: add(calendar, [event("Holiday")]))
        moved = self.follow(5, "its change", lambda: change(calendar, event("Work")))
        back = self.follow(5, "its change back", lambda: change(calendar, event("Holiday")))
        gone = self.follow(5, "its removal", lambda: remove(calendar, "day"))
        self.assertEqual(back, first)
        self.assertEqual(gone, empty)
        self.assertEqual(len({empty, first, moved}), 3)
        self.assertIsNone(process.poll())

    def test_reminders_follow_too(self):
        tasks = CalendarServer(self.desk).task_list()
        self.start("reminders", {"style": "count"})
        self.settled()
        one = self.follow(5, "the first task",
                          lambda: add(tasks, [component("VTODO", UID="1", SUMMARY="Milk")]))
        two = self.follow(5, "the second task",
                          lambda: add(tasks, [component("VTODO", UID="2", SUMMARY="Bread")]))
        self.assertNotEqual(one, two)
        done = component("VTODO", UID="1", SUMMARY="Milk", STATUS="COMPLETED",
                         COMPLETED="20260101T000000Z")
        self.assertEqual(self.follow(5, "its completion", lambda: change(tasks, done)), one)

    def test_a_service_that_comes_late_or_comes_back_is_heard(self):
        self.start("reminders", {"style": "count"})
        without = self.settled()
        before = list(self.desk.processes)
        tasks = CalendarServer(self.desk).task_list()
        wait_for(lambda: self.shown() != without, "the service that came late")
        add(tasks, [component("VTODO", UID="1", SUMMARY="Milk")])
        one = self.settled()
        for process in [each for each in self.desk.processes if each not in before]:
            self.kill(process)
            self.desk.processes.remove(process)
        wait_for(lambda: self.shown() != one, "the service's end")
        self.settled()
        CalendarServer(self.desk)
        wait_for(lambda: self.shown() == one, "the service that came back")

    def test_without_the_service_the_tile_says_so_and_the_slot_lives(self):
        process = self.start("calendar", {"style": "nextEvent"})
        denied = self.settled(2)
        self.assertIsNone(process.poll())
        CalendarServer(self.desk)
        self.start_again(process)
        self.assertNotEqual(self.settled(2), denied)

    def start_again(self, process):
        process.terminate()
        process.wait()
        self.desk.picture(1).unlink(missing_ok=True)
        self.desk.start_slot(1, env=ENVIRONMENT)
        wait_for(self.desk.picture(1).exists, "the tile")


if __name__ == "__main__":
    unittest.main()
