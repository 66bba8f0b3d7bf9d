"""The built helper: its names, and its installation as a distribution's package brings it."""

import os
import pathlib
import shutil
import subprocess

from desktop import PROGRAMS

NAME = "com.TarnwickStudios.quorvane.helper"
PATH = "/com/TarnwickStudios/quorvane/helper"
UNIT = NAME + ".service"
BUILT = os.path.join(PROGRAMS, NAME)
BUILD = os.path.dirname(os.environ["QUORVANE_APP"])
PACKAGED = "/usr/lib/" + NAME
INSTALLED = "/usr/local/lib/" + NAME
RUNTIME = "/run/" + NAME
JOURNAL = RUNTIME + "/putting-back.journal"
LOADED = RUNTIME + "/loaded"
STAGED = "/var/cache/quorvane-package"  # in a container
CONFIGURATION = "/tmp/CPUTuneTurboBoostRT.conf"
CPU_TUNE = "CPUTune.kext"
DISABLE_TURBO = "DisableTurboBoost.64bits.kext"

# {path: mode} of everything that a package brings.
PACKAGE = {
    f"{PACKAGED}/{NAME}": 0o755,
    f"{PACKAGED}/{CPU_TUNE}/Contents/Info.plist": 0o644,
    f"{PACKAGED}/{DISABLE_TURBO}/Contents/Info.plist": 0o644,
    f"/usr/lib/systemd/system/{UNIT}": 0o644,
    f"/usr/share/dbus-1/system-services/{UNIT}": 0o644,
    f"/usr/share/dbus-1/system.d/{NAME}.conf": 0o644,
    f"/usr/share/polkit-1/actions/{NAME}.policy": 0o644,
}

# The same, of an installation from the bundle.
INSTALLATION = {
    f"{INSTALLED}/{NAME}": 0o755,
    f"{INSTALLED}/{CPU_TUNE}/Contents/Info.plist": 0o644,
    f"{INSTALLED}/{DISABLE_TURBO}/Contents/Info.plist": 0o644,
    f"/usr/local/lib/systemd/system/{UNIT}": 0o644,
    f"/usr/local/share/dbus-1/system-services/{UNIT}": 0o644,
    f"/etc/dbus-1/system.d/{NAME}.conf": 0o644,
    f"/usr/share/polkit-1/actions/{NAME}.policy": 0o644,
}

SOURCES = str(pathlib.Path(__file__).resolve().parents[3])

# What the installed files are made of; "@FOLDER@" is filled in.
MADE_OF = {
    f"{INSTALLED}/{NAME}": BUILT,
    f"{INSTALLED}/{CPU_TUNE}/Contents/Info.plist":
        f"{SOURCES}/resources/{CPU_TUNE}/Contents/Info.plist",
    f"{INSTALLED}/{DISABLE_TURBO}/Contents/Info.plist":
        f"{SOURCES}/resources/{DISABLE_TURBO}/Contents/Info.plist",
    f"/usr/local/lib/systemd/system/{UNIT}": f"{SOURCES}/packaging/helper/systemd/{UNIT}",
    f"/usr/local/share/dbus-1/system-services/{UNIT}":
        f"{SOURCES}/packaging/helper/dbus-1/system-services/{UNIT}",
    f"/etc/dbus-1/system.d/{NAME}.conf": f"{SOURCES}/packaging/helper/dbus-1/system.d/{NAME}.conf",
    f"/usr/share/polkit-1/actions/{NAME}.policy":
        f"{SOURCES}/packaging/helper/polkit-1/actions/{NAME}.policy",
}


def install(root, prefix=None, umask=0o022):
    """What a packager does. Returns what went wrong, or nothing."""
    command = ["cmake", "--install", BUILD, "--component", "helper"]
    if prefix:
        command += ["--prefix", prefix]
    done = subprocess.run(command, env=dict(os.environ, DESTDIR=root), capture_output=True,
                          text=True, check=False, umask=umask)
    return done.stdout + done.stderr if done.returncode else None


def stage(folder):
    """As a package is unpacked: everything below this folder instead of /."""
    error = install(folder)
    assert error is None, error


def unpack(folder, root="/"):
    """Puts what was staged onto a system."""
    shutil.copytree(folder + "/usr", root + "/usr", dirs_exist_ok=True)


def files_below(folder):
    """{path from there on: mode} of everything that is no folder."""
    found = {}
    for place, _, names in os.walk(folder):
        for name in names:
            path = os.path.join(place, name)
            found[path.removeprefix(folder)] = os.lstat(path).st_mode & 0o7777
    return found
