"""Switches an output of the KWin behind WAYLAND_DISPLAY off or on: kwin_output.py NAME on|off

Speaks the few messages that this takes itself, by the wire protocol: an object's number, then the
message's length and its number among the object's."""

import os
import pathlib
import socket
import struct
import sys

DISPLAY = 1
# Messages of wl_display, wl_registry, kde_output_management_v2, kde_output_configuration_v2.
SYNC, GET_REGISTRY, BIND, CREATE, ENABLE, APPLY = 0, 1, 0, 0, 0, 5
# Events of wl_registry, kde_output_device_v2, kde_output_configuration_v2.
GLOBAL, NAME, APPLIED = 0, 14, 0


class Connection:
    def __init__(self):
        self.socket = socket.socket(socket.AF_UNIX)
        folder = pathlib.Path(os.environ["XDG_RUNTIME_DIR"])
        self.socket.connect(str(folder / os.environ["WAYLAND_DISPLAY"]))
        self.waiting, self.last = b"", DISPLAY

    def new(self):
        self.last += 1
        return self.last

    def send(self, target, message, arguments=b""):
        self.socket.sendall(struct.pack("=IHH", target, message, 8 + len(arguments)) + arguments)

    def event(self):
        while True:
            if len(self.waiting) >= 8:
                source, number, length = struct.unpack("=IHH", self.waiting[:8])
                if len(self.waiting) >= length:
                    body, self.waiting = self.waiting[8:length], self.waiting[length:]
                    if source == DISPLAY and number == 0:
                        sys.exit(f"the compositor refused: {body!r}")
                    return source, number, body
            piece = self.socket.recv(65536)
            if not piece:
                sys.exit("the compositor has gone")
            self.waiting += piece

    def events(self):
        """All until the compositor has answered what was sent."""
        answer, found = self.new(), []
        self.send(DISPLAY, SYNC, struct.pack("=I", answer))
        while (event := self.event())[0] != answer:
            found.append(event)
        return found


def text(body):
    length = struct.unpack("=I", body[:4])[0]
    return body[4:3 + length].decode()


def main(wanted, state):
    connection = Connection()
    registry = connection.new()
    connection.send(DISPLAY, GET_REGISTRY, struct.pack("=I", registry))
    announced = [body for source, number, body in connection.events()
                 if (source, number) == (registry, GLOBAL)]

    def bind_all(interface):
        found = []
        for body in announced:
            if text(body[4:]) == interface:
                found.append(connection.new())
                # As it was announced, but for the version: names come with the second.
                connection.send(registry, BIND, body[:-4] + struct.pack("=II", 2, found[-1]))
        return found
    devices = bind_all("kde_output_device_v2")
    management = bind_all("kde_output_management_v2")[0]
    names = {text(body): source for source, number, body in connection.events()
             if source in devices and number == NAME}
    configuration = connection.new()
    connection.send(management, CREATE, struct.pack("=I", configuration))
    connection.send(configuration, ENABLE, struct.pack("=Ii", names[wanted], state == "on"))
    connection.send(configuration, APPLY)
    while True:
        source, number, _ = connection.event()
        if source == configuration:
            sys.exit(None if number == APPLIED else "not applied")


main(*sys.argv[1:])
