"""The settings window as a person finds it: by what assistive technology is told, by mouse and by
keys."""

import json
import os
import subprocess
import sys

from rig import BUILD, Desk, wait_for

PROGRAM = BUILD / "bin" / "tavrin-settings"
COMMAND = BUILD / "bin" / "tavrin"

# Run on the desk's bus. Prints what a program shows: role, name, description, states, place and
# number of actions. With an action it presses the first that fits.
TREE = """
import json, sys, pyatspi
process, role, name, verb, value = int(sys.argv[1]), *sys.argv[2:6]
found = []
def walk(node, path):
    try:
        states = node.getState()
    except Exception:
        return
    if not (states.contains(pyatspi.STATE_SHOWING) or node.getRoleName() == "application"):
        return
    try:
        box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        place = [box.x, box.y, box.width, box.height]
    except NotImplementedError:
        place = None
    entry = {"role": node.getRoleName(), "name": node.name, "description": node.description,
             "focused": states.contains(pyatspi.STATE_FOCUSED),
             "enabled": states.contains(pyatspi.STATE_ENABLED),
             "checked": states.contains(pyatspi.STATE_CHECKED),
             "focusable": states.contains(pyatspi.STATE_FOCUSABLE), "place": place}
    found.append((node, entry))
    for child in node:
        if child is not None:
            walk(child, path)
for application in pyatspi.Registry.getDesktop(0):
    if application is not None and application.get_process_id() == process:
        walk(application, [])
if verb == "list":
    print(json.dumps([entry for _, entry in found]))
else:
    chosen = [node for node, entry in found
              if entry["name"] == name and (not role or entry["role"] == role)]
    if not chosen:
        sys.exit(3)
    node = chosen[0]
    if verb == "press":
        actions = node.queryAction()
        names = [actions.getName(i) for i in range(actions.nActions)]
        wanted = next((i for i, n in enumerate(names) if n in ("Press", "Toggle", "click")), 0)
        actions.doAction(wanted)
    elif verb == "focus":
        node.queryComponent().grabFocus()
    elif verb == "type":
        node.queryEditableText().setTextContents(value)
    elif verb == "set":
        node.queryValue().currentValue = float(value)
"""


def start_accessibility(desk):
    del desk.env["NO_AT_BRIDGE"]
    desk.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
    desk.spawn(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
    desk.run("gdbus", "wait", "--session", "--timeout", "10", "org.a11y.Bus")


class Window:
    """A settings window on a desk."""

    def __init__(self, desk, *arguments, env=None):
        self.desk = desk
        self.process = desk.spawn([str(PROGRAM), *arguments], log="settings.log", env=env)
        self.frame = wait_for(lambda: self._frame(), "the window")

    def _frame(self):
        windows = self.desk.windows(self.process.pid)
        return max(windows, key=lambda window: window[3] * window[4]) if windows else None

    def _ask(self, verb, name="", role="", value=""):
        return subprocess.run([sys.executable, "-c", TREE, str(self.process.pid), role, name, verb,
                               value], env=self.desk.env, capture_output=True, text=True, timeout=60)

    def tree(self):
        result = self._ask("list")
        return json.loads(result.stdout) if result.returncode == 0 else []

    def find(self, name, role=None):
        return next((entry for entry in self.tree()
                     if entry["name"] == name and role in (None, entry["role"])), None)

    def await_name(self, name, role=None):
        return wait_for(lambda: self.find(name, role), f"“{name}”")

    def press(self, name, role=""):
        """What is redrawn meanwhile is looked for again."""
        self.await_name(name, role or None)
        wait_for(lambda: self._ask("press", name, role).returncode == 0, f"“{name}” to be pressed")

    def focus(self, name, role=""):
        self.await_name(name, role or None)
        self._ask("focus", name, role)
        wait_for(lambda: (self.find(name, role or None) or {}).get("focused"), f"{name} focused")

    def type_text(self, name, text, role=""):
        self.await_name(name, role or None)
        result = self._ask("type", name, role, text)
        if result.returncode != 0:
            raise AssertionError(f"cannot type into {name}: {result.stderr}")

    def centre(self, name, role=None):
        x, y, width, height = self.await_name(name, role)["place"]
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
        self.desk.run("xdotool", "key", "ctrl+w")
        self.process.wait(20)


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
