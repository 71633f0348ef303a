"""What the command costs on a Dock of 500 tiles, and a backup of the workspace."""

import json
import subprocess

from slots import BUILD, row

LIMITS = {
    "showDockOf500": ("tavrin dock show, 500 tiles, whole process", 50),
    "changeDockOf500": ("tavrin dock move, 500 tiles, whole process", 50),
    "backUpWithFortyKept": ("a backup of the workspace, forty kept", 20),
}


def main():
    result = subprocess.run(
        [str(BUILD / "Benchmarks" / "TavrinBenchmarks"), "--benchmark_format=json",
         "--benchmark_repetitions=5", "--benchmark_filter=" + "|".join(LIMITS)],
        capture_output=True, text=True, check=True)
    print("Dock")
    for one in json.loads(result.stdout)["benchmarks"]:
        if one.get("aggregate_name") == "median":
            name, limit = LIMITS[one["run_name"].split("/")[0]]
            row(name, one["real_time"], "ms", limit)


if __name__ == "__main__":
    main()
