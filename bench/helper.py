#!/usr/bin/python3
"""Measures what root's program costs, beside power-profiles-daemon and a change through pkexec.

    helper [--times COUNT]

All of them run in a container with a system of its own: systemd, the bus, polkit, and files in the
place of the kernel's power switches.
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
                for folder in ("system/support", "system/helper", "fixtures")]

import helper_files  # noqa: E402
import power_attributes  # noqa: E402
from container import Container  # noqa: E402
from helper_files import DISABLE_TURBO, NAME, PATH, UNIT  # noqa: E402
from measuring import memory, wakeups_during  # noqa: E402

PROFILES = "net.hadess.PowerProfiles"
PROFILES_PATH = "/net/hadess/PowerProfiles"
PROFILES_UNIT = "power-profiles-daemon.service"
LIMIT = 600      # seconds
QUIET_TIME = 20  # seconds for which wake-ups are counted


class SystemBus:
    """A program of root's that asks the services."""

    def __init__(self):
        from gi.repository import Gio, GLib
        self.gio, self.glib = Gio, GLib
        self.bus = Gio.bus_get_sync(Gio.BusType.SYSTEM, None)

    def call(self, name, path, interface, method, signature="()", *arguments):
        return self.bus.call_sync(name, path, interface, method,
                                  self.glib.Variant(signature, arguments), None,
                                  self.gio.DBusCallFlags.NONE, 25000, None).unpack()

    def helper(self, method, *arguments):
        return self.call(NAME, PATH, NAME, method, "(" + "s" * len(arguments) + ")", *arguments)[0]

    def active_profile(self):
        return self.call(PROFILES, PROFILES_PATH, "org.freedesktop.DBus.Properties", "Get", "(ss)",
                         PROFILES, "ActiveProfile")

    def hold(self):
        return self.call(PROFILES, PROFILES_PATH, PROFILES, "HoldProfile", "(sss)", "power-saver",
                         "measured", "bench")[0]

    def release(self, cookie):
        self.call(PROFILES, PROFILES_PATH, PROFILES, "ReleaseProfile", "(u)", cookie)

    def process_of(self, name):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "GetConnectionUnixProcessID", "(s)", name)[0]


def milliseconds(action):
    began = time.monotonic_ns()
    action()
    return (time.monotonic_ns() - began) / 1e6


def print_times(what, times):
    print(f"{what}: median {statistics.median(times):.1f} ms, worst {max(times):.1f} ms",
          flush=True)


def first_reply(unit, ask):
    subprocess.run(["systemctl", "stop", unit], check=True)
    subprocess.run(["systemctl", "reset-failed", unit], check=False, capture_output=True)
    return milliseconds(ask)


def measure_start(bus, times):
    print_times("helper, start on demand to the first reply",
                [first_reply(UNIT, lambda: bus.helper("GetVersion")) for _ in range(times)])
    print_times("power-profiles-daemon, the same",
                [first_reply(PROFILES_UNIT, bus.active_profile) for _ in range(times)])


def switch_by_helper(bus):
    def switch():
        bus.helper("LoadModuleNamed", DISABLE_TURBO)
        assert power_attributes.is_turbo_off()
        bus.helper("UnloadModuleNamed", DISABLE_TURBO)
        assert not power_attributes.is_turbo_off()
    return milliseconds(switch)


def switch_by_profile(bus):
    def switch():
        cookie = bus.hold()
        assert power_attributes.read(power_attributes.PROFILE) == "low-power"
        bus.release(cookie)
        assert power_attributes.read(power_attributes.PROFILE) == "balanced"
    return milliseconds(switch)


def switch_by_pkexec():
    def switch():
        for value in ("1", "0"):
            subprocess.run(["pkexec", "sh", "-c",
                            f"echo {value} > {power_attributes.NO_TURBO}"], check=True)
    return milliseconds(switch)


def measure_switch(bus, times):
    print_times("helper, turbo off and on again", [switch_by_helper(bus) for _ in range(times)])
    print_times("power-profiles-daemon, a profile held and released",
                [switch_by_profile(bus) for _ in range(times)])
    print_times("pkexec and a shell, turbo off and on again",
                [switch_by_pkexec() for _ in range(times)])


def measure_memory(bus):
    bus.helper("LoadModuleNamed", DISABLE_TURBO)
    bus.active_profile()
    for name, bus_name in (("helper, holding turbo off", NAME),
                           ("power-profiles-daemon", PROFILES)):
        pid = bus.process_of(bus_name)
        count = wakeups_during(pid, lambda: time.sleep(QUIET_TIME))
        sizes = memory(pid)
        print(f"{name}: PSS {sizes['pss']:.1f} MB, unshareable {sizes['unshareable']:.1f} MB, "
              f"{count} wake-ups in {QUIET_TIME} s", flush=True)
    bus.helper("UnloadModuleNamed", DISABLE_TURBO)


def measure_report(bus, times):
    bus.helper("GetVersion")
    count = len([name for name in os.listdir("/proc") if name.isdigit()])
    before = processor_time()
    for _ in range(times):
        bus.helper("GetTaskPowerMetrics")
    print(f"helper, a report of {count} processes: {(processor_time() - before) / times:.1f} ms of "
          "the processor", flush=True)


def processor_time():
    """Milliseconds that the helper's control group has used so far."""
    with open(f"/sys/fs/cgroup/system.slice/{UNIT}/cpu.stat", encoding="ascii") as file:
        return next(int(line.split()[1]) for line in file if line.startswith("usage_usec")) / 1e3


def measure_inside(times):
    power_attributes.set_up()
    for command in (["systemctl", "daemon-reload"], ["systemctl", "reload", "dbus.service"],
                    ["systemctl", "restart", PROFILES_UNIT]):
        subprocess.run(command, check=True)
    bus = SystemBus()
    measure_start(bus, times)
    measure_switch(bus, times)
    measure_report(bus, min(times, 10))
    measure_memory(bus)


def measure(times):
    container = Container()
    try:
        container.start()
        root = f"/proc/{container.leader}/root"
        helper_files.stage(root + helper_files.STAGED)
        helper_files.unpack(root + helper_files.STAGED, root)
        done = container.run("/usr/bin/python3", "-B", __file__, "--inside", "--times", str(times),
                             timeout=LIMIT,
                             environment=["QUORVANE_APP=" + os.environ["QUORVANE_APP"]])
        print(done.stdout, end="")
        if done.returncode != 0:
            sys.exit(done.stderr)
    finally:
        container.stop()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--times", type=int, default=30, metavar="COUNT")
    parser.add_argument("--inside", action="store_true", help=argparse.SUPPRESS)
    options = parser.parse_args()
    if options.inside:
        measure_inside(options.times)
    else:
        print(f"load average {os.getloadavg()[0]:.1f}", flush=True)
        measure(options.times)


main()
