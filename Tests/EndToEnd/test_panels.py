"""Each kind's panel opens while what it shows changes: frame, content and arrow are right each time.

    test_panels.py On_openbox [--rounds 200] [--kinds music,emoji]

Without a round it opens each panel once. TAVRIN_PANEL_ROUNDS does as --rounds."""

import copy
import os
import re
import shutil
import subprocess
import sys
import time
import unittest

from access_tree import AccessTree, start_accessibility
from every_kind import KINDS, SLOT, place, start, stop
from managed_desk import MANAGERS
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
            cls.desk.spawn(command + more)
            wait_for(lambda: "0x" in cls.desk.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK",
                                                  check=False), cls.manager)
        if cls.compositor and cls.manager != "xfwm4":
            cls.desk.spawn(["xcompmgr", "-n"])
        if cls.compositor:
            wait_for(lambda: cls.has_compositor(), "the compositor")
        cls.tree = AccessTree(cls.desk)
        cls.addClassCleanup(cls.tree.close)

    @classmethod
    def has_compositor(cls):
        probe = ("import ctypes; x=ctypes.CDLL('libX11.so.6'); x.XOpenDisplay.restype="
                 "ctypes.c_void_p; d=x.XOpenDisplay(None); a=x.XInternAtom(ctypes.c_void_p(d),"
                 "b'_NET_WM_CM_S0',0); print(x.XGetSelectionOwner(ctypes.c_void_p(d),a))")
        return cls.desk.run(sys.executable, "-c", probe).strip() not in ("", "0")

    def server_frame(self, window):
        said = self.desk.run("xwininfo", "-id", window, check=False)
        found = [re.search(rf"{word}:\s+(-?\d+)", said) for word in
                 ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")]
        return tuple(int(one[1]) for one in found) if all(found) else None

    def panel_window(self):
        for window in self.desk.windows(self.process.pid):
            kind = self.desk.run("xprop", "-id", window[0], "_NET_WM_WINDOW_TYPE", "_TAVRIN_PANEL",
                                 check=False)
            if "DOCK" not in kind and "_TAVRIN_PANEL(" in kind:
                return window[0]
        return None

    def fault(self, window, height):
        """What is wrong with the panel now; empty for nothing. `height` of the content where it is
        known."""
        frame = self.server_frame(window)
        nodes = self.tree.panel(self.process.pid)
        if frame is None or len(nodes) < 2:
            return "there is no panel"
        left, top, width, bottom = frame[0], frame[1], frame[2], frame[1] + frame[3]
        if tuple(nodes[0]["extents"]) != frame:
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
                return f"{node['role']} {node['name']!r} {box} is cut off by {self.content}"
        return self.painting_fault(frame)

    @staticmethod
    def is_in_list(node, nodes):
        """Lists scroll, and what is in them is cut."""
        at = nodes.index(node)
        for before in reversed(nodes[:at]):
            if before["depth"] < node["depth"]:
                return before["role"] in ("list", "table", "scroll pane", "viewport", "text",
                                          "filler", "panel") and before["depth"] > nodes[1]["depth"]
        return False

    def painting_fault(self, frame):
        """The ground is seen along all four edges of the content, and in the arrow at the tile."""
        x, y, across, high = self.content
        tip = self.centre
        points = {"left edge": (x + 3, y + high // 2), "right edge": (x + across - 4, y + high // 2),
                  "top edge": (x + across // 2, y + 4), "bottom edge": (x + 20, y + high - 3),
                  "arrow": (tip, y + high + 3), "tip": (tip, y + high + ARROW - 3)}
        left, top, width, height = frame
        shot = subprocess.run(["import", "-silent", "-window", "root", "-crop",
                               f"{width}x{height}+{left}+{top}", "-depth", "8", "rgb:-"],
                              env=self.desk.env, capture_output=True, check=True).stdout
        for name, (px, py) in points.items():
            at = ((py - top) * width + px - left) * 3
            colour = tuple(shot[at:at + 3])
            if len(colour) < 3 or min(colour) < 0xEC:
                return f"no ground at the {name} {px, py}: {colour}"
        return ""

    def open_and_compare(self, changes, height):
        self.desk.toggle(SLOT)
        for widgets in changes:
            self.desk.write_widgets(widgets)
        window = wait_for(self.panel_window, "the panel")
        end = time.monotonic() + PATIENCE
        # The fade, and whatever comes late from the server, may take a moment.
        while (fault := self.fault(window, height)) and time.monotonic() < end:
            time.sleep(0.05)
        result = self.content[3] if hasattr(self, "content") else 0
        self.desk.toggle(SLOT)
        wait_for(lambda: self.panel_window() is None, "the panel to close")
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
            for number in range(ROUNDS):
                fault, _ = self.open_and_compare([other, widgets], height)
                counts[kind] = counts.get(kind, 0) + 1
                if fault:
                    faults.append(f"{kind}, opening {number + 1}: {fault}")
            stop(self.process)
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
