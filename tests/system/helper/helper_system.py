"""What the checks inside of the container have in common: a laptop with a turbo switch and a
firmware profile, and the helper as a unit of the service manager."""

import os
import subprocess
import unittest

import power_attributes
from desktop import wait_until
from helper_callers import Bus
from helper_files import DISABLE_TURBO, LOADED, UNIT

USER = "plain"
PROFILES = "power-profiles-daemon.service"


def systemctl(*arguments):
    done = subprocess.run(["systemctl", *arguments], capture_output=True, text=True, check=False)
    assert done.returncode == 0, (arguments, done.stderr)
    return done.stdout.strip()


def add_user(name=USER):
    subprocess.run(["useradd", "--create-home", "--user-group", name], check=True)
    return name


def override(unit, text):
    """As an administrator changes a unit."""
    folder = f"/run/systemd/system/{unit}.d"
    os.makedirs(folder, exist_ok=True)
    with open(folder + "/test.conf", "w", encoding="ascii") as file:
        file.write("[Service]\n" + text)
    systemctl("daemon-reload")


class HelperSystem(unittest.TestCase):
    def setUp(self):
        power_attributes.set_up()
        systemctl("daemon-reload")
        systemctl("reload", "dbus.service")
        systemctl("restart", PROFILES)
        self.bus = Bus()
        self.found = power_attributes.snapshot()

    # --- the helper's process

    @staticmethod
    def process():
        """0 while none runs."""
        return int(systemctl("show", "--property=MainPID", "--value", UNIT))

    def wait_for_end(self, limit=20):
        """Of the unit: what runs after the helper has run as well."""
        wait_until(lambda: systemctl("show", "--property=ActiveState", "--value", UNIT)
                   in ("inactive", "failed"), "the helper's end", limit)
        self.assertFalse(self.bus.has_owner())

    # --- what it does

    def load(self, caller, name=DISABLE_TURBO):
        return caller.ask("LoadModuleNamed", name)

    def unload(self, caller, name=DISABLE_TURBO):
        return caller.ask("UnloadModuleNamed", name)

    def turn_turbo_off(self, caller):
        self.load(caller)
        self.assertTrue(power_attributes.is_turbo_off())

    def wait_for_turbo(self):
        wait_until(lambda: not power_attributes.is_turbo_off(), "turbo on again")

    def check_nothing_is_changed(self):
        self.assertEqual(power_attributes.snapshot(), self.found)
        self.assertFalse(os.path.exists(LOADED))
