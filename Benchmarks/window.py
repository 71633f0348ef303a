"""The settings window: its start, a form, and a letter typed until the tile beside shows it."""

import statistics
import subprocess

from figures import row, section, timed
from access_tree import start_accessibility
from rig import BUILD, Desk, wait_for, widget
from settings_window import PROGRAM, Window
from slots import CLOCK, launches, memory, settings_of

# X key codes of any keyboard: "a", and the left arrow.
LETTER = 38


def clock(desk, *words):
    result = subprocess.run([str(CLOCK), *map(str, words)], env=desk.env, capture_output=True,
                            text=True, check=True)
    return [float(line) for line in result.stdout.split()]


def bench(quick):
    section("The settings window")
    desk = Desk(screens=("1280x900",))
    try:
        desk.env["TAVRIN_BUNDLES"] = str(BUILD / "none")
        desk.write_widgets([widget(*settings_of(number), number + 1, name=f"Widget {number + 1}")
                            for number in range(12)], announce=False)
        timed("start, until it is painted with twelve widgets",
              statistics.median(launches(desk, [PROGRAM], 3 if quick else 9)), 150)
        start_accessibility(desk)
        window = Window(desk)
        frame = window.frame
        place = lambda name, role=None: window.await_name(name, role)["extents"]
        middle = lambda box: (box[0] + box[2] // 2, box[1] + box[3] // 2)

        def area(box):
            return [frame[0], box[0] - frame[1], box[1] - frame[2], box[2], box[3]]

        # From one widget's page to another's: its form.
        window.click("Widget 3, place 3 of 12")
        form = area(place("Settings", "filler"))
        times = []
        for number in (4, 1, 5, 2, 7, 8, 10, 12):
            tile = middle(place(f"Widget {number}, place {number} of 12"))
            times += clock(desk, "press", *tile, *form)
        timed("a press on a tile until its form is painted", statistics.median(times), 30)
        window.click("Widget 3, place 3 of 12")
        window.focus("Text", "text")
        times = clock(desk, "type", LETTER, *area(place("Preview")), 6 if quick else 20)
        timed("a letter typed until the tile shows it", statistics.median(times), 50)
        row("private memory of the window, at a note's page", memory(window.process.pid)
            ["Private_Dirty"], "MB")
    finally:
        desk.close()
