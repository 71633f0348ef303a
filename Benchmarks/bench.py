"""Runs all the benchmarks and prints one table, or JSON.

bench.py [--quick] [--json]      run by scripts/bench, which says what TAVRIN_BUILD is
"""

import sys
import traceback

import buildcost
import clipboard
import dock
import figures
import native
import painting
import readings
import services
import slots
import usage
import window

PARTS = (slots.bench, native.bench, painting.bench, dock.bench, usage.bench, clipboard.bench,
         services.bench, readings.bench, window.bench, buildcost.bench)


def main():
    quick = "--quick" in sys.argv
    failed = False
    for part in PARTS:
        try:
            part(quick)
        except Exception:  # one part that cannot run leaves the others their figures
            failed = True
            figures.row("could not be measured", 1, "", 0, part.__module__)
            traceback.print_exc()
    (figures.write_json if "--json" in sys.argv else figures.write_table)(sys.stdout)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
