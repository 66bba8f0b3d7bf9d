#!/usr/bin/python3
"""Measures what Quorvane costs, beside other programs that watch a battery.

    footprint [--only PROGRAM ...] [--starts COUNT]

Ends with 1 when Quorvane is above one of its budgets, with 2 when something could not be measured.
"""

import argparse
import dataclasses
import glob
import os
import pathlib
import signal
import sys
import time
import typing

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "tests" / folder) for folder in ("system/support", "fixtures")]

from desktop import NAME, PROGRAMS, Desktop, wait_until  # noqa: E402
from dimming import Dimming  # noqa: E402
from fake_laptop import environment  # noqa: E402
from measuring import (  # noqa: E402
    PanelSignals, median_of, memory, start_time, wakeups_during)

SETTLING = 10          # seconds after the start that count for nothing
SILENT_MINUTES = 2     # one period of the slowest timer
REPORTING_MINUTES = 2
WATTS = 12             # what the laptop draws meanwhile
READINGS = range(89, 83, -1)  # percent, one every ten seconds


@dataclasses.dataclass
class Program:
    name: str
    command: list
    bus_name: typing.Optional[str]  # on the session bus, once it is ready
    needs_sysfs: bool = False       # reads the battery from /sys by itself
    note: str = ""
    on_battery: bool = True         # while it is measured


@dataclasses.dataclass
class Figure:
    name: str
    budget: typing.Optional[float]
    form: str = "{:.1f}"


FIGURES = {
    "pss": Figure("PSS, MB", 9.0),
    "unshareable": Figure("unshareable memory, MB", 1.8),
    "unshared": Figure("memory that nobody shares now, MB", None),
    "silent": Figure("wake-ups in a silent minute, the least", 0, "{:.0f}"),
    "polling": Figure("wake-ups in a silent minute, the most", None, "{:.0f}"),
    "reporting": Figure("wake-ups in a minute of upowerd's reports", 6),
    "reading": Figure("wake-ups for a change that the kernel announces", None),
    "signals": Figure("signals to the panel, most for one reading", 2, "{:.0f}"),
    "unchanged": Figure("signals to the panel when nothing changed", 0, "{:.0f}"),
    "start": Figure("exec to name on the session bus, ms", 15.0),
    "dimming": Figure("UPower's signal to the last module, ms", 50.0),
}

PROGRAM_LIST = [
    Program("quorvane", [os.path.join(PROGRAMS, "quorvane")], NAME),
    Program("xfce4-power-manager", ["xfce4-power-manager", "--no-daemon"], "org.xfce.PowerManager",
            note="measured while charging: without the X extension DPMS, which Xvfb lacks, it "
                 "crashes as soon as the laptop is on battery", on_battery=False),
    Program("cbatticon", ["cbatticon"], None, needs_sysfs=True,
            note="owns no name; reads the battery from /sys every five seconds"),
]


def new_desktop():
    """A session of a plugged-in laptop, with room above the threshold."""
    desktop = Desktop().start(90)
    for xfconfd in glob.glob("/usr/lib/*/xfce4/xfconf/xfconfd"):
        desktop.spawn("xfconfd", [xfconfd])
        wait_until(lambda: desktop.has_owner("session", "org.xfce.Xfconf"), "xfconfd")
    return desktop


def silent_minutes(desktop, pid):
    """The wake-ups of each. UPower polls the battery by itself and tells of it even when nothing
    has changed, so it is stopped meanwhile."""
    upowerd = desktop.processes["upowerd"]
    upowerd.send_signal(signal.SIGSTOP)
    counts = [wakeups_during(pid, lambda: time.sleep(60)) for _ in range(SILENT_MINUTES)]
    upowerd.send_signal(signal.SIGCONT)
    return counts


def discharge(laptop, minutes):
    """The battery drains as a real one does: steadily, and the kernel announces nothing. It is
    upowerd that looks at it now and then, and tells of what it has found."""
    energy = int(laptop.get("BAT0", "energy_now"))
    for _ in range(60 * minutes):
        energy -= WATTS * 1_000_000 // 3600
        laptop.set("BAT0", "energy_now", energy)
        time.sleep(1)


def announced_readings(laptop):
    for percent in READINGS:
        laptop.charge(percent)
        time.sleep(10)


def measure_running(desktop, program):
    extra = environment(desktop.laptop.root) if program.needs_sysfs else {}
    process = desktop.spawn(program.name, program.command, extra)
    if program.bus_name:
        wait_until(lambda: desktop.has_owner("session", program.bus_name), program.bus_name)
    if program.on_battery:
        desktop.laptop.unplug()
    else:
        desktop.laptop.plug()
    time.sleep(SETTLING)
    silent = silent_minutes(desktop, process.pid)
    figures = {"silent": min(silent), "polling": max(silent)}
    time.sleep(SETTLING)  # UPower catches up
    figures["reporting"] = wakeups_during(
        process.pid, lambda: discharge(desktop.laptop, REPORTING_MINUTES)) / REPORTING_MINUTES
    figures["reading"] = wakeups_during(
        process.pid, lambda: announced_readings(desktop.laptop)) / len(READINGS)
    if process.poll() is not None:
        raise RuntimeError(f"{program.name} has ended: {desktop.log(program.name)}")
    figures.update(memory(process.pid))
    desktop.end(program.name)
    desktop.laptop.plug()
    return figures


def measure_signals(desktop):
    """What the panel is told while the percentage stands beside the icon: for each reading with
    another percentage, and while upowerd repeats itself."""
    desktop.set(MenuBarDisplayMode=1)
    process = desktop.quorvane()
    desktop.laptop.unplug()
    signals = PanelSignals(desktop.env["DBUS_SESSION_BUS_ADDRESS"])
    time.sleep(SETTLING)
    counts = []
    for percent in READINGS:
        counts.append(signals.during(lambda p=percent: desktop.laptop.charge(p)))
    unchanged = signals.during(lambda: desktop.laptop.announce("BAT0", "change"))
    assert process.poll() is None
    desktop.end("quorvane")
    desktop.laptop.plug()
    desktop.set(MenuBarDisplayMode=0)
    return {"signals": max(counts), "unchanged": unchanged}


def measure(program, starts):
    desktop = new_desktop()
    try:
        figures = measure_running(desktop, program)
        if program.bus_name:
            figures["start"] = median_of(
                starts, lambda: start_time(desktop, program.command, program.bus_name))
        if program.name == "quorvane":
            figures.update(measure_signals(desktop))
            figures["dimming"] = median_of(starts, Dimming(desktop).once)
        return figures
    finally:
        desktop.stop()


def verdict(figure, value):
    if value is None or figure.budget is None:
        return ""
    return "kept" if value <= figure.budget else "MISSED"


def cell(figure, value, own):
    """A figure, and for a peer how many times Quorvane's that is."""
    if value is None:
        return "-"
    text = figure.form.format(value)
    return f"{text} ({value / own:.1f}x)" if own else text


def print_table(results):
    own = results.get("quorvane", {})
    rows = [["", *results, "budget", ""]]
    for key, figure in FIGURES.items():
        rows.append([figure.name,
                     *(cell(figure, figures.get(key), None if name == "quorvane" else own.get(key))
                       for name, figures in results.items()),
                     "" if figure.budget is None else f"<= {figure.budget:g}",
                     verdict(figure, own.get(key))])
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    for row in rows:
        print("  ".join(text.ljust(width) for text, width in zip(row, widths)).rstrip())
    for program in PROGRAM_LIST:
        if program.note and program.name in results:
            print(f"{program.name}: {program.note}")


def print_machine():
    model = next((line.partition(":")[2].strip() for line in open("/proc/cpuinfo", encoding="utf-8")
                  if line.startswith("model name")), os.uname().machine)
    load = os.getloadavg()[0]
    print(f"{os.cpu_count()} x {model}, Linux {os.uname().release}, load average {load:.1f}")
    if load > 0.5:
        print("Other programs are busy here: the two times are longer than on an idle machine.")


def main():
    names = [program.name for program in PROGRAM_LIST]
    parser = argparse.ArgumentParser(prog="bench/footprint")
    parser.add_argument("--only", nargs="+", choices=names, default=names, metavar="PROGRAM")
    parser.add_argument("--starts", type=int, default=20, metavar="COUNT",
                        help="how often each time is taken; the median counts")
    options = parser.parse_args()
    print_machine()
    results = {}
    for program in (program for program in PROGRAM_LIST if program.name in options.only):
        print(f"measuring {program.name} for some six minutes", flush=True)
        results[program.name] = measure(program, options.starts)
    print()
    print_table(results)
    own = results.get("quorvane", {})
    return int(any(verdict(FIGURES[key], value) == "MISSED" for key, value in own.items()))


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (AssertionError, OSError, RuntimeError) as error:
        print(f"footprint: {error}", file=sys.stderr)
        sys.exit(2)
