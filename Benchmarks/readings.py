"""The system readings beside those of a peer, and what a sample costs.

Both are read at the same moments while the load on processors, memory and loopback varies; the
greatest difference of each is given as a share of its full scale.
"""

import json
import os
import pathlib
import re
import socket
import subprocess
import sys
import threading
import time

from figures import row, section, timed
from programs import BUILD, benchmarks

PERIOD = 2
LIMIT_PERCENT = 1
LIMIT_MICROSECONDS = 200
# Seconds of a step; of a processor, megabytes, and megabytes per second in each.
STEP = 5
LOADS = [(0.1, 50, 5), (0.9, 800, 150), (0.4, 300, 0), (1.0, 1500, 60), (0.0, 0, 300),
         (0.6, 2000, 20), (0.2, 100, 100), (0.0, 0, 0)]


def load(end):
    """Load that varies, in this process and its threads."""
    start = time.monotonic()

    def wanted():
        return LOADS[int((time.monotonic() - start) / STEP) % len(LOADS)]

    server = socket.create_server(("127.0.0.1", 0))
    receiver = socket.create_connection(server.getsockname())
    sender, _ = server.accept()

    def drain():
        while receiver.recv(1 << 20):
            pass

    threading.Thread(target=drain, daemon=True).start()
    block, kept = b"x" * 100_000, bytearray()
    while time.monotonic() < end:
        share, megabytes, rate = wanted()
        if len(kept) != megabytes << 20:
            kept = None
            kept = bytearray(os.urandom(4096)) * (megabytes << 8)
        slice_end = time.monotonic() + 0.05
        busy_end = time.monotonic() + 0.05 * share
        for _ in range(int(rate * 1e6 * 0.05 / len(block))):
            sender.sendall(block)
        while time.monotonic() < busy_end:
            pass
        time.sleep(max(0, slice_end - time.monotonic()))


def row_of(name, line):
    """The figures of the row of that name, or none: a row is a time, a name, figures."""
    words = line.split()
    return words[2:] if len(words) > 2 and words[1] == name else None


class Peer:
    """sar's reports; a line arrives the moment its samples are taken."""

    def __init__(self, count):
        environment = {**os.environ, "LC_ALL": "C", "S_TIME_FORMAT": "ISO", "S_COLORS": "never"}
        self.process = subprocess.Popen(
            ["stdbuf", "-oL", "sar", "-u", "ALL", "-r", "-n", "DEV", str(PERIOD), str(count)],
            env=environment, stdout=subprocess.PIPE, text=True)

    def moments(self, at_sample):
        """For each moment the fractions and bytes per second, and what `at_sample` gave."""
        total = int(re.search(r"MemTotal:\s+(\d+)", pathlib.Path("/proc/meminfo").read_text())[1])
        found, memory_is_next = {}, False
        for line in self.process.stdout:
            if line.startswith("Average"):
                continue
            if row := row_of("all", line):
                found = {"ours": at_sample(), "cpu": 1 - (float(row[-1]) + float(row[3])) / 100}
            elif "kbavail" in line:
                memory_is_next = True
            elif memory_is_next:
                found["memory"] = 1 - float(line.split()[2]) / total
                memory_is_next = False
            elif row := row_of("lo", line):
                found["down"], found["up"] = float(row[2]) * 1024, float(row[3]) * 1024
                yield found


def compare(seconds):
    count = int(seconds / PERIOD) + 1
    reader = subprocess.Popen([BUILD / "Tools" / "readings", "lo"], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, text=True, bufsize=1)

    def sample():
        reader.stdin.write("\n")
        figures = map(float, reader.stdout.readline().split())
        return dict(zip(("cpu", "memory", "down", "up"), figures))

    loader = subprocess.Popen([sys.executable, __file__, "--load", str(seconds + 3 * PERIOD)])
    try:
        # The first moment is where ours begins to count.
        moments = list(Peer(count).moments(sample))[1:]
    finally:
        for process in (loader, reader):
            process.kill()
            process.wait()
    section(f"Readings beside sar's, {len(moments)} moments in {seconds} s of varied load")
    if len(moments) < count - 1:
        raise RuntimeError(f"only {len(moments)} of {count} moments were read")
    for name in ("cpu", "memory", "down", "up"):
        values = [moment[name] for moment in moments]
        scale = 1 if name in ("cpu", "memory") else max(values)
        differences = sorted(abs(m[name] - m["ours"][name]) / scale * 100 for m in moments)
        row(f"{name}: greatest difference, of full scale", differences[-1], "%", LIMIT_PERCENT,
            f"load {min(values) / scale:.0%} to {max(values) / scale:.0%}")


def costs():
    """Medians of what a sample of each kind costs."""
    section("One sample of the system's readings")
    found = benchmarks(("activitySample", "networkSample", "batterySample"))
    for name, one in found.items():
        timed(f"{name.split('/')[0].removesuffix('Sample')}, processor time", one["cpu_time"] / 1000,
              LIMIT_MICROSECONDS / 1000)


def bench(quick):
    costs()
    compare(20 if quick else 60)


if __name__ == "__main__":
    load(time.monotonic() + float(sys.argv[2]))
