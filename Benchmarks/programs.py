"""What the benchmark program measures within one process."""

import json
import os
import pathlib
import re
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "Tests" / "EndToEnd"))
from rig import BUILD  # noqa: E402


def benchmarks(names, repetitions=5, environment=None, seconds=0.1):
    """The medians of the benchmarks of these names, as the library reports them, by name."""
    result = subprocess.run(
        [str(BUILD / "Benchmarks" / "TavrinBenchmarks"), "--benchmark_format=json",
         f"--benchmark_repetitions={repetitions}", f"--benchmark_min_time={seconds}",
         "--benchmark_filter=" + "|".join(f"^{name}(/|$)" for name in names)],
        env={**os.environ, **(environment or {})}, stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL, text=True, check=True)
    found = {}
    for one in json.loads(result.stdout)["benchmarks"]:
        if one.get("aggregate_name") == "median":
            # How it was run stands behind the name and the arguments.
            found[re.sub(r"/(real_time|process_time|(repeats|iterations):\d+)", "",
                         one["run_name"])] = one
    return found
