"""The desk of the campaign: every service that a slot uses, each of which can die and come back."""

import http.server
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import threading
import time

import dbus
import dbus.lowlevel

from desks.calendars import CalendarServer
from clock import SimulatedClock
from rig import BUILD, BUNDLES, Desk, wait_for
from test_clipboard import start_keyring

SUPPORT = pathlib.Path(__file__).resolve().parent.parent / "Support"
PRELOAD = BUILD / "Tests" / "Campaign" / "libCampaignClock.so"
SLOTS = range(1, 13)
PROGRAM = re.compile(rb"Tavrin Slot (\d+)\.app/Contents/MacOS/TavrinSlot(.*)", re.S)
SMALL_DISK = "6m"


class Forecast(http.server.BaseHTTPRequestHandler):
    """Answers forecasts and searches of cities, for the days that the simulated clock has."""
    clock = None

    def do_GET(self):
        today = self.clock.local().date().toordinal()
        days = [type(self.clock.local()).fromordinal(today + day).date().isoformat()
                for day in range(5)]
        body = json.dumps({
            "results": [{"name": "Kiel", "latitude": 54.3, "longitude": 10.1, "country": "DE"}],
            "timezone": self.clock.zone,
            "current": {"temperature_2m": 21.5, "apparent_temperature": 20, "weather_code": 2,
                        "is_day": 1},
            "daily": {"time": days, "weather_code": [0, 1, 2, 3, 61],
                      "temperature_2m_max": [20, 21, 22, 23, 24],
                      "temperature_2m_min": [10, 11, 12, 13, 14]}}).encode()
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class World(Desk):
    """`owns_network` and `owns_mounts` say what of the machine belongs to the campaign alone."""

    def __init__(self, zone, owns_network, owns_mounts):
        super().__init__(display=False, bus=False)
        self.owns_network, self.owns_mounts = owns_network, owns_mounts
        self.clock = SimulatedClock(self.home / "clock", zone)
        self.stalls = self.home / "stalls"
        self.env["DISPLAY"] = self.env["REFERENCE_DISPLAY"] = ""
        del self.env["TZ"]
        self.down = set()
        self.parts = {}
        self.disk = "good"
        self.connection = None
        self._write_folders()
        # What the programs under test write lies on one disk, which can be full or read-only.
        self.volume = self.home / "disk"
        self.volume.mkdir()
        if owns_mounts:
            self._mount("tmpfs", self.volume, "-t", "tmpfs", "-o", f"size={SMALL_DISK}")
            self.set_zone(zone, announce=False)
        self.data, self.pictures = self.volume / "data", self.volume / "pictures"
        self.settings = self.volume / "config"
        self.data.mkdir()
        self.env.update(TAVRIN_APP_SUPPORT_DIR=str(self.data), TAVRIN_PICTURE_DIR=str(self.pictures))
        self._start_web()
        for name in self.SERVICES:
            self.start(name)
        self.reference_display()

    def run(self, *command, timeout=180, **options):
        """Patient: the campaign stands back behind what else the machine does."""
        return super().run(*command, timeout=timeout, **options)

    # Folders, files and the disk

    def _write_folders(self):
        applications = self.home / "system" / "applications"
        applications.mkdir(parents=True)
        for name in ("Editor", "Browser", "Terminal"):
            (applications / f"{name.lower()}.desktop").write_text(
                f"[Desktop Entry]\nType=Application\nName={name}\nExec=true\n")
        # What libraries look for there too.
        (self.home / "system" / "glib-2.0").symlink_to("/usr/share/glib-2.0")
        for name in ("Pictures", "Downloads", "Desktop", "Documents"):
            (self.home / name).mkdir()
        tools = self.home / "tools"
        tools.mkdir()
        for name in ("xdg-open", "gio", "gh"):
            (tools / name).write_text("#!/bin/sh\nexit 0\n")
            (tools / name).chmod(0o755)

    def _mount(self, source, target, *options):
        subprocess.run(["mount", *options, source, str(target)], check=True)

    def break_disk(self, how):
        """`how` is "full" or "read-only"; False where the disk is not the campaign's own."""
        if not self.owns_mounts:
            return False
        self.disk = how
        if how == "full":
            try:
                with open(self.volume / "filler", "wb", buffering=0) as filler:
                    while filler.write(b"x" * 4096):
                        pass
            except OSError:
                pass
            return True
        return self._remount("ro")

    def mend_disk(self):
        if self.disk == "read-only":
            self._remount("rw")
        (self.volume / "filler").unlink(missing_ok=True)
        self.disk = "good"

    def _remount(self, mode):
        """Refused while somebody writes."""
        for _ in range(100):
            if subprocess.run(["mount", "-o", f"remount,{mode}", str(self.volume)],
                              stderr=subprocess.DEVNULL).returncode == 0:
                return True
            time.sleep(0.02)
        self.disk = "good"
        return False

    def set_zone(self, zone, announce=True):
        if not self.owns_mounts:
            return False
        link = pathlib.Path("/etc/localtime")
        temporary = link.with_name("localtime.new")
        temporary.symlink_to(f"/usr/share/zoneinfo/{zone}")
        temporary.rename(link)
        self.clock.zone = zone
        if announce:
            self.run("gdbus", "emit", "--system", "--object-path", "/org/freedesktop/timedate1",
                     "--signal", "org.freedesktop.DBus.Properties.PropertiesChanged",
                     "org.freedesktop.timedate1", f"{{'Timezone': <'{zone}'>}}", "[]", check=False)
        return True

    # Services. Each has a function that starts it, and processes that are killed.

    SERVICES = ["bus", "system", "keyring", "display", "manager", "calendars", "notices", "player"]
    # What goes down with a service, and comes back after it.
    # The keyring ends when it loses the bus of the system.
    DEPENDENTS = {"system": ["keyring"], "bus": ["keyring", "calendars", "notices", "player"], "display": ["manager"]}

    def start(self, name):
        count = len(self.processes)
        getattr(self, f"_start_{name}")()
        self.parts[name] = self.processes[count:]
        self.down.discard(name)

    def kill_service(self, name):
        for each in [name, *self.DEPENDENTS.get(name, [])]:
            self.down.add(each)
            for process in self.parts.get(each, []):
                if process.poll() is None:
                    os.kill(process.pid, signal.SIGKILL)
                process.wait()
                self.processes.remove(process)
            self.parts[each] = []
        if name == "bus":
            self.connection = None

    def bring_back(self, name):
        for each in [name, *self.DEPENDENTS.get(name, [])]:
            if each in self.down:
                self.start(each)

    def _start_system(self):
        self._start_bus("DBUS_SYSTEM_BUS_ADDRESS")
        for template, name in (("logind", "org.freedesktop.login1"),
                               ("upower", "org.freedesktop.UPower")):
            self.spawn(["/usr/bin/python3", "-m", "dbusmock", "--system", "--template", template])
            self.run("gdbus", "wait", "--system", "--timeout", "90", name)
        self.run("gdbus", "call", "--system", "-d", "org.freedesktop.UPower", "-o",
                 "/org/freedesktop/UPower", "-m", "org.freedesktop.DBus.Mock."
                 "AddDischargingBattery", "BAT0", "ACME", "62.0", "5400")

    def _start_keyring(self):
        start_keyring(self)

    def _start_server(self, variable, screen="1280x800x24"):
        number = self.env.get(variable)
        command = ["Xvfb", "-screen", "0", screen, "-noreset", "-nolisten", "tcp"]
        if number:
            pathlib.Path(f"/tmp/.X{number[1:]}-lock").unlink(missing_ok=True)
            self.spawn([*command, number])
            wait_for(lambda: subprocess.run(["xprop", "-display", number, "-root"],
                                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                            ).returncode == 0, "the X server")
        else:
            self.env[variable] = ":" + self._printed_value(command, "-displayfd")[1]

    def _start_display(self, *_):
        self._start_server("DISPLAY")

    def reference_display(self):
        self._start_server("REFERENCE_DISPLAY")

    def _start_manager(self):
        self.start_window_manager()

    def _start_calendars(self):
        server = CalendarServer(self)
        self.calendar_server = server

    def _start_notices(self):
        self.spawn(["/usr/bin/python3", "-m", "dbusmock", "--session", "--template",
                    "notification_daemon"])
        self.run("gdbus", "wait", "--session", "--timeout", "90", "org.freedesktop.Notifications")

    def _start_player(self):
        self.spawn(["/usr/bin/python3", str(SUPPORT / "media_player.py"), "campaign"])
        self.run("gdbus", "wait", "--session", "--timeout", "90",
                 "org.mpris.MediaPlayer2.campaign")

    def copy(self, text):
        """As a program would that the user copies in."""
        subprocess.run(["xclip", "-selection", "clipboard"], env=self.env, input=text.encode(),
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=20, check=False)

    # The network: a web server, and the way to it

    def _start_web(self):
        Forecast.clock = self.clock
        if self.owns_network:
            subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
        self.web = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Forecast)
        threading.Thread(target=self.web.serve_forever, daemon=True).start()

    def set_network(self, is_up):
        if self.owns_network:
            subprocess.run(["ip", "link", "set", "lo", "up" if is_up else "down"], check=True)
        self.down.discard("network") if is_up else self.down.add("network")

    # Sleep

    def say_sleep(self, is_going):
        self.run("gdbus", "call", "--system", "-d", "org.freedesktop.login1", "-o",
                 "/org/freedesktop/login1", "-m", "org.freedesktop.DBus.Mock.EmitSignal",
                 "org.freedesktop.login1.Manager", "PrepareForSleep", "b",
                 "[<true>]" if is_going else "[<false>]", check=False)

    # Slots and the command

    def program_env(self):
        url = f"http://127.0.0.1:{self.web.server_port}"
        return {**self.env, "LD_PRELOAD": str(PRELOAD), "CAMPAIGN_CLOCK": str(self.clock.file),
                "CAMPAIGN_STALLS": str(self.stalls),
                "CAMPAIGN_DISPLAY_PROCESS": "".join(str(each.pid) for each in self.parts["display"]),
                "TAVRIN_SURFACE": "strip,picture",
                "XDG_CONFIG_HOME": str(self.settings),
                "XDG_DATA_DIRS": str(self.home / "system"), "TAVRIN_BUNDLES": str(BUNDLES),
                "TAVRIN_MODULE_DIR": str(BUNDLES / "modules"),
                "PATH": f"{self.home / 'tools'}:{self.env['PATH']}",
                "TAVRIN_FORECAST_URL": url + "/v1/forecast",
                "TAVRIN_GEOCODING_URL": url + "/v1/search"}

    def tavrin(self, *arguments, timeout=60):
        return subprocess.run([str(BUILD / "bin" / "tavrin"), *arguments], env=self.program_env(),
                              capture_output=True, text=True, timeout=timeout)

    def processes_of_slots(self):
        """The processes that show slots, by slot: helpers of theirs apart."""
        found = {}
        for entry in os.listdir("/proc"):
            if not entry.isdigit():
                continue
            try:
                command = pathlib.Path("/proc", entry, "cmdline").read_bytes()
                match = PROGRAM.search(command)
                if not match or b"/reference/" in command or b"--family" in command:
                    continue
                if pathlib.Path("/proc", entry, "stat").read_text().rpartition(")")[2].split()[0] == "Z":
                    continue
            except OSError:
                continue
            if match.group(2).strip(b"\0") in (b"", b"--background"):
                found.setdefault(int(match.group(1)), []).append(int(entry))
        return found

    def log(self, slot):
        path = self.home / "state" / "tavrin" / f"slot-{slot}.log"
        return path.read_text(errors="replace") if path.exists() else ""

    def defaults(self, slot):
        path = self.settings / "tavrin" / f"{self.bundle_identifier(slot)}.json"
        return json.loads(path.read_text()) if path.exists() else {}

    def bus(self):
        if self.connection is None:
            self.connection = dbus.bus.BusConnection(self.env["DBUS_SESSION_BUS_ADDRESS"])
        return self.connection

    def call(self, slot, path, interface, member, signature="", arguments=(), seconds=10.0):
        return self.bus().call_blocking(self.bundle_identifier(slot), path, interface, member,
                                        signature, arguments, timeout=seconds)

    def activate(self, slot):
        """Patient with one that begins anew, for a bus that is back: for a moment it has no name."""
        end = time.monotonic() + 10
        while True:
            try:
                return self.call(slot, f"/dev/quellby/Tavrin/Slot{slot}",
                                 "org.freedesktop.Application", "Activate", "a{sv}", ({},))
            except dbus.DBusException as error:
                gone = ("ServiceUnknown", "NoReply", "NameHasNoOwner")
                if not error.get_dbus_name().endswith(gone) or time.monotonic() > end:
                    raise
            time.sleep(0.2)

    def ping(self, slot):
        self.call(slot, "/", "org.freedesktop.DBus.Peer", "Ping")

    def document(self):
        return json.loads((self.data / "widgets.json").read_text())

    def close(self):
        for slots in self.processes_of_slots().values():
            for pid in slots:
                os.kill(pid, signal.SIGTERM)
        self.web.shutdown()
        self.web.server_close()
        super().close()
        if self.owns_mounts:
            subprocess.run(["umount", "-l", str(self.volume)], stderr=subprocess.DEVNULL)
            shutil.rmtree(self.home, ignore_errors=True)


def own_folder(folder):
    """From here on scratch folders are made in `folder`."""
    tempfile.tempdir = str(folder)
