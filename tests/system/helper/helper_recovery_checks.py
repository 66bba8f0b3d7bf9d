"""What test_helper_recovery runs inside of its container: however a caller or the helper ends, what
they have switched is put back."""

import os
import signal
import time

import power_attributes
from desktop import wait_until
from helper_callers import Session, root
from helper_files import JOURNAL, UNIT
from helper_system import PROFILES, HelperSystem, add_user, override, systemctl

IDLE = 60  # seconds after which the helper leaves
MORE_THAN_IDLE = IDLE + 10  # its timer may be some seconds late


class RecoveryChecks(HelperSystem):
    def kill(self):
        killed = self.process()
        os.kill(killed, signal.SIGKILL)
        wait_until(lambda: self.process() != killed, "the helper's end")

    def check_works(self):
        """The next call starts a helper that does its work."""
        caller = root(self)
        self.turn_turbo_off(caller)
        self.unload(caller)
        self.check_nothing_is_changed()

    # --- a caller ends

    def caller_killed(self):
        caller = Session(self, add_user()).caller
        self.turn_turbo_off(caller)
        helper = self.process()
        caller.kill()
        self.wait_for_turbo()
        wait_until(lambda: not os.path.exists(JOURNAL), "no journal")
        self.check_nothing_is_changed()
        self.assertEqual(self.process(), helper)

    def caller_killed_in_low_power_mode(self):
        caller = root(self)
        caller.ask("EnableLowPowerMode")
        wait_until(lambda: power_attributes.snapshot() != self.found, "the slow profile")
        caller.kill()
        wait_until(lambda: power_attributes.snapshot() == self.found, "the profile as found")

    def one_of_two_callers_killed(self):
        first, second = root(self), root(self)
        self.turn_turbo_off(first)
        self.load(second)
        first.kill()
        wait_until(lambda: not self.bus.has_owner(first.name), "the caller's end")
        second.ask("GetVersion")
        self.assertTrue(power_attributes.is_turbo_off())
        second.kill()
        self.wait_for_turbo()

    # --- the helper ends

    def helper_killed(self):
        caller = root(self)
        self.turn_turbo_off(caller)
        caller.ask("EnableLowPowerMode")
        self.kill()
        wait_until(lambda: power_attributes.snapshot() == self.found, "everything as found")
        wait_until(lambda: not os.path.exists(JOURNAL), "no journal")
        self.check_works()

    def helper_killed_without_the_daemon(self):
        systemctl("mask", "--runtime", "--now", PROFILES)
        caller = root(self)
        caller.ask("EnableLowPowerMode")
        self.assertEqual(power_attributes.read(power_attributes.PROFILE), "low-power")
        self.kill()
        wait_until(lambda: power_attributes.snapshot() == self.found, "the profile as found")

    def helper_stopped(self):
        caller = root(self)
        self.turn_turbo_off(caller)
        caller.ask("EnableLowPowerMode")
        systemctl("stop", UNIT)
        self.assertEqual(systemctl("show", "--property=Result", "--value", UNIT), "success")
        wait_until(lambda: power_attributes.snapshot() == self.found, "everything as found")
        self.check_nothing_is_changed()
        self.check_works()

    def killed_with_nothing_to_put_back(self):
        override(UNIT, "ExecStopPost=\n")
        self.turn_turbo_off(root(self))
        self.kill()
        self.wait_for_end()
        self.assertTrue(power_attributes.is_turbo_off())
        root(self).ask("GetVersion")
        self.assertFalse(power_attributes.is_turbo_off())
        self.check_nothing_is_changed()

    # --- somebody else switches meanwhile

    def changed_meanwhile(self):
        caller = root(self)
        self.turn_turbo_off(caller)
        power_attributes.write(power_attributes.NO_TURBO, "0")
        self.unload(caller)
        self.check_nothing_is_changed()

    def off_before(self):
        power_attributes.write(power_attributes.NO_TURBO, "1")
        caller = root(self)
        self.turn_turbo_off(caller)
        self.unload(caller)
        self.assertTrue(power_attributes.is_turbo_off())
        self.turn_turbo_off(caller)
        self.kill()
        self.wait_for_end()
        self.assertTrue(power_attributes.is_turbo_off())

    def changed_before_the_crash(self):
        systemctl("mask", "--runtime", "--now", PROFILES)
        root(self).ask("EnableLowPowerMode")
        power_attributes.write(power_attributes.PROFILE, "performance")
        self.kill()
        self.wait_for_end()
        self.assertEqual(power_attributes.read(power_attributes.PROFILE), "performance")
        self.assertFalse(os.path.exists(JOURNAL))

    # --- nothing is asked

    def idle(self):
        root(self).ask("GetVersion")
        first = self.process()
        self.wait_for_end(2 * MORE_THAN_IDLE)
        self.assertEqual(systemctl("show", "--property=Result", "--value", UNIT), "success")
        self.assertRegex(root(self).ask("GetVersion"), r"^\d+$")
        self.assertNotIn(self.process(), (0, first))

    def loaded(self):
        caller = root(self)
        self.turn_turbo_off(caller)
        helper = self.process()
        time.sleep(MORE_THAN_IDLE)
        self.assertEqual(self.process(), helper)
        self.assertTrue(power_attributes.is_turbo_off())
        self.unload(caller)
        self.check_nothing_is_changed()
