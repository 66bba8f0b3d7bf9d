"""Tests of the helper on a system with systemd, a real bus, polkit, logind and
power-profiles-daemon: each in a container of its own, where a class of `helper_..._checks` goes
on."""

import os
import unittest

import helper_files
from container import Container

HERE = os.path.dirname(os.path.abspath(__file__))
LIMIT = 150  # seconds


class HelperContainerTest(unittest.TestCase):
    checks = ""  # module and class of what runs inside
    is_packaged = True

    def check(self, name):
        if os.environ.get("QUORVANE_SANITIZE"):
            self.skipTest("skipped: a sanitizer cannot work inside of the helper's sandbox")
        container = Container()
        self.addCleanup(container.stop)
        container.start()
        root = f"/proc/{container.leader}/root"
        helper_files.stage(root + helper_files.STAGED)
        if self.is_packaged:
            helper_files.unpack(root + helper_files.STAGED, root)
        container.unittest(HERE, f"{self.checks}.{name}", LIMIT)
