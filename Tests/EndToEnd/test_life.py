"""Every kind becomes every other one in one process, with the panel closed and open."""

import json
import string
import time
import unittest

import dbus
import dbus.lowlevel
from rig import BUILD, DeskTest, wait_for

SLOT = 3


class EveryKindToEveryOther(DeskTest):
    def setUp(self):
        super().setUp()
        self.desk.env["TAVRIN_SURFACE"] = "picture"
        self.bus = dbus.bus.BusConnection(self.desk.env["DBUS_SESSION_BUS_ADDRESS"])
        self.addCleanup(self.bus.close)
        tavrin = str(BUILD / "bin" / "tavrin")
        listing = json.loads(self.desk.run(tavrin, "widgets", "kinds", "--json"))
        self.widest = {kind["key"]: kind["maxSpan"] for kind in listing}
        self.kinds = list(self.widest)
        for kind in self.kinds:
            self.desk.run(tavrin, "widgets", "add", kind, kind)

    def document(self):
        return json.loads((self.desk.data / "widgets.json").read_text())

    def place(self, kind, span):
        """Puts the kind's widget into the slot, and all others out of it."""
        document = self.document()
        for record in document["widgets"]:
            record.pop("slot", None)
            if kind in record["kind"]:
                record["slot"], record["span"] = SLOT, span
        self.desk.write_widgets_text(json.dumps(document), announce=False)

    def become(self, kind, span):
        """The same, and returns when the slot has seen it: it answers in the order of arrival."""
        self.place(kind, span)
        signal = dbus.lowlevel.SignalMessage("/dev/quellby/tavrin/Notifications",
                                             "dev.quellby.tavrin.Notifications", "Posted")
        signal.append("dev.quellby.tavrin.widgetsChanged", "")
        self.bus.send_message(signal)
        self.bus.call_blocking(self.desk.bundle_identifier(SLOT), "/",
                               "org.freedesktop.DBus.Peer", "Ping", "", ())
        self.assertIsNone(self.slot.poll(), self.desk.log(SLOT))

    def is_open(self):
        return self.desk.windows(self.slot.pid)

    def settings(self, kind):
        for record in self.document()["widgets"]:
            if kind in record["kind"]:
                return record["kind"][kind]["_0"]
        return None

    def walk(self, is_open):
        """There and back between any two, at equal spans and at different ones."""
        steps = 0
        for index, one in enumerate(self.kinds):
            self.become(one, 1)
            if is_open:
                wait_for(self.is_open, f"the panel of {one}")
            for other in self.kinds[index + 1:]:
                for span in (1, 2):
                    self.become(other, span)
                    self.become(one, 1 if self.widest[other] > 1 else span)
                    steps += 2
        return steps

    def test_nobody_dies_and_the_open_panel_is_the_new_ones(self):
        self.place(self.kinds[0], 1)
        self.slot = self.desk.start_slot(SLOT)
        self.desk.wait_for_name(SLOT)
        started = time.monotonic()
        steps = self.walk(is_open=False)
        self.desk.toggle(SLOT)
        steps += self.walk(is_open=True)
        print(f"{steps} changes of kind in {time.monotonic() - started:.1f} s")
        self.assertEqual(steps, 4 * len(self.kinds) * (len(self.kinds) - 1))

    def test_what_was_typed_last_is_in_the_record_it_was_typed_for(self):
        self.place("note", 1)
        self.slot = self.desk.start_slot(SLOT, "--foreground")
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", "getwindowpid",
                                       check=False).strip() == str(self.slot.pid), "the focus")
        previous = "the start"
        others = [kind for kind in self.kinds if kind != "note"]
        for letter, other in zip(string.ascii_letters, others):
            before = self.desk.picture(SLOT).read_bytes()
            self.desk.run("xdotool", "type", letter)
            wait_for(lambda: self.desk.picture(SLOT).read_bytes() != before,
                     f"the typing after {previous} to show")
            self.become(other, 1 + len(previous) % 2)
            self.assertIn(letter, self.settings("note")["text"], other)
            self.become("note", 2)
            previous = other


if __name__ == "__main__":
    unittest.main()
