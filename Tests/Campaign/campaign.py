"""Days of twelve slots among services that die: see scripts/campaign."""

import argparse
import ctypes
import faulthandler
import os
import pathlib
import random
import signal
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "EndToEnd"))

INSIDE = "TAVRIN_CAMPAIGN_INSIDE"
# Of a day.
STEPS = 400
QUICK_SEED, QUICK_STEPS = 7, 45


def end_with_parent():
    """Who ends the campaign ends all that it has started."""
    parent_death_signal = 1
    ctypes.CDLL(None).prctl(parent_death_signal, signal.SIGKILL)


def enter():
    """Starts this program again where network, mounts and processes are its own. Where the machine
    does not allow it, it goes on as it is, and says what it leaves out."""
    new = ["unshare", "--net", "--mount", "--pid", "--fork", "--mount-proc", "--kill-child"]
    if os.geteuid() != 0:
        new[1:1] = ["--user", "--map-root-user"]
    if subprocess.run([*new, "true"], stderr=subprocess.DEVNULL).returncode != 0:
        print("Disk, zone and network stay as they are: this machine gives nobody his own.")
        return None
    # The shell collects the processes that others leave behind.
    script = ('mount -t tmpfs -o mode=1777 tmpfs /tmp && mkdir -p /tmp/.etc/new /tmp/.etc/work && '
              'mount -t overlay overlay -o lowerdir=/etc,upperdir=/tmp/.etc/new,'
              'workdir=/tmp/.etc/work /etc && "$@"; exit $?')
    return subprocess.run([*new, "sh", "-c", script, "sh", sys.executable, *sys.argv],
                          env={**os.environ, INSIDE: "1"}, preexec_fn=end_with_parent).returncode


def arguments():
    parser = argparse.ArgumentParser(prog="scripts/campaign", description=__doc__)
    parser.add_argument("hours", nargs="?", type=float, default=2.0)
    parser.add_argument("--seed", type=int, help="of the first day; each further day adds one")
    parser.add_argument("--steps", type=int, default=STEPS, help="of a day")
    parser.add_argument("--days", type=int, default=10**6, help="at most so many")
    parser.add_argument("--quick", action="store_true", help="one short day, always the same")
    parser.add_argument("--log", type=pathlib.Path, help="the folder for what is found")
    parser.add_argument("--verbose", action="store_true", help="print each step")
    return parser.parse_args()


def main():
    wanted = arguments()
    if not os.environ.get(INSIDE):
        status = enter()
        if status is not None:
            return status
    faulthandler.register(signal.SIGUSR1)
    from round import Round  # Its modules read the environment.
    from rig import BUILD
    is_inside = bool(os.environ.get(INSIDE))
    folder = wanted.log or BUILD / "campaign"
    seed = wanted.seed if wanted.seed is not None else random.SystemRandom().randrange(10**6)
    steps, days = wanted.steps, wanted.days
    if wanted.quick:
        steps, days = QUICK_STEPS, 1
        seed = QUICK_SEED if wanted.seed is None else wanted.seed
    end = time.monotonic() + wanted.hours * 3600
    totals, findings, panels, started, day = {}, 0, set(), time.monotonic(), 0
    while day < days and time.monotonic() < end:
        tempfile.tempdir = None
        round_ = Round(seed + day, folder / f"seed-{seed + day}", wanted.verbose, is_inside,
                       is_inside)
        journal = round_.run(steps, steps == STEPS)
        panels |= round_.panels_used
        for name, count in journal.counts.items():
            totals[name] = totals.get(name, 0) + count
        findings += len(journal.findings)
        oracles = round_.oracles
        print(f"seed {seed + day}: {sum(journal.counts.values())} steps, "
              f"{round_.world.clock.passed / 3600:.1f} h set forward, "
              f"{(time.monotonic() - journal.started) / 60:.1f} min, "
              f"{oracles.tiles_compared} tiles compared, largest process {oracles.largest:.1f} MB, "
              f"{oracles.server_waits} waits for the X server on a busy machine, "
              f"{len(round_.panels_used)} kinds' panels, {len(round_.ledger.copies)} copies, "
              f"{len(journal.findings)} findings", flush=True)
        day += 1
    counts = ", ".join(f"{count} {name}" for name, count in sorted(totals.items()))
    print(f"{day} days, {sum(totals.values())} steps in {(time.monotonic() - started) / 3600:.2f} h: "
          f"{counts}\nPanels of {len(panels)} kinds: {', '.join(sorted(panels))}\n"
          f"{findings} findings, in {folder}")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
