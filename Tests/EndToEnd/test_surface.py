"""What shows the tiles where no window manager has a place for a strip, and the compositor no layer
shell: sway through XWayland, with the toolkit kept off its layer shell."""

import json
import shutil
import unittest

from desks.compositors import start_sway
from rig import BUILD, Desk, wait_for, widget

TAVRIN = str(BUILD / "bin" / "tavrin")
WATCHER = "org.kde.StatusNotifierWatcher"


@unittest.skipUnless(shutil.which("sway") and shutil.which("Xwayland"), "sway is not installed")
class Sway(unittest.TestCase):
    def setUp(self):
        self.desk = Desk(window_manager=False)
        self.addCleanup(self.desk.close)
        self.desk.spawn(["/usr/bin/python3", "-m", "dbusmock", "--session", "--template",
                         "notification_daemon"], log="notices.log")
        self.desk.run("gdbus", "wait", "--session", "--timeout", "20",
                      "org.freedesktop.Notifications")
        self.start_sway()

    def start_sway(self):
        folder = start_sway(self.desk, "xwayland force\n"
                            "exec sh -c 'xhost +local:; echo $DISPLAY > {folder}/display'\n",
                            self.addCleanup)
        told = folder / "display"
        self.desk.env["DISPLAY"] = wait_for(lambda: told.exists() and told.read_text().strip(),
                                            "sway's X server")
        self.desk.env["QT_QPA_PLATFORM"] = "xcb"

    def start_slots(self):
        self.desk.write_widgets([widget("note", {"text": "a"}, slot) for slot in (1, 2, 3)],
                                announce=False)
        slots = [self.desk.start_slot(slot) for slot in (1, 2, 3)]
        for slot in (1, 2, 3):
            self.desk.wait_for_name(slot)
        return slots

    def notices(self):
        log = (self.desk.home / "notices.log").read_text()
        return [line for line in log.splitlines() if " Notify " in line]

    def surface(self):
        items = json.loads(self.desk.run(TAVRIN, "doctor", "--json"))
        return next(item for item in items if item["topic"] == "surface")

    def start_tray(self):
        self.desk.spawn(["/usr/bin/python3", "-m", "dbusmock", "--session", WATCHER,
                         "/StatusNotifierWatcher", WATCHER], log="tray.log")
        self.desk.run("gdbus", "wait", "--session", "--timeout", "20", WATCHER)
        self.desk.run("gdbus", "call", "--session", "-d", WATCHER, "-o", "/StatusNotifierWatcher",
                      "-m", "org.freedesktop.DBus.Mock.AddMethod", WATCHER,
                      "RegisterStatusNotifierItem", "s", "", "")

    def has_no_windows(self, slots):
        return not any(self.desk.windows(slot.pid) for slot in slots)

    def test_the_tray_is_taken_nothing_lies_over_the_screen_and_one_notice_says_why(self):
        self.start_tray()
        slots = self.start_slots()

        def items():
            return (self.desk.home / "tray.log").read_text().count("RegisterStatusNotifierItem ")
        wait_for(lambda: items() >= len(slots), "three tray icons")
        wait_for(self.notices, "the notice")
        self.assertTrue(self.has_no_windows(slots))
        said = self.surface()
        self.assertEqual(said["state"], "limited")
        self.assertIn("tray", said["sentence"])
        self.assertIn(said["sentence"], self.notices()[0])
        # The same desktop, another day: that was told.
        for slot in slots:
            slot.terminate()
            slot.wait()
        before = items()
        self.start_slots()
        wait_for(lambda: items() >= before + 3, "the icons again")
        self.assertEqual(len(self.notices()), 1)

    def test_without_a_tray_the_tiles_are_pictures_and_a_wish_is_granted(self):
        slots = self.start_slots()
        wait_for(lambda: all(self.desk.picture(slot).exists() for slot in (1, 2, 3)), "pictures")
        wait_for(self.notices, "the notice")
        self.assertTrue(self.has_no_windows(slots))
        for slot in slots:
            slot.terminate()
            slot.wait()
        self.desk.env["TAVRIN_SURFACE"] = "strip"
        self.assertEqual(self.surface()["state"], "good")
        slots = self.start_slots()
        wait_for(lambda: all(self.desk.windows(slot.pid) for slot in slots), "all tiles")
        for slot in slots:
            for _, _, _, width, height in self.desk.windows(slot.pid):
                self.assertLessEqual(max(width, height), 52, "laid over the screen")


if __name__ == "__main__":
    unittest.main()
