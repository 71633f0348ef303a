"""What holds after each step: nobody died, nobody hangs, nobody grew, no tile is stale."""

import os
import pathlib
import plistlib
import shutil
import signal
import subprocess
import time

import dbus

from ledger import kind_of
from rig import BUNDLES, wait_for

# Seconds after which an answer of a main thread counts as none.
ANSWER = 10
# What samples the machine, or shows what no other process can know.
NOT_COMPARED = {"activity", "network", "pet", "clipboard", "claudeUsage"}
KEEPS_UNSAVED = {"emoji", "colourPicker"}
# Megabytes of private memory that a slot may gain over its first quiet look, and file descriptors.
GROWTH, DESCRIPTORS = 12.0, 25
MOST_MEMORY = 40.0
STALE_AFTER = 8.0
# A server that has just been started opens its calendars first; a day's share and a tank's level move
# by minutes.
SLOW = {"calendar": 30.0, "reminders": 30.0, "timeProgress": 65.0, "water": 65.0}
# Milliseconds that an answer of the X server may take where the machine's load is above CALM.
SERVER_LIMIT, CALM = 3000, 2.5


def private_megabytes(pid):
    """Not by the list of mappings: who reads that holds up the process's own calls for memory."""
    with open(f"/proc/{pid}/statm", encoding="ascii") as file:
        _, resident, shared, *_ = file.read().split()
    return (int(resident) - int(shared)) * os.sysconf("SC_PAGE_SIZE") / 2**20


class Oracles:
    def __init__(self, round_):
        self.round = round_
        self.world, self.journal = round_.world, round_.journal
        self.first_looks = {}
        self.stalls_read = 0
        self.largest = 0.0
        self.server_waits = 0
        self.tiles_compared = 0
        self.excused = set()

    def evidence(self, slot):
        return [("slot.log", self.world.log(slot)[-20000:]),
                ("widgets.json", self.world.data / "widgets.json"),
                ("defaults.json", self.world.settings / "tavrin" /
                 f"{self.world.bundle_identifier(slot)}.json")]

    def check_lives(self):
        """The slots that should run do, and in one process each."""
        found = self.world.processes_of_slots()
        for slot, pid in sorted(self.round.running.items()):
            if pid not in found.get(slot, []) and not self.begins_anew(slot, pid):
                kind = kind_of(self.round.ledger.in_slot(slot))
                self.journal.finding("died", f"slot {slot} ({kind}), process {pid}, is gone",
                                     self.evidence(slot))
                del self.round.running[slot]
        for slot, pids in sorted(found.items()):
            if len(pids) > 1:
                time.sleep(1.5)
                again = self.world.processes_of_slots().get(slot, [])
                if len(again) > 1:
                    self.journal.finding("twice", f"slot {slot} runs in {len(again)} processes",
                                         self.evidence(slot))

    def begins_anew(self, slot, pid):
        """A process has no arguments for a moment while it executes its program again."""
        self.round.wait(lambda: self.round.ended(pid)
                        or pid in self.world.processes_of_slots().get(slot, []), 1)
        return not self.round.ended(pid)

    def check_answers(self):
        if "bus" in self.world.down:
            return
        for slot, pid in sorted(self.round.running.items()):
            started = time.monotonic()
            error = self.silence(slot)
            # One that begins anew, for a bus that is back, has no name for a moment.
            while error and time.monotonic() < started + ANSWER and not self.round.ended(pid):
                time.sleep(0.2)
                error = self.silence(slot)
            if error:
                state = pathlib.Path(f"/proc/{pid}/wchan")
                self.journal.finding(
                    "silent", f"slot {slot} gave {error} after {time.monotonic() - started:.1f} s",
                    [*self.evidence(slot), ("wchan", state.read_text() if state.exists() else "")])

    def silence(self, slot):
        """The error instead of an answer."""
        try:
            self.world.ping(slot)
            return None
        except dbus.DBusException as error:
            return error.get_dbus_name()

    def check_stalls(self):
        if not self.world.stalls.exists():
            return
        lines = self.world.stalls.read_text(errors="replace").splitlines()
        for line in lines[self.stalls_read:]:
            numbers, *frames = line.split("\t")
            pid, held, wall, ran = (float(word) for word in numbers.split())
            if is_servers(frames) and ran < 50 and held < SERVER_LIMIT and os.getloadavg()[0] > CALM:
                # Others have the processors, and the X server or the window manager waits.
                self.server_waits += 1
                continue
            slot = next((s for s, p in self.round.running.items() if p == int(pid)), 0)
            kind = kind_of(self.round.ledger.in_slot(slot)) if slot else "one that ended"
            self.journal.finding("stall", f"the main thread of slot {slot} ({kind}) was busy for "
                                 f"{held:.0f} ms, {ran:.0f} of them on the processor "
                                 f"({wall:.0f} ms by the clock)",
                                 lambda f=frames: [("frames.txt", symbols(f))])
        self.stalls_read = len(lines)

    def check_growth(self):
        for slot, pid in list(self.round.running.items()):
            try:
                size = private_megabytes(pid)
                descriptors = len(os.listdir(f"/proc/{pid}/fd"))
            except OSError:
                continue
            self.largest = max(self.largest, size)
            kind = kind_of(self.round.ledger.in_slot(slot))
            looks = self.first_looks.setdefault((pid, kind), [])
            looks.append((size, descriptors))
            if len(looks) < 20:
                continue
            # The first looks are of a process that warms up; the least of the last is at rest.
            early = max(looks[:10])
            late = min(looks[-8:])
            many = min(each[1] for each in looks[-8:]) - max(each[1] for each in looks[:10])
            if late[0] - early[0] > GROWTH or late[0] > MOST_MEMORY:
                self.journal.finding("grown", f"slot {slot} ({kind}) grew from {early[0]:.1f} to "
                                     f"{late[0]:.1f} MB", self.evidence(slot))
                looks.clear()
            elif many > DESCRIPTORS:
                listing = "\n".join(sorted(os.readlink(f"/proc/{pid}/fd/{n}")
                                           for n in os.listdir(f"/proc/{pid}/fd")
                                           if os.path.lexists(f"/proc/{pid}/fd/{n}")))
                self.journal.finding("grown", f"slot {slot} ({kind}) has {many} descriptors more",
                                     [("descriptors.txt", listing)])
                looks.clear()

    # Stale tiles: a slot started this moment, on the same data, shows what the old one shows.

    def excuse(self, pid):
        """What it could not write it shows all the same, until its next change is written too."""
        self.excused.add(pid)

    def check_tile(self, slot):
        record = self.round.ledger.in_slot(slot)
        kind = kind_of(record)
        pid = self.round.running[slot]
        if kind in NOT_COMPARED or (kind in KEEPS_UNSAVED and pid in self.excused):
            return
        if kind == "note" and slot in self.round.used:
            # What is typed over a text that nobody told of waits for the panel's question.
            return
        # A second one, for what was still to be saved when the first one read.
        evidence = self.differs(slot, kind) and self.differs(slot, kind)
        if not evidence:
            self.tiles_compared += 1
        elif not self.round.ended(self.round.running.get(slot, 0)):
            self.journal.finding("stale", f"the tile of slot {slot} ({kind}, span "
                                 f"{record['span']}) is not what a new process draws",
                                 lambda: [*evidence, *self.evidence(slot)])

    def differs(self, slot, kind):
        """What tells so, where the tile of the slot stays another one than a new process's."""
        twin = Twin(self.world, slot)
        try:
            ours = self.world.picture(slot)
            # On a busy machine a start takes its time.
            if not self.round.wait(lambda: twin.picture.exists() or not twin.lives(), 60) \
                    or not twin.picture.exists():
                return [("fresh.log", twin.log() + "\nThe new process drew nothing.\n")]
            end = time.monotonic() + SLOW.get(kind, STALE_AFTER)
            while time.monotonic() < end:
                if same(ours, twin.picture):
                    return None
                time.sleep(0.2)
            return [(name, path.read_bytes() if path.exists() else b"")
                    for name, path in (("shown.png", ours), ("fresh.png", twin.picture))]
        finally:
            twin.close()


def same(one, other):
    """Alike but for a few points: a ring's end moves between two drawings."""
    try:
        if one.read_bytes() == other.read_bytes():
            return True
    except OSError:
        return False
    compared = subprocess.run(["compare", "-metric", "AE", "-fuzz", "15%", str(one), str(other),
                               "null:"], capture_output=True, text=True, check=False)
    return compared.returncode < 2 and compared.stderr.isdigit() and int(compared.stderr) <= 4


class Twin:
    """The same slot once more, on a display of its own and under another identity."""

    def __init__(self, world, slot):
        self.world = world
        identity = f"{world.bundle_identifier(slot)}.Twin"
        self.pictures = world.home / "reference" / "pictures"
        self.pictures.mkdir(parents=True, exist_ok=True)
        self.picture = self.pictures / f"{identity}.png"
        bundle = world.home / "reference" / f"Tavrin Slot {slot}.app" / "Contents"
        if not bundle.exists():
            original = BUNDLES / bundle.parent.name / "Contents"
            (bundle / "MacOS").mkdir(parents=True)
            program = world.home / "reference" / "TavrinSlot"
            if not program.exists():
                shutil.copy(original / "MacOS" / "TavrinSlot", program)
            # A program finds its bundle by its own path.
            (bundle / "MacOS" / "TavrinSlot").hardlink_to(program)
            info = plistlib.loads((original / "Info.plist").read_bytes())
            info["CFBundleIdentifier"] = identity
            (bundle / "Info.plist").write_bytes(plistlib.dumps(info))
        settings = world.settings / "tavrin"
        own = settings / f"{world.bundle_identifier(slot)}.json"
        self.copy = settings / f"{identity}.json"
        if own.exists():
            shutil.copy(own, self.copy)
        env = {**world.program_env(), "TAVRIN_PICTURE_DIR": str(self.pictures),
               "DISPLAY": world.env["REFERENCE_DISPLAY"], "CAMPAIGN_STALLS": "/dev/null"}
        self.log_file = world.home / "reference" / "twin.log"
        with open(self.log_file, "wb") as log:
            self.process = subprocess.Popen([str(bundle / "MacOS" / "TavrinSlot"), "--background"],
                                            env=env, stdin=subprocess.DEVNULL, stdout=log, stderr=log)

    def lives(self):
        return self.process.poll() is None

    def log(self):
        return self.log_file.read_text(errors="replace")

    def close(self):
        if self.process.poll() is None:
            self.process.terminate()
        try:
            self.process.wait(5)
        except subprocess.TimeoutExpired:
            os.kill(self.process.pid, signal.SIGKILL)
            self.process.wait()
        self.copy.unlink(missing_ok=True)
        self.picture.unlink(missing_ok=True)


def is_servers(frames):
    """Whether the main thread waited for the X server, or for the toolkit's first connection."""
    return any(library in frame for frame in frames[:8] for library in ("libxcb.so", "libQt6DBus"))


def symbols(frames):
    """What the addresses are called, as far as the programs say."""
    lines = []
    for frame in frames:
        module, _, address = frame.rpartition("+")
        found = ""
        if os.path.exists(module):
            found = subprocess.run(["addr2line", "-Cfpse", module, address], capture_output=True,
                                   text=True, check=False).stdout.strip()
        lines.append(f"{pathlib.Path(module).name} {address} {found}")
    return "\n".join(lines) + "\n"
