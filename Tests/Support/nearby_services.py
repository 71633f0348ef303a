"""KDE Connect and Bluetooth's object push as far as sending files goes, for tests.

nearby_services.py connect      owns org.kde.kdeconnect on the session bus
nearby_services.py obex         owns org.bluez.obex there
nearby_services.py bluetooth    owns org.bluez on the system bus

Each writes what it is asked to standard output, and does what its object dev.quellby.Test says.
"""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

TEST = "dev.quellby.Test"
PROPERTIES = dbus.PROPERTIES_IFACE


def say(*words):
    print(*words, flush=True)


class ConnectDevice(dbus.service.Object):
    IFACE = "org.kde.kdeconnect.device"

    def __init__(self, bus, identifier, name, kind, plugins):
        super().__init__(bus, f"/modules/kdeconnect/devices/{identifier}")
        self.values = {"name": name, "type": kind, "isReachable": True,
                       "supportedPlugins": dbus.Array(plugins, signature="s")}

    @dbus.service.method(PROPERTIES, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return self.values


class ConnectShare(dbus.service.Object):
    def __init__(self, bus, identifier, refuses):
        super().__init__(bus, f"/modules/kdeconnect/devices/{identifier}/share")
        self.identifier, self.refuses = identifier, refuses

    @dbus.service.method("org.kde.kdeconnect.device.share", in_signature="as")
    def shareUrls(self, urls):
        if self.refuses:
            raise dbus.DBusException("no", name="org.kde.kdeconnect.Error")
        for url in urls:
            say("shared", self.identifier, url)


class Connect(dbus.service.Object):
    IFACE = "org.kde.kdeconnect.daemon"

    def __init__(self, bus):
        self.name = dbus.service.BusName("org.kde.kdeconnect", bus)
        super().__init__(bus, "/modules/kdeconnect")
        share = ["kdeconnect_ping", "kdeconnect_share"]
        self.parts = [ConnectDevice(bus, "phone", "Ada's Phone", "phone", share),
                      ConnectShare(bus, "phone", False),
                      ConnectDevice(bus, "old", "Old Tablet", "tablet", share),
                      ConnectShare(bus, "old", True),
                      ConnectDevice(bus, "lamp", "Lamp", "tv", ["kdeconnect_ping"])]
        self.ids = ["phone", "old", "lamp", "not/a path", "missing"]

    @dbus.service.method(IFACE, in_signature="bb", out_signature="as")
    def devices(self, reachable, paired):
        return dbus.Array(self.ids, signature="s")

    @dbus.service.signal(IFACE, signature="sb")
    def deviceVisibilityChanged(self, identifier, visible):
        pass

    @dbus.service.method(TEST, in_signature="s")
    def Lose(self, identifier):
        self.ids.remove(identifier)
        self.deviceVisibilityChanged(identifier, False)


class Transfer(dbus.service.Object):
    IFACE = "org.bluez.obex.Transfer1"

    def __init__(self, bus, path, name):
        super().__init__(bus, path)
        self.name = name

    @dbus.service.signal(PROPERTIES, signature="sa{sv}as")
    def PropertiesChanged(self, interface, changes, gone):
        pass

    @dbus.service.method(IFACE)
    def Cancel(self):
        say("cancelled", self.name)

    def tell(self, status, sent):
        self.PropertiesChanged(self.IFACE, {"Status": status, "Transferred": dbus.UInt64(sent)}, [])


class Session(dbus.service.Object):
    def __init__(self, bus, path):
        super().__init__(bus, path)
        self.bus, self.path, self.count, self.parts = bus, path, 0, []

    @dbus.service.method("org.bluez.obex.ObjectPush1", in_signature="s", out_signature="oa{sv}")
    def SendFile(self, file):
        say("sending", file)
        path = f"{self.path}/transfer{self.count}"
        self.count += 1
        transfer = Transfer(self.bus, path, file)
        self.parts.append(transfer)
        if "refused" in file:
            GLib.timeout_add(20, transfer.tell, "error", 0)
        elif "slow" in file:
            GLib.timeout_add(20, transfer.tell, "active", 400)
        else:
            GLib.timeout_add(20, transfer.tell, "active", 500)
            GLib.timeout_add(60, transfer.tell, "complete", 1000)
        return dbus.ObjectPath(path), {"Size": dbus.UInt64(1000), "Status": "queued"}


class Obex(dbus.service.Object):
    IFACE = "org.bluez.obex.Client1"

    def __init__(self, bus):
        self.name = dbus.service.BusName("org.bluez.obex", bus)
        super().__init__(bus, "/org/bluez/obex")
        self.bus, self.count, self.sessions = bus, 0, []

    @dbus.service.method(IFACE, in_signature="sa{sv}", out_signature="o")
    def CreateSession(self, destination, options):
        say("session", destination, options["Target"])
        if destination.startswith("FF"):
            raise dbus.DBusException("no", name="org.bluez.obex.Error.Failed")
        path = f"/org/bluez/obex/client/session{self.count}"
        self.count += 1
        self.sessions.append(Session(self.bus, path))
        return dbus.ObjectPath(path)

    @dbus.service.method(IFACE, in_signature="o")
    def RemoveSession(self, path):
        say("removed", path)


class Bluetooth(dbus.service.Object):
    PUSH = "00001105-0000-1000-8000-00805f9b34fb"

    def __init__(self, bus):
        self.name = dbus.service.BusName("org.bluez", bus)
        super().__init__(bus, "/")
        self.powered = True

    @dbus.service.method("org.freedesktop.DBus.ObjectManager", out_signature="a{oa{sa{sv}}}")
    def GetManagedObjects(self):
        def device(address, name, paired, uuids, icon):
            return {"org.bluez.Device1": {"Address": address, "Alias": name, "Paired": paired,
                                          "Icon": icon,
                                          "UUIDs": dbus.Array(uuids, signature="s")}}
        return {"/org/bluez/hci0": {"org.bluez.Adapter1": {"Powered": self.powered}},
                "/org/bluez/hci0/dev_1": device("00:11", "Laptop", True, [self.PUSH], "computer"),
                "/org/bluez/hci0/dev_2": device("FF:11", "Deaf", True, [self.PUSH], "phone"),
                "/org/bluez/hci0/dev_3": device("22:11", "Stranger", False, [self.PUSH], "phone"),
                "/org/bluez/hci0/dev_4": device("33:11", "Headset", True, [], "audio-headset")}

    @dbus.service.signal("org.freedesktop.DBus.ObjectManager", signature="oas")
    def InterfacesRemoved(self, path, interfaces):
        pass

    @dbus.service.method(TEST, in_signature="b")
    def Power(self, powered):
        self.powered = powered
        self.InterfacesRemoved("/org/bluez/hci0/dev_9", [])


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
kind = sys.argv[1]
service = (Bluetooth(dbus.SystemBus()) if kind == "bluetooth" else
           {"connect": Connect, "obex": Obex}[kind](dbus.SessionBus()))
say("ready")
GLib.MainLoop().run()
