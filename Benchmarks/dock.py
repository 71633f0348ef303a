"""What the command costs on a Dock of 500 tiles, and a backup of the workspace."""

from figures import section, timed
from programs import benchmarks

# Goals in milliseconds on the reference machine.
COMMANDS = {
    "showDockOf500": ("tavrin dock show, 500 tiles, whole process", 50),
    "changeDockOf500": ("tavrin dock move, 500 tiles, whole process", 50),
    "backUpWithFortyKept": ("a backup of the workspace, forty kept", 20),
}


def bench(quick):
    section("Dock")
    found = benchmarks(COMMANDS, 3 if quick else 5)
    for key, (name, goal) in COMMANDS.items():
        timed(name, found[key]["real_time"], goal)
