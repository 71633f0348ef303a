"""Each kind's panel opens while what it shows changes: frame, content and arrow are right each time.

    test_panels.py On_openbox [--rounds 200] [--kinds music,emoji]

Without a round it opens each panel once. TAVRIN_PANEL_ROUNDS does as --rounds."""

import copy
import os
import shutil
import sys
import time
import unittest

from desks.access_tree import start_accessibility
from desks.managed_desk import MANAGERS
from desks.panel_probe import KINDS, LISTS, SLOT, Boxes, Server, Session, place, start, stop
from rig import PATIENCE, Desk, wait_for


def option(name, fallback):
    if name not in sys.argv:
        return fallback
    at = sys.argv.index(name)
    value = sys.argv[at + 1]
    del sys.argv[at:at + 2]
    return value


ROUNDS = int(option("--rounds", os.environ.get("TAVRIN_PANEL_ROUNDS", 1)))
CHOSEN = option("--kinds", ",".join(KINDS)).split(",")
WIDTHS = (280, 320, 360)
ARROW = 9
SHADOW = 18


class OnManager:
    manager = ""
    compositor = False

    @classmethod
    def setUpClass(cls):
        command = MANAGERS[cls.manager]
        for program in ([command[0]] if command else []) + (["xcompmgr"] if cls.compositor else []):
            if shutil.which(program) is None:
                raise unittest.SkipTest(f"{program} is not installed")
        cls.desk = Desk(window_manager=False)
        cls.addClassCleanup(cls.desk.close)
        start_accessibility(cls.desk)
        cls.desk.env["TAVRIN_APPEARANCE"] = "light"
        if command:
            # One compositor: the manager's own would be a second.
            more = ["--compositor=off"] if cls.manager == "xfwm4" and not cls.compositor else []
            cls.desk.start_window_manager(command + more)
        if cls.compositor and cls.manager != "xfwm4":
            cls.desk.spawn(["xcompmgr", "-n"])
        cls.server = Server(cls.desk.env["DISPLAY"])
        cls.addClassCleanup(cls.server.close)
        if cls.compositor:
            wait_for(cls.server.has_compositor, "the compositor")
        cls.session = Session(cls.desk.env["DBUS_SESSION_BUS_ADDRESS"])
        cls.addClassCleanup(cls.session.close)
        cls.boxes = Boxes(cls.session)
        cls.addClassCleanup(cls.boxes.close)

    def panel_window(self):
        return self.server.panel(self.process.pid)

    def fault(self, window, height):
        """What is wrong with the panel now; empty for nothing. `height` of the content where it is
        known."""
        frame = self.server.frame(window)
        if frame is None:
            return "there is no panel"
        colour = self.server.colour(self.centre, frame[1] + frame[3] - 3)
        if not self.is_ground(colour):
            return f"no arrow at the tile: {colour}"
        nodes = self.boxes.panel(self.process.pid)
        if len(nodes) < 2:
            return "there is no panel"
        if nodes[0]["extents"] is None or nodes[1]["extents"] is None:
            return "the content went while it was looked at"
        left, top, width, bottom = frame[0], frame[1], frame[2], frame[1] + frame[3]
        if nodes[0]["extents"] != frame:
            return f"the toolkit has {nodes[0]['extents']}, the server {frame}"
        x, y, across, high = self.content = nodes[1]["extents"]
        if across not in WIDTHS:
            return f"the content is {across} wide"
        if height and high != height:
            return f"the content is {high} high and not {height}"
        if abs(y + high + ARROW - bottom) > 1:
            return f"content {self.content} and arrow do not end with the frame {frame}"
        if not 0 <= y - top <= SHADOW + 1 or not 0 <= x - left <= SHADOW + 1 or x + across > left + width:
            return f"content {self.content} is not in its frame {frame}"
        for node in nodes[2:]:
            box = node["extents"]
            isInside = (box is None or box[2] <= 0 or box[3] <= 0 or self.is_in_list(node, nodes)
                        or (x - 1 <= box[0] and box[0] + box[2] <= x + across + 1
                            and y - 1 <= box[1] and box[1] + box[3] <= y + high + 1))
            if not isInside:
                return f"{self.boxes.words(node)} {box} is cut off by {self.content}"
        return self.painting_fault()

    @staticmethod
    def is_ground(colour):
        return colour is not None and min(colour) >= 0xEC

    @staticmethod
    def is_in_list(node, nodes):
        """Lists scroll, and what is in them is cut."""
        at = nodes.index(node)
        for before in reversed(nodes[:at]):
            if before["depth"] < node["depth"]:
                return before["role"] in LISTS and before["depth"] > nodes[1]["depth"]
        return False

    def painting_fault(self):
        """The ground is seen along all four edges of the content, and in the arrow at the tile."""
        x, y, across, high = self.content
        tip = self.centre
        points = {"left edge": (x + 3, y + high // 2), "right edge": (x + across - 4, y + high // 2),
                  "top edge": (x + across // 2, y + 4), "bottom edge": (x + 20, y + high - 3),
                  "arrow": (tip, y + high + 3)}
        for (name, point), colour in zip(points.items(), self.server.colours(points.values())):
            if not self.is_ground(colour):
                return f"no ground at the {name} {point}: {colour}"
        return ""

    def settled_fault(self, window, height):
        """The fade, and whatever comes late from the server, may take a moment; what is right stays
        so."""
        end = time.monotonic() + PATIENCE
        while fault := self.fault(window, height):
            if time.monotonic() > end:
                return fault
            time.sleep(0.03)
        time.sleep(0.1)
        # Frame and pixels are two questions to the server, and a panel whose content comes late may
        # grow between them: what is wrong is wrong twice.
        return self.fault(window, height) and self.fault(window, height)

    def toggle(self):
        self.session.toggle(self.desk.bundle_identifier(SLOT), SLOT)

    def open_and_compare(self, changes, height):
        self.toggle()
        for widgets in changes:
            self.desk.write_widgets(widgets, announce=False)
            self.session.announce("dev.quellby.tavrin.widgetsChanged")
        window = wait_for(self.panel_window, "the panel", pause=0.02)
        fault = self.settled_fault(window, height)
        result = self.content[3] if hasattr(self, "content") else 0
        self.toggle()
        wait_for(lambda: self.panel_window() is None, "the panel to close", pause=0.02)
        return fault, result

    def test_each_kinds_panel(self):
        counts, faults = {}, []
        for kind in CHOSEN:
            widgets = place(self.desk, kind, "Mine")
            other = copy.deepcopy(widgets)
            other[0]["kind"] = ({"clock": {"_0": {}}} if kind == "note" else
                                {"note": {"_0": {"text": "Milk"}}})
            self.process = start(self.desk)
            tile = wait_for(lambda: self.desk.windows(self.process.pid), "the tile")[0]
            _, left, _, width, _ = tile
            self.centre = left + width // 2
            # A panel's first content may be that it looks for its content.
            height, before = None, -1
            while height != before:
                before = height
                fault, height = self.open_and_compare([], None)
                if fault:
                    faults.append(f"{kind}, quietly: {fault}")
                    break
            hasGrown = False
            for number in range(ROUNDS):
                fault, tall = self.open_and_compare([other, widgets], height)
                # What it looked for has come late: that is its height from then on, and once only.
                if fault == f"the content is {tall} high and not {height}" and tall > height and not hasGrown:
                    hasGrown, height = True, tall
                    fault, _ = self.open_and_compare([other, widgets], height)
                counts[kind] = counts.get(kind, 0) + 1
                if fault:
                    faults.append(f"{kind}, opening {number + 1}: {fault}")
            stop(self.process)
            print(f"{kind}: {counts.get(kind, 0)}, {len(faults)} wrong so far", flush=True)
        print(f"{self.manager}{' composited' if self.compositor else ''}: "
              f"{sum(counts.values())} openings of {len(counts)} panels, {len(faults)} wrong")
        self.assertEqual(faults, [])


class On_openbox(OnManager, unittest.TestCase):
    manager = "openbox"


class On_openbox_composited(OnManager, unittest.TestCase):
    manager = "openbox"
    compositor = True


class On_xfwm4(OnManager, unittest.TestCase):
    manager = "xfwm4"


class On_xfwm4_composited(OnManager, unittest.TestCase):
    manager = "xfwm4"
    compositor = True


class On_none(OnManager, unittest.TestCase):
    manager = "none"


class On_none_composited(OnManager, unittest.TestCase):
    manager = "none"
    compositor = True


if __name__ == "__main__":
    unittest.main(verbosity=2)
