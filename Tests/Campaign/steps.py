"""What the campaign does to a desk: each step draws all that it needs from its own chances.

A step gets the round and a `random.Random` of its own, and returns what it did in a line. What it
may change is said to the ledger before it happens. It raises Skip where it cannot be done at this
time; the draws of later steps do not depend on that.
"""

import datetime
import random
import subprocess
import time

import dbus

from desks.calendars import add, component
from clock import ZONES
from ledger import kind_of
from rig import BUILD

STEPS = []
KEYS = ["Tab", "Return", "Escape", "space", "Up", "Down", "Left", "Right", "BackSpace", "Delete",
        "a", "b", "1", "7", "Home", "End", "Page_Down", "shift+Tab", "ctrl+a", "ctrl+c", "ctrl+v",
        "ctrl+z", "ctrl+comma", "F2", "Menu", "alt+F4", "adiaeresis", "comma", "minus"]
TEXTS = ["Tea", "", "milk, bread & <b>butter</b>", "日本語 😀", "a" * 300, "two\nlines", "3/4 = 75 %",
         "\u202eright to left", "Ünïcödé"]
COLOURS = ["#FF9F0A", "#fbbf24", "#0A84FF", "#000000", "#FFFFFF", "teal", "#12"]
# Settings whose loss is tested need room; a limit of one would hide it.
UNTOUCHED = {("clipboard", "historyLimit"), ("clipboard", "retentionDays"),
             ("clipboard", "persistAcrossRestarts"), ("shortcut", "command"),
             ("shortcut", "desktopAction"), ("shortcut", "workingFolder"),
             ("colourPicker", "hotkey"), ("weather", "cityName"), ("files", "folders"),
             ("screenshots", "folder")}


class Skip(Exception):
    """The step is not possible at this time."""


def step(weight):
    def take(function):
        STEPS.append((weight, function))
        return function
    return take


def choose(chance):
    return chance.choices([function for _, function in STEPS], [weight for weight, _ in STEPS])[0]


def pick(chance, sequence):
    """One draw, whatever the length: what is there to choose from differs between runs."""
    return sequence[int(chance.random() * len(sequence))] if sequence else None


def unseen_first(round_, records):
    """Those of kinds whose panel nobody has used yet, where there are any."""
    return [each for each in records if kind_of(each) not in round_.panels_used] or records


def need(round_, *services):
    if any(service in round_.world.down for service in services):
        raise Skip(f"without {' and '.join(services)}")


# Settings, kinds and spans through the command


def value_for(field, chance):
    """A text for the command: mostly one that the setting takes."""
    kind = field["type"]
    if kind == "boolean":
        return chance.choice(["yes", "no"])
    if kind == "choice":
        return chance.choice(field["choices"])
    if kind in ("integer", "number"):
        low, high = field.get("minimum", -1000), field.get("maximum", 100000)
        value = chance.choice([low, high, low - 1, high * 2, chance.uniform(low, min(high, 600))])
        return str(int(value)) if kind == "integer" else f"{value:.2f}"
    if kind == "date":
        return chance.choice(["+14d", "+90s", "-1d", "+1h", "2027-03-28T02:30", "2026-12-24"])
    if kind == "list" and field.get("elements") == "number":
        return ",".join(str(chance.randint(1, 7200)) for _ in range(chance.randint(0, 8)))
    if kind == "list" and field.get("elements") == "text":
        return ",".join(chance.choice(["/tmp", "/nowhere/at all", "~/Downloads", "owner/name"])
                        for _ in range(chance.randint(0, 5)))
    if kind == "text" and "olor" in field["key"] + field["title"] or field["key"] == "tintHex":
        return chance.choice(COLOURS)
    if field["key"] == "timeZoneID":
        return chance.choice([*ZONES, "null", "Mars/Base"])
    return chance.choice(TEXTS) if kind == "text" else None


@step(14)
def set_setting(round_, chance):
    kind = chance.choice(round_.kinds)
    fields = [field for field in kind["fields"] if (kind["key"], field["key"]) not in UNTOUCHED]
    field = chance.choice(fields) if fields else None
    value = value_for(field, chance) if field else None
    record = pick(chance, round_.ledger.of_kind(kind["key"]))
    if value is None:
        raise Skip(f"{kind['key']} has nothing to set")
    return round_.command([record["id"]], "widgets", "set", record["name"],
                          f"{field['key']}={value}", setting=(record["id"], field, value))


@step(3)
def set_span(round_, chance):
    record = pick(chance, round_.ledger.widgets())
    span = chance.choice([1, 2, 3, 4, 5, 0])
    return round_.command([record["id"]], "widgets", "span", record["name"], str(span))


@step(2)
def rename(round_, chance):
    record = pick(chance, round_.ledger.widgets())
    name = f"{record['name'].split(' ')[0]} {chance.choice(['one', 'zwei', '三', '<i>4</i>'])}"
    return round_.command([record["id"]], "widgets", "rename", record["name"], name)


@step(6)
def change_kind(round_, chance):
    """Another widget, of another kind, takes a slot that runs."""
    slot = chance.randint(1, 12)
    placed = [each for each in round_.ledger.widgets() if each.get("slot") == slot]
    free = [each for each in round_.ledger.widgets() if each.get("slot") is None]
    other = pick(chance, unseen_first(round_, free))
    if other is None:
        raise Skip("every widget has a slot")
    changed = [each["id"] for each in placed] + [other["id"]]
    round_.ledger.touch(changed)
    records = round_.world.document()
    for record in records["widgets"]:
        if record["id"] in changed:
            record.pop("slot", None)
            if record["id"] == other["id"]:
                record["slot"] = slot
    if round_.world.disk != "good":
        raise Skip("the disk takes no files")
    need(round_, "bus")
    # In one write, as an editor of the file would: no slot is ever without its widget.
    round_.world.write_widgets(records["widgets"])
    round_.ledger.accept(changed)
    return f"slot {slot}: {other['name']}"


@step(2)
def release_and_place(round_, chance):
    slot = chance.randint(1, 12)
    placed = [each for each in round_.ledger.widgets() if each.get("slot") == slot]
    if not placed:
        raise Skip("an empty slot")
    record = placed[0]
    need(round_, "bus", "display")
    done = round_.command([record["id"]], "widgets", "release", record["name"])
    round_.expect_gone(slot)
    round_.command([record["id"]], "widgets", "place", record["name"], "--slot", str(slot))
    return done + f"; and back into {slot}; " + round_.start_missing()


# Panels


@step(26)
def use_panel(round_, chance):
    need(round_, "bus", "display")
    looks_further = chance.random() < 0.5
    slot = pick(chance, sorted(round_.running))
    if looks_further:
        shown = [round_.ledger.in_slot(slot) for slot in sorted(round_.running)]
        slot = pick(chance, [record["slot"] for record in unseen_first(round_, shown)])
    plan = [(chance.random(), chance.random(), chance.random(), chance.choice(KEYS),
             chance.choice(TEXTS)) for _ in range(chance.randint(1, 7))]
    leaves_open = chance.random() < 0.15
    if not slot:
        raise Skip("no slot runs")
    world, pid = round_.world, round_.running[slot]
    record = round_.ledger.in_slot(slot)
    round_.ledger.touch([record["id"]], by_hand=True)
    before = {window[0] for window in world.windows(pid)}
    world.activate(slot)
    opened = round_.wait(lambda: [w for w in world.windows(pid) if w[0] not in before], 3)
    panel = max(opened, key=lambda window: window[3] * window[4]) if opened else None
    if panel:
        round_.panels_used.add(kind_of(record))
    said = []
    for kind, right, below, key, text in plan:
        if pid not in round_.running.values() or round_.ended(pid):
            break
        if panel and kind < 0.62:
            window, x, y, width, height = panel
            button = 1 if kind < 0.5 else 3 if kind < 0.55 else 4 if kind < 0.58 else 5
            world.click(x + right * width, y + below * height, button)
            said.append(f"click {button} at {right * width:.0f},{below * height:.0f}")
        elif kind < 0.9:
            world.run("xdotool", "key", key, check=False)
            said.append(key)
        else:
            world.run("xdotool", "type", "--delay", "2", text[:40], check=False)
            said.append(f"type {text[:10]!r}")
    round_.used.add(slot)
    if not leaves_open:
        world.run("xdotool", "key", "Escape", check=False)
        round_.wait(lambda: {w[0] for w in world.windows(pid)} <= before, 0.5)
        for _ in range(2):
            if not {w[0] for w in world.windows(pid)} <= before and not round_.ended(pid):
                world.activate(slot)
                round_.wait(lambda: {w[0] for w in world.windows(pid)} <= before, 1)
    round_.free_input(slot)
    return f"slot {slot} ({record['name']}) {'panel' if panel else 'no panel'}: {', '.join(said)}"


@step(6)
def click_tile(round_, chance):
    need(round_, "bus", "display")
    slot = pick(chance, sorted(round_.running))
    right, below, button = chance.random(), chance.random(), chance.choice([1, 1, 1, 2, 3, 4])
    if not slot:
        raise Skip("no slot runs")
    windows = round_.world.windows(round_.running[slot])
    if not windows:
        raise Skip("no tile")
    _, x, y, width, height = windows[0]
    round_.used.add(slot)
    round_.ledger.touch([round_.ledger.in_slot(slot)["id"]], by_hand=True)
    round_.world.click(x + right * width, y + below * height, button)
    round_.free_input(slot)
    return f"slot {slot} button {button} at {right:.2f},{below:.2f}"


# Processes that die


@step(9)
def kill_slot(round_, chance):
    slots = chance.sample(range(1, 13), chance.choice([1, 1, 1, 3, 12]))
    delay = chance.choice([0, 0, chance.uniform(0, 0.4)])
    victims = [slot for slot in slots if slot in round_.running]
    if not victims:
        raise Skip("none of them runs")
    if delay and "bus" not in round_.world.down:
        round_.world.announce()
        time.sleep(delay)
    runs = {slot: round_.ledger.run_of(slot) for slot in victims}
    for slot in victims:
        round_.kill(slot)
    text = f"kill -9 of {victims}; " + round_.start_missing()
    round_.ledger.check_runs(runs)
    return text


@step(4)
def kill_command(round_, chance):
    """The command is killed at some moment of its writing: before, or all of it, or none."""
    record = chance.choice(round_.ledger.of_kind("note") + round_.ledger.of_kind("countdown"))
    delay = chance.uniform(0.001, 0.06)
    value = str(chance.randint(1, 10**9))
    key = "text" if "note" in record["kind"] else "target"
    value = value if key == "text" else f"+{int(value) % 400}d"
    round_.ledger.touch([record["id"]])
    process = subprocess.Popen([str(BUILD / "bin" / "tavrin"), "widgets", "set", record["name"],
                                f"{key}={value}"], env=round_.world.program_env(),
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    time.sleep(delay)
    process.kill()
    process.wait()
    round_.ledger.accept([record["id"]])
    # What was written without a word is shown with the next one's: the next one comes here.
    if "bus" not in round_.world.down:
        round_.world.announce()
    return f"{record['name']} after {delay * 1000:.0f} ms"


@step(2)
def restart_slots(round_, chance):
    slots = [str(slot) for slot in chance.sample(range(1, 13), 3)]
    need(round_, "bus", "display")
    runs = {int(slot): round_.ledger.run_of(int(slot)) for slot in slots}
    for slot in slots:
        round_.expect_gone(int(slot))
    done = round_.world.tavrin("restart", *slots)
    text = round_.start_missing()
    round_.ledger.check_runs(runs)
    return f"restart {slots}: {done.returncode} {done.stderr.strip()[:80]} {text}"


# Services that die and come back


@step(9)
def service(round_, chance):
    name = chance.choice(["bus", "display", "manager", "keyring", "calendars", "notices", "player",
                          "system", "network"])
    steps = chance.choice([0, 0, 1, 2, 3])
    if round_.world.down:
        raise Skip("another is down")
    if name == "network":
        round_.world.set_network(False)
        round_.later(steps, lambda: round_.world.set_network(True), "network")
    else:
        round_.world.kill_service(name)
        round_.after_death(name)
        round_.later(steps, lambda: round_.bring_back(name), name)
    return f"{name} dies for {steps} steps"


@step(4)
def break_disk(round_, chance):
    how, steps = chance.choice(["full", "read-only"]), chance.choice([0, 1, 2, 4])
    if round_.world.disk != "good" or not round_.world.break_disk(how):
        raise Skip("the disk cannot be broken")
    round_.later(steps, round_.mend_disk, "disk")
    return f"{how} for {steps} steps"


# Time


@step(6)
def sleep_and_wake(round_, chance):
    minutes = chance.choice([1, 10, 25, 40, 90, 200])
    seconds = minutes * 60 + chance.random() * 60
    need(round_, "system")
    round_.world.say_sleep(True)
    round_.world.clock.advance(seconds)
    round_.world.say_sleep(False)
    round_.ledger.time_passed()
    return f"{minutes} minutes, to {round_.world.clock.local():%a %H:%M:%S}"


@step(3)
def set_clock(round_, chance):
    seconds = chance.choice([-3600, -90, 45, 600, 1800, 5400])
    round_.world.clock.advance(seconds)
    round_.ledger.time_passed()
    return f"by {seconds} s"


@step(2)
def midnight(round_, chance):
    round_.world.clock.set(round_.world.clock.next_midnight() - 1.5)
    round_.ledger.time_passed()
    time.sleep(2.5)
    return f"passed, {round_.world.clock.local():%a %H:%M:%S}"


@step(2)
def clocks_change(round_, chance):
    moment = round_.world.clock.next_change()
    if moment is None:
        raise Skip("no change is near")
    round_.world.clock.set(moment - 1.5)
    round_.ledger.time_passed()
    time.sleep(2.5)
    return f"{round_.world.clock.local():%a %H:%M:%S%z}"


@step(2)
def travel(round_, chance):
    zone = chance.choice(ZONES)
    need(round_, "system")
    if not round_.world.set_zone(zone):
        raise Skip("the zone is not the campaign's own")
    round_.ledger.time_passed()
    return zone


@step(5)
def idle(round_, chance):
    time.sleep(chance.uniform(0.2, 2.5))
    return "a while"


# What other programs do


@step(6)
def copy(round_, chance):
    text = f"copied {chance.randint(0, 10**9)} {chance.choice(TEXTS)}"
    need(round_, "display")
    round_.ledger.make_listen(round_.world.copy)
    round_.world.copy(text)
    return round_.ledger.copied(text)


@step(4)
def appointment(round_, chance):
    title, minutes = chance.choice(TEXTS) or "?", chance.choice([1, 15, 45, 300, 2000])
    identifier = chance.randint(0, 10**9)
    need(round_, "bus", "calendars")
    start = datetime.datetime.fromtimestamp(round_.world.clock.now() + minutes * 60,
                                            datetime.timezone.utc)
    stamp = start.strftime("%Y%m%dT%H%M%SZ")
    try:
        if chance.random() < 0.6:
            add(round_.world.calendar_server.calendar(),
                [component("VEVENT", UID=f"e{identifier}", SUMMARY=title.replace("\n", " "),
                           DTSTART=stamp, DURATION="PT30M")])
        else:
            add(round_.world.calendar_server.task_list(),
                [component("VTODO", UID=f"t{identifier}", SUMMARY=title.replace("\n", " "),
                           DUE=stamp)])
    except dbus.DBusException as error:
        return f"refused: {error.get_dbus_name()}"
    return f"in {minutes} minutes"


@step(3)
def play(round_, chance):
    status = chance.choice(["Playing", "Paused", "Stopped"])
    title = chance.choice(TEXTS) or "Untitled"
    need(round_, "bus", "player")
    change = ('{"PlaybackStatus": "%s", "Metadata": {"xesam:title": "%s"}}'
              % (status, title.replace("\n", " ")))
    round_.world.bus().call_blocking("org.mpris.MediaPlayer2.campaign", "/org/mpris/MediaPlayer2",
                                     "dev.quellby.Test", "Become", "s", (change,), timeout=10)
    return f"{status}: {title[:20]}"


@step(3)
def file_comes(round_, chance):
    folder = chance.choice(["Downloads", "Pictures", "Desktop"])
    name = chance.choice(["Screenshot from 2026.png", "a b.txt", "ä.pdf", "x.part"])
    home = round_.world.home
    (home / folder / f"{chance.randint(0, 30)} {name}").write_bytes(
        chance.randbytes(chance.randint(0, 5000)))
    return folder


def chances(seed, number):
    return random.Random(f"{seed}/{number}")
