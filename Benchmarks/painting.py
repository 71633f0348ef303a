"""What painting a tile costs."""

from figures import ratio, row, section
from programs import benchmarks


def bench(quick):
    section("Painting")
    found = benchmarks(("tickingTile", "wideTickingTile", "unchangedTile"), 3 if quick else 9)
    square, wide = found["tickingTile/128/2"], found["wideTickingTile"]
    area = wide["points"] / square["points"]
    row("a ticking tile of 128 points, at scale 2", square["cpu_time"], "us")
    ratio(f"a wide ticking tile, beside {area:.3g} times a square one: its area", wide["cpu_time"],
          square["cpu_time"] * area, 1, "us", "us")
    ratio("a tile that is asked for again unchanged, beside painting it",
          found["unchangedTile"]["cpu_time"], square["cpu_time"], 0.1, "us", "us")
