"""How many files compile after a change to a header, of those that the build folder has built."""

import re
import subprocess

from figures import row, section
from programs import BUILD

# Headers, and below how many files a change to one should stay.
HEADERS = (("WaterSettings.h", 15), ("DockTile.h", 60))


def dependents():
    """The object files of each header, by its path."""
    listing = subprocess.run(["ninja", "-C", str(BUILD), "-t", "deps"], capture_output=True,
                             text=True, check=True).stdout
    found, target = {}, None
    for line in listing.splitlines():
        if match := re.match(r"(\S.*): #deps", line):
            target = match[1]
        elif line.startswith(" ") and target and target.endswith(".o"):
            found.setdefault(line.strip(), set()).add(target)
    return found


def bench(_quick):
    section("Building")
    found = dependents()
    everything = set().union(*found.values()) if found else set()
    row("files that the compiler is run for in a full build", len(everything), "")
    for name, limit in HEADERS:
        objects = set().union(*(files for header, files in found.items()
                                if header.endswith("/" + name)))
        row(f"after a change to {name}", len(objects), "", limit - 1)


if __name__ == "__main__":
    import sys

    import figures
    bench(False)
    figures.write_table(sys.stdout)
