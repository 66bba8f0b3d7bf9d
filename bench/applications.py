#!/usr/bin/python3
"""Measures what pausing browsers costs and how fast it is, beside a script that does the same by
polling.

    applications [--switches COUNT] [--seconds COUNT] [--only PART ...]

Needs a process namespace of its own (bench/applications makes it).
"""

import argparse
import os
import pathlib
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "tests" / folder)
                for folder in ("system/support", "system/browsers", "fixtures")]

from applications import Chromium, Firefox, Screen, by_setsid  # noqa: E402
from desktop import Desktop, wait_until  # noqa: E402
from measuring import memory, wakeups_during  # noqa: E402

PEER = str(ROOT / "bench" / "polling_pauser.sh")
OTHER = "Event Tester"
PASS_SECONDS = 5
SETTLING = 15
MANUAL = 2
WINDOWS = (10, 100, 1000)
PROCESSES = 10_000
LIMIT = 60  # seconds to wait for anything


def new_desktop(**settings):
    desktop = Desktop().start(90)
    desktop.start_openbox()
    screen = Screen(desktop)
    desktop.spawn("xev", ["xev", "-event", "keyboard"])
    screen.bring_to_front(OTHER)
    desktop.set(QuorvaneAutoStartSetting=MANUAL, BrowserModuleActivated=True,
                AppNapModuleActivated=True, AppNapModuleTimeInterval=1000,
                BrightnessModuleActivated=False, **settings)
    return desktop, screen


def open_browsers(desktop, screen):
    browsers = [Chromium(desktop), Firefox(desktop)]
    for browser in browsers:
        by_setsid(desktop, browser.name, browser.command)
        screen.window(browser.title)
    screen.bring_to_front(OTHER)
    time.sleep(10)  # until they have come to rest
    return browsers


def processor_time(pid):
    """Milliseconds of the processor that the program's living threads have used."""
    total = 0
    for thread in os.listdir(f"/proc/{pid}/task"):
        try:
            with open(f"/proc/{pid}/task/{thread}/schedstat", encoding="ascii") as file:
                total += int(file.read().split()[0])
        except FileNotFoundError:
            pass
    return total / 1e6


def run_peer(desktop, seconds, action=lambda: None):
    """Milliseconds of the processor, and wake-ups, of the script and all that it started."""
    process = subprocess.Popen([PEER], env=desktop.env, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    action()
    time.sleep(seconds)
    process.terminate()
    _, _, usage = os.wait4(process.pid, 0)
    process.returncode = 0
    return (usage.ru_utime + usage.ru_stime) * 1000, usage.ru_nvcsw


def measure_switches(count):
    """From just before a stopped browser is brought to the front until all its processes run."""
    desktop, screen = new_desktop()
    try:
        browsers = open_browsers(desktop, screen)
        desktop.quorvane()
        desktop.set(QuorvaneActive=True)
        times = []
        for turn in range(count):
            browser = browsers[turn % len(browsers)]
            for each in browsers:
                wait_until(each.all_stopped, each.name + " stopped", LIMIT)
            window = screen.window(browser.title)
            began = time.monotonic()
            screen.run("xdotool", "windowactivate", window)
            wait_until(browser.none_stopped, browser.name + " running", LIMIT)
            times.append((time.monotonic() - began) * 1000)
            screen.bring_to_front(OTHER)
        desktop.quit()
        print(f"brought to the front until it runs, {count} switches: median "
              f"{statistics.median(times):.0f} ms, worst {max(times):.0f} ms", flush=True)
    finally:
        desktop.stop()


def measure_browsers(seconds):
    desktop, screen = new_desktop()
    try:
        browsers = open_browsers(desktop, screen)
        process = desktop.quorvane()
        desktop.set(QuorvaneActive=True)
        for each in browsers:
            wait_until(each.all_stopped, each.name + " stopped", LIMIT)
        time.sleep(PASS_SECONDS)
        before = processor_time(process.pid)
        wakes = wakeups_during(process.pid, lambda: time.sleep(seconds))
        used = processor_time(process.pid) - before
        sizes = memory(process.pid)
        print(f"two browsers stopped: {wakes * 60 / seconds:.0f} wake-ups a minute, "
              f"{used * 60 / seconds:.0f} ms of the processor a minute, PSS {sizes['pss']:.1f} MB, "
              f"unshareable {sizes['unshareable']:.1f} MB", flush=True)
        desktop.set(BrowserModuleControlChrome=False, BrowserModuleControlFirefox=False)
        for each in browsers:
            wait_until(each.none_stopped, each.name + " running", LIMIT)
        time.sleep(PASS_SECONDS)
        wakes = wakeups_during(process.pid, lambda: time.sleep(seconds))
        print(f"nothing stopped, the modules active: {wakes * 60 / seconds:.0f} wake-ups a minute",
              flush=True)
        desktop.quit()
        used, wakes = run_peer(desktop, seconds)
        print(f"the polling script, two browsers stopped: {wakes * 60 / seconds:.0f} wake-ups a "
              f"minute, {used * 60 / seconds:.0f} ms of the processor a minute", flush=True)
    finally:
        desktop.stop()


def cost_of_passes(desktop, seconds, what):
    desktop.set(QuorvaneActive=False)
    process = desktop.quorvane()
    time.sleep(SETTLING)  # it reads every window once
    before = processor_time(process.pid)
    time.sleep(seconds)
    idle = processor_time(process.pid) - before
    desktop.set(QuorvaneActive=True)
    time.sleep(PASS_SECONDS)
    before = processor_time(process.pid)
    time.sleep(seconds)
    used = processor_time(process.pid) - before
    unshareable = memory(process.pid)["unshareable"]
    desktop.set(QuorvaneActive=False)
    desktop.quit()
    peer, _ = run_peer(desktop, seconds)
    passes = seconds / PASS_SECONDS
    print(f"{what}: {(used - idle) / passes:.2f} ms a pass (unshareable memory "
          f"{unshareable:.1f} MB), the polling script {peer / passes:.0f} ms", flush=True)


def measure_passes(seconds):
    for count in WINDOWS:
        desktop, screen = new_desktop()
        try:
            sample = desktop.spawn("sample", [os.environ["QUORVANE_SAMPLE_WINDOWS"]],
                                   stdin=subprocess.PIPE)
            sample.stdin.write(f"many {count}\n".encode())
            sample.stdin.flush()
            wait_until(lambda n=count: len(screen.run("xprop", "-root", "_NET_CLIENT_LIST")
                                           .split(",")) >= n, f"{count} windows", LIMIT)
            cost_of_passes(desktop, seconds, f"{count} windows")
            if count == WINDOWS[-1]:
                desktop.spawn("crowd", ["sh", "-c", f"for i in $(seq {PROCESSES}); do sleep 100000 "
                                        "& done; wait"])
                wait_until(lambda: len(os.listdir("/proc")) > PROCESSES, "the processes", LIMIT)
                cost_of_passes(desktop, seconds, f"{count} windows, {PROCESSES} processes")
                measure_stop_in_a_crowd(desktop, screen)
        finally:
            desktop.stop()


def measure_stop_in_a_crowd(desktop, screen):
    browser = Firefox(desktop)
    by_setsid(desktop, browser.name, browser.command)
    screen.window(browser.title)
    screen.bring_to_front(OTHER)
    process = desktop.quorvane()
    time.sleep(10)
    before = processor_time(process.pid)
    desktop.set(QuorvaneActive=True)
    wait_until(browser.all_stopped, "stopped", LIMIT)
    time.sleep(1)
    print(f"a browser stopped among {PROCESSES} processes: "
          f"{processor_time(process.pid) - before:.0f} ms of the processor", flush=True)
    desktop.quit()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--switches", type=int, default=50, metavar="COUNT")
    parser.add_argument("--seconds", type=int, default=60, metavar="COUNT",
                        help="for which each cost is measured")
    parser.add_argument("--only", nargs="+", choices=["switches", "browsers", "passes"],
                        default=["switches", "browsers", "passes"])
    options = parser.parse_args()
    print(f"load average {os.getloadavg()[0]:.1f}", flush=True)
    if "switches" in options.only:
        measure_switches(options.switches)
    if "browsers" in options.only:
        measure_browsers(options.seconds)
    if "passes" in options.only:
        measure_passes(options.seconds)


main()
