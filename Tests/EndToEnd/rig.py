"""A desk of its own for each test: scratch home, session bus, X server, window manager, slots.

Everything a test starts is ended by its process id when the test is over.
"""

import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import time
import unittest
import uuid

BUILD = pathlib.Path(os.environ["TAVRIN_BUILD"]).resolve()
BUNDLES = BUILD / "bundles"

BUS_CONFIG = """<busconfig><type>session</type><listen>unix:path={socket}</listen>
<auth>EXTERNAL</auth><policy context="default"><allow send_destination="*"
eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>"""


# Seconds for what comes at once on a machine that has nothing else to do.
PATIENCE = float(os.environ.get("TAVRIN_PATIENCE", 30))


def reference_now():
    """The time as stored dates have it, in seconds since 2001."""
    return time.time() - 978_307_200


def wait_for(condition, what, seconds=PATIENCE, pause=0.005):
    """The condition's first true value; fails the test when it stays false."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited {seconds} s in vain for {what}")
        time.sleep(pause)


class Desk:
    def __init__(self, display=True, bus=True, window_manager=True, screens=("1280x800",)):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="tavrin-test-"))
        self.data = self.home / "data"
        self.data.mkdir()
        self.pictures = self.home / "pictures"
        runtime = self.home / "run"
        runtime.mkdir(mode=0o700)
        self.env = {
            "HOME": str(self.home),
            "PATH": os.environ["PATH"],
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_DATA_HOME": str(self.home / "share"),
            "XDG_CONFIG_HOME": str(self.home / "config"),
            "XDG_CACHE_HOME": str(self.home / "cache"),
            "XDG_STATE_HOME": str(self.home / "state"),
            "TAVRIN_APP_SUPPORT_DIR": str(self.data),
            "TAVRIN_PICTURE_DIR": str(self.pictures),
            "TAVRIN_LOG": "stderr",
            "LC_ALL": "C.UTF-8",
            "TZ": "Europe/Berlin",
            "NO_AT_BRIDGE": "1",
            "DBUS_SESSION_BUS_ADDRESS": "disabled:",
            "DBUS_SYSTEM_BUS_ADDRESS": "disabled:",
        }
        for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"):
            if name in os.environ:
                self.env[name] = os.environ[name]
        self.processes = []
        self.logs = {}
        if bus:
            self.bus = self._start_bus()
        if display:
            self._start_display(screens)
            if window_manager:
                self.start_window_manager()

    # Processes

    def spawn(self, command, log=None, env=None, **options):
        target = open(self.home / log, "wb") if log else subprocess.DEVNULL
        streams = {"stdin": subprocess.DEVNULL, "stdout": target,
                   "stderr": subprocess.STDOUT if log else subprocess.DEVNULL}
        process = subprocess.Popen(command, env={**self.env, **(env or {})},
                                   **{**streams, **options})
        if log:
            target.close()
        self.processes.append(process)
        return process

    def run(self, *command, check=True, input=None, timeout=30):
        result = subprocess.run(command, env=self.env, capture_output=True, text=True,
                                input=input, timeout=timeout)
        if check and result.returncode != 0:
            raise AssertionError(f"{command} gave {result.returncode}: {result.stderr}")
        return result.stdout

    def close(self):
        for process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
        for process in reversed(self.processes):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
            for stream in (process.stdin, process.stdout):
                if stream is not None:
                    stream.close()
        shutil.rmtree(self.home, ignore_errors=True)

    def _printed_value(self, command, option):
        reader, writer = os.pipe()
        process = self.spawn([*command, option, str(writer)], pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as pipe:
            value = pipe.readline().strip()
        self.assertion(value, f"{command[0]} did not start")
        return process, value

    @staticmethod
    def assertion(value, message):
        if not value:
            raise AssertionError(message)

    def _start_bus(self, variable="DBUS_SESSION_BUS_ADDRESS"):
        """At the same address each time: a bus that was ended can be started again."""
        socket, config = self.home / f"{variable}.socket", self.home / f"{variable}.conf"
        socket.unlink(missing_ok=True)
        config.write_text(BUS_CONFIG.format(socket=socket))
        reader, writer = os.pipe()
        bus = self.spawn(["dbus-daemon", f"--config-file={config}", "--nofork",
                          f"--print-address={writer}"], pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as pipe:
            self.env[variable] = pipe.readline().strip().partition(",")[0]
        return bus

    def start_system_bus(self, *templates):
        """A system bus of its own, and on it mocks by python-dbusmock's templates."""
        self._start_bus("DBUS_SYSTEM_BUS_ADDRESS")
        names = {"logind": "org.freedesktop.login1"}
        for template in templates:
            self.spawn(["/usr/bin/python3", "-m", "dbusmock", "--system", "--template", template])
            self.run("gdbus", "wait", "--system", "--timeout", "10", names[template])

    def _start_display(self, screens):
        """Screens stand side by side."""
        sizes = [tuple(int(number) for number in size.split("x")) for size in screens]
        width, height = sum(size[0] for size in sizes), max(size[1] for size in sizes)
        self.server, number = self._printed_value(
            ["Xvfb", "-screen", "0", f"{width}x{height}x24", "-noreset", "-nolisten", "tcp"],
            "-displayfd")
        self.env["DISPLAY"] = ":" + number
        left = 0
        for index, (width, height) in enumerate(sizes if len(sizes) > 1 else []):
            self.run("xrandr", "--setmonitor", f"screen{index}",
                     f"{width}/300x{height}/200+{left}+0", "none" if index else "screen")
            left += width

    def start_window_manager(self, command=("openbox",), log=None):
        """openbox says that it is there before it manages, and forgets a window that comes between."""
        managed = self.home / "managed"
        managed.unlink(missing_ok=True)
        says_when = command[0] == "openbox"
        more = ["--startup", f"touch '{managed}'"] if says_when else []
        manager = self.spawn([*command, *more], log=log)

        def manages():
            check = self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK", check=False)
            window = re.search(r"0x[0-9a-f]+", check)
            return window and window[0] in self.run(
                "xprop", "-id", window[0], "_NET_SUPPORTING_WM_CHECK", check=False) and (
                    managed.exists() or not says_when)
        wait_for(manages, command[0])
        return manager

    # Widgets and slots

    def write_widgets(self, widgets, announce=True):
        document = {"version": 1, "widgets": widgets}
        self.write_widgets_text(json.dumps(document), announce)

    def write_widgets_text(self, text, announce=True):
        temporary = self.data / "widgets.json.new"
        temporary.write_text(text)
        temporary.rename(self.data / "widgets.json")
        if announce:
            self.announce()

    def announce(self, name="dev.quellby.tavrin.widgetsChanged"):
        self.run("gdbus", "emit", "--session", "--object-path", "/dev/quellby/tavrin/Notifications",
                 "--signal", "dev.quellby.tavrin.Notifications.Posted", name, "")

    def program(self, slot):
        return BUNDLES / f"Tavrin Slot {slot}.app" / "Contents" / "MacOS" / "TavrinSlot"

    def start_slot(self, slot, *arguments, env=None):
        arguments = arguments or ("--background",)
        process = self.spawn([str(self.program(slot)), *arguments], log=f"slot{slot}.log", env=env)
        return process

    def log(self, slot):
        path = self.home / f"slot{slot}.log"
        return path.read_text(errors="replace") if path.exists() else ""

    def bundle_identifier(self, slot):
        return f"dev.quellby.Tavrin.Slot{slot}"

    def wait_for_name(self, slot):
        self.run("gdbus", "wait", "--session", "--timeout", "10", self.bundle_identifier(slot))

    def toggle(self, slot):
        """What a click on the tile does."""
        self.run("gdbus", "call", "--session", "--dest", self.bundle_identifier(slot),
                 "--object-path", f"/dev/quellby/Tavrin/Slot{slot}", "--method",
                 "org.freedesktop.Application.ActivateAction", "toggle", "[]", "{}")

    def picture(self, slot):
        return self.pictures / f"{self.bundle_identifier(slot)}.png"

    def defaults(self, slot):
        for path in (self.home / "config").rglob(f"{self.bundle_identifier(slot)}*"):
            return json.loads(path.read_text())
        return {}

    def write_run(self, slot, key, run):
        """Puts a stored run where the slot keeps its own values, as an earlier life left it."""
        path = next((self.home / "config").rglob(f"{self.bundle_identifier(slot)}*"))
        document = json.loads(path.read_text())
        document[key] = run
        path.write_text(json.dumps(document))

    # Windows

    def windows(self, pid):
        """A process's visible windows: (id, x, y, width, height)."""
        found = []
        for window in self.run("xdotool", "search", "--onlyvisible", "--all", "--pid", str(pid),
                               check=False).split():
            shell = self.run("xdotool", "getwindowgeometry", "--shell", window, check=False)
            values = dict(line.split("=") for line in shell.split())
            if values:
                found.append((window, *(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))))
        return found

    def click(self, x, y, button=1):
        self.run("xdotool", "mousemove", str(int(x)), str(int(y)), "click", str(button))

    def key(self, *keys):
        self.run("xdotool", "key", *keys)

    def pixels(self, window):
        """What the screen shows where the window is, three bytes a point."""
        _, x, y, width, height = window
        return subprocess.run(["import", "-silent", "-window", "root", "-crop",
                               f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-"], env=self.env,
                              capture_output=True, check=True).stdout

    def screenshot(self, path):
        with open(path, "wb") as target:
            subprocess.run(["import", "-window", "root", "png:-"], env=self.env, stdout=target,
                           check=True)


def widget(kind, settings, slot, name="Widget", span=1, identifier=None):
    payload = settings if kind in ("collection", "stopwatch", "airdrop", "fans") else {"_0": settings}
    return {"id": identifier or str(uuid.uuid4()).upper(), "name": name, "slot": slot, "span": span,
            "kind": {kind: payload}}


class DeskTest(unittest.TestCase):
    display = True
    bus = True

    def setUp(self):
        self.desk = Desk(display=self.display, bus=self.bus)
        self.addCleanup(self.desk.close)

    def kill(self, process):
        os.kill(process.pid, signal.SIGKILL)
        process.wait()
