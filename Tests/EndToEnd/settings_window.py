"""The settings window as a person finds it: by what assistive technology is told, by mouse and by
keys."""

import json
import subprocess

from access_tree import AccessTree
from rig import BUILD, PATIENCE, wait_for

PROGRAM = BUILD / "bin" / "tavrin-settings"
COMMAND = BUILD / "bin" / "tavrin"


class Window:
    """A settings window on a desk."""

    access = None

    def __init__(self, desk, *arguments, env=None):
        self.desk = desk
        self.process = desk.spawn([str(PROGRAM), *arguments], log="settings.log", env=env)
        self.frame = wait_for(lambda: self._frame(), "the window")

    def _frame(self):
        windows = self.desk.windows(self.process.pid)
        return max(windows, key=lambda window: window[3] * window[4]) if windows else None

    def _ask(self, **question):
        if self.access is None:
            self.access = AccessTree(self.desk)
        return self.access.ask(pid=self.process.pid, **question)

    def tree(self):
        return self._ask() or []

    def focused(self):
        """What has the keyboard; none while it goes from one to another."""
        return next((entry for entry in reversed(self.tree())
                     if entry["focused"] and entry["focusable"]), None)

    def find(self, name, role=None):
        return next((entry for entry in self.tree()
                     if entry["name"] == name and role in (None, entry["role"])), None)

    def await_name(self, name, role=None):
        return wait_for(lambda: self.find(name, role), f"“{name}”")

    def press(self, name, role=""):
        """As soon as it can be used. What the press does is done on return; what is redrawn meanwhile
        is looked for again."""
        wait_for(lambda: self._ask(act=["press", name, role]), f"“{name}” to be pressed")

    def focus(self, name, role=""):
        wait_for(lambda: self._ask(act=["focus", name, role]), f"“{name}”")
        self.await_focus(name, role or None)

    def await_focus(self, name, role=None):
        wait_for(lambda: (self.find(name, role) or {}).get("focused"), f"“{name}” focused")

    def await_keyboard(self):
        """What is typed comes to a window only once it is the one with the keyboard."""
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", "getwindowpid",
                                       check=False).strip() == str(self.process.pid),
                 "the window to have the keyboard")

    def type_text(self, name, text, role=""):
        wait_for(lambda: self._ask(act=["type", name, role, text]), f"“{name}” to be typed into")

    def centre(self, name, role=None):
        x, y, width, height = self.await_name(name, role)["extents"]
        return x + width / 2, y + height / 2

    def click(self, name, role=None):
        self.desk.click(*self.centre(name, role))

    def drag(self, start, end, steps=8):
        """Presses, moves in steps and lets go, in screen points."""
        run = self.desk.run
        run("xdotool", "mousemove", str(int(start[0])), str(int(start[1])), "mousedown", "1")
        for step in range(1, steps + 1):
            x = start[0] + (end[0] - start[0]) * step / steps
            y = start[1] + (end[1] - start[1]) * step / steps
            run("xdotool", "mousemove", str(int(x)), str(int(y)))
        run("xdotool", "mouseup", "1")

    def close(self):
        self.await_keyboard()
        self.desk.run("xdotool", "key", "ctrl+w")
        self.process.wait(PATIENCE)


def stored(desk):
    path = desk.data / "widgets.json"
    return json.loads(path.read_text())["widgets"] if path.exists() else []


def strip(desk):
    """The names on the strip in their order."""
    placed = [widget for widget in stored(desk) if widget.get("slot")]
    return [widget["name"] for widget in sorted(placed, key=lambda widget: widget["slot"])]


def end_slots(desk):
    """Ends the slot applications that a window started on this desk."""
    subprocess.run([str(COMMAND), "stop"], env={**desk.env, "TAVRIN_BUNDLES": str(BUILD / "bundles")},
                   capture_output=True, timeout=60, check=False)
