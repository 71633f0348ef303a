"""Every kind becomes every other one in one process, with the panel closed and open, and two widgets
of each kind change places."""

import json
import string
import time
import unittest
import uuid

from desks.access_tree import start_accessibility
from desks.panel_probe import Boxes, Server, Session
from rig import BUILD, DeskTest, wait_for

SLOT = 3
OTHER = 4
TAVRIN = str(BUILD / "bin" / "tavrin")


class LivingSlot(DeskTest):
    """Slot 3 on the picture surface, and connections to it that stay."""

    def setUp(self):
        super().setUp()
        start_accessibility(self.desk)
        self.desk.env["TAVRIN_SURFACE"] = "picture"
        self.server = Server(self.desk.env["DISPLAY"])
        self.addCleanup(self.server.close)
        self.session = Session(self.desk.env["DBUS_SESSION_BUS_ADDRESS"])
        self.addCleanup(self.session.close)
        self.boxes = Boxes(self.session)
        self.addCleanup(self.boxes.close)
        listing = json.loads(self.desk.run(TAVRIN, "widgets", "kinds", "--json"))
        self.widest = {kind["key"]: kind["maxSpan"] for kind in listing}
        self.kinds = list(self.widest)

    def start(self, slot=SLOT, *arguments):
        process = self.desk.start_slot(slot, *arguments)
        self.desk.wait_for_name(slot)
        return process

    def document(self):
        return json.loads((self.desk.data / "widgets.json").read_text())

    def write(self, document):
        """Writes it and tells the slots; returns when they have seen it: they answer in the order of
        arrival."""
        self.desk.write_widgets_text(json.dumps(document), announce=False)
        self.session.announce("dev.quellby.tavrin.widgetsChanged")
        for slot, process in self.slots.items():
            self.session.call(self.desk.bundle_identifier(slot), "/", "org.freedesktop.DBus.Peer",
                              "Ping")
            self.assertIsNone(process.poll(), self.desk.log(slot))

    def toggle(self, slot=SLOT):
        self.session.toggle(self.desk.bundle_identifier(slot), slot)

    @property
    def slot(self):
        return self.slots[SLOT]

    def panel_fault(self, widget, words):
        """What is amiss with slot 3's panel as that of `widget`; empty for nothing. `words` are some
        that no other kind's panel has; any will do where they are empty."""
        window = self.server.panel(self.slot.pid)
        if window is None:
            return "there is no panel"
        if self.server.focus() != window:
            return "the keyboard is elsewhere"
        nodes = self.boxes.panel(self.slot.pid)
        names = self.boxes.names(nodes)
        if not nodes or names[0] != widget:
            return f"the panel is that of {names[:1]}"
        if not any(node["focused"] for node in nodes[1:]):
            return "nothing in it has the keyboard"
        if words and not words.intersection(names):
            return f"it shows {names}"
        return ""

    def check_panel(self, widget, words=frozenset()):
        fault = ""

        def is_right():
            nonlocal fault
            fault = self.panel_fault(widget, words)
            return not fault
        try:
            wait_for(is_right, "the panel", pause=0.02)
        except AssertionError:
            self.fail(f"{widget}: {fault}")


class EveryKindToEveryOther(LivingSlot):
    def setUp(self):
        super().setUp()
        for kind in self.kinds:
            self.desk.run(TAVRIN, "widgets", "add", kind, kind)

    def placed(self, kind, span):
        """The document with the kind's widget in the slot, and all others out of it."""
        document = self.document()
        for record in document["widgets"]:
            record.pop("slot", None)
            if kind in record["kind"]:
                record["slot"], record["span"] = SLOT, span
        return document

    def begin(self, kind, *arguments):
        self.desk.write_widgets_text(json.dumps(self.placed(kind, 1)), announce=False)
        self.slots = {SLOT: self.start(SLOT, *arguments)}

    def become(self, kind, span):
        self.write(self.placed(kind, span))

    def settings(self):
        return {kind: payload for record in self.document()["widgets"]
                for kind, payload in record["kind"].items()}

    def own_words(self):
        """Of each kind what its panel says, opened as usual, and no other one's."""
        said = {}
        for kind in self.kinds:
            self.become(kind, 1)
            self.toggle()
            self.check_panel(kind)
            said[kind] = set(self.boxes.names(self.boxes.panel(self.slot.pid)[1:]))
            self.toggle()
            wait_for(lambda: self.server.panel(self.slot.pid) is None, "the panel to close")
        own = {kind: words.difference(*(said[other] for other in said if other != kind))
               for kind, words in said.items()}
        self.assertEqual([], [kind for kind, words in own.items() if not words])
        return own

    def walk(self, arrived):
        """There and back between any two, at equal spans and at different ones."""
        steps = 0
        for index, one in enumerate(self.kinds):
            self.become(one, 1)
            arrived(one)
            for other in self.kinds[index + 1:]:
                for span in (1, 2):
                    self.become(other, span)
                    arrived(other)
                    self.become(one, 1 if self.widest[other] > 1 else span)
                    arrived(one)
                    steps += 2
        return steps

    def test_nobody_dies_and_the_open_panel_is_the_new_ones(self):
        self.begin(self.kinds[0])
        before = self.settings()
        words = self.own_words()
        started = time.monotonic()
        steps = self.walk(lambda kind: None)
        print(f"{steps} changes of kind in {time.monotonic() - started:.1f} s")
        self.toggle()
        started = time.monotonic()
        steps += self.walk(lambda kind: self.check_panel(kind, words[kind]))
        print(f"as many with the panel open in {time.monotonic() - started:.1f} s")
        self.assertEqual(steps, 4 * len(self.kinds) * (len(self.kinds) - 1))
        self.assertEqual(before, self.settings())

    def check_typing(self, kind, type_next, is_stored):
        """What is typed last before the slot becomes another kind is in the record it was typed for."""
        self.begin(kind, "--foreground")
        self.check_panel(kind)
        previous = "the start"
        others = [other for other in self.kinds if other != kind]
        for index, other in enumerate(others):
            before = self.desk.picture(SLOT).read_bytes()
            type_next(index)
            wait_for(lambda: self.desk.picture(SLOT).read_bytes() != before,
                     f"the typing after {previous} to show")
            self.become(other, 1 + len(previous) % 2)
            stored = self.settings()[kind]["_0"]
            self.assertTrue(is_stored(index, stored), f"{other}: {stored}")
            self.become(kind, 2)
            self.check_panel(kind)
            previous = other

    def test_what_was_typed_last_is_in_the_note_it_was_typed_for(self):
        letters = string.ascii_letters
        self.check_typing("note", lambda index: self.desk.run("xdotool", "type", letters[index]),
                          lambda index, note: letters[index] in note["text"])

    def test_what_was_typed_last_is_in_the_converter_it_was_typed_for(self):
        # One key, so that what shows is all of it, and not the one that stands there.
        def type_next(index):
            self.desk.run("xdotool", "key", "ctrl+a", str(2 + index % 8))
        self.check_typing("converter", type_next,
                          lambda index, converter: converter["value"] == 2 + index % 8)


class TwoOfAKind(LivingSlot):
    """Widgets of one kind change places under slots that go on living."""

    def setUp(self):
        super().setUp()
        for kind in self.kinds:
            self.desk.run(TAVRIN, "widgets", "add", kind, f"one {kind}")
        document = self.document()
        document["widgets"] += [
            {**record, "id": str(uuid.uuid4()).upper(), "name": record["name"].replace("one", "two")}
            for record in document["widgets"]]
        self.slots = {}
        self.write(document)

    def pair(self, document, kind):
        return [record for record in document["widgets"] if kind in record["kind"]]

    def place(self, kind):
        """The two of the kind in slots 3 and 4, no others."""
        document = self.document()
        for record in document["widgets"]:
            record.pop("slot", None)
        for record, slot, span in zip(self.pair(document, kind), (SLOT, OTHER), (1, 2)):
            record["slot"], record["span"] = slot, span
        self.write(document)

    def begin(self, kind):
        self.place(kind)
        self.slots = {slot: self.start(slot) for slot in (SLOT, OTHER)}

    def swap(self, kind):
        """What was written."""
        document = self.document()
        one, two = self.pair(document, kind)
        one["slot"], two["slot"] = two["slot"], one["slot"]
        self.write(document)
        return document

    def test_two_of_each_kind_swap_slots(self):
        self.begin(self.kinds[0])
        for kind in self.kinds:
            with self.subTest(kind=kind):
                self.place(kind)
                said = self.swap(kind)
                self.assertEqual(self.document(), said)
                self.toggle()
                self.check_panel(f"two {kind}")
                for name in (f"one {kind}", f"two {kind}"):
                    said = self.swap(kind)
                    self.check_panel(name)
                    self.assertEqual(self.document(), said)
                self.toggle()
                wait_for(lambda: self.server.panel(self.slot.pid) is None, "the panel to close")

    def test_what_is_typed_while_two_notes_swap_is_in_its_own(self):
        self.begin("note")
        self.toggle()
        for index, letter in enumerate(string.ascii_lowercase[:10]):
            here, there = ("one note", "two note")[::1 if index % 2 == 0 else -1]
            self.check_panel(here)
            before = self.desk.picture(SLOT).read_bytes()
            self.desk.run("xdotool", "type", letter)
            wait_for(lambda: self.desk.picture(SLOT).read_bytes() != before, "the typing to show")
            self.swap("note")
            texts = {record["name"]: record["kind"]["note"]["_0"]["text"]
                     for record in self.pair(self.document(), "note")}
            self.assertIn(letter, texts[here])
            self.assertNotIn(letter, texts[there])


if __name__ == "__main__":
    unittest.main()
