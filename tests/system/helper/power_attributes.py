"""The kernel's power switches on a machine that has none: files in the places of the attributes,
in this process's mount namespace. Only for a container or a private machine."""

import os
import subprocess

PROCESSORS = "/sys/devices/system/cpu"
NO_TURBO = PROCESSORS + "/intel_pstate/no_turbo"
BOOST = PROCESSORS + "/cpufreq/boost"
PROFILE = "/sys/firmware/acpi/platform_profile"


def read(path):
    with open(path, encoding="ascii") as file:
        return file.read().strip()


def write(path, value):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="ascii") as file:
        file.write(value + "\n")
    os.chmod(path, 0o644)


def is_turbo_off():
    return read(NO_TURBO) == "1"


def cover(folder):
    """With an empty folder of our own; a container's /sys lacks some."""
    if not os.path.isdir(folder):
        subprocess.run(["mount", "-o", "remount,rw", "/sys"], check=True)
        os.mkdir(folder)
        subprocess.run(["mount", "-o", "remount,ro", "/sys"], check=True)
    subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=0755", "tmpfs", folder], check=True)


def set_up():
    """Turbo is on, and the firmware is balanced."""
    cover(PROCESSORS)
    cover("/sys/firmware")
    write(NO_TURBO, "0")
    write(PROFILE + "_choices", "low-power balanced performance")
    write(PROFILE, "balanced")


def snapshot():
    """Everything that could be switched: {path: value}."""
    return {path: read(path) for path in (NO_TURBO, PROFILE)}
