"""One round: a day on a fresh desk, its steps drawn from one seed."""

import json
import os
import random
import signal
import subprocess
import time
import traceback

import dbus

import steps as all_steps
from clock import BEGINNINGS
from journal import Journal
from ledger import Ledger, kind_of
from oracles import Oracles
from rig import wait_for, widget
from world import SLOTS, World

DAY = 24 * 3600
# Kinds of which there are two, so that they meet in one document.
TWICE = ["water", "timer", "clock", "note"]


class Round:
    def __init__(self, seed, folder, is_chatty, owns_network, owns_mounts):
        self.seed = seed
        chance = random.Random(seed)
        self.chance = chance
        zone, date = chance.choice(BEGINNINGS)
        self.journal = Journal(folder, seed, is_chatty)
        self.world = World(zone, owns_network, owns_mounts)
        self.world.clock.begin(date)
        self.kinds = [json.loads(self.world.tavrin("widgets", "kinds", kind["key"], "--json").stdout)
                      for kind in json.loads(self.world.tavrin("widgets", "kinds", "--json").stdout)]
        self.running = {}
        self.due = []
        # Slots whose panel may be open.
        self.used = set()
        # Kinds whose panel has been clicked and typed into.
        self.panels_used = set()
        self.number = 0
        self._make_widgets(chance)
        self.ledger = Ledger(self.world, self.journal)
        self.oracles = Oracles(self)
        self.start_missing()

    def _make_widgets(self, chance):
        names = [kind["key"] for kind in self.kinds]
        names += TWICE
        chance.shuffle(names)
        # The clipboard's widget always has a slot: what it keeps is looked after from the start.
        names.sort(key=lambda name: name != "clipboard")
        seen = set()
        for name in names:
            title = name if name not in seen else f"{name}Two"
            seen.add(name)
            self.world.tavrin("widgets", "add", name, title)
        document = self.world.document()
        by_name = {record["name"]: record for record in document["widgets"]}
        order = [name for name in dict.fromkeys(names)]
        for slot, name in zip(SLOTS, order):
            by_name[name]["slot"] = slot
        self.world.write_widgets(document["widgets"])

    # The slots

    def start_missing(self):
        """As a session manager would: all slots that have a widget run."""
        if "display" in self.world.down or "bus" in self.world.down:
            return "later"
        done = self.world.tavrin("start", timeout=120)
        self.running = {slot: pids[0] for slot, pids in self.world.processes_of_slots().items()}
        placed = {each["slot"] for each in self.ledger.widgets() if each.get("slot")} \
            if hasattr(self, "ledger") else set()
        missing = placed - set(self.running)
        if missing:
            self.journal.finding("not started", f"slots {sorted(missing)}: {done.stdout[-300:]} "
                                 f"{done.stderr[-300:]}",
                                 [("slot.log", self.world.log(min(missing))[-5000:])])
        return "started"

    def expect_gone(self, slot):
        pid = self.running.pop(slot, None)
        if pid:
            self.wait(lambda: self.ended(pid), 10)

    def kill(self, slot):
        try:
            os.kill(self.running[slot], signal.SIGKILL)
        except ProcessLookupError:
            # The oracle of lives tells of it.
            return
        self.expect_gone(slot)

    @staticmethod
    def ended(pid):
        try:
            with open(f"/proc/{pid}/stat", encoding="utf-8") as file:
                return file.read().rpartition(")")[2].split()[0] == "Z"
        except OSError:
            return True

    @staticmethod
    def wait(condition, seconds):
        try:
            return wait_for(condition, "it", seconds, 0.02)
        except AssertionError:
            return None

    def free_input(self, slot):
        """A lock of the keyboard ends with its slot."""
        def guards():
            found = subprocess.run(["pgrep", "-f", "input-guard"],
                                   capture_output=True, text=True, check=False).stdout.split()
            return [int(pid) for pid in found]
        if slot not in self.running or kind_of(self.ledger.in_slot(slot)) != "keyboardLock":
            return
        time.sleep(0.3)
        if not guards():
            return
        self.kill(slot)
        if self.wait(lambda: not guards(), 5) is None:
            self.journal.finding("held", "the keyboard's guard outlives its slot")
        self.start_missing()

    # The command

    def command(self, changed, *words, setting=None):
        """Runs the command; what it says it did stands in the files, and else nothing changed."""
        before = self.ledger.read()
        done = self.world.tavrin(*words)
        after = self.ledger.read()
        for key in changed:
            if done.returncode != 0 and before.get(key) != after.get(key) \
                    and key not in self.ledger.loose:
                self.journal.finding("changed", f"{' '.join(words)} failed with "
                                     f"{done.returncode} and changed the widget")
        if done.returncode == 0 and setting:
            self.ledger.check_setting(*setting)
        if done.returncode < 0 or "terminate called" in done.stderr:
            self.journal.finding("died", f"tavrin {' '.join(words)}: {done.returncode} "
                                 f"{done.stderr[-300:]}")
        self.ledger.accept(changed)
        return f"{' '.join(words)[:120]}: {done.returncode}"

    # Services

    def after_death(self, name):
        """What dies with a service by its nature."""
        if name == "display":
            pids = dict(self.running)
            for slot, pid in pids.items():
                if self.wait(lambda p=pid: self.ended(p), 10) is None:
                    self.journal.finding("hangs", f"slot {slot} outlives its display",
                                         self.oracles.evidence(slot))
                    self.kill(slot)
                self.running.pop(slot, None)

    def bring_back(self, name):
        self.world.bring_back(name)
        if name == "display":
            self.start_missing()
        if name == "bus":
            self.follow_bus()

    def follow_bus(self):
        """Each slot is on the new bus soon, or has ended by itself and is started again."""
        def is_back(slot, pid):
            if self.ended(pid):
                return True
            try:
                return self.world.bus().get_name_owner(self.world.bundle_identifier(slot))
            except dbus.DBusException:
                return None
        # Under an open panel nobody begins anew.
        if self.used and "display" not in self.world.down:
            self.world.run("xdotool", "key", "Escape", check=False)
        end = time.monotonic() + 20
        for slot, pid in dict(self.running).items():
            left = max(end - time.monotonic(), 0)
            if self.wait(lambda s=slot, p=pid: is_back(s, p), left) is None \
                    and not self.has_panel(pid):
                self.journal.finding("deaf", f"slot {slot} does not come to the bus that came back",
                                     self.oracles.evidence(slot))
                self.kill(slot)
            elif self.ended(pid):
                self.running.pop(slot)
            elif not is_back(slot, pid):
                # Its panel is open still: the session ends it.
                self.kill(slot)
        self.start_missing()

    def mend_disk(self):
        for pid in self.running.values():
            self.oracles.excuse(pid)
        self.world.mend_disk()
        if "bus" not in self.world.down:
            self.world.announce()

    def later(self, count, action, name):
        self.due.append((self.number + count, action, name))

    def is_quiet(self):
        return not self.world.down and self.world.disk == "good"

    # The day

    def do(self, number):
        self.number = number
        chance = all_steps.chances(self.seed, number)
        function = all_steps.choose(chance)
        slot_to_compare = chance.random()
        try:
            text = function(self, chance)
        except all_steps.Skip as skip:
            text = f"skipped: {skip}"
        self.journal.step(number, function.__name__,
                          self.world.clock.local().strftime("%a %H:%M:%S"), text)
        for entry in [entry for entry in self.due if entry[0] <= number]:
            self.due.remove(entry)
            entry[1]()
        self.check(slot_to_compare)

    def check(self, slot_to_compare):
        self.oracles.check_lives()
        if "display" not in self.world.down:
            self.oracles.check_answers()
        self.used = {slot for slot in self.used if slot in self.running
                     and "display" not in self.world.down and self.has_panel(self.running[slot])}
        self.ledger.check(self.used)
        self.oracles.check_stalls()
        self.oracles.check_growth()
        if set(self.running) and self.is_quiet():
            slots = sorted(self.running)
            self.oracles.check_tile(slots[int(slot_to_compare * len(slots))])
        placed = {each["slot"] for each in self.ledger.widgets() if each.get("slot")}
        if self.is_quiet() and placed - set(self.running):
            self.start_missing()

    def has_panel(self, pid):
        return len(self.world.windows(pid)) > 1

    def run(self, count, whole_day):
        """`count` steps; for a whole day half as many more at most, until the clock has it."""
        number, most = 0, count * 3 // 2 if whole_day else count
        try:
            while number < count or (number < most and self.world.clock.passed < DAY):
                number += 1
                self.do(number)
            for entry in sorted(self.due, key=lambda entry: entry[0]):
                entry[1]()
            self.due = []
            self.check(0.5)
        except Exception:  # pylint: disable=broad-except
            self.journal.finding("campaign", traceback.format_exc()[-3000:])
        finally:
            self.journal.close()
            self.world.close()
        return self.journal

