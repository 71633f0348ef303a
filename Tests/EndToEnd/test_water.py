"""Twelve water slots pour at once, each by the button in its own panel."""

import json
import os
import re
import shutil
import time
import unittest

from rig import BUILD, BUNDLES, DeskTest, widget

SLOTS = 12
POURS = int(os.environ.get("TAVRIN_POURS", "100"))
SECONDS = float(os.environ.get("TAVRIN_POUR_SECONDS", "10"))
GLASS = 50


class WaterSlots(DeskTest):
    display = False

    def start_slots(self):
        settings = {"glass": GLASS, "goal": 6000}
        self.desk.write_widgets([widget("water", settings, slot) for slot in range(1, SLOTS + 1)],
                                announce=False)
        start = time.time() + 6
        double = BUILD / "Tests" / "Linux" / "WaterDouble"
        processes = []
        for slot in range(1, SLOTS + 1):
            bundle = self.desk.home / f"Tavrin Slot {slot}.app"
            shutil.copytree(BUNDLES / bundle.name, bundle,
                            ignore=shutil.ignore_patterns("MacOS"))
            program = bundle / "Contents" / "MacOS" / "TavrinSlot"
            program.parent.mkdir()
            shutil.copy(double, program)
            env = {"POURS": str(POURS), "SECONDS": str(SECONDS), "START": str(start),
                   "QT_QPA_PLATFORM": "offscreen", "TAVRIN_SURFACE": "picture"}
            processes.append(self.desk.spawn([str(program)], log=f"slot{slot}.log", env=env))
        return processes, start

    def watch_file(self, processes):
        """Every state of the file that is seen is a whole document."""
        file = self.desk.data / "water.json"
        seen = 0
        while any(process.poll() is None for process in processes):
            if file.exists():
                log = json.loads(file.read_text())
                self.assertEqual(len(log["days"]), 1)
                seen += 1
            time.sleep(0.002)
        return seen, json.loads(file.read_text())["days"][0]["millilitres"]

    def test_no_pour_spoils_the_file_and_all_slots_agree(self):
        processes, _ = self.start_slots()
        seen, total = self.watch_file(processes)
        self.assertEqual([process.returncode for process in processes], [0] * SLOTS,
                         self.desk.log(1))
        logs = [self.desk.log(slot) for slot in range(1, SLOTS + 1)]
        pours = [float(t) for log in logs for t in re.findall(r"^poured ([0-9.]+)", log, re.M)]
        self.assertEqual(len(pours), SLOTS * POURS)
        # On a machine that is far too busy some are refused, and said to be.
        refused = sum(log.count("others keep changing it") for log in logs)
        self.assertEqual(total, (SLOTS * POURS - refused) * GLASS, "a pour was lost")
        latest = 0
        for log in logs:
            moment, shown = re.findall(r"^shows ([0-9.]+) (\d+)", log, re.M)[-1]
            self.assertEqual(int(shown), total)
            latest = max(latest, float(moment) - max(pours))
        self.assertLess(latest, 1)
        print(f"\n{seen} states read; {SLOTS * POURS} pours, none lost, {refused} refused, took "
              f"{max(pours) - min(pours):.1f} s; all slots agreed {latest:+.3f} s after the last")


if __name__ == "__main__":
    unittest.main()
