"""The program as a unit of the user's service manager, and browsers in scopes and services of the
same manager: each test in a container with a system of its own, where `user_manager_checks` goes
on."""

import os
import unittest

from container import Container

HERE = os.path.dirname(os.path.abspath(__file__))
LIMIT = 150  # seconds; a browser starts slowly in a copy of the machine


class UserManagerTest(unittest.TestCase):
    def check(self, name):
        container = Container()
        self.addCleanup(container.stop)
        container.start()
        self.assertEqual(container.run("systemctl", "start", "user@0.service").returncode, 0)
        sanitizers = [f"{key}={value}" for key, value in os.environ.items()
                      if key.endswith("SAN_OPTIONS")]
        container.unittest(HERE, f"user_manager_checks.UserManagerChecks.{name}", LIMIT,
                           sanitizers)

    def test_browsers_in_scopes_are_stopped_and_resumed(self):
        self.check("scopes")

    def test_browsers_in_services_are_stopped_and_resumed(self):
        self.check("services")

    def test_unit_killed_puts_everything_back_and_starts_again(self):
        self.check("unit_killed")

    def test_unit_stopped_leaves_nothing_stopped(self):
        self.check("unit_stopped")

    def test_autostart_entry_starts_no_second_copy(self):
        self.check("autostart")
