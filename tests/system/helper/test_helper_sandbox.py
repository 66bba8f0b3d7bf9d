"""What the helper's unit takes from it, on a system of its own."""

from helper_container import HelperContainerTest


class HelperSandboxTest(HelperContainerTest):
    checks = "helper_sandbox_checks.SandboxChecks"

    def test_running_helper_has_no_capability_and_a_filter_of_system_calls(self):
        self.check("properties")

    def test_running_helper_can_write_to_the_kernel_and_its_own_folder_alone(self):
        self.check("writable_places")

    def test_program_in_the_helpers_place_reaches_nothing_else(self):
        self.check("attempts")

    def test_same_program_without_the_sandbox_reaches_everything(self):
        self.check("attempts_without_the_sandbox")
