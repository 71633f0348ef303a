"""The desktop's calendar service on a test's own bus, and another program that uses it."""

import dbus

from rig import wait_for

PREFIX = "org.gnome.evolution.dataserver"
PROGRAMS = "/usr/libexec/evolution-"


class CalendarServer:
    def __init__(self, desk):
        self.desk = desk
        self.bus = dbus.bus.BusConnection(desk.env["DBUS_SESSION_BUS_ADDRESS"])
        env = {"GSETTINGS_BACKEND": "memory", "GIO_USE_VFS": "local"}
        desk.spawn([PROGRAMS + "source-registry"], log="registry.log", env=env)
        wait_for(self._has_sources, "the registry of calendars", 90)
        desk.spawn([PROGRAMS + "calendar-factory", "--keep-running"], log="factory.log", env=env)
        wait_for(lambda: self.bus.name_has_owner(PREFIX + ".Calendar8"), "the calendar service", 90)

    def _has_sources(self):
        try:
            return self.bus.call_blocking(
                PREFIX + ".Sources5", "/org/gnome/evolution/dataserver/SourceManager",
                "org.freedesktop.DBus.ObjectManager", "GetManagedObjects", "", ())
        except dbus.DBusException:
            return None

    def _open(self, method, identifier):
        factory = self.bus.get_object(PREFIX + ".Calendar8",
                                      "/org/gnome/evolution/dataserver/CalendarFactory")
        path, name = factory.get_dbus_method(method, PREFIX + ".CalendarFactory")(identifier)
        calendar = dbus.Interface(self.bus.get_object(name, path), PREFIX + ".Calendar")
        calendar.Open()
        return calendar

    def calendar(self):
        return self._open("OpenCalendar", "system-calendar")

    def task_list(self):
        return self._open("OpenTaskList", "system-task-list")


def component(kind, **lines):
    """`DTSTART_VALUE_DATE="20300101"` is the line "DTSTART;VALUE=DATE:20300101"."""
    text = "".join(f"{key.replace('_', ';', 1).replace('_', '=', 1)}:{value}\r\n"
                   for key, value in lines.items())
    return f"BEGIN:{kind}\r\n{text}END:{kind}\r\n"


def add(calendar, components):
    return calendar.CreateObjects(components, dbus.UInt32(0), timeout=120)


def change(calendar, text):
    calendar.ModifyObjects([text], "this", dbus.UInt32(0))


def remove(calendar, uid):
    calendar.RemoveObjects(dbus.Array([(uid, "")], signature="(ss)"), "all", dbus.UInt32(0))
