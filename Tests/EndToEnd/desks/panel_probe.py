"""One widget of every kind, as it is when it is added; and what the server has and what assistive
technology is told of its panel, asked over connections that stay: an opening is looked at in
milliseconds, with no process started for it."""

import ctypes
import ctypes.util
import json

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

from rig import BUILD, wait_for  # noqa: E402

ALL_PLANES = 0xFFFFFFFF
Z_PIXMAP = 2
IS_VIEWABLE = 2
CARDINAL, ATOM = 6, 4
# Of a list of thousands the first rows tell enough.
MOST_CHILDREN = 40
LISTS = {Atspi.Role.LIST, Atspi.Role.TABLE, Atspi.Role.SCROLL_PANE, Atspi.Role.VIEWPORT,
         Atspi.Role.TEXT, Atspi.Role.FILLER, Atspi.Role.PANEL}

TAVRIN = BUILD / "bin" / "tavrin"
SLOT = 1

KINDS = ("collection timer pomodoro music calendar battery clock stopwatch countdown timeProgress "
         "activity network note reminders shortcut airdrop weather claudeUsage github pet "
         "colourPicker clipboard bookmarks emoji screenshots files shelf water converter fans "
         "keyboardLock").split()


def place(desk, kind, name):
    """The kind's widget, alone in the first slot; its entry in the file."""
    file = desk.data / "widgets.json"
    if file.exists():
        file.unlink()
    desk.run(str(TAVRIN), "widgets", "add", kind, name, "--place")
    return json.loads(file.read_text())["widgets"]


def start(desk):
    process = desk.start_slot(SLOT)
    desk.wait_for_name(SLOT)
    wait_for(lambda: desk.windows(process.pid), "the tile")
    return process


def stop(process):
    process.terminate()
    process.wait(10)


class Attributes(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int) for name in ("x", "y", "width", "height", "border", "depth")] + [
        ("visual", ctypes.c_void_p), ("root", ctypes.c_ulong)] + [
        (name, ctypes.c_int) for name in ("klass", "bit_gravity", "win_gravity", "backing_store")] + [
        ("planes", ctypes.c_ulong), ("pixel", ctypes.c_ulong), ("save_under", ctypes.c_int),
        ("colormap", ctypes.c_ulong), ("map_installed", ctypes.c_int), ("map_state", ctypes.c_int),
        ("masks", ctypes.c_long * 3), ("override_redirect", ctypes.c_int),
        ("screen", ctypes.c_void_p)]


class Image(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int) for name in ("width", "height", "xoffset", "format")] + [
        ("data", ctypes.c_void_p)] + [
        (name, ctypes.c_int) for name in ("byte_order", "unit", "bit_order", "pad", "depth",
                                          "bytes_per_line", "bits_per_pixel")]


class Server:
    """Windows and pixels of one display, by the X library."""

    def __init__(self, display):
        self.x11 = ctypes.CDLL(ctypes.util.find_library("X11"))
        for name in ("XOpenDisplay", "XGetImage"):
            getattr(self.x11, name).restype = ctypes.c_void_p
        for name in ("XDefaultRootWindow", "XInternAtom", "XGetSelectionOwner"):
            getattr(self.x11, name).restype = ctypes.c_ulong
        handler = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)
        self.on_error = handler(lambda display, error: 0)  # a window that went while it was asked of
        self.x11.XSetErrorHandler(self.on_error)
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(display.encode()))
        if not self.display:
            raise AssertionError(f"no display {display}")
        self.root = self.x11.XDefaultRootWindow(self.display)

    def close(self):
        self.x11.XCloseDisplay(self.display)

    def atom(self, name):
        return self.x11.XInternAtom(self.display, name.encode(), 0)

    def has_compositor(self):
        return self.x11.XGetSelectionOwner(self.display, self.atom("_NET_WM_CM_S0")) != 0

    def children(self, window):
        root, parent, count = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_uint()
        found = ctypes.POINTER(ctypes.c_ulong)()
        if not self.x11.XQueryTree(self.display, ctypes.c_ulong(window), ctypes.byref(root),
                                   ctypes.byref(parent), ctypes.byref(found), ctypes.byref(count)):
            return []
        children = [found[i] for i in range(count.value)]
        if found:
            self.x11.XFree(found)
        return children

    def values(self, window, name, kind):
        """The property's numbers; empty where there is none of that type."""
        actual, form = ctypes.c_ulong(), ctypes.c_int()
        count, left = ctypes.c_ulong(), ctypes.c_ulong()
        data = ctypes.POINTER(ctypes.c_ulong)()
        self.x11.XGetWindowProperty(self.display, ctypes.c_ulong(window),
                                    ctypes.c_ulong(self.atom(name)), ctypes.c_long(0),
                                    ctypes.c_long(8), 0, ctypes.c_ulong(kind), ctypes.byref(actual),
                                    ctypes.byref(form), ctypes.byref(count), ctypes.byref(left),
                                    ctypes.byref(data))
        values = [data[i] for i in range(count.value)] if data and form.value == 32 else []
        if data:
            self.x11.XFree(data)
        return values

    def attributes(self, window):
        found = Attributes()
        if not self.x11.XGetWindowAttributes(self.display, ctypes.c_ulong(window),
                                             ctypes.byref(found)):
            return None
        return found

    def visible(self, top=None, depth=0):
        for window in self.children(top or self.root):
            found = self.attributes(window)
            if found is not None and found.map_state == IS_VIEWABLE:
                yield window
                if depth < 2:  # in a window manager's frame
                    yield from self.visible(window, depth + 1)

    def panel(self, pid):
        """The program's open panel, or None."""
        return next((window for window in self.visible()
                     if self.values(window, "_TAVRIN_PANEL", 0)
                     and self.values(window, "_NET_WM_PID", CARDINAL) == [pid]
                     and self.atom("_NET_WM_WINDOW_TYPE_DOCK")
                     not in self.values(window, "_NET_WM_WINDOW_TYPE", ATOM)), None)

    def focus(self):
        """The window that has the keyboard."""
        window, revert = ctypes.c_ulong(), ctypes.c_int()
        self.x11.XGetInputFocus(self.display, ctypes.byref(window), ctypes.byref(revert))
        return window.value

    def frame(self, window):
        """(left, top, width, height) on the screen, or None."""
        found = self.attributes(window)
        x, y, child = ctypes.c_int(), ctypes.c_int(), ctypes.c_ulong()
        if found is None or not self.x11.XTranslateCoordinates(
                self.display, ctypes.c_ulong(window), ctypes.c_ulong(self.root), 0, 0,
                ctypes.byref(x), ctypes.byref(y), ctypes.byref(child)):
            return None
        return x.value, y.value, found.width, found.height

    def colours(self, points):
        """What the screen shows at each of (x, y): red, green, blue; None off the screen."""
        return [self.colour(*point) for point in points]

    def colour(self, x, y):
        image = self.x11.XGetImage(self.display, ctypes.c_ulong(self.root), int(x), int(y), 1, 1,
                                   ctypes.c_ulong(ALL_PLANES), Z_PIXMAP)
        if not image:
            return None
        pixel = ctypes.string_at(Image.from_address(image).data, 4)
        self.x11.XDestroyImage(ctypes.c_void_p(image))
        return pixel[2], pixel[1], pixel[0]


class Session:
    """A desk's own bus."""

    def __init__(self, address):
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self.bus.set_exit_on_close(False)

    def close(self):
        self.bus.close_sync(None)

    def call(self, name, path, interface, method, arguments=None, timeout=60_000):
        return self.bus.call_sync(name, path, interface, method, arguments, None,
                                  Gio.DBusCallFlags.NONE, timeout, None).unpack()

    def together(self, questions, timeout=60_000):
        """Answers to (name, path, interface, method, arguments), asked at once; None for a
        failure."""
        answers, missing = [None] * len(questions), [len(questions)]

        def answered(bus, result, at):
            missing[0] -= 1
            try:
                answers[at] = bus.call_finish(result).unpack()
            except GLib.Error:
                pass  # it went while it was looked at

        for at, question in enumerate(questions):
            self.bus.call(*question, None, Gio.DBusCallFlags.NONE, timeout, None, answered, at)
        context = GLib.MainContext.default()
        while missing[0]:
            context.iteration(True)
        return answers

    def announce(self, name):
        self.bus.emit_signal(None, "/dev/quellby/tavrin/Notifications",
                             "dev.quellby.tavrin.Notifications", "Posted",
                             GLib.Variant("(ss)", (name, "")))
        self.bus.flush_sync(None)

    def toggle(self, identifier, slot):
        """What a click on the tile does."""
        self.call(identifier, f"/dev/quellby/Tavrin/Slot{slot}", "org.freedesktop.Application",
                  "ActivateAction", GLib.Variant("(sava{sv})", ("toggle", [], {})))


class Boxes:
    """Where assistive technology is told that a panel's parts are."""

    ACCESSIBLE = "org.a11y.atspi.Accessible"

    def __init__(self, session):
        address, = session.call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")
        self.session = Session(address)
        self.programs = {}

    def close(self):
        self.session.close()

    def program(self, pid):
        """Its name on the bus of assistive technology, or None where it is not there yet."""
        if pid not in self.programs:
            entries, = self.session.call("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root",
                                         self.ACCESSIBLE, "GetChildren")
            for name, _ in entries:
                try:
                    found, = self.session.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                               "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                                               GLib.Variant("(s)", (name,)))
                    self.programs[found] = name
                except GLib.Error:
                    pass  # an application that ends
        return self.programs.get(pid)

    def panel(self, pid):
        """The dialogue that is showing and what is in it, from the top: depth, role, extents and the
        object's place on the bus."""
        name = self.program(pid)
        if name is None:
            return []
        top = "/org/a11y/atspi/accessible/root"
        answer, = self.session.together([(name, top, self.ACCESSIBLE, "GetChildren", None)])
        level = [{"at": each, "depth": 0, "children": []} for each in (answer or ([],))[0]]
        roots = self.look(level)
        dialogue = next((node for node in roots if node["role"] == Atspi.Role.DIALOG), None)
        if dialogue is None:
            return []
        level = [dialogue]
        while level:
            for node in level:
                node["children"] = [{"at": each, "depth": node["depth"] + 1, "children": []}
                                    for each in node["places"][:MOST_CHILDREN]]
            level = self.look([child for node in level for child in node["children"]])
        return list(self.flat(dialogue))

    def flat(self, node):
        yield node
        for child in node["children"]:
            if "role" in child:
                yield from self.flat(child)

    def look(self, nodes):
        """Asks of each what is wanted; those of them that are showing."""
        questions = []
        for node in nodes:
            place = node["at"]
            questions += [(*place, self.ACCESSIBLE, "GetRole", None),
                          (*place, self.ACCESSIBLE, "GetState", None),
                          (*place, self.ACCESSIBLE, "GetChildren", None),
                          (*place, "org.a11y.atspi.Component", "GetExtents",
                           GLib.Variant("(u)", (0,)))]
        answers = iter(self.session.together(questions))
        showing = []
        for node, (role, state, places, box) in zip(nodes, zip(*[answers] * 4)):
            if role is None or state is None or places is None:
                continue
            low = state[0][0]
            if low >> int(Atspi.StateType.SHOWING) & 1:
                node.update(role=role[0], places=places[0], extents=box and tuple(box[0]),
                            focused=bool(low >> int(Atspi.StateType.FOCUSED) & 1))
                showing.append(node)
        return showing

    def names(self, nodes):
        """What each is called; "" for what went while it was asked."""
        asked = GLib.Variant("(ss)", (self.ACCESSIBLE, "Name"))
        answers = self.session.together([
            (*node["at"], "org.freedesktop.DBus.Properties", "Get", asked) for node in nodes])
        return [answer[0] if answer else "" for answer in answers]

    def words(self, node):
        """Its role and name, for a message."""
        said = self.session.together([
            (*node["at"], self.ACCESSIBLE, "GetRoleName", None),
            (*node["at"], "org.freedesktop.DBus.Properties", "Get",
             GLib.Variant("(ss)", (self.ACCESSIBLE, "Name")))])
        return " ".join(repr(one[0]) if one else "?" for one in said)
