"""What test_helper runs inside of its container: the commands, and who may give them."""

import os
import subprocess

import power_attributes
from desktop import PATIENCE, wait_until
from helper_callers import DENIED, Caller, Session, outside, root, stranger
from helper_files import CONFIGURATION, CPU_TUNE, DISABLE_TURBO, LOADED, NAME, PACKAGED, UNIT
from helper_system import PROFILES, HelperSystem, add_user, systemctl

# Each with what it needs to be understood.
SLOWING = (("LoadModuleNamed", DISABLE_TURBO), ("LoadModuleNamed", CPU_TUNE),
           ("EnableLowPowerMode",))
PUTTING_BACK = (("UnloadModuleNamed", DISABLE_TURBO), ("UnloadModuleNamed", CPU_TUNE),
                ("DisableLowPowerMode",))
SEEING = (("GetTaskPowerMetrics",),)
KNOWING = (("GetVersion",),)
EVERYTHING = (*SLOWING, *SEEING, *KNOWING, *PUTTING_BACK)


def held_profiles():
    done = subprocess.run(["busctl", "get-property", "net.hadess.PowerProfiles",
                           "/net/hadess/PowerProfiles", "net.hadess.PowerProfiles",
                           "ActiveProfileHolds"], capture_output=True, text=True, check=True)
    return done.stdout


def configure(text, owner):
    """Writes the run-time configuration as the user's program does."""
    subprocess.run(["setpriv", "--reuid=" + owner, "--regid=" + owner, "--init-groups", "sh", "-c",
                    f"umask 022; printf '%s' '{text}' > {CONFIGURATION}"], check=True)


class HelperChecks(HelperSystem):
    # --- the commands

    def first_call(self):
        self.assertFalse(self.bus.has_owner())
        self.assertEqual(self.process(), 0)
        self.assertRegex(root(self).ask("GetVersion"), r"^\d+$")
        self.assertEqual(systemctl("is-active", UNIT), "active")
        self.assertEqual(self.bus.process_of(), self.process())
        self.assertEqual(os.readlink(f"/proc/{self.process()}/exe"), f"{PACKAGED}/{NAME}")

    def turbo(self):
        caller = root(self)
        self.assertEqual(self.load(caller), f"{DISABLE_TURBO} 1.0: Turbo is off "
                         "(intel_pstate/no_turbo)")
        self.assertTrue(power_attributes.is_turbo_off())
        with open(LOADED, encoding="ascii") as file:
            self.assertIn("com.TarnwickStudios.disableturboboost (1.0)", file.read())
        self.assertEqual(self.unload(caller), f"{DISABLE_TURBO}: Turbo is as it was found "
                         "(intel_pstate/no_turbo)")
        self.check_nothing_is_changed()

    def configuration(self):
        caller = Session(self, add_user()).caller
        self.load(caller, CPU_TUNE)
        self.assertFalse(power_attributes.is_turbo_off())
        for text, is_off in (("0", True), ("1", False), ("0", True)):
            configure(text, "plain")
            wait_until(lambda: power_attributes.is_turbo_off() == is_off, f"turbo after {text!r}")
        self.unload(caller, CPU_TUNE)
        self.check_nothing_is_changed()

    def configuration_of_another_user(self):
        add_user("other")
        caller = Session(self, add_user()).caller
        configure("0", "other")
        self.load(caller, CPU_TUNE)
        self.assertFalse(power_attributes.is_turbo_off())
        os.remove(CONFIGURATION)
        configure("0", "plain")
        wait_until(power_attributes.is_turbo_off, "turbo off by the user in front")
        os.remove(CONFIGURATION)
        configure("0", "other")
        self.wait_for_turbo()

    def tasks(self):
        caller = root(self)
        lines = caller.ask("GetTaskPowerMetrics")
        self.assertTrue(lines[0].startswith("***"), lines[:3])
        wanted = f"python3  {caller.pid}".split()
        self.assertTrue(any(line.split()[:2] == wanted for line in lines), lines)

    def low_power_mode(self):
        caller = root(self)
        self.assertIn("power-saver", caller.ask("EnableLowPowerMode"))
        wait_until(lambda: power_attributes.read(power_attributes.PROFILE) == "low-power",
                   "the firmware's profile")
        self.assertIn("com.TarnwickStudios.quorvane", held_profiles())
        caller.ask("DisableLowPowerMode")
        wait_until(lambda: power_attributes.snapshot() == self.found, "the profile as found")
        self.assertNotIn("com.TarnwickStudios.quorvane", held_profiles())

    def low_power_mode_without_the_daemon(self):
        systemctl("mask", "--runtime", "--now", PROFILES)
        caller = root(self)
        self.assertIn("platform_profile", caller.ask("EnableLowPowerMode"))
        self.assertEqual(power_attributes.read(power_attributes.PROFILE), "low-power")
        caller.ask("DisableLowPowerMode")
        self.check_nothing_is_changed()

    # --- who may

    def check_may(self, caller, commands):
        for command in commands:
            self.assertNotIn("org.freedesktop.DBus.Error", str(caller.ask(*command)), command)

    def check_may_not(self, caller, commands):
        for command in commands:
            self.assertEqual(caller.ask(*command), DENIED, command)
            self.check_nothing_is_changed()

    def active_session(self):
        session = Session(self, add_user())
        self.check_may(session.caller, SLOWING)
        self.assertTrue(power_attributes.is_turbo_off())
        self.check_may(session.caller, (*SEEING, *KNOWING, *PUTTING_BACK))
        wait_until(lambda: power_attributes.snapshot() == self.found, "everything as found")

    def own_service_manager(self):
        """Where a desktop starts its programs as units."""
        session = Session(self, add_user())
        user = systemctl("show", "--property=UID", "--value", session.unit + ".service")
        caller = Caller(self, "systemd-run", "--quiet", "--pipe", "--collect", "--user",
                        "--machine=plain@.host", "--setenv=PYTHONDONTWRITEBYTECODE=1")
        with open(f"/proc/{caller.pid}/cgroup", encoding="ascii") as file:
            self.assertIn(f"/user@{user}.service/", file.read())
        self.check_may(caller, EVERYTHING)

    def outside_of_a_session(self):
        add_user()
        self.check_may_not(outside(self, "plain"), EVERYTHING)

    def outside_of_a_session_that_is_there(self):
        Session(self, add_user())
        self.check_may_not(outside(self, "plain"), EVERYTHING)

    def inactive_session(self):
        behind = Session(self, add_user())
        Session(self, add_user("other"))
        wait_until(lambda: not behind.is_active(), "the session behind")
        self.check_may_not(behind.caller, (*SLOWING, *SEEING))
        self.check_may(behind.caller, (*PUTTING_BACK, *KNOWING))
        behind.activate()
        self.check_may(behind.caller, SLOWING)

    def session_that_goes_behind(self):
        session = Session(self, add_user())
        self.turn_turbo_off(session.caller)
        Session(self, add_user("other"))
        wait_until(lambda: not session.is_active(), "the session behind")
        self.assertTrue(power_attributes.is_turbo_off())
        self.unload(session.caller)
        self.check_nothing_is_changed()

    def unprivileged_stranger(self):
        self.check_may_not(stranger(self), EVERYTHING)

    def root_outside_of_any_session(self):
        self.check_may(root(self), EVERYTHING)

    def caller_that_holds_nothing(self):
        mine, yours = Session(self, add_user()).caller, root(self)
        self.turn_turbo_off(mine)
        self.assertIn("Another program", self.unload(yours))
        self.assertTrue(power_attributes.is_turbo_off())
        self.unload(mine)
        self.check_nothing_is_changed()

    def rule_of_an_administrator(self):
        """One who lets a group of his slow the machine from anywhere."""
        add_user()
        caller = outside(self, "plain")
        self.check_may_not(caller, SLOWING)
        with open("/etc/polkit-1/rules.d/40-slow-down.rules", "w", encoding="ascii") as file:
            file.write("""polkit.addRule(function(action, subject) {
    if (action.id == "com.tarnwickstudios.quorvane.slow-down" && subject.user == "plain") {
        return polkit.Result.YES;
    }
});
""")
        wait_until(lambda: self.load(caller) != DENIED, "the rule", PATIENCE)
        self.assertTrue(power_attributes.is_turbo_off())
        self.assertEqual(caller.ask("GetTaskPowerMetrics"), DENIED)
