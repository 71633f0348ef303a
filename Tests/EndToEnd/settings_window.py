"""The settings window as a person finds it: by what assistive technology is told, by mouse and by
keys."""

import json
import os
import subprocess
import sys

from rig import BUILD, Desk, wait_for

PROGRAM = BUILD / "bin" / "tavrin-settings"
COMMAND = BUILD / "bin" / "tavrin"

# Runs on the desk's bus, beside the test: each line asked for is answered by one. Tells what a
# program shows: role, name, label, description, states, place, and the name of what it is part of;
# or does something to the first that fits.
TREE = """
import json, sys, pyatspi
process = int(sys.argv[1])
def walk(node, within, found):
    try:
        states = node.getState()
        role, name = node.getRoleName(), node.name
    except Exception:
        return
    if not (states.contains(pyatspi.STATE_SHOWING) or role == "application"):
        return
    try:
        box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        place = [box.x, box.y, box.width, box.height]
    except Exception:
        place = None
    try:
        label = " ".join(relation.getTarget(i).name for relation in node.getRelationSet()
                         if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY
                         for i in range(relation.getNTargets()))
    except Exception:
        label = ""
    entry = {"role": role, "name": name, "label": label, "description": node.description, "within": within,
             "focused": states.contains(pyatspi.STATE_FOCUSED),
             "enabled": states.contains(pyatspi.STATE_ENABLED),
             "checked": states.contains(pyatspi.STATE_CHECKED),
             "focusable": states.contains(pyatspi.STATE_FOCUSABLE), "place": place}
    found.append((node, entry))
    for child in node:
        if child is not None:
            walk(child, name or within, found)
def act(node, verb, value):
    if verb == "press":
        actions = node.queryAction()
        names = [actions.getName(i) for i in range(actions.nActions)]
        actions.doAction(next((i for i, n in enumerate(names)
                               if n in ("Press", "Toggle", "click")), 0))
    elif verb == "focus":
        node.queryComponent().grabFocus()
    elif verb == "type":
        node.queryEditableText().setTextContents(value)
    elif verb == "set":
        node.queryValue().currentValue = float(value)
def answer(verb, name, role, value):
    found = []
    desktop = pyatspi.Registry.getDesktop(0)
    desktop.clear_cache() # nothing here hears what changes
    for application in desktop:
        if application is not None and application.get_process_id() == process:
            application.clear_cache()
            walk(application, "", found)
    if verb == "list":
        return [entry for _, entry in found]
    node = next((node for node, entry in found
                 if entry["name"] == name and (not role or entry["role"] == role)), None)
    if node is None:
        return False
    act(node, verb, value)
    return True
for line in sys.stdin:
    try:
        told = answer(*json.loads(line))
    except Exception as error:
        told = {"error": str(error)}
    print(json.dumps(told), flush=True)
"""


def start_accessibility(desk):
    del desk.env["NO_AT_BRIDGE"]
    desk.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
    desk.spawn(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
    desk.run("gdbus", "wait", "--session", "--timeout", "10", "org.a11y.Bus")


class Window:
    """A settings window on a desk."""

    agent = None

    def __init__(self, desk, *arguments, env=None):
        self.desk = desk
        self.process = desk.spawn([str(PROGRAM), *arguments], log="settings.log", env=env)
        self.frame = wait_for(lambda: self._frame(), "the window")

    def _frame(self):
        windows = self.desk.windows(self.process.pid)
        return max(windows, key=lambda window: window[3] * window[4]) if windows else None

    def _ask(self, verb, name="", role="", value=""):
        """What the agent answers; none where what was asked for went meanwhile."""
        if self.agent is None or self.agent.poll() is not None:
            self.agent = self.desk.spawn([sys.executable, "-c", TREE, str(self.process.pid)],
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.agent.stdin.write(json.dumps([verb, name, role, value]) + "\n")
        self.agent.stdin.flush()
        told = json.loads(self.agent.stdout.readline() or "null")
        return None if isinstance(told, dict) else told

    def tree(self):
        return self._ask("list") or []

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
        """What is redrawn meanwhile is looked for again."""
        self.await_name(name, role or None)
        wait_for(lambda: self._ask("press", name, role), f"“{name}” to be pressed")

    def focus(self, name, role=""):
        self.await_name(name, role or None)
        self._ask("focus", name, role)
        wait_for(lambda: (self.find(name, role or None) or {}).get("focused"), f"{name} focused")

    def type_text(self, name, text, role=""):
        self.await_name(name, role or None)
        wait_for(lambda: self._ask("type", name, role, text), f"“{name}” to be typed into")

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
