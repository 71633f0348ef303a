"""What a round of the campaign writes down: each step, and each finding with its evidence.

The folder of a round holds "steps.jsonl", a line a step, and a folder for each finding, named by
the number of its step, with the words of the finding and what was there to see.
"""

import json
import pathlib
import re
import shutil
import sys
import time


class Journal:
    def __init__(self, folder, seed, is_chatty):
        self.folder = pathlib.Path(folder)
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        self.seed = seed
        self.is_chatty = is_chatty
        self.file = open(self.folder / "steps.jsonl", "w", encoding="utf-8")
        self.findings = []
        self.counts = {}
        self.step_number = 0
        self.name = ""
        self.seen = set()
        self.started = time.monotonic()

    def step(self, number, name, simulated, text):
        self.step_number, self.name = number, name
        self.counts[name] = self.counts.get(name, 0) + 1
        self.file.write(json.dumps({"step": number, "at": round(time.monotonic() - self.started, 2),
                                    "simulated": simulated, "name": name, "what": text}) + "\n")
        self.file.flush()
        if self.is_chatty:
            print(f"{number:5} {simulated} {name}: {text}", flush=True)

    def finding(self, kind, text, evidence=()):
        """One that differs only in numbers from an earlier one is counted, not told again."""
        key = (kind, re.sub(r"[0-9.]+", "#", text))
        is_new = key not in self.seen
        self.seen.add(key)
        self.findings.append((self.step_number, kind, text))
        self.file.write(json.dumps({"step": self.step_number, "finding": kind, "what": text}) + "\n")
        self.file.flush()
        if not is_new:
            return
        print(f"FINDING seed {self.seed} step {self.step_number} ({self.name}) {kind}: {text}",
              flush=True, file=sys.stderr)
        title = kind.replace(" ", "-")
        place = self.folder / f"{self.step_number:05}-{title}-{len(self.seen)}"
        place.mkdir(exist_ok=True)
        (place / "finding.txt").write_text(text + "\n", encoding="utf-8")
        for name, content in evidence() if callable(evidence) else evidence:
            if isinstance(content, pathlib.Path):
                if content.exists():
                    shutil.copy(content, place / name)
            elif isinstance(content, bytes):
                (place / name).write_bytes(content)
            else:
                (place / name).write_text(content, encoding="utf-8", errors="replace")

    def close(self):
        self.file.write(json.dumps({"end": True, "steps": self.step_number, "counts": self.counts,
                                    "findings": len(self.findings)}) + "\n")
        self.file.close()
