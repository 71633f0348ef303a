"""The usage reader beside others on the same logs, in alternating rounds of one run.

usage.py [--quick] [HOME [ROUNDS]]    by itself; HOME/.claude/projects holds logs, otherwise some are
                                      made
"""

import json
import multiprocessing
import os
import pathlib
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import uuid

from figures import ratio, row, section, write_table
from programs import BUILD, benchmarks

KINDS = {"input_tokens": 60, "output_tokens": 900, "cache_creation_input_tokens": 4000,
         "cache_read_input_tokens": 160_000}
MODEL = "claude-sonnet-4-20250514"


def make_logs(home, megabytes, files):
    """Sessions as the tool logs them, a quarter of the lines with usage; gives the token total."""
    chance = random.Random(7)
    filler = "".join(chance.choice("abcdefghij, ") for _ in range(20_000))
    total, now = 0, time.time()
    for number in range(files):
        folder = home / ".claude" / "projects" / f"-home-u-project-{number % 12}"
        folder.mkdir(parents=True, exist_ok=True)
        moment = now - chance.random() * 9 * 86400
        left = megabytes * 1e6 / files * chance.lognormvariate(-0.125, 0.5)
        lines = []
        while left > 0:
            moment += chance.random() * 20
            stamp = time.strftime("%Y-%m-%dT%H:%M:%S", time.gmtime(moment))
            head = f'{{"timestamp":"{stamp}.250Z","uuid":"{uuid.UUID(int=chance.getrandbits(128))}",'
            if chance.random() < 0.25:
                used = {kind: chance.randrange(most) for kind, most in KINDS.items()}
                total += sum(used.values())
                text = filler[:chance.randrange(900, 1500)]
                line = (f'{head}"requestId":"req_{chance.getrandbits(60)}","type":"assistant",'
                        f'"message":{{"id":"msg_{chance.getrandbits(60)}","model":"{MODEL}",'
                        f'"role":"assistant","content":[{{"type":"text","text":"{text}"}}],'
                        f'"usage":{json.dumps(used, separators=(",", ":"))}}}}}\n')
            else:
                size = int(500 * 40 ** chance.random())
                line = (f'{head}"type":"user","message":{{"role":"user",'
                        f'"content":"{filler[:size]}"}}}}\n')
            lines.append(line)
            left -= len(line)
        (folder / f"{uuid.UUID(int=chance.getrandbits(128))}.jsonl").write_text("".join(lines))
    return total


def timed(command, output, environment):
    """Wall seconds, processor seconds and peak megabytes of a program to its end.

    The system counts what a process held before it became the program: this one stays small.
    """
    start = time.monotonic()
    with open(output, "wb") as target:
        process = subprocess.Popen(command, stdout=target, stderr=subprocess.DEVNULL,
                                   env={**os.environ, **environment})
        _, status, used = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    assert process.returncode == 0, f"{command[0]} gave {process.returncode}"
    return time.monotonic() - start, used.ru_utime + used.ru_stime, used.ru_maxrss / 1024


def native_ccusage():
    """The program itself where its launcher has brought one."""
    launcher = shutil.which("ccusage")
    if launcher is None:
        return None
    for folder in pathlib.Path(launcher).resolve().parents:
        if folder.name == "node_modules":
            return next((str(one) for one in folder.glob("@ccusage/ccusage-linux-*/bin/ccusage")
                         if os.access(one, os.X_OK)), launcher)
    return launcher


def bench_readers(home, rounds, expected):
    logs = home / ".claude" / "projects"
    size = sum(one.stat().st_size for one in logs.rglob("*.jsonl"))
    files = sum(1 for _ in logs.rglob("*.jsonl"))
    subprocess.run(["grep", "-rc", "nothing", str(logs)], stdout=subprocess.DEVNULL)  # into the cache
    scratch = pathlib.Path(tempfile.mkdtemp(prefix="tavrin-usage-"))
    readers = {"tavrin": [str(BUILD / "bin" / "tavrin"), "usage", "--days", "400", "--json"],
               "grep -c": ["grep", "-rc", '"usage"', str(logs)],
               "cat": ["sh", "-c", 'exec cat "$0"/*/*.jsonl', str(logs)]}
    if ccusage := native_ccusage():
        readers["ccusage"] = [ccusage, "daily", "--json", "--offline"]
    results = {name: [] for name in readers}
    environment = {"HOME": str(home), "TZ": "UTC", "XDG_DATA_HOME": str(scratch)}
    for _ in range(rounds):
        for name, command in readers.items():
            results[name].append(timed(command, scratch / "out", environment))
            if name == "tavrin" and expected is not None:
                found = json.loads((scratch / "out").read_text())["total"]["tokens"]
                assert found == expected, f"{found} tokens, there are {expected}"
    shutil.rmtree(scratch)
    section(f"Usage logs: {size / 1e9:.2f} GB in {files} files, {rounds} rounds")
    for name, measured in results.items():
        walls, processors, peaks = zip(*measured)
        row(f"{name}: whole process for a GB, the best", min(walls) / size * 1e12, "ms",
            note=f"processor {min(processors) / size * 1e12:.0f} ms")
        if name == "tavrin":
            row(f"{name}: peak memory", max(peaks), "MB", 40)
    for name, most in (("grep -c", (0.9, 1.2)), ("cat", (None, None)), ("ccusage", (0.5, None))):
        if name not in results:
            continue
        for index, what in ((0, "time"), (1, "processor time")):
            ratios = [one[index] / other[index]
                      for one, other in zip(results["tavrin"], results[name])]
            row(f"{what} beside {name}, median of the rounds", statistics.median(ratios), "x",
                most[index])


def bench_refreshes(home):
    found = benchmarks(("statOfEach", "refreshWithNothingNew", "refreshAfterAMegabyte"),
                       environment={"TAVRIN_USAGE_HOME": str(home)})
    times = {name: one["real_time"] for name, one in found.items()}
    ratio("a refresh with nothing new, beside a stat of each file", times["refreshWithNothingNew"],
          times["statOfEach"], 1.5, "ms", "ms")
    row("a refresh after a megabyte of new lines", times["refreshAfterAMegabyte"], "ms")


def bench(quick):
    run(None, 3 if quick else 9, (100, 100) if quick else (1000, 1000))


def run(home, rounds, amount=()):
    """Over the logs of a home, or over some that are made: megabytes, files."""
    expected, made = None, None
    if home is None:
        home = made = pathlib.Path(tempfile.mkdtemp(prefix="tavrin-logs-"))
        with multiprocessing.get_context("spawn").Pool(1) as pool:
            expected = pool.apply(make_logs, (home, *amount))
    try:
        bench_readers(home, rounds, expected)
        bench_refreshes(home)
    finally:
        if made:
            shutil.rmtree(made)


def main(arguments):
    words = [word for word in arguments if not word.startswith("--")]
    if not words:
        bench("--quick" in arguments)
    else:
        run(pathlib.Path(words[0]), int(words[1]) if len(words) > 1 else 9)
    write_table(sys.stdout)


if __name__ == "__main__":
    main(sys.argv[1:])
