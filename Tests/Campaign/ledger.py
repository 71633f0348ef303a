"""What has been said to be saved: it is compared with the files after every step."""

import itertools
import json
import time

from clipboard_items import saved_texts
from rig import wait_for

# The documents that only a widget of that kind changes, when somebody uses it.
OWNERS = {"water.json": "water", "emoji.json": "emoji", "colours.json": "colourPicker"}
# For how many steps, and seconds of this machine, a widget that was used may still save.
GRACE, GRACE_SECONDS = 2, 6
RUNS = ("timerRun", "pomodoroRun", "stopwatchRun")


def kind_of(record):
    return next(iter(record["kind"]))


class Ledger:
    def __init__(self, world, journal):
        self.world, self.journal = world, journal
        self.records = {}
        self.documents = {}
        self.loose = {}
        self.touched_at = {}
        self.copies = []
        # Somebody clicked in the history's panel since the last look, where rows can be removed.
        self.may_be_removed = False
        # Processes of the clipboard's slot that have taken a copy.
        self.listening = set()
        self.time_grace = 0
        self.accept_all()

    # What stands in it

    def widgets(self):
        """In the order of the file, which a seed repeats; identifiers are drawn anew each time."""
        return list(self.records.values())

    def of_kind(self, kind):
        return [record for record in self.widgets() if kind_of(record) == kind]

    def in_slot(self, slot):
        return next(each for each in self.widgets() if each.get("slot") == slot)

    def read(self):
        return {record["id"]: record for record in self.world.document()["widgets"]}

    def documents_now(self):
        found = {}
        for name in OWNERS:
            path = self.world.data / name
            if path.exists():
                found[name] = json.loads(path.read_text())
        return found

    def accept_all(self):
        self.records = self.read()
        self.documents = self.documents_now()

    def accept(self, identifiers):
        now = self.read()
        for identifier in identifiers:
            if identifier in now:
                self.records[identifier] = now[identifier]

    def touch(self, identifiers, by_hand=False):
        """Whoever uses these may change them, and for a while their slots may save."""
        for identifier in identifiers:
            self.loose[identifier] = GRACE
            self.touched_at[identifier] = time.monotonic()
            if by_hand and kind_of(self.records[identifier]) == "clipboard":
                self.may_be_removed = True

    def time_passed(self):
        """A new day may begin in the documents that count days."""
        self.time_grace = GRACE

    # The comparison

    def check(self, open_slots):
        try:
            now, documents = self.read(), self.documents_now()
        except (OSError, ValueError, KeyError) as error:
            self.journal.finding("unreadable", f"a document cannot be read: {error!r}")
            return
        for record in self.widgets():
            if record.get("slot") in open_slots:
                self.touch([record["id"]], by_hand=True)
        if set(now) != set(self.records):
            lost = [self.records[key]["name"] for key in set(self.records) - set(now)]
            self.journal.finding("lost", f"widgets {lost} lost, {len(set(now) - set(self.records))} new")
        used = {kind_of(self.records[key]) for key in self.loose if key in self.records}
        for key, record in now.items():
            known = self.records.get(key)
            if known is not None and known != record and key not in self.loose:
                self.journal.finding("changed", f"{known['name']} changed unasked",
                                     [("before.json", json.dumps(known, indent=1)),
                                      ("after.json", json.dumps(record, indent=1))])
        for name, owner in OWNERS.items():
            before, after = self.documents.get(name), documents.get(name)
            if before != after and owner not in used and self.time_grace == 0:
                self.journal.finding("changed", f"{name} changed unasked",
                                     [("before.json", json.dumps(before, indent=1)),
                                      ("after.json", json.dumps(after, indent=1))])
        self.records, self.documents = now, documents
        recent = time.monotonic() - GRACE_SECONDS
        self.loose = {key: left - 1 for key, left in self.loose.items()
                      if left > 0 or self.touched_at[key] > recent}
        self.time_grace = max(self.time_grace - 1, 0)

    def check_setting(self, identifier, field, value):
        """A value that the command took is in the file."""
        record = self.read().get(identifier)
        payload = next(iter(record["kind"].values()), {}) if record else {}
        payload = payload.get("_0", payload)
        wanted = {"yes": True, "no": False}.get(value, value)
        if field["type"] == "integer":
            wanted = int(value)
        if field["type"] in ("boolean", "choice", "integer") and payload.get(field["key"]) != wanted:
            self.journal.finding("not saved", f"{field['key']}={value} was taken, and the file has "
                                 f"{payload.get(field['key'])!r}")

    # Runs of timers

    def run_of(self, slot):
        values = self.world.defaults(slot)
        return {key: values[key] for key in RUNS if key in values}

    def check_runs(self, before):
        """A slot that comes back goes on with the run that it had, unless that ran out."""
        for slot, runs in before.items():
            after = self.run_of(slot)
            for key, run in runs.items():
                then, now = run.get("startedAt"), after.get(key, {}).get("startedAt")
                if key not in after:
                    self.journal.finding("lost", f"slot {slot} has lost its {key}: {run}")
                elif then is None and now is not None:
                    self.journal.finding("changed", f"{key} of slot {slot} began to run by itself")
                elif then is not None and now is None and run.get("mode") == "stopwatch":
                    self.journal.finding("lost", f"the stopwatch of slot {slot} stopped")

    # The clipboard

    def keeps_copies(self):
        records = self.of_kind("clipboard")
        down = self.world.down & {"bus", "display", "keyring"}
        return (not down and self.world.disk == "good" and len(records) == 1
                and records[0].get("slot") in self.world.processes_of_slots())

    def make_listen(self, copy):
        """A process that has just started takes nothing that was there before it listened: copies
        until it has taken one."""
        if not self.keeps_copies():
            return
        process = tuple(self.world.processes_of_slots()[self.of_kind("clipboard")[0]["slot"]])
        if process in self.listening:
            return
        end = time.monotonic() + 60
        for number in itertools.count():
            probe = f"listening {process} {number}"
            copy(probe)
            try:
                wait_for(lambda p=probe: p in saved_texts(self.world), "the copy", 5, 0.1)
                self.listening.add(process)
                return
            except AssertionError:
                if time.monotonic() > end:
                    self.journal.finding("deaf", "the clipboard's slot has taken no copy since it "
                                         "started a minute ago",
                                         [("slot.log", self.world.log(
                                             self.of_kind("clipboard")[0]["slot"]))])
                    return

    def copied(self, text):
        """Waits until the copy is in the sealed file; from then on it is said to be saved."""
        if not self.keeps_copies() or not text.strip():
            return "nobody keeps it"
        try:
            wait_for(lambda: text in saved_texts(self.world), "the copy", 15, 0.1)
        except AssertionError:
            self.journal.finding("not saved", "a copy is not in the sealed file after 15 s",
                                 [("texts.txt", repr((text, saved_texts(self.world)))),
                                  ("slot.log", self.world.log(self.of_kind("clipboard")[0]["slot"]))])
            return "not kept"
        self.copies.append(text)
        there = set(saved_texts(self.world))
        if self.may_be_removed:
            self.copies = [each for each in self.copies if each in there]
            self.may_be_removed = False
        self.check_copies(there)
        return f"{len(self.copies)} kept"

    def check_copies(self, there):
        """All copies are there; for when a slot has just saved."""
        lost = [text for text in self.copies[-100:] if text not in there]
        if lost:
            self.journal.finding("lost", f"{len(lost)} of {len(self.copies)} copies are lost",
                                 [("texts.txt", repr((lost, sorted(there))))])
            self.copies = [text for text in self.copies if text in there]
