"""What assistive technology is told of one program: asked of a process on the desk's own bus, which
answers as often as it is asked."""

import json
import subprocess
import sys

READER = r"""
import json, sys, time
import pyatspi

# A program that is busy answers late. One that has not answered may yet have done what it was asked,
# and must not be asked again.
pyatspi.setTimeout(60_000, 60_000)

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

def label(node): # of what stands beside it
    return " ".join(relation.getTarget(i).name for relation in node.getRelationSet()
                    if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY
                    for i in range(relation.getNTargets()))

def walk(node, depth, within, found, nodes):
    states = node.getState()
    role = node.getRoleName()
    if role != "application" and not states.contains(pyatspi.STATE_SHOWING):
        return
    name = node.name
    nodes.append(node)
    found.append({
        "depth": depth, "role": role, "name": name, "description": node.description,
        "label": label(node), "within": within,
        "focused": states.contains(pyatspi.STATE_FOCUSED),
        "focusable": states.contains(pyatspi.STATE_FOCUSABLE),
        "checked": states.contains(pyatspi.STATE_CHECKED),
        "enabled": states.contains(pyatspi.STATE_ENABLED),
        "value": numbers(node), "actions": actions(node), "extents": extents(node)})
    # Of a list of thousands the first rows tell enough.
    for i in range(min(node.childCount, 40)):
        child = node.getChildAtIndex(i)
        if child is not None:
            walk(child, depth + 1, name or within, found, nodes)

# What says it is showing, or focused, within what is not showing.
def astray(node, is_hidden, found):
    states = node.getState()
    shows = states.contains(pyatspi.STATE_SHOWING)
    if is_hidden and (shows or states.contains(pyatspi.STATE_FOCUSED)):
        found.append([node.getRoleName(), node.name])
    is_hidden = is_hidden or node.getRoleName() != "application" and not shows
    for i in range(min(node.childCount, 40)):
        child = node.getChildAtIndex(i)
        if child is not None:
            astray(child, is_hidden, found)

def do(node, name, action):
    if node.name == name and action in actions(node):
        query = node.queryAction()
        for i in range(query.nActions):
            if query.getName(i) == action:
                return bool(query.doAction(i))
    return any(do(node.getChildAtIndex(i), name, action) for i in range(node.childCount))

def is_down(node):
    try:
        node.clear_cache()
        return node.getState().contains(pyatspi.STATE_PRESSED)
    except Exception:
        return False  # it went away with what it did

# To the first of that name and role that is showing and can be used. False where there is none.
def act(application, verb, name, role="", text=""):
    found, nodes = [], []
    walk(application, 0, "", found, nodes)
    for entry, node in zip(found, nodes):
        if entry["name"] != name or role not in ("", entry["role"]) or not entry["enabled"]:
            continue
        if verb == "press" and not entry["actions"] or verb == "focus" and not entry["focusable"]:
            continue  # the words beside it
        if verb == "press":
            names = actions(node)
            node.queryAction().doAction(next((i for i, each in enumerate(names)
                                              if each in ("Press", "Toggle", "click")), 0))
            # A button stays down for a moment, and does what it does when it comes up.
            while is_down(node):
                time.sleep(0.005)
        elif verb == "focus":
            node.queryComponent().grabFocus()
        elif verb == "type":
            node.queryEditableText().setTextContents(text)
        return True
    return False

def pid_of(application):
    try:
        return application.get_process_id()
    except Exception:
        return None  # another one, which ends

for line in sys.stdin:
    question = json.loads(line)
    answer = []
    try:
        desktop = pyatspi.Registry.getDesktop(0)
        desktop.clear_cache()  # nothing here hears what changes
        for application in desktop:
            if application is None or pid_of(application) != question["pid"]:
                continue
            application.clear_cache()
            if "do" in question:
                answer = do(application, *question["do"])
            elif "act" in question:
                answer = act(application, *question["act"])
            elif "astray" in question:
                astray(application, False, answer)
            else:
                walk(application, 0, "", answer, [])
    except Exception as error:
        answer = None  # something went while it was looked at
    print(json.dumps(answer), flush=True)
"""

FOLLOWER = r"""
import pyatspi

def tell(event):
    if event.detail1:
        print(event.source.getRoleName(), flush=True)

pyatspi.Registry.registerEventListener(tell, "object:state-changed:focused")
print("listening", flush=True)
pyatspi.Registry.start()
"""


def follow_focus(desk, log):
    """Notes the role of whatever assistive technology is told to have the focus, a line each."""
    return desk.spawn([sys.executable, "-c", FOLLOWER], log=log)


def start_accessibility(desk):
    del desk.env["NO_AT_BRIDGE"]
    desk.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
    desk.spawn(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
    desk.run("gdbus", "wait", "--session", "--timeout", "10", "org.a11y.Bus")


class AccessTree:
    def __init__(self, desk):
        """Of a desk whose accessibility has been started; it ends with the desk."""
        self.process = desk.spawn([sys.executable, "-c", READER], text=True,
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
