"""The built helper: its names, and its installation as a distribution's package brings it."""

import os
import shutil
import subprocess
import tempfile

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


def install(root, prefix=None, umask=0o022):
    """What a packager does. Returns what went wrong, or nothing."""
    command = ["cmake", "--install", BUILD, "--component", "helper"]
    if prefix:
        command += ["--prefix", prefix]
    done = subprocess.run(command, env=dict(os.environ, DESTDIR=root), capture_output=True,
                          text=True, check=False, umask=umask)
    return done.stdout + done.stderr if done.returncode else None


def install_into(root):
    """Puts the packaged files onto a system whose root is not this one."""
    staged = tempfile.mkdtemp(prefix="quorvane-package-")
    try:
        error = install(staged)
        assert error is None, error
        shutil.copytree(staged + "/usr", root + "/usr", dirs_exist_ok=True)
    finally:
        shutil.rmtree(staged)


def files_below(folder):
    """{path from there on: mode} of everything that is no folder."""
    found = {}
    for place, _, names in os.walk(folder):
        for name in names:
            path = os.path.join(place, name)
            found[path.removeprefix(folder)] = os.lstat(path).st_mode & 0o7777
    return found
