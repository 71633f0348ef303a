"""The settings window: its start, a form, a letter typed until the tile beside shows it, and what is
done in it until the desktop shows it."""

import statistics
import subprocess

from figures import row, section, timed
from desks.access_tree import start_accessibility
from rig import BUILD, Desk, wait_for, widget
from desks.settings_window import PROGRAM, Window, end_slots
from slots import CLOCK, launches, memory, settings_of

# X key codes of any keyboard.
LETTER, CONTROL, SHIFT, LEFT, RIGHT, DELETE = 38, 37, 50, 113, 114, 119


def clock(desk, *words):
    result = subprocess.run([str(CLOCK), *map(str, words)], env=desk.env, capture_output=True,
                            text=True, check=True)
    return [float(line) for line in result.stdout.split()]


def bench_changes(quick):
    """From a key, a press or a drop in the window to the tile on the desktop."""
    desk = Desk(screens=("1280x900",))
    try:
        desk.env["TAVRIN_BUNDLES"] = str(BUILD / "bundles")
        desk.write_widgets([widget("clock", {"isAnalog": True}, 1, name="Here"),
                            widget("note", {"text": "Milk"}, 2, name="List"),
                            widget("timer", {}, 3, name="Tea")], announce=False)
        slots = [desk.start_slot(slot) for slot in (1, 2, 3)]
        first, second, third = (wait_for(lambda: desk.windows(slot.pid), "a tile")[0][0]
                                for slot in slots)
        start_accessibility(desk)
        window = Window(desk)
        window.await_keyboard()
        whole = lambda tile: (tile, 0, 0, 2000, 2000)
        rounds = 3 if quick else 9

        def show(name, measure, count=rounds):
            times = [time for number in range(count) for time in measure(number)]
            timed(name, statistics.median(times), 100)

        window.click("Here, place 1 of 3")
        switch = [int(number) for number in window.centre("Analog face", "check box")]
        show("a setting switched, until the tile shows it",
             lambda _: clock(desk, "press", *switch, *whole(first)))
        window.focus("Here, place 1 of 3")
        show("a tile made wider or narrower by a key, until it is",
             lambda number: clock(desk, "type", f"{SHIFT}+{LEFT if number % 2 else RIGHT}",
                                  *whole(first)), rounds + rounds % 2)
        show("a tile moved by a key, until its neighbour's place shows it",
             lambda number: clock(desk, "type", f"{CONTROL}+{LEFT if number % 2 else RIGHT}",
                                  *whole(first if number % 2 else second)), rounds + rounds % 2)

        def dropped(number):
            names = ("Here, place 1 of 3", "Here, place 3 of 3")
            start, end = names if number % 2 == 0 else reversed(names)
            x, y = window.centre(start)
            count = 8
            left, top, width, height = next(entry["extents"] for entry in window.tree()
                                            if f", {end.split(', ')[1]}" in entry["name"])
            goal = left + (width - 4 if number % 2 == 0 else 4)
            desk.run("xdotool", "mousemove", str(int(x)), str(int(y)), "mousedown", "1")
            for step in range(1, count + 1):
                desk.run("xdotool", "mousemove", str(int(x + (goal - x) * step / count)),
                         str(int(y)))
            return clock(desk, "drop", *whole(first if number % 2 else third))

        show("a tile dropped at another place, until that shows it", dropped)
        window.press("All Widgets")
        card = [int(number) for number in window.centre("Add Timer")]
        times = []
        for _ in range(rounds):
            times += [float(line.split()[1]) for line in subprocess.run(
                [str(CLOCK), "place", *map(str, card)], env=desk.env, capture_output=True,
                text=True, check=True).stdout.splitlines()]
            window.press("Undo Add Timer")
            window.await_name("Add Timer")
        timed("a widget placed by a click, until its tile is painted", statistics.median(times), 100)
        tea = 2 if window.find("Tea, place 2 of 3") else 3
        window.focus(f"Tea, place {tea} of 3")
        # Nothing is ever painted there: only its end counts.
        nowhere = (second if tea == 2 else third, 9000, 9000, 1, 1)
        timed("a tile taken off by a key, until it is gone",
              clock(desk, "type", DELETE, *nowhere)[0], 100)
    finally:
        end_slots(desk)
        desk.close()


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
    bench_changes(quick)
