"""Callers and helpers that end in every way, on a system of its own."""

from helper_container import HelperContainerTest


class HelperRecoveryTest(HelperContainerTest):
    checks = "helper_recovery_checks.RecoveryChecks"

    def test_caller_killed_turbo_is_put_back(self):
        self.check("caller_killed")

    def test_caller_killed_the_profile_is_put_back(self):
        self.check("caller_killed_in_low_power_mode")

    def test_one_of_two_callers_killed_turbo_stays_off_for_the_other(self):
        self.check("one_of_two_callers_killed")

    def test_helper_killed_everything_is_put_back_and_the_next_one_works(self):
        self.check("helper_killed")

    def test_helper_killed_the_profile_of_the_firmware_is_put_back(self):
        self.check("helper_killed_without_the_daemon")

    def test_helper_stopped_everything_is_put_back_and_the_next_one_works(self):
        self.check("helper_stopped")

    def test_helper_killed_and_nothing_runs_after_it_the_next_start_puts_back(self):
        self.check("killed_with_nothing_to_put_back")

    def test_value_that_somebody_changed_meanwhile_is_left_alone(self):
        self.check("changed_meanwhile")

    def test_turbo_that_was_off_before_stays_off(self):
        self.check("off_before")

    def test_value_that_somebody_changed_before_a_crash_is_left_alone(self):
        self.check("changed_before_the_crash")


class HelperIdleTest(HelperContainerTest):
    """These wait as long as the helper does."""

    checks = "helper_recovery_checks.RecoveryChecks"

    def test_helper_leaves_after_an_idle_minute_and_is_started_again(self):
        self.check("idle")

    def test_helper_stays_while_something_is_loaded(self):
        self.check("loaded")
