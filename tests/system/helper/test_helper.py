"""The helper as a distribution's package brings it, on a system of its own: its commands, and who
may give them."""

from helper_container import HelperContainerTest


class HelperTest(HelperContainerTest):
    checks = "helper_checks.HelperChecks"

    def test_first_call_starts_the_packaged_helper_as_a_unit(self):
        self.check("first_call")

    def test_turbo_is_off_while_its_extension_is_loaded(self):
        self.check("turbo")

    def test_turbo_follows_the_configuration_of_the_user_in_front(self):
        self.check("configuration")

    def test_configuration_of_another_user_does_not_count(self):
        self.check("configuration_of_another_user")

    def test_report_of_tasks_lists_the_caller(self):
        self.check("tasks")

    def test_low_power_mode_holds_a_profile_of_the_daemon(self):
        self.check("low_power_mode")

    def test_low_power_mode_goes_through_the_firmware_where_the_daemon_is_masked(self):
        self.check("low_power_mode_without_the_daemon")


class HelperAccessTest(HelperContainerTest):
    checks = "helper_checks.HelperChecks"

    def test_active_session_may_do_everything(self):
        self.check("active_session")

    def test_service_of_the_user_in_front_may_do_everything(self):
        self.check("own_service_manager")

    def test_user_without_a_session_may_do_nothing(self):
        self.check("outside_of_a_session")

    def test_process_outside_of_its_users_session_may_do_nothing(self):
        self.check("outside_of_a_session_that_is_there")

    def test_inactive_session_may_only_put_back(self):
        self.check("inactive_session")

    def test_session_that_has_gone_behind_ends_what_it_has_begun(self):
        self.check("session_that_goes_behind")

    def test_unprivileged_stranger_may_do_nothing(self):
        self.check("unprivileged_stranger")

    def test_root_may_do_everything(self):
        self.check("root_outside_of_any_session")

    def test_caller_ends_nothing_that_another_one_has_begun(self):
        self.check("caller_that_holds_nothing")

    def test_rule_of_an_administrator_decides_for_one_action(self):
        self.check("rule_of_an_administrator")
