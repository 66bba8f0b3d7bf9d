"""A private machine whose polkit says yes to everybody, so that whatever a hostile caller sends
reaches the helper; and what has to be true of the helper after each attempt."""

import os
import re
import subprocess

from desktop import wait_until
from helper_files import DISABLE_TURBO
from helper_machine import POLKIT, Connection, HelperMachine

LOAD_CALLER = os.path.join(os.environ["QUORVANE_TEST_PROGRAMS"], "load_caller")
YES_POLKIT = os.path.join(os.environ["QUORVANE_TEST_PROGRAMS"], "yes_polkit")

# The distribution lets polkit's own user have the name, and nobody else.
POLICY = f"""<busconfig><policy user="root"><allow own="{POLKIT}"/></policy></busconfig>"""


class HostileMachine(HelperMachine):
    def setUp(self):
        super().setUp()
        with open("/etc/dbus-1/system.d/polkit.conf", "w", encoding="ascii") as file:
            file.write(POLICY)
        self.bus.call("ReloadConfig")
        self.spawn("polkit", [YES_POLKIT])
        wait_until(lambda: self.bus.has_owner(POLKIT), "polkit")
        self.user = Connection()
        self.user.ask("LoadModuleNamed", DISABLE_TURBO)
        self.user.ask("UnloadModuleNamed", DISABLE_TURBO)
        self.pid = self.helper()
        self.opened = self.descriptors()

    def descriptors(self):
        return len(os.listdir(f"/proc/{self.pid}/fd"))

    def check_unharmed(self):
        """It is the same process, answers, and holds no descriptor more than before."""
        wait_until(lambda: self.user.ask("GetVersion").isdigit(), "an answer")
        self.assertEqual(self.helper(), self.pid)
        wait_until(lambda: self.descriptors() <= self.opened, "as few descriptors as before")

    def unshared_memory(self):
        """kB that belong to the helper alone."""
        with open(f"/proc/{self.pid}/smaps_rollup", encoding="ascii") as file:
            return int(re.search(r"^Private_Dirty:\s+(\d+)", file.read(), re.MULTILINE).group(1))

    def start_load(self, count, window, rate, *call):
        """A process that asks; its standard input keeps it there."""
        process = subprocess.Popen([LOAD_CALLER, str(count), str(window), str(rate), *call],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.end_load, process)
        return process

    @staticmethod
    def end_load(process):
        if process.poll() is None:
            process.kill()
        process.wait()
        process.stdin.close()
        process.stdout.close()

    @staticmethod
    def answers(process):
        """(replies, refusals for want of room, other errors) once it has all of them."""
        return tuple(map(int, process.stdout.readline().split()))


def require_no_sanitizer(test, reason):
    if os.environ.get("QUORVANE_SANITIZE"):
        test.skipTest("skipped: " + reason)
