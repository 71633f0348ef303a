"""The user's service manager as far as timers go, for python-dbusmock. It keeps what it is told and
starts nothing: the test does, with what `Due` of the control interface hands out.
"""

import fnmatch

import dbus

BUS_NAME = "org.freedesktop.systemd1"
MAIN_OBJ = "/org/freedesktop/systemd1"
MAIN_IFACE = "org.freedesktop.systemd1.Manager"
SYSTEM_BUS = False
CONTROL = "dev.quellby.test.Manager"
JOB = dbus.ObjectPath("/org/freedesktop/systemd1/job/1")


def load(mock, parameters):
    mock.timers = {}


@dbus.service.method(MAIN_IFACE, in_signature="ssa(sv)a(sa(sv))", out_signature="o")
def StartTransientUnit(self, name, mode, properties, units):
    timer, (service,) = dict(properties), units
    service = dict(service[1])
    ((path, arguments, flags),) = service["ExecStartEx"]
    ((kind, when),) = timer["TimersCalendar"]
    self.timers[str(name)] = {"when": when, "arguments": arguments,
                              "descriptions": [timer["Description"], service["Description"]]}
    return JOB


@dbus.service.method(MAIN_IFACE, in_signature="asas", out_signature="a(ssssssouso)")
def ListUnitsByPatterns(self, states, patterns):
    return [(name, "", "loaded", "active", "waiting", "", JOB, 0, "", JOB) for name in self.timers
            if any(fnmatch.fnmatchcase(name, pattern) for pattern in patterns)]


@dbus.service.method(MAIN_IFACE, in_signature="ss", out_signature="o")
def StopUnit(self, name, mode):
    self.timers.pop(str(name), None)
    return JOB


@dbus.service.method(CONTROL, out_signature="aas")
def Timers(self):
    """For each timer when it is due and what it starts."""
    return [[one["when"], *one["descriptions"], *one["arguments"]] for one in self.timers.values()]
