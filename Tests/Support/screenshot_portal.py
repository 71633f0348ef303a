"""A desktop portal that has the user pick a colour, for python-dbusmock.

Parameters: "code" and "colour" of the answer; "when" it comes: "later", or "early" for before the
call's own reply; "path": "own" for a portal that does not use the caller's token.
"""

import dbus
from gi.repository import GLib

import dbusmock

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.Screenshot"
SYSTEM_BUS = False
REQUEST = "org.freedesktop.portal.Request"


def load(mock, parameters):
    mock.parameters = parameters
    mock.picks = 0


@dbus.service.method(MAIN_IFACE, in_signature="sa{sv}", out_signature="o", sender_keyword="sender")
def PickColor(self, _parent, options, sender):
    self.picks += 1
    print("PickColor", flush=True)
    token = str(options["handle_token"])
    if self.parameters.get("path") == "own":
        token = f"chosen{self.picks}"
    path = f"{MAIN_OBJ}/request/{sender[1:].replace('.', '_')}/{token}"
    self.AddObject(path, REQUEST, {}, [("Close", "", "", "")])

    def answer():
        colour = self.parameters.get("colour")
        results = {}
        if colour:
            results["color"] = dbus.Struct([dbus.Double(each) for each in colour],
                                           signature="ddd", variant_level=1)
        dbusmock.get_object(path).EmitSignal(
            REQUEST, "Response", "ua{sv}",
            [dbus.UInt32(self.parameters.get("code", 0)), dbus.Dictionary(results, signature="sv")])
        return False

    if self.parameters.get("when") == "early":
        answer()
    else:
        GLib.timeout_add(50, answer)
    return dbus.ObjectPath(path)
