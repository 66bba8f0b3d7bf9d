"""The resident program on a laptop whose brightness belongs to logind."""

import os
import re
import subprocess
import sys

from desktop import FIXTURES, wait_until
from resident import DIMMED, FOUND, ResidentSession

LOGIND = "org.freedesktop.login1"


def why_not():
    """Why logind cannot be run here, or nothing."""
    done = subprocess.run([sys.executable, os.path.join(FIXTURES, "laptop_services.py"),
                           "check-logind"], capture_output=True, text=True, check=False)
    return done.stderr.strip() if done.returncode else ""


class LogindTest(ResidentSession):
    def setUp(self):
        super().setUp()
        if why_not():
            self.skipTest("skipped: " + why_not())

    def prepare(self, desktop):
        desktop.spawn("system calls", [
            "dbus-monitor", "--address", desktop.env["DBUS_SYSTEM_BUS_ADDRESS"],
            "type='method_call',member='SetBrightness'", "type='error'"])
        desktop.start_systemd()
        self.start_logind()

    def start_in_session(self):
        """The program as a member of the session that the user is logged in with."""
        desktop = self.start(80)
        if not desktop.enter_session(desktop.processes["quorvane"].pid):
            self.skipTest("skipped: no cgroup2 to enter a session with")
        return desktop

    def start_logind(self):
        self.desktop.service("logind", "logind", self.desktop.laptop.root)
        wait_until(lambda: self.desktop.has_owner("system", LOGIND), "logind")

    def asked(self):
        """What the program has asked logind to set, in order; negative where it was refused."""
        log = self.desktop.log("system calls")
        refused = set(re.findall(r"^error .*-> destination=(\S+) .*reply_serial=(\d+)", log,
                                 re.MULTILINE))
        calls = re.findall(r"^method call .*sender=(\S+) .* serial=(\d+) (?:.*\n)+?   uint32 (\d+)$",
                           log, re.MULTILINE)
        return [-int(raw) if (caller, serial) in refused else int(raw)
                for caller, serial, raw in calls]

    def wait_for_calls(self, *expected):
        wait_until(lambda: self.asked() == list(expected),
                   f"the calls {expected}, they are {self.asked()}")

    def test_dimming_and_putting_back_go_through_logind(self):
        desktop = self.start_in_session()
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        desktop.set(QuorvaneActive=False)
        self.wait_for_brightness(FOUND)
        self.wait_for_calls(DIMMED, FOUND)

    def test_logind_stopped_and_started_again_goes_on_with_correct_state(self):
        desktop = self.start_in_session()
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        desktop.end("logind")
        wait_until(lambda: not desktop.has_owner("system", LOGIND), "logind's end")

        desktop.set(BrightnessModuleAmount=100)
        self.wait_for_brightness(630)
        self.wait_for_calls(DIMMED, -630)

        self.start_logind()
        self.settle()
        self.assertEqual(desktop.brightness, 630)
        desktop.set(QuorvaneActive=False)
        self.wait_for_brightness(FOUND)
        self.wait_for_calls(DIMMED, -630, FOUND)
        desktop.wait_for_empty_journal()
        self.assertIsNone(desktop.processes["quorvane"].poll())

    def test_logind_killed_while_the_mode_is_on_the_brightness_comes_back_all_the_same(self):
        desktop = self.start_in_session()
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        desktop.processes["logind"].kill()
        desktop.set(QuorvaneActive=False)
        self.wait_for_brightness(FOUND)
        desktop.wait_for_empty_journal()
