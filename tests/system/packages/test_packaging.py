"""The files by which a desktop session starts the program."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from gi.repository import GLib

from desktop import PROGRAMS

PACKAGING = str(pathlib.Path(__file__).resolve().parents[3] / "packaging")
UNIT = os.path.join(PACKAGING, "systemd", "quorvane.service")
AUTOSTART = os.path.join(PACKAGING, "autostart", "com.TarnwickStudios.quorvane.desktop")


class PackagingTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.calls = os.path.join(self.folder, "calls")

    # --- the unit of the service manager

    def verify(self, replace, by):
        """What systemd says to the unit with the built program."""
        with open(UNIT, encoding="utf-8") as file:
            text = file.read()
        self.assertIn(replace, text)
        copy = os.path.join(self.folder, "quorvane.service")
        with open(copy, "w", encoding="utf-8") as file:
            file.write(text.replace(replace, by).replace(
                "/usr/bin/quorvane", os.path.join(PROGRAMS, "quorvane")))
        done = subprocess.run(
            ["systemd-analyze", "--user", "verify", copy], capture_output=True, text=True,
            check=False, env=dict(os.environ, XDG_RUNTIME_DIR=self.folder))
        return done.returncode, done.stdout + done.stderr

    def test_unit_is_understood_by_systemd(self):
        self.assertEqual(self.verify("[Service]", "[Service]"), (0, ""))

    def test_mistake_in_the_unit_would_be_found(self):
        self.assertIn("Restarts", self.verify("Restart=", "Restarts=")[1])

    # --- the autostart entry

    def test_autostart_entry_is_valid(self):
        done = subprocess.run(["desktop-file-validate", AUTOSTART], capture_output=True, text=True,
                              check=False)
        self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""))

    def fake(self, program, text):
        path = os.path.join(self.folder, program)
        with open(path, "w", encoding="utf-8") as file:
            file.write(f"#!/bin/sh\necho {program} \"$@\" >>{self.calls}\n{text}\n")
        os.chmod(path, 0o755)

    def log_in(self):
        """Runs the entry's command line as a desktop does. Returns what was called by it."""
        os.symlink(shutil.which("sh"), os.path.join(self.folder, "sh"))
        self.fake("quorvane", "exit 0")
        entry = GLib.KeyFile()
        entry.load_from_file(AUTOSTART, GLib.KeyFileFlags.NONE)
        _, command = GLib.shell_parse_argv(entry.get_string("Desktop Entry", "Exec"))
        self.assertTrue(entry.get_boolean("Desktop Entry", "X-systemd-skip"))
        subprocess.run(command, executable=os.path.join(self.folder, command[0]), check=False,
                       env={"PATH": self.folder})
        with open(self.calls, encoding="utf-8") as file:
            return file.read().splitlines()

    def test_manager_that_has_the_unit_starts_it(self):
        self.fake("systemctl", "exit 0")
        self.assertEqual(self.log_in(), ["systemctl --user cat quorvane.service",
                                         "systemctl --user start quorvane.service"])

    def test_manager_without_the_unit_the_program_is_started(self):
        self.fake("systemctl", "exit 1")
        self.assertEqual(self.log_in(), ["systemctl --user cat quorvane.service", "quorvane"])

    def test_no_manager_at_all_the_program_is_started(self):
        self.assertEqual(self.log_in(), ["quorvane"])

    def test_unit_that_does_not_start_is_not_doubled_by_the_program(self):
        self.fake("systemctl", '[ "$2" = cat ]')
        self.assertNotIn("quorvane", self.log_in())


if __name__ == "__main__":
    unittest.main()
