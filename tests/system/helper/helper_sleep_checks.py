"""What test_helper_sleep runs inside of its container: the resident program in the session of the
user in front, with the packaged helper, on a machine that is suspended by logind."""

import os
import pwd
import subprocess

import power_attributes
from desktop import PROGRAMS, wait_until
from helper_callers import Session
from helper_system import USER, HelperSystem, add_user, override, systemctl

SETTINGS = f"/home/{USER}/.config/com.TarnwickStudios.quorvane.conf"
RECORD = "/run/at-suspend"  # what the turbo switch held when the machine was about to sleep
UNIT = "resident.service"


class SleepChecks(HelperSystem):
    def setUp(self):
        super().setUp()
        # The container has no such switch, and nothing but a wait takes the place of the sleep.
        power_attributes.cover("/sys/power")
        power_attributes.write("/sys/power/state", "freeze mem")
        power_attributes.write("/sys/power/mem_sleep", "s2idle [deep]")
        override("systemd-suspend.service",
                 f"ExecStartPre=/bin/cp {power_attributes.NO_TURBO} {RECORD}\n"
                 "ExecStart=\nExecStart=/bin/sleep 1\n")
        add_user()
        self.session = Session(self, USER)
        self.set(False)
        self.as_user("systemd-run", "--quiet", "--collect", "--user", f"--machine={USER}@.host",
                     "--unit=" + UNIT, os.path.join(PROGRAMS, "quorvane"))
        self.addCleanup(self.end_program)

    @staticmethod
    def as_user(*command):
        done = subprocess.run(command, capture_output=True, text=True, check=False)
        assert done.returncode == 0, (command, done.stderr)
        return done.stdout.strip()

    def user_systemctl(self, *arguments):
        return self.as_user("systemctl", "--user", f"--machine={USER}@.host", *arguments)

    @staticmethod
    def end_program():
        """One that was killed is gone already."""
        subprocess.run(["systemctl", "--user", f"--machine={USER}@.host", "stop", UNIT],
                       capture_output=True, check=False)

    @staticmethod
    def set(is_active):
        """Edits the settings as the user would."""
        user = pwd.getpwnam(USER)
        folder = os.path.dirname(SETTINGS)
        os.makedirs(folder, exist_ok=True)
        os.chown(folder, user.pw_uid, user.pw_gid)
        with open(SETTINGS + ".new", "w", encoding="ascii") as file:
            file.write(f"[General]\nQuorvaneActive={str(is_active).lower()}\n"
                       "SplashWindowShown=true\nQuorvaneAutoStartSetting=2\n"
                       "TurboModuleActivated=true\nBrightnessModuleActivated=false\n")
        os.chown(SETTINGS + ".new", user.pw_uid, user.pw_gid)
        os.rename(SETTINGS + ".new", SETTINGS)

    def suspend(self):
        """Until the machine is awake again."""
        if os.path.exists(RECORD):
            os.remove(RECORD)
        systemctl("suspend")
        wait_until(lambda: os.path.exists(RECORD), "the suspend")
        wait_until(lambda: systemctl("show", "--property=ActiveState", "--value",
                                     "systemd-suspend.service") == "inactive", "the resume")

    def start_mode(self):
        """The program follows changes of its settings once it runs."""
        wait_until(lambda: self.user_systemctl("is-active", UNIT) == "active", "the program")
        wait_until(self.holds_sleep_lock, "the program's lock")
        self.set(True)
        wait_until(power_attributes.is_turbo_off, "turbo off")

    def holds_sleep_lock(self):
        return "uorvane" in self.as_user("systemd-inhibit", "--list", "--no-pager")

    def mode_is_on(self):
        self.start_mode()
        for _ in range(2):
            self.suspend()
            self.assertEqual(power_attributes.read(RECORD), "0")
            wait_until(power_attributes.is_turbo_off, "turbo off again")
        self.set(False)
        self.wait_for_turbo()

    def mode_ends_while_asleep(self):
        """The settings are another program's to change, also while ours waits."""
        self.start_mode()
        systemctl("suspend")
        wait_until(lambda: os.path.exists(RECORD), "the suspend")
        self.set(False)
        wait_until(lambda: systemctl("show", "--property=ActiveState", "--value",
                                     "systemd-suspend.service") == "inactive", "the resume")
        wait_until(self.holds_sleep_lock, "the lock that is taken after the resume")
        self.wait_for_turbo()

    def mode_is_off(self):
        wait_until(self.holds_sleep_lock, "the program's lock")
        self.suspend()
        self.assertEqual(power_attributes.read(RECORD), "0")
        wait_until(self.holds_sleep_lock, "the lock that is taken after the resume")
        self.assertFalse(power_attributes.is_turbo_off())

    def program_killed(self):
        self.start_mode()
        self.user_systemctl("kill", "--signal=KILL", UNIT)
        self.wait_for_turbo()
        self.suspend()
        self.assertEqual(power_attributes.read(RECORD), "0")
