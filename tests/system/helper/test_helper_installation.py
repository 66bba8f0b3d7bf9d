"""The helper's own installation from the bundle, on a system of its own."""

from helper_container import HelperContainerTest


class HelperInstallationTest(HelperContainerTest):
    checks = "helper_installation_checks.InstallationChecks"
    is_packaged = False

    def test_installed_files_are_roots_and_the_bus_starts_the_helper(self):
        self.check("install")

    def test_installed_helper_serves_the_user_in_front(self):
        self.check("install_for_a_user")

    def test_installing_twice_is_like_installing_once(self):
        self.check("install_twice")

    def test_replacing_ends_the_running_helper_and_starts_the_new_one(self):
        self.check("replace")

    def test_replacing_puts_back_first(self):
        self.check("replace_with_turbo_off")

    def test_removing_ends_the_running_helper_and_leaves_nothing(self):
        self.check("remove")

    def test_removing_what_is_not_there_succeeds(self):
        self.check("remove_what_is_not_there")

    def test_installed_helper_removes_itself(self):
        self.check("installed_one_removes_itself")

    def test_removing_beside_a_package_leaves_the_package(self):
        self.check("packaged_later")

    def test_failure_half_way_leaves_nothing(self):
        self.check("half_way")

    def test_full_disk_leaves_nothing(self):
        self.check("full_disk")

    def test_user_is_told_that_root_has_to_do_it(self):
        self.check("not_root")

    def test_pkexec_installs_and_removes(self):
        self.check("pkexec")

    def test_pkexec_of_a_user_who_may_not_changes_nothing(self):
        self.check("pkexec_of_a_user")

    def test_pkexec_of_a_user_who_may_installs(self):
        self.check("pkexec_of_an_administrator")

    def test_environment_and_umask_of_the_caller_do_not_count(self):
        self.check("environment")


class PackagedHelperInstallationTest(HelperContainerTest):
    checks = "helper_installation_checks.InstallationChecks"

    def test_packaged_helper_is_not_installed_over(self):
        self.check("packaged")

    def test_packaged_helper_is_not_removed(self):
        self.check("packaged_removal")
