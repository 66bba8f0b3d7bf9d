"""What a distribution's package of the helper consists of."""

import os
import shutil
import subprocess
import tempfile
import unittest

from helper_files import (BUILT, INSTALLATION, INSTALLED, NAME, PACKAGE, PACKAGED, UNIT,
                          files_below, install)


class HelperPackagingTest(unittest.TestCase):
    def setUp(self):
        self.root = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.root)

    def text(self, path):
        with open(self.root + path, encoding="utf-8") as file:
            return file.read()

    def folder_modes(self):
        return {os.lstat(folder).st_mode & 0o777 for folder, _, _ in os.walk(self.root + "/usr")}

    def test_package_has_every_file_in_its_place(self):
        self.assertIsNone(install(self.root))
        self.assertEqual(files_below(self.root), PACKAGE)

    def test_package_made_under_any_umask_is_writable_by_root_alone(self):
        self.assertIsNone(install(self.root, umask=0))
        self.assertEqual(files_below(self.root), PACKAGE)
        self.assertEqual(self.folder_modes(), {0o755})

    def test_unit_and_bus_file_name_the_packaged_program(self):
        self.assertIsNone(install(self.root))
        program = f"{PACKAGED}/{NAME}"
        self.assertIn(f"\nExec={program}\n",
                      self.text(f"/usr/share/dbus-1/system-services/{UNIT}"))
        unit = self.text(f"/usr/lib/systemd/system/{UNIT}")
        self.assertIn(f"\nExecStart={program}\n", unit)
        self.assertIn(f"\nExecStopPost={program} --put-back\n", unit)
        self.assertIn(f"\nExecPaths={PACKAGED} ", unit)
        self.assertNotIn("@", unit.replace("@system-service", "").replace("~@privileged", "")
                         .replace("@resources", ""))

    def test_prefix_does_not_move_the_package(self):
        """Neither polkit nor the bus would look there, and the helper not for its extensions."""
        self.assertIsNone(install(self.root, prefix="/opt"))
        self.assertEqual(files_below(self.root), PACKAGE)

    def test_package_and_installation_bring_the_same_files(self):
        self.assertEqual({os.path.basename(path) for path in PACKAGE},
                         {os.path.basename(path) for path in INSTALLATION})
        self.assertNotEqual(PACKAGED, INSTALLED)

    def test_program_looks_for_libraries_in_the_system_only(self):
        """A path of the build's machine in there could be made by somebody else on the user's."""
        self.assertIsNone(install(self.root))
        for program in (BUILT, f"{self.root}{PACKAGED}/{NAME}"):
            shown = subprocess.run(["readelf", "--dynamic", program], capture_output=True,
                                   text=True, check=True).stdout
            self.assertIn("(NEEDED)", shown)
            self.assertNotRegex(shown, r"\((RPATH|RUNPATH)\)")


if __name__ == "__main__":
    unittest.main()
