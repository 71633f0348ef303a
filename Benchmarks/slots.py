"""What slots cost beside a bare window of the toolkit, and twelve of them beside twelve peers.

Everything runs on an X server, a bus and a home of its own.
"""

import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "Tests" / "EndToEnd"))
from rig import BUILD, Desk, wait_for, widget  # noqa: E402

from figures import ratio, row, section, timed, use_bare_start  # noqa: E402

NOW_OFFSET = 978307200
CLOCK = BUILD / "Tools" / "window-clock"
BARE = BUILD / "Benchmarks" / "bare-window"


def memory(pid):
    values = {}
    with open(f"/proc/{pid}/smaps_rollup") as file:
        for line in file:
            words = line.split()
            if words[0] in ("Private_Dirty:", "Pss:", "Rss:"):
                values[words[0][:-1]] = int(words[1]) / 1024
    return values


def activity(pid):
    """Wake-ups and processor seconds of all threads so far."""
    wakeups, nanoseconds = 0, 0
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        status = (task / "status").read_text()
        wakeups += int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", status, re.M).group(1))
        nanoseconds += int((task / "schedstat").read_text().split()[0])
    return wakeups, nanoseconds / 1e9


def observe(pids, seconds):
    before = [activity(pid) for pid in pids]
    time.sleep(seconds)
    after = [activity(pid) for pid in pids]
    return [((b[0] - a[0]) / seconds, (b[1] - a[1]) / seconds * 100)
            for a, b in zip(before, after)]


def settings_of(number):
    """Twelve widgets as a user might have them; the first runs a timer."""
    kinds = [("timer", {}), ("clock", {}), ("note", {"text": "Milk, bread"}), ("pomodoro", {}),
             ("stopwatch", {}), ("timeProgress", {"scope": "year"}), ("note", {}),
             ("countdown", {"target": time.time() - NOW_OFFSET + 30 * 86400,
                            "countsUpAfter": False}),
             ("timer", {}), ("pomodoro", {}), ("clock", {"isAnalog": True}), ("stopwatch", {})]
    return kinds[number]


def slot_pids(desk, count):
    import dbus
    bus = dbus.bus.BusConnection(desk.env["DBUS_SESSION_BUS_ADDRESS"])
    daemon = bus.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus")
    return [int(daemon.GetConnectionUnixProcessID(desk.bundle_identifier(slot)))
            for slot in range(1, count + 1)]


def tavrin(desk, *arguments):
    return subprocess.run([str(BUILD / "bin" / "tavrin"), *arguments], env=desk.env,
                          capture_output=True, text=True, check=True).stdout


def launch(desk, command):
    """Milliseconds from a program's start to its first window painted, and of the processor's time
    until then."""
    result = subprocess.run([str(CLOCK), "launch", *map(str, command)], env=desk.env,
                            capture_output=True, text=True, check=True)
    _, painted, processor = map(float, result.stdout.split())
    return painted, processor


def launches(desk, command, count):
    """Milliseconds from a program's start to its first window painted, each time."""
    return [launch(desk, command)[0] for _ in range(count)]


def clicks(desk, process, times):
    """Milliseconds from a click on a process's tile to its panel painted, each time."""
    tile = wait_for(lambda: desk.windows(process.pid), "the tile")[0]
    x, y = tile[1] + tile[3] // 2, tile[2] + tile[4] // 2
    result = subprocess.run([str(CLOCK), "click", str(x), str(y), str(times)], env=desk.env,
                            capture_output=True, text=True, check=True)
    return [float(line.split()[1]) for line in result.stdout.splitlines()]


def bench_alone(quick):
    """A slot by itself and a bare window, in turn."""
    section("One slot beside a bare window of the toolkit")
    desk = Desk()
    try:
        desk.write_widgets([widget("timer", {}, 1)], announce=False)
        slot, bare = [], []
        for _ in range(5 if quick else 15):
            bare += launches(desk, [BARE], 1)
            slot += launches(desk, [desk.program(1), "--background"], 1)
        use_bare_start(statistics.median(bare))
        row("start of the bare window, until it is painted", statistics.median(bare), "ms")
        ratio("start of a slot, until its tile is painted", statistics.median(slot),
              statistics.median(bare), 1.05, "ms", "ms")

        def used(start):
            first, later, dirty = [], [], []
            for _ in range(2 if quick else 5):
                process = start()
                wait_for(lambda p=process: desk.windows(p.pid), "the window")
                time.sleep(4)
                dirty.append(memory(process.pid)["Private_Dirty"])
                shown = clicks(desk, process, 6)
                first.append(shown[0])
                later += shown[1:]
                process.terminate()
                process.wait()
            return max(dirty), statistics.median(first), statistics.median(later)

        bare_memory, bare_first, bare_later = used(lambda: desk.spawn([str(BARE)]))
        memory_, first, later = used(lambda: desk.start_slot(1))
        ratio("private memory", memory_, bare_memory, 1.0, "MB", "MB")
        ratio("click until the panel is painted, the first time", first, bare_first, 2, "ms", "ms")
        ratio("click until the panel is painted, later", later, bare_later, 1.5, "ms", "ms")
        desk.write_widgets([widget("emoji", {}, 1)], announce=False)
        _, first, later = used(lambda: desk.start_slot(1))
        ratio("a list of 1,900 emoji, the first time", first, bare_first, 4, "ms", "ms")
        ratio("a list of 1,900 emoji, later", later, bare_later, 2, "ms", "ms")
    finally:
        desk.close()


def bench_twelve(quick):
    section("Twelve slots, one timer running, beside twelve conky with a clock")
    seconds = 8 if quick else 20
    desk = Desk()
    try:
        records = [widget(*settings_of(number), number + 1, name=f"Widget {number + 1}")
                   for number in range(12)]
        desk.write_widgets(records, announce=False)
        defaults = desk.home / "config" / "tavrin"
        defaults.mkdir(parents=True)
        (defaults / f"{desk.bundle_identifier(1)}.json").write_text(
            '{"timerRun": {"mode": "countdown", "duration": 36000, "accumulated": 0, '
            f'"startedAt": {time.time() - NOW_OFFSET}}}}}')
        starts = []
        for number in range(3):
            if number:
                tavrin(desk, "stop")
            started = time.monotonic()
            tavrin(desk, "start")
            starts.append((time.monotonic() - started) * 1000)
        timed("tavrin start until all twelve answer", statistics.median(starts), 150)
        pids = slot_pids(desk, 12)
        time.sleep(6)
        sizes = [memory(pid) for pid in pids]
        row("private memory, the largest", max(s["Private_Dirty"] for s in sizes), "MB", 3)
        private = sum(s["Private_Dirty"] for s in sizes)
        row("private memory, all", private, "MB", 15)
        row("proportional memory, the largest", max(s["Pss"] for s in sizes), "MB", 6)
        proportional = sum(s["Pss"] for s in sizes)
        loads = observe(pids, seconds)
        row("wake-ups of the slot whose timer runs", loads[0][0], "/s", 6)
        still = [loads[i][0] for i in (2, 3, 4, 6, 8, 9, 11)]
        row("wake-ups of a slot with nothing to tick, the most", max(still), "/s", 0)
        wakeups, share = (sum(column) for column in zip(*loads))
        tavrin(desk, "stop")
    finally:
        desk.close()
    if shutil.which("conky") is None:
        raise RuntimeError("conky is not installed")
    desk = Desk()
    try:
        (desk.home / "conky.conf").write_text(
            "conky.config={update_interval=1,own_window=true,own_window_type='desktop',"
            "double_buffer=true,font='Inter:size=12',use_xft=true}"
            "conky.text=[[${time %H:%M:%S}]]")
        pids = [desk.spawn(["conky", "-c", str(desk.home / "conky.conf")]).pid for _ in range(12)]
        time.sleep(4)
        sizes = [memory(pid) for pid in pids]
        loads = observe(pids, seconds)
    finally:
        desk.close()
    peer_wakeups, peer_share = (sum(column) for column in zip(*loads))
    ratio("private memory", private, sum(s["Private_Dirty"] for s in sizes), 0.5, "MB", "MB")
    ratio("proportional memory", proportional, sum(s["Pss"] for s in sizes), 0.5, "MB", "MB")
    ratio("wake-ups", wakeups, peer_wakeups, 0.5, "/s", "/s")
    ratio("processor", share, peer_share, 0.5, "% of one core", "%")


def bench_closed_panels(quick):
    section("One slot of a kind, before its panel and three seconds after")
    for kind in ("emoji",) if quick else ("timer", "emoji", "pet", "collection"):
        desk = Desk()
        try:
            settings = {"apps": []} if kind == "collection" else {}
            desk.write_widgets([widget(kind, settings, 1)], announce=False)
            process = desk.start_slot(1)
            desk.wait_for_name(1)
            tiles = len(wait_for(lambda: desk.windows(process.pid), "the tile"))
            time.sleep(3)
            row(f"{kind}: private memory before", memory(process.pid)["Private_Dirty"], "MB", 3.5)
            for _ in range(3):
                desk.toggle(1)
                wait_for(lambda: len(desk.windows(process.pid)) > tiles, "the panel", 10)
                time.sleep(1.5)
                desk.toggle(1)
                time.sleep(3)
            row(f"{kind}: private memory after", memory(process.pid)["Private_Dirty"], "MB", 4.5)
        finally:
            desk.close()


def bench_growth(renders=10_000, openings=1_000):
    import dbus
    desk = Desk()
    try:
        section("One slot used for long")
        record = widget("note", {"text": "0"}, 1)
        desk.write_widgets([record], announce=False)
        process = desk.start_slot(1)
        desk.wait_for_name(1)
        bus = dbus.bus.BusConnection(desk.env["DBUS_SESSION_BUS_ADDRESS"])
        slot = dbus.Interface(bus.get_object(desk.bundle_identifier(1),
                                             "/dev/quellby/Tavrin/Slot1"),
                              "org.freedesktop.Application")

        def change(number):
            record["kind"]["note"]["_0"]["text"] = f"Note {number}"
            desk.write_widgets([record], announce=False)
            message = dbus.lowlevel.SignalMessage("/dev/quellby/tavrin/Notifications",
                                                  "dev.quellby.tavrin.Notifications", "Posted")
            message.append("dev.quellby.tavrin.widgetsChanged", "")
            bus.send_message(message)
            # Answered after the announcement: the slot keeps up.
            dbus.Interface(bus.get_object(desk.bundle_identifier(1), "/"),
                           "org.freedesktop.DBus.Peer").Ping()

        def toggle():
            slot.ActivateAction("toggle", [], {}, signature="sava{sv}")
            time.sleep(0.02)

        def rest():
            time.sleep(1)
            if len(desk.windows(process.pid)) > 1:
                toggle()
            time.sleep(3)

        for number in range(10):
            change(number)
        for _ in range(20):
            toggle()
        rest()
        first = memory(process.pid)["Private_Dirty"]
        for number in range(renders):
            change(number)
        time.sleep(3)
        rendered = memory(process.pid)["Private_Dirty"]
        for _ in range(2 * openings):
            toggle()
        rest()
        opened = memory(process.pid)["Private_Dirty"]
        row("private memory after ten renders and openings", first, "MB")
        row(f"more after {renders} renders", rendered - first, "MB", 0)
        row(f"more after {openings} panel openings", opened - first, "MB", 0)
    finally:
        desk.close()


def middle(differences):
    """Their median, and between which two of them it lies with 95 % certainty."""
    ordered = sorted(differences)
    reach = 0.98 * len(ordered) ** 0.5
    low = max(int(len(ordered) / 2 - reach), 0)
    return statistics.median(ordered), ordered[low], ordered[-1 - low]


def bench_language(quick):
    """A slot in English and one in German, in pairs that begin with the one and the other by turns:
    what else the machine does meets both."""
    section("A slot in German beside one in English")
    desk = Desk()
    try:
        desk.write_widgets([widget("timer", {}, 1)], announce=False)

        def compared(pairs, measure):
            """What German has more of, by figure, each pair's difference."""
            more = {}
            for number in range(pairs):
                found = {}
                for language in ("en", "de") if number % 2 else ("de", "en"):
                    desk.env["TAVRIN_LANGUAGE"] = language
                    found[language] = measure()
                for name in found["en"]:
                    more.setdefault(name, []).append(found["de"][name] - found["en"][name])
            return more

        def started():
            return dict(zip(("painted", "processor"),
                            launch(desk, [desk.program(1), "--background"])))

        def rested():
            process = desk.start_slot(1)
            wait_for(lambda: desk.windows(process.pid), "the tile")
            time.sleep(2)
            private = memory(process.pid)["Private_Dirty"]
            process.terminate()
            process.wait()
            return {"private": private}

        def tell(name, differences, unit, goal):
            value, low, high = middle(differences)
            row(name, value, unit, goal, f"{low:.3f} to {high:.3f}, {len(differences)} pairs")

        starts = compared(40 if quick else 200, started)
        tell("more private memory", compared(3 if quick else 9, rested)["private"], "MB", 0.05)
        tell("more until its tile is painted", starts["painted"], "ms", 0.5)
        tell("more processor time until then", starts["processor"], "ms", 0.5)
    finally:
        desk.close()


def bench(quick):
    bench_alone(quick)
    bench_language(quick)
    bench_twelve(quick)
    bench_closed_panels(quick)
    bench_growth(*((500, 50) if quick else ()))
