"""The user looks for updates, and the real PackageKit answers."""

import os
import subprocess
import unittest

from desktop import wait_until
from menu import click_item
from resident import ResidentSession

PACKAGE_KIT = "/usr/libexec/packagekitd"
SERVICE = "org.freedesktop.PackageKit"

# The daemon forgets its environment, and with it where the bus of the test is. Its database is for one
# daemon: another one that runs at the same time finds it locked, and ends or keeps silent.
SCRIPT = """
set -e
mkdir -p /run/dbus /var/lib/PackageKit
mount -t tmpfs tmpfs /run/dbus
mount -t tmpfs tmpfs /var/lib/PackageKit
ln -s "$1" /run/dbus/system_bus_socket
exec "$2"
"""


def why_not():
    """Why PackageKit cannot be run here, or nothing."""
    if not os.access(PACKAGE_KIT, os.X_OK):
        return "no packagekitd"
    done = subprocess.run(["unshare", "--mount", "true"], capture_output=True, check=False)
    return "" if done.returncode == 0 else "no mount namespaces"


class UpdatesTest(ResidentSession):
    def setUp(self):
        super().setUp()
        if why_not():
            self.skipTest("skipped: " + why_not())

    def prepare(self, desktop):
        desktop.spawn("polkit", ["/usr/bin/python3", "-m", "dbusmock", "--system",
                                 "--template", "polkitd"])
        wait_until(lambda: desktop.has_owner("system", "org.freedesktop.PolicyKit1"), "polkit")
        desktop.spawn("packagekit", ["unshare", "--mount", "--propagation", "private", "sh", "-c",
                                     SCRIPT, "sh", desktop.path("system.bus"), PACKAGE_KIT])
        wait_until(lambda: desktop.has_owner("system", SERVICE), "PackageKit")

    def test_copy_that_belongs_to_no_package_is_told_so(self):
        desktop = self.start(90)
        click_item(desktop, "Check For Updates")
        self.wait_for_titles("This copy of Quorvane is not updated by your system")

    def test_packagekit_that_is_killed_in_the_middle_is_no_harm(self):
        desktop = self.start(90)
        desktop.processes["packagekit"].kill()
        wait_until(lambda: not desktop.has_owner("system", SERVICE), "the end of PackageKit")
        click_item(desktop, "Check For Updates")
        self.wait_for_titles("Updates come with your system")
        self.assertIsNone(desktop.processes["quorvane"].poll())


if __name__ == "__main__":
    unittest.main()
