"""Quorvane in the session of the user in front, the packaged helper and logind, on a system of its
own that is suspended and resumed."""

from helper_container import HelperContainerTest


class HelperSleepTest(HelperContainerTest):
    checks = "helper_sleep_checks.SleepChecks"

    def test_turbo_is_back_before_the_machine_sleeps_and_off_again_when_it_wakes(self):
        self.check("mode_is_on")

    def test_mode_that_ends_while_the_machine_sleeps_leaves_turbo_on(self):
        self.check("mode_ends_while_asleep")

    def test_machine_that_sleeps_without_the_mode_keeps_turbo_on(self):
        self.check("mode_is_off")

    def test_program_killed_in_the_mode_turbo_is_back_before_the_machine_sleeps(self):
        self.check("program_killed")
