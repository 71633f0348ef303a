"""A player on the session bus that says what a test tells it to, and writes down what it is told.

media_player.py NAME    owns org.mpris.MediaPlayer2.NAME until it is ended
"""

import json
import sys
import time

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

PLAYER = "org.mpris.MediaPlayer2.Player"
ROOT = "org.mpris.MediaPlayer2"
TEST = "dev.quellby.Test"


def value(plain):
    """What JSON holds, as the types a player uses; lists stay texts."""
    if isinstance(plain, dict) and "type" in plain:
        return getattr(dbus, plain["type"])(plain["value"])
    if isinstance(plain, dict):
        return dbus.Dictionary({key: value(each) for key, each in plain.items()}, signature="sv")
    if isinstance(plain, list):
        return dbus.Array(plain, signature="s")
    return plain


class Player(dbus.service.Object):
    def __init__(self, bus, name):
        self.owner = dbus.service.BusName(f"{ROOT}.{name}", bus)
        super().__init__(bus, "/org/mpris/MediaPlayer2")
        self.calls = []
        self.values = {"PlaybackStatus": "Stopped", "Rate": 1.0, "Volume": 1.0,
                       "Position": dbus.Int64(0), "CanControl": True, "CanPlay": True,
                       "CanPause": True, "CanGoNext": True, "CanGoPrevious": True, "CanSeek": True,
                       "Metadata": dbus.Dictionary({}, signature="sv")}
        self.identity = f"The {name} player"

    @dbus.service.method(TEST, in_signature="s")
    def Become(self, text):
        """Takes other values and tells of them, the position apart."""
        changes = {key: value(each) for key, each in json.loads(text, strict=False).items()}
        self.values.update(changes)
        told = {key: each for key, each in changes.items() if key != "Position"}
        if told:
            self.PropertiesChanged(PLAYER, told, [])

    @dbus.service.method(TEST, in_signature="d")
    def Hang(self, seconds):
        GLib.timeout_add(10, lambda: time.sleep(seconds))

    @dbus.service.method(TEST, out_signature="as")
    def Calls(self):
        return dbus.Array(self.calls, signature="s")

    @dbus.service.method(TEST, in_signature="x")
    def Jump(self, position):
        self.values["Position"] = dbus.Int64(position)
        self.Seeked(position)

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return self.values if interface == PLAYER else {"Identity": self.identity}

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return self.identity if name == "Identity" else self.values[name]

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ssv")
    def Set(self, interface, name, new):
        self.calls.append(f"Set {name} {new:g}")
        self.values[name] = new
        self.PropertiesChanged(PLAYER, {name: new}, [])

    @dbus.service.signal(dbus.PROPERTIES_IFACE, signature="sa{sv}as")
    def PropertiesChanged(self, interface, changes, gone):
        pass

    @dbus.service.signal(PLAYER, signature="x")
    def Seeked(self, position):
        pass

    @dbus.service.method(PLAYER)
    def PlayPause(self):
        self.calls.append("PlayPause")
        status = "Paused" if self.values["PlaybackStatus"] == "Playing" else "Playing"
        self.values["PlaybackStatus"] = status
        self.PropertiesChanged(PLAYER, {"PlaybackStatus": status}, [])

    @dbus.service.method(PLAYER)
    def Next(self):
        self.calls.append("Next")

    @dbus.service.method(PLAYER)
    def Previous(self):
        self.calls.append("Previous")

    @dbus.service.method(PLAYER, in_signature="ox")
    def SetPosition(self, track, position):
        self.calls.append(f"SetPosition {track} {position}")
        self.Jump(position)

    @dbus.service.method(PLAYER, in_signature="x")
    def Seek(self, offset):
        self.calls.append(f"Seek {offset}")

    @dbus.service.method(ROOT)
    def Raise(self):
        self.calls.append("Raise")


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
player = Player(dbus.SessionBus(), sys.argv[1])
print("ready", flush=True)
GLib.MainLoop().run()
