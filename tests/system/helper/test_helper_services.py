"""The packaged helper with a real polkitd and a real power-profiles-daemon that come and go, on a
private machine without a service manager."""

import os
import subprocess
import unittest

import power_attributes
from desktop import wait_until
from helper_callers import DENIED, stranger
from helper_files import DISABLE_TURBO
from helper_machine import POLKIT, Connection, HelperMachine
from late_profiles import LateProfiles

HELD = "low-power"


class PolkitTest(HelperMachine):
    def take_polkit_away(self):
        os.remove(f"/usr/share/dbus-1/system-services/{POLKIT}.service")
        self.bus.call("ReloadConfig")
        if self.bus.has_owner(POLKIT):
            self.kill_polkit()

    def test_polkit_restarted_between_commands_answers_as_before(self):
        caller, other = Connection(), stranger(self)
        for _ in range(3):
            caller.ask("LoadModuleNamed", DISABLE_TURBO)
            self.assertTrue(power_attributes.is_turbo_off())
            self.assertEqual(other.ask("UnloadModuleNamed", DISABLE_TURBO), DENIED)
            self.kill_polkit()
            caller.ask("UnloadModuleNamed", DISABLE_TURBO)
            self.check_nothing_is_changed()

    def test_no_polkit_nobody_may(self):
        self.take_polkit_away()
        for caller in (Connection(), stranger(self)):
            for command in (("LoadModuleNamed", DISABLE_TURBO), ("EnableLowPowerMode",),
                            ("GetTaskPowerMetrics",), ("GetVersion",)):
                self.assertEqual(caller.ask(*command), DENIED)
                self.check_nothing_is_changed()

    def test_polkit_gone_while_turbo_is_off_turbo_comes_back_with_the_callers_end(self):
        caller = Connection()
        caller.ask("LoadModuleNamed", DISABLE_TURBO)
        self.take_polkit_away()
        self.assertEqual(caller.ask("UnloadModuleNamed", DISABLE_TURBO), DENIED)
        self.assertTrue(power_attributes.is_turbo_off())
        caller.leave()
        wait_until(lambda: not power_attributes.is_turbo_off(), "turbo")

    def test_polkit_that_does_not_know_the_actions_not_even_root_may(self):
        os.remove("/usr/share/polkit-1/actions/com.TarnwickStudios.quorvane.helper.policy")
        self.assertEqual(Connection().ask("LoadModuleNamed", DISABLE_TURBO), DENIED)
        self.check_nothing_is_changed()


class PowerProfilesTest(HelperMachine):
    def setUp(self):
        super().setUp()
        self.start_profiles()
        self.caller = Connection()

    @staticmethod
    def profile():
        return power_attributes.read(power_attributes.PROFILE)

    def enable(self):
        self.assertIn("power-saver", self.caller.ask("EnableLowPowerMode"))
        wait_until(lambda: self.profile() == HELD, "the slow profile")

    def disable(self):
        self.caller.ask("DisableLowPowerMode")

    def wait_for_found(self):
        wait_until(lambda: self.profile() == "balanced", "the profile as found")

    @staticmethod
    def choose(profile):
        """What a desktop's own switch does."""
        subprocess.run(["/usr/bin/python3", "/usr/bin/powerprofilesctl", "set", profile],
                       check=True, stdout=subprocess.DEVNULL)

    @staticmethod
    def holds():
        return subprocess.run(["/usr/bin/python3", "/usr/bin/powerprofilesctl", "list-holds"],
                              check=True, capture_output=True, text=True).stdout

    def test_hold_is_taken_and_given_up(self):
        self.enable()
        self.assertIn("Low Power Mode", self.holds())
        self.disable()
        self.wait_for_found()
        self.assertNotIn("Low Power Mode", self.holds())

    def test_caller_leaves_the_hold_is_given_up(self):
        self.enable()
        self.caller.leave()
        self.wait_for_found()

    def test_daemon_restarted_while_held_is_held_again(self):
        self.enable()
        for _ in range(3):
            self.end("profiles")
            power_attributes.write(power_attributes.PROFILE, "balanced")
            self.start_profiles()
            wait_until(lambda: self.profile() == HELD, "the slow profile again")
        self.disable()
        self.wait_for_found()

    def test_user_chooses_another_profile_meanwhile_it_is_left_alone(self):
        self.enable()
        self.choose("performance")
        wait_until(lambda: self.profile() == "performance", "the user's profile")
        self.disable()
        self.caller.ask("GetVersion")
        self.assertEqual(self.profile(), "performance")
        self.enable()
        self.disable()
        wait_until(lambda: self.profile() == "performance", "the user's profile again")

    def test_user_chooses_another_profile_and_the_daemon_restarts_nothing_is_held(self):
        self.enable()
        self.choose("performance")
        wait_until(lambda: self.profile() == "performance", "the user's profile")
        self.end("profiles")
        self.start_profiles()
        self.caller.ask("GetVersion")
        self.assertNotIn("Low Power Mode", self.holds())
        self.assertEqual(self.profile(), "performance")

    def test_daemon_gone_giving_up_succeeds_all_the_same(self):
        self.enable()
        self.end("profiles")
        self.disable()
        self.start_profiles()
        self.assertRegex(self.caller.ask("GetVersion"), r"^\d+$")
        self.enable()

    def test_no_daemon_low_power_mode_goes_through_the_firmware(self):
        self.end("profiles")
        self.assertIn("platform_profile", self.caller.ask("EnableLowPowerMode"))
        self.assertEqual(self.profile(), HELD)
        self.disable()
        self.assertEqual(self.profile(), "balanced")


class LateProfilesTest(HelperMachine):
    def setUp(self):
        super().setUp()
        self.profiles = LateProfiles()
        self.addCleanup(self.profiles.stop)

    def hold_and_restart(self):
        """Until the hold is asked for anew, and not answered yet."""
        caller = Connection()
        caller.ask("EnableLowPowerMode")
        self.assertEqual(len(self.profiles.held), 1)
        self.profiles.disappear()
        self.profiles.is_late = True
        self.profiles.appear()
        wait_until(lambda: self.profiles.waiting, "the hold that is taken anew")
        return caller

    def test_hold_that_is_granted_after_it_was_given_up_is_given_back(self):
        caller = self.hold_and_restart()
        caller.ask("DisableLowPowerMode")
        self.profiles.answer()
        wait_until(lambda: not self.profiles.held, "nothing held")
        self.assertEqual(self.profiles.given, 2)

    def test_hold_given_up_and_taken_meanwhile_is_held_once(self):
        caller = self.hold_and_restart()
        caller.ask("DisableLowPowerMode")
        self.profiles.is_late = False
        caller.ask("EnableLowPowerMode")
        self.profiles.answer()
        wait_until(lambda: len(self.profiles.held) == 1, "one hold")
        caller.ask("DisableLowPowerMode")
        wait_until(lambda: not self.profiles.held, "nothing held")

    def test_daemon_that_ends_again_at_once_is_asked_when_it_is_back(self):
        caller = self.hold_and_restart()
        self.profiles.disappear()
        self.profiles.refuse()
        self.profiles.is_late = False
        caller.ask("GetVersion")
        self.profiles.appear()
        wait_until(lambda: len(self.profiles.held) == 1, "the hold")
        caller.ask("DisableLowPowerMode")
        wait_until(lambda: not self.profiles.held, "nothing held")


if __name__ == "__main__":
    unittest.main()
