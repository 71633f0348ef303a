"""What twelve real slots cost, each figure beside its target and beside the peers installed here.

Run by scripts/bench. Everything runs on an X server, a bus and a home of its own.
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

NOW_OFFSET = 978307200
CLOCK = BUILD / "Tools" / "window-clock"
missed = []


def row(name, value, unit, target=None, note=""):
    verdict = ""
    if target is not None:
        verdict = f"target {target:g}"
        if value > target:
            verdict += "  MISSED"
            missed.append(name)
    print(f"  {name:<58} {value:>9.2f} {unit:<5} {verdict} {note}".rstrip(), flush=True)


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


def bench_twelve():
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
        started = time.monotonic()
        tavrin(desk, "start")
        print("Twelve slots, one timer running")
        row("tavrin start until all twelve answer", (time.monotonic() - started) * 1000, "ms")
        pids = slot_pids(desk, 12)
        time.sleep(6)
        sizes = [memory(pid) for pid in pids]
        row("private dirty, the largest", max(s["Private_Dirty"] for s in sizes), "MB", 3)
        row("private dirty, all", sum(s["Private_Dirty"] for s in sizes), "MB")
        row("proportional, the largest", max(s["Pss"] for s in sizes), "MB", 6)
        loads = observe(pids, 20)
        row("wake-ups of the slot whose timer runs", loads[0][0], "/s", 6)
        still = [loads[i][0] for i in (2, 3, 4, 6, 8, 9, 11)]
        row("wake-ups of a slot with nothing to tick, the most", max(still), "/s", 0)
        row("wake-ups, all twelve", sum(load[0] for load in loads), "/s")
        row("processor, all twelve, of one core", sum(load[1] for load in loads), "%", 0.3)
        tavrin(desk, "stop")
    finally:
        desk.close()


def bench_alone():
    desk = Desk()
    try:
        desk.write_widgets([widget("timer", {}, 1)], announce=False)
        print("One slot started by itself")
        launches = []
        for _ in range(30):
            result = subprocess.run([str(CLOCK), "launch", str(desk.program(1)), "--background"],
                                    env=desk.env, capture_output=True, text=True, check=True)
            launches.append(float(result.stdout.split()[1]))
        row("exec to first tile painted, median of 30", statistics.median(launches), "ms", 40)
        row("exec to first tile painted, the best", min(launches), "ms")
        first, later, dirty = [], [], []
        for _ in range(5):
            process = desk.start_slot(1)
            desk.wait_for_name(1)
            time.sleep(5)
            tile = wait_for(lambda p=process: desk.windows(p.pid), "the tile")[0]
            dirty.append(memory(process.pid)["Private_Dirty"])
            x, y = tile[1] + tile[3] // 2, tile[2] + tile[4] // 2
            result = subprocess.run([str(CLOCK), "click", str(x), str(y), "6"], env=desk.env,
                                    capture_output=True, text=True, check=True)
            shown = [float(line.split()[1]) for line in result.stdout.splitlines()]
            first.append(shown[0])
            later += shown[1:]
            tavrin(desk, "stop")
            process.wait()
        row("private dirty before the first panel", max(dirty), "MB", 3)
        row("click to panel painted, the first time, median of 5", statistics.median(first), "ms", 20)
        row("and the most", max(first), "ms")
        row("click to panel painted, median of the next 25", statistics.median(later), "ms", 10)
    finally:
        desk.close()


def bench_closed_panels():
    print("One slot of a kind, before its panel and three seconds after")
    for kind in ("timer", "emoji", "pet", "collection"):
        desk = Desk()
        try:
            settings = {"apps": []} if kind == "collection" else {}
            desk.write_widgets([widget(kind, settings, 1)], announce=False)
            process = desk.start_slot(1)
            desk.wait_for_name(1)
            tiles = len(wait_for(lambda: desk.windows(process.pid), "the tile"))
            time.sleep(3)
            row(f"{kind}: private dirty before", memory(process.pid)["Private_Dirty"], "MB", 3.5)
            for _ in range(3):
                desk.activate(1)
                wait_for(lambda: len(desk.windows(process.pid)) > tiles, "the panel", 10)
                time.sleep(1.5)
                desk.activate(1)
                time.sleep(3)
            row(f"{kind}: private dirty after", memory(process.pid)["Private_Dirty"], "MB", 4.5)
        finally:
            desk.close()


def bench_growth(renders=10_000, openings=1_000):
    import dbus
    desk = Desk()
    try:
        print("One slot used for long")
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
            slot.Activate({})
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
        row("private dirty after ten renders and openings", first, "MB")
        row(f"more after {renders} renders", rendered - first, "MB", 0)
        row(f"more after {openings} panel openings", opened - first, "MB", 0)
    finally:
        desk.close()


def bench_peers():
    """The same readings of what is installed, in this run."""
    peers = {
        "conky": ("twelve conky, clock each second", 12,
                  ["conky", "-c", "{home}/conky.conf"]),
        "tint2": ("tint2, clock with seconds", 1, ["tint2", "-c", "{home}/tint2rc"]),
    }
    print("Peers")
    for program, (name, count, command) in peers.items():
        if shutil.which(program) is None:
            print(f"  {name}: not installed")
            continue
        desk = Desk()
        try:
            (desk.home / "conky.conf").write_text(
                "conky.config={update_interval=1,own_window=true,own_window_type='desktop',"
                "double_buffer=true,font='Inter:size=12',use_xft=true}"
                "conky.text=[[${time %H:%M:%S}]]")
            (desk.home / "tint2rc").write_text("panel_items = C\ntime1_format = %H:%M:%S\n")
            words = [word.format(home=desk.home) for word in command]
            pids = [desk.spawn(words).pid for _ in range(count)]
            time.sleep(4)
            sizes = [memory(pid) for pid in pids]
            loads = observe(pids, 10)
            row(f"{name}: private dirty, all", sum(s["Private_Dirty"] for s in sizes), "MB")
            row(f"{name}: proportional, all", sum(s["Pss"] for s in sizes), "MB")
            row(f"{name}: wake-ups, all", sum(load[0] for load in loads), "/s")
            row(f"{name}: processor, all, of one core", sum(load[1] for load in loads), "%")
        finally:
            desk.close()


if __name__ == "__main__":
    quick = "--quick" in sys.argv
    bench_twelve()
    bench_alone()
    bench_closed_panels()
    bench_growth(*((500, 50) if quick else ()))
    bench_peers()
    print(f"Load of this machine now: {os.getloadavg()[0]:.2f} on {os.cpu_count()} cores")
    if missed:
        print("Missed: " + "; ".join(missed))
