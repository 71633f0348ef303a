"""Takes the README's picture: starter widgets on a strip, one panel open. docs/screenshot.png"""

import os
import pathlib
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
os.environ.setdefault("TAVRIN_BUILD", str(ROOT / "build"))
sys.path.insert(0, str(ROOT / "Tests" / "EndToEnd"))
from rig import Desk, wait_for, widget  # noqa: E402

now = time.time() - 978307200
WIDGETS = [
    widget("clock", {"isAnalog": True, "showsSeconds": True}, 1, name="Clock"),
    widget("timer", {"tintHex": "#FF9F0A"}, 2, name="Tea"),
    widget("pomodoro", {}, 3, name="Thesis", span=2),
    widget("countdown", {"target": now + 3.2 * 86400, "countsUpAfter": True}, 4, name="Lisbon"),
    widget("timeProgress", {"scope": "year"}, 5, name="Year"),
    widget("stopwatch", {}, 6, name="Stopwatch"),
    widget("note", {"text": "Milk, bread\nCall Ada"}, 7, name="Note"),
]
RUNS = {
    3: {"pomodoroRun": {"phase": "focus", "startedAt": now - 612, "accumulated": 0, "cycle": 1,
                        "sessionsToday": 1, "day": now}},
    2: {"timerRun": {"mode": "countdown", "duration": 300, "startedAt": now - 123,
                     "accumulated": 0}},
}


def main(target):
    desk = Desk(screens=("1640x1080",), window_manager=False)
    try:
        desk.spawn(["xfwm4"])
        time.sleep(1)
        desk.run("convert", "-size", "1700x1140", "gradient:#7C93B8-#3D4A66",
                 str(desk.home / "ground.png"))
        desk.spawn(["display", "-backdrop", "-immutable", str(desk.home / "ground.png")])
        # The viewer's second window would peep out under the panel.
        desk.run("xdotool", "search", "--sync", "--name", "^Pan Icon$", "windowunmap", "%@")
        time.sleep(1)
        desk.env["QT_SCALE_FACTOR"] = "2"
        desk.env["TAVRIN_APPEARANCE"] = "light"
        preferences = desk.home / "Library" / "Preferences"
        preferences.mkdir(parents=True)
        (preferences / "com.apple.dock.plist").write_text(
            '<?xml version="1.0"?><plist version="1.0"><dict><key>tilesize</key>'
            "<integer>72</integer></dict></plist>")
        defaults = desk.home / "config" / "tavrin"
        defaults.mkdir(parents=True)
        for slot, run in RUNS.items():
            import json
            (defaults / f"{desk.bundle_identifier(slot)}.json").write_text(json.dumps(run))
        desk.write_widgets(WIDGETS, announce=False)
        processes = [desk.start_slot(record["slot"]) for record in WIDGETS]
        for record in WIDGETS:
            desk.wait_for_name(record["slot"])
        for process in processes:
            wait_for(lambda p=process: desk.windows(p.pid), "a tile")
        desk.activate(3)
        time.sleep(1.5)
        whole = desk.home / "whole.png"
        desk.screenshot(whole)
        # Without the title bar of the window that is the ground.
        desk.run("convert", str(whole), "-crop", "1560x1010+20+70", "+repage", "-resize", "60%",
                 "-strip", str(target))
    finally:
        desk.close()


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else ROOT / "docs" / "screenshot.png")
