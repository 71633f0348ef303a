"""What assistive technology is told of one program: asked of a process on the desk's own bus, which
answers as often as it is asked."""

import json
import subprocess
import sys

READER = r"""
import json, sys
import pyatspi

def numbers(node):
    try:
        value = node.queryValue()
        return [value.minimumValue, value.currentValue, value.maximumValue]
    except NotImplementedError:
        return None

def actions(node):
    try:
        action = node.queryAction()
        return [action.getName(i) for i in range(action.nActions)]
    except NotImplementedError:
        return []

def extents(node):
    try:
        box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return [box.x, box.y, box.width, box.height]
    except NotImplementedError:
        return None

def walk(node, depth, found):
    states = node.getState()
    role = node.getRoleName()
    if role != "application" and not states.contains(pyatspi.STATE_SHOWING):
        return
    found.append({
        "depth": depth, "role": role, "name": node.name, "description": node.description,
        "focused": states.contains(pyatspi.STATE_FOCUSED),
        "focusable": states.contains(pyatspi.STATE_FOCUSABLE),
        "checked": states.contains(pyatspi.STATE_CHECKED),
        "enabled": states.contains(pyatspi.STATE_ENABLED),
        "value": numbers(node), "actions": actions(node), "extents": extents(node)})
    # Of a list of thousands the first rows tell enough.
    for i in range(min(node.childCount, 40)):
        child = node.getChildAtIndex(i)
        if child is not None:
            walk(child, depth + 1, found)

def do(node, name, action):
    if node.name == name and action in actions(node):
        query = node.queryAction()
        for i in range(query.nActions):
            if query.getName(i) == action:
                return bool(query.doAction(i))
    return any(do(node.getChildAtIndex(i), name, action) for i in range(node.childCount))

for line in sys.stdin:
    question = json.loads(line)
    answer = []
    try:
        for application in pyatspi.Registry.getDesktop(0):
            if application is None or application.get_process_id() != question["pid"]:
                continue
            if "do" in question:
                answer = do(application, *question["do"])
            else:
                walk(application, 0, answer)
    except Exception as error:
        answer = None  # something went while it was looked at
    print(json.dumps(answer), flush=True)
"""


class AccessTree:
    def __init__(self, desk):
        """Of a desk whose accessibility has been started."""
        self.process = subprocess.Popen([sys.executable, "-c", READER], env=desk.env, text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def close(self):
        self.process.stdin.close()
        self.process.wait(10)
        self.process.stdout.close()

    def ask(self, **question):
        self.process.stdin.write(json.dumps(question) + "\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def nodes(self, pid):
        """What is showing, from the top; empty where it is not to be read just now."""
        return self.ask(pid=pid) or []

    def panel(self, pid):
        """The dialogue and what is in it; empty where none is open."""
        nodes = self.nodes(pid)
        at = next((i for i, node in enumerate(nodes) if node["role"] == "dialog"), None)
        if at is None:
            return []
        depth = nodes[at]["depth"]
        end = next((i for i in range(at + 1, len(nodes)) if nodes[i]["depth"] <= depth), len(nodes))
        return nodes[at:end]

    def do(self, pid, name, action):
        return self.ask(pid=pid, do=[name, action])
