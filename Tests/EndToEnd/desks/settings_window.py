"""The settings window as a person finds it: by what assistive technology is told, by mouse and by
keys."""

import json
import os
import pathlib
import signal
import subprocess

from desks.access_tree import AccessTree, start_accessibility
from rig import BUILD, PATIENCE, Desk, DeskTest, wait_for

PROGRAM = BUILD / "bin" / "tavrin-settings"
COMMAND = BUILD / "bin" / "tavrin"


class Window:
    """A settings window on a desk."""

    access = None

    def __init__(self, desk, *arguments, env=None):
        self.desk = desk
        self.process = desk.spawn([str(PROGRAM), *arguments], log="settings.log", env=env)
        try:
            self.frame = wait_for(lambda: self._frame(), "the window")
        except AssertionError as error:
            log = (desk.home / "settings.log").read_text(errors="replace")[-2000:]
            raise AssertionError(f"{error}, whose process gave {self.process.poll()}: {log}") from error

    def _frame(self):
        windows = self.desk.windows(self.process.pid)
        return max(windows, key=lambda window: window[3] * window[4]) if windows else None

    def _ask(self, **question):
        if self.access is None:
            self.access = AccessTree(self.desk)
        return self.access.ask(pid=self.process.pid, **question)

    def tree(self):
        return self._ask() or []

    def astray(self):
        """What says it is showing, or focused, on a page that is not showing."""
        return self._ask(astray=True)

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


class SettingsTest(DeskTest):
    """On a desk with assistive technology, where slots start."""

    def setUp(self):
        self.desk = Desk(screens=("1280x900",))
        self.addCleanup(self.desk.close)
        self.addCleanup(end_slots, self.desk)
        self.desk.env["TAVRIN_BUNDLES"] = str(BUILD / "bundles")
        start_accessibility(self.desk)

    def await_strip(self, *names):
        wait_for(lambda: strip(self.desk) == list(names),
                 f"{names} on the strip, not {strip(self.desk)}")

    def settings(self, name):
        kind = next(entry for entry in stored(self.desk) if entry["name"] == name)["kind"]
        return next(iter(kind.values()))["_0"]

    def install_service(self, knows_display=True):
        """The window as the bus starts it, and the desktop entry that leads to it."""
        services = self.desk.home / "share" / "dbus-1" / "services"
        services.mkdir(parents=True)
        wrapper = self.desk.home / "start-window"
        exports = "".join(f"export {name}='{value}'\n" for name, value in self.desk.env.items())
        if not knows_display:
            exports += "unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM\n"
        wrapper.write_text(f"#!/bin/sh\n{exports}exec '{PROGRAM}' 2>'{self.desk.home}/bus.log'\n")
        wrapper.chmod(0o755)
        (services / "dev.quellby.Tavrin.service").write_text(
            f"[D-BUS Service]\nName=dev.quellby.Tavrin\nExec={wrapper}\n")
        config = self.desk.home / "DBUS_SESSION_BUS_ADDRESS.conf"
        config.write_text(config.read_text().replace(
            "<auth>", f"<servicedir>{services}</servicedir><auth>"))
        self.desk.bus.send_signal(signal.SIGHUP)
        wait_for(lambda: "dev.quellby.Tavrin'" in self.desk.run(
            "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
            "--method", "org.freedesktop.DBus.ListActivatableNames"), "the service")

    def owner(self, name="dev.quellby.Tavrin"):
        """The process that has a name on the bus."""
        answer = self.desk.run(
            "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
            "--method", "org.freedesktop.DBus.GetConnectionUnixProcessID", name, check=False)
        digits = "".join(c for c in answer.split("uint32")[-1] if c.isdigit())
        return int(digits) if digits else None

    def await_owner_of_the_name(self):
        pid = wait_for(self.owner, "the window")
        self.addCleanup(lambda: self.owner() == pid and os.kill(pid, signal.SIGTERM))
        window = Window.__new__(Window)
        window.desk, window.process = self.desk, type("Running", (), {"pid": pid})
        return window, pid

    def launch_entry(self):
        self.desk.spawn(["gio", "launch", str(self.entry)])

    def started_by_the_entry(self):
        """What a click in the menus does."""
        self.install_service()
        template = pathlib.Path(__file__).parents[3] / "Packaging/dev.quellby.Tavrin.desktop.in"
        self.entry = self.desk.home / "share" / "applications" / "dev.quellby.Tavrin.desktop"
        self.entry.parent.mkdir(parents=True, exist_ok=True)
        self.entry.write_text(template.read_text().replace(
            "@TAVRIN_SETTINGS_PROGRAM@", str(self.desk.home / "start-window")))
        self.launch_entry()
        return self.await_owner_of_the_name()
