"""Services that die under a slot and come back."""

import json
import unittest

import dbus

from desks.calendars import CalendarServer
from rig import DeskTest, wait_for, widget


class TheBus(DeskTest):
    def setUp(self):
        super().setUp()
        self.desk.env["TAVRIN_SURFACE"] = "strip,picture"
        self.record = widget("note", {"text": "first"}, 1)
        self.desk.write_widgets([self.record], announce=False)
        self.slot = self.desk.start_slot(1)
        self.desk.wait_for_name(1)
        wait_for(self.desk.picture(1).exists, "a picture")

    def end_bus(self):
        self.kill(self.desk.bus)

    def text(self):
        return json.loads((self.desk.data / "widgets.json").read_text())[
            "widgets"][0]["kind"]["note"]["_0"]["text"]

    def become(self, text):
        before = self.desk.picture(1).read_bytes()
        self.record["kind"]["note"]["_0"]["text"] = text
        self.desk.write_widgets([self.record])
        wait_for(lambda: self.desk.picture(1).read_bytes() != before, f"the tile of {text!r}")

    def test_a_slot_is_on_the_bus_that_comes_back_and_hears_of_changes(self):
        for text in ("second", "third"):
            self.end_bus()
            self.desk.bus = self.desk._start_bus()
            self.desk.wait_for_name(1)
            wait_for(self.desk.picture(1).exists, "a picture")
            self.become(text)
        self.assertIsNone(self.slot.poll(), self.desk.log(1))

    def test_while_there_is_no_bus_the_tile_stays(self):
        self.end_bus()
        self.assertTrue(self.desk.picture(1).exists())
        self.assertIsNone(self.slot.poll())
        self.slot.terminate()
        self.assertEqual(self.slot.wait(10), 0)

    def test_what_is_being_typed_is_not_interrupted(self):
        tiles = len(self.desk.windows(self.slot.pid))
        self.desk.toggle(1)
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", "getwindowpid",
                                       check=False).strip() == str(self.slot.pid), "the focus")
        self.desk.key("ctrl+a")
        self.end_bus()
        self.desk.bus = self.desk._start_bus()
        self.desk.run("xdotool", "type", "--delay", "250", "abcdef")
        wait_for(lambda: self.text() == "abcdef", "the text")
        self.assertGreater(len(self.desk.windows(self.slot.pid)), tiles, "the panel stays open")
        self.desk.key("Escape")
        self.desk.wait_for_name(1)
        wait_for(self.desk.picture(1).exists, "a picture")
        self.become("after")


class TheBusOfTheCalendars(DeskTest):
    display = False

    def connections(self, pid):
        """How many the process has with the bus."""
        bus = dbus.bus.BusConnection(self.desk.env["DBUS_SESSION_BUS_ADDRESS"])
        daemon = dbus.Interface(bus.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus"),
                                "org.freedesktop.DBus")
        count = 0
        for name in daemon.ListNames():
            try:
                count += name.startswith(":") and daemon.GetConnectionUnixProcessID(name) == pid
            except dbus.DBusException:
                pass  # It has just gone.
        bus.close()
        return count

    def test_the_calendars_library_does_not_end_the_slot_with_its_connection(self):
        CalendarServer(self.desk)
        self.desk.env["TAVRIN_SURFACE"] = "picture"
        self.desk.write_widgets([widget("calendar", {}, 1)], announce=False)
        slot = self.desk.start_slot(1)
        wait_for(lambda: self.connections(slot.pid) > 1, "the library's own connection")
        self.kill(self.desk.bus)
        self.desk.bus = self.desk._start_bus()
        self.desk.wait_for_name(1)
        self.assertIsNone(slot.poll(), self.desk.log(1))


if __name__ == "__main__":
    unittest.main()
