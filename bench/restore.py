#!/usr/bin/python3
"""Measures how soon what a dead run has left is put back, while no service of the machine answers.

    restore [--times COUNT]
"""

import argparse
import os
import pathlib
import signal
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "tests" / folder) for folder in ("system/support", "fixtures")]

from dead_run import FOUND, DeadRun  # noqa: E402
from desktop import PATIENCE, PROGRAMS  # noqa: E402
from fake_laptop import environment  # noqa: E402

PROGRAM = os.path.join(PROGRAMS, "quorvane")


def once(machine, *arguments):
    """Milliseconds from just before exec until the process runs again, until the display has its
    brightness again, and, for a run that ends by itself, until then. Looks every 0.2 ms."""
    machine.leave()
    desktop = machine.desktop
    brightness = os.path.join(desktop.laptop.sysfs, "class", "backlight", "intel_backlight",
                              "brightness")
    env = dict(desktop.env, **environment(desktop.laptop.root))
    conditions = {"process": machine.runs, "display": lambda: read(brightness) == str(FOUND)}
    seen = {}
    began = time.monotonic_ns()
    with subprocess.Popen([PROGRAM, *arguments], env=env, stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
        if arguments:
            conditions["end"] = lambda: process.poll() is not None
        while conditions.keys() - seen.keys():
            now = (time.monotonic_ns() - began) / 1e6
            for name, holds in conditions.items():
                if name not in seen and holds():
                    seen[name] = (time.monotonic_ns() - began) / 1e6
            if now > PATIENCE * 1000:
                process.kill()
                raise RuntimeError(f"waited {PATIENCE} s in vain, there was only {list(seen)}")
            time.sleep(0.0002)
        if process.poll() is None:
            process.send_signal(signal.SIGTERM)
    return seen


def read(path):
    with open(path, encoding="ascii") as file:
        return file.read().strip()


def measure_beside_services_to_start(times):
    """The runs of --restore, those of the program's start, and what --restore has started."""
    machine = DeadRun()
    try:
        machine.start()
        restores = [once(machine, "--restore") for _ in range(times)]
        started = sorted(set(machine.started()))
        return restores, [once(machine) for _ in range(times)], started
    finally:
        machine.stop()


def measure_beside_silent_upowerd(times):
    machine = DeadRun()
    try:
        machine.start(services={}).add_silent_upowerd()
        return ([once(machine, "--restore") for _ in range(times)],
                [once(machine) for _ in range(times)])
    finally:
        machine.stop()


def print_rows(what, restores, starts):
    for runs, name, measured in (
            (restores, "process", "--restore, the stopped process runs"),
            (restores, "display", "--restore, the display's brightness"),
            (restores, "end", "--restore, the end"),
            (starts, "process", "start of the program, the stopped process runs"),
            (starts, "display", "start of the program, the display's brightness")):
        figures = [run[name] for run in runs]
        print(f"{what}: {measured:50} {statistics.median(figures):7.1f} {max(figures):7.1f}")


def main():
    parser = argparse.ArgumentParser(prog="bench/restore")
    parser.add_argument("--times", type=int, default=20, metavar="COUNT",
                        help="how often each time is taken")
    times = parser.parse_args().times
    *absent, started = measure_beside_services_to_start(times)
    silent = measure_beside_silent_upowerd(times)
    print(f"load average {os.getloadavg()[0]:.1f}, {times} runs each, ms from exec: median, most")
    print_rows("no upowerd yet", *absent)
    print_rows("silent upowerd", *silent)
    print(f"services that --restore has started: {', '.join(started) or 'nothing'}")


if __name__ == "__main__":
    try:
        main()
    except (AssertionError, OSError, RuntimeError) as error:
        print(f"restore: {error}", file=sys.stderr)
        sys.exit(2)
