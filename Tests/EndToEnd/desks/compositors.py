"""Wayland compositors with a window on a desk's X server, where there are a pointer and keys."""

import json
import os
import shutil
import tempfile
import pathlib

from rig import wait_for

# In pixels and points.
SIZE = (1200, 768)


def start_sway(desk, config, add_cleanup):
    """Its folder, which a cleanup takes away. It refuses to be root, who may speak to it all the
    same."""
    folder = pathlib.Path(tempfile.mkdtemp(prefix="tavrin-sway-"))
    add_cleanup(shutil.rmtree, folder, ignore_errors=True)
    (folder / "config").write_text(config.format(folder=folder))
    environment = {"HOME": str(folder), "XDG_RUNTIME_DIR": str(folder), "WLR_BACKENDS": "x11",
                   "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1",
                   "PATH": os.environ["PATH"], "DISPLAY": desk.env["DISPLAY"]}
    command = ["sway", "-c", str(folder / "config")]
    if os.getuid() == 0:
        shutil.chown(folder, "nobody")
        command = ["runuser", "-u", "nobody", "--", *command]
    folder.chmod(0o700)
    desk.spawn(command, env=environment, log="sway.log")
    socket = wait_for(lambda: list(folder.glob("wayland-?")), "sway's socket")[0]
    desk.env["WAYLAND_DISPLAY"] = str(socket)
    return folder


class SwayDesktop:
    """What a user does to the desktop, by the compositor's own means."""
    background = (0x33, 0x55, 0x77)

    def __init__(self, desk, add_cleanup):
        self.desk = desk
        folder = start_sway(desk, f"output X11-1 bg #335577 solid_color mode --custom "
                            f"{SIZE[0]}x{SIZE[1]}@60Hz\nxwayland disable\ndefault_border none\n",
                            add_cleanup)
        desk.env["SWAYSOCK"] = str(wait_for(lambda: list(folder.glob("sway-ipc.*.sock")),
                                            "sway's own socket")[0])
        wait_for(lambda: str(SIZE[0]) in self._tell("get_outputs"), "the output's size")

    def _tell(self, question):
        return self.desk.run("swaymsg", "-r", "-t", question, check=False)

    def go_to_desktop(self, number):
        self.desk.run("swaymsg", "workspace", str(number))
        wait_for(lambda: any(each["focused"] and each["num"] == number
                             for each in json.loads(self._tell("get_workspaces"))), "the desktop")

    def lay_over(self, title, frame, left, top):
        self.desk.run("swaymsg", f'[title="{title}"] floating enable, move absolute position '
                      f"{left} {top}")


class KWinDesktop:
    background = (0, 0, 0)

    def __init__(self, desk, add_cleanup):
        self.desk = desk
        # A file capability, which not every machine grants, does not come with a copy.
        copy = shutil.copyfile(shutil.which("kwin_wayland"), desk.home / "kwin_wayland")
        os.chmod(copy, 0o700)
        desk.spawn([str(copy), "--x11-display", desk.env["DISPLAY"], "--width", str(SIZE[0]),
                    "--height", str(SIZE[1]), "--socket", "wayland-kwin", "--no-lockscreen",
                    "--no-global-shortcuts", "--no-kactivities"], log="kwin.log",
                   env={"KWIN_FORCE_OWN_QPA": "1", "KWIN_COMPOSE": "Q"})
        socket = pathlib.Path(desk.env["XDG_RUNTIME_DIR"]) / "wayland-kwin"
        wait_for(socket.exists, "KWin's socket")
        desk.env["WAYLAND_DISPLAY"] = "wayland-kwin"
        desk.run("gdbus", "wait", "--session", "--timeout", "20", "org.kde.KWin")

    def _call(self, path, method, *arguments):
        return self.desk.run("gdbus", "call", "--session", "-d", "org.kde.KWin", "-o", path, "-m",
                             method, *arguments)

    def go_to_desktop(self, number):
        if number > 1:
            self._call("/VirtualDesktopManager", "org.kde.KWin.VirtualDesktopManager.createDesktop",
                       str(number - 1), f"Desktop {number}")
        self._call("/KWin", "org.kde.KWin.setCurrentDesktop", str(number))
        wait_for(lambda: f"({number}," in self._call("/KWin", "org.kde.KWin.currentDesktop"),
                 "the desktop")

    def lay_over(self, title, frame, left, top):
        """By the user's hand, with the key for moving windows."""
        x, y = frame[0] + 90, frame[1] + 20
        self.desk.run("xdotool", "keydown", "super", "mousemove", str(x), str(y), "mousedown", "1",
                      "sleep", "0.2", "mousemove_relative", "20", "20", "sleep", "0.2", "mousemove",
                      str(left + 90), str(top + 20), "sleep", "0.2", "mouseup", "1", "keyup",
                      "super")


DESKTOPS = {"sway": SwayDesktop, "kwin_wayland": KWinDesktop}
