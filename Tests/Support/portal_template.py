"""The desktop's portal for global shortcuts, for python-dbusmock.

Parameters: "answer" is "grant", "decline", "fail", "some" (all but the first), or "die" (the portal
ends when it is asked); "early" answers before the call itself is answered.
"""

import os

import dbus
from dbusmock import get_object
from gi.repository import GLib

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.GlobalShortcuts"
SYSTEM_BUS = False
CONTROL = "dev.quellby.test.Portal"


def load(mock, parameters):
    mock.answer = parameters.get("answer", "grant")
    mock.early = parameters.get("early", False)
    mock.bound = {}
    mock.closed = 0
    mock.application = ""


def respond(mock, sender, options, code, results):
    path = f"{MAIN_OBJ}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
    mock.AddObject(path, "org.freedesktop.portal.Request", {}, [("Close", "", "", "")])

    def emit():
        get_object(path).EmitSignal("org.freedesktop.portal.Request", "Response", "ua{sv}",
                                    [dbus.UInt32(code), dbus.Dictionary(results, signature="sv")])

    if mock.early:
        emit()
    else:
        GLib.idle_add(emit)
    return dbus.ObjectPath(path)


@dbus.service.method("org.freedesktop.host.portal.Registry", in_signature="sa{sv}")
def Register(self, application, _options):
    self.application = application


@dbus.service.method(MAIN_IFACE, in_signature="a{sv}", out_signature="o", sender_keyword="sender")
def CreateSession(self, options, sender=None):
    session = f"{MAIN_OBJ}/session/{sender[1:].replace('.', '_')}/{options['session_handle_token']}"
    self.AddObject(session, "org.freedesktop.portal.Session", {}, [
        ("Close", "", "", f"import dbusmock; portal = dbusmock.get_object('{MAIN_OBJ}'); "
                          f"portal.bound.pop('{session}', None); portal.closed += 1")])
    return respond(self, sender, options, 0, {"session_handle": session})


@dbus.service.method(MAIN_IFACE, in_signature="oa(sa{sv})sa{sv}", out_signature="o",
                     sender_keyword="sender")
def BindShortcuts(self, session, shortcuts, _window, options, sender=None):
    if self.answer == "die":
        os._exit(0)
    if self.answer in ("decline", "fail"):
        return respond(self, sender, options, 1 if self.answer == "decline" else 2, {})
    given = shortcuts[1:] if self.answer == "some" else shortcuts
    self.bound[session] = {str(name): str(values["preferred_trigger"]) for name, values in given}
    shown = [(name, dbus.Dictionary({"description": values["description"],
                                     "trigger_description": "keys"}, signature="sv"))
             for name, values in given]
    return respond(self, sender, options, 0,
                   {"shortcuts": dbus.Array(shown, signature="(sa{sv})")})


@dbus.service.method(CONTROL, out_signature="sia{ss}")
def State(self):
    """The application's name, sessions closed, and the keys of each shortcut bound."""
    keys = {name: trigger for one in self.bound.values() for name, trigger in one.items()}
    return self.application, self.closed, dbus.Dictionary(keys, signature="ss")


@dbus.service.method(CONTROL, in_signature="s")
def Press(self, trigger):
    for session, shortcuts in self.bound.items():
        for name, keys in shortcuts.items():
            if keys == trigger:
                for wrong in (f"{session}x", session):
                    self.EmitSignal(MAIN_IFACE, "Activated", "osta{sv}",
                                    [dbus.ObjectPath(wrong), name, dbus.UInt64(1),
                                     dbus.Dictionary({}, signature="sv")])


@dbus.service.method(CONTROL)
def TakeBack(self):
    for session in list(self.bound):
        get_object(session).EmitSignal("org.freedesktop.portal.Session", "Closed", "", [])
        del self.bound[session]
