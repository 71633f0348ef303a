"""The figures of one run: collected while it goes, printed once, as a table or as JSON.

What has a goal is a ratio to something else measured in the same run, or does not depend on how fast
the machine is: memory, wake-ups, counts.
"""

import json
import os
import pathlib
import platform
import sys
import time

_rows = []
_section = ""
# Milliseconds of a bare window's start here, the measure of this machine's speed.
_bare = None
# The same on the machine that the goals in milliseconds were set on (docs/cost.md).
BARE_REFERENCE = 30.0


def section(title):
    global _section
    _section = title
    print(f"{title} ...", file=sys.stderr, flush=True)


def row(name, value, unit, goal=None, note=""):
    """A figure; `goal` is the most it should be."""
    _rows.append({"section": _section, "name": name, "value": value, "unit": unit, "goal": goal,
                  "missed": goal is not None and value > goal, "note": note})


def ratio(name, value, other, goal=None, unit="ms", than=""):
    """A figure beside that of something else, of the same run; `goal` is the most of the quotient."""
    row(name, value / other, "x", goal, f"{value:.4g} {unit} beside {other:.4g} {than}".rstrip())


def add(rows):
    """Figures that another process has taken."""
    _rows.extend({**one, "section": _section} for one in rows)


def use_bare_start(milliseconds):
    global _bare
    _bare = milliseconds


def timed(name, milliseconds, goal_there):
    """A time, beside a bare window's start here; `goal_there` is its goal on the reference machine."""
    ratio(name, milliseconds, _bare, goal_there / BARE_REFERENCE, "ms", "ms, a bare start")


def machine():
    cpu = next((line.split(":")[1].strip() for line in
                pathlib.Path("/proc/cpuinfo").read_text().splitlines()
                if line.startswith("model name")), platform.machine())
    memory = int(pathlib.Path("/proc/meminfo").read_text().split()[1]) // (1024 * 1024)
    return (f"{os.cpu_count()} x {cpu}, {memory} GB, Linux {platform.release()}, load "
            f"{os.getloadavg()[0]:.2f}, {time.strftime('%Y-%m-%d')}")


def missed():
    return [one for one in _rows if one["missed"]]


def write_json(target):
    json.dump({"machine": machine(), "figures": _rows}, target, indent=1)
    target.write("\n")


def write_table(target):
    """In Markdown, as docs/cost.md has it."""
    target.write(f"{machine()}\n\n| figure | | | goal | |\n|---|---:|---|---:|---|\n")
    last = None
    for one in _rows:
        if one["section"] != last:
            last = one["section"]
            target.write(f"| **{last}** | | | | |\n")
        goal = "" if one["goal"] is None else f"{one['goal']:.3g}"
        remark = " ".join(filter(None, ["**missed**" if one["missed"] else "", one["note"]]))
        target.write(f"| {one['name']} | {one['value']:.4g} | {one['unit']} | {goal} | {remark} |\n")
    goals = sum(one["goal"] is not None for one in _rows)
    target.write(f"\n{goals - len(missed())} of {goals} goals met.\n")
