"""The run-time configuration, which anybody may put anything in the place of, on a private machine
with a user in front of it."""

import os
import socket
import subprocess
import unittest

import power_attributes
from desktop import wait_until
from file_watch import FileWatch
from helper_files import CONFIGURATION, CPU_TUNE
from hostile_machine import HostileMachine

IN_FRONT = 4711
OTHER = 4712
SEAT = "/run/systemd/seats/seat0"  # where logind records who is in front
GIGABYTE = 1 << 30


def put(text, owner=IN_FRONT, path=CONFIGURATION, mode=0o644):
    """As an editor does: the whole file takes the place of another."""
    with open(path + ".new", "w", encoding="ascii") as file:
        file.write(text)
    os.chown(path + ".new", owner, owner)
    os.chmod(path + ".new", mode)
    os.rename(path + ".new", path)


def clear():
    if os.path.isdir(CONFIGURATION) and not os.path.islink(CONFIGURATION):
        os.rmdir(CONFIGURATION)
    elif os.path.lexists(CONFIGURATION):
        os.remove(CONFIGURATION)


class HelperConfigurationTest(HostileMachine):
    def setUp(self):
        super().setUp()
        with open(SEAT, "w", encoding="ascii") as file:
            file.write(f"IS_SEAT0=1\nACTIVE=1\nACTIVE_UID={IN_FRONT}\n")
        self.user.ask("LoadModuleNamed", CPU_TUNE)
        self.addCleanup(clear)
        self.opened = self.descriptors()
        self.check_counts()

    def tearDown(self):
        self.check_unharmed()
        self.user.ask("UnloadModuleNamed", CPU_TUNE)
        self.check_nothing_is_changed()

    def check_counts(self):
        """A proper file does: the place is watched."""
        clear()
        put("0")
        wait_until(power_attributes.is_turbo_off, "turbo off")
        put("1")
        wait_until(lambda: not power_attributes.is_turbo_off(), "turbo on")
        clear()

    def check_ignored(self, prepare):
        """What `prepare` puts in the place switches nothing, neither when it appears nor when it is
        there at the start. Each is known to have been looked at by what comes after it."""
        clear()
        watch = FileWatch(FileWatch.MODIFIED, power_attributes.NO_TURBO)
        try:
            prepare()
            self.user.ask("GetVersion")
            self.user.ask("UnloadModuleNamed", CPU_TUNE)
            self.user.ask("LoadModuleNamed", CPU_TUNE)
            self.assertFalse(power_attributes.is_turbo_off())
            self.assertFalse(watch.has_seen())
        finally:
            watch.close()
        self.check_counts()
        self.check_unharmed()

    # --- what is no file of the user's in front

    def test_file_of_another_user_is_ignored(self):
        self.check_ignored(lambda: put("0", OTHER))

    def test_file_of_root_is_ignored(self):
        self.check_ignored(lambda: put("0", 0))

    def test_link_is_not_followed(self):
        put("0", path="/tmp/target")
        self.check_ignored(lambda: os.symlink("/tmp/target", CONFIGURATION))

    def test_dangling_link_is_ignored(self):
        self.check_ignored(lambda: os.symlink("/tmp/nowhere", CONFIGURATION))

    def test_link_to_itself_is_ignored(self):
        self.check_ignored(lambda: os.symlink(CONFIGURATION, CONFIGURATION))

    def test_link_to_a_device_is_not_followed(self):
        self.check_ignored(lambda: os.symlink("/dev/zero", CONFIGURATION))

    def test_hard_link_to_a_file_of_the_user_is_ignored(self):
        put("0", path="/tmp/target")
        self.check_ignored(lambda: os.link("/tmp/target", CONFIGURATION))

    def test_hard_link_to_a_file_of_another_user_is_ignored(self):
        put("0", OTHER, path="/tmp/target")
        self.check_ignored(lambda: os.link("/tmp/target", CONFIGURATION))

    def test_pipe_is_not_opened(self):
        self.check_ignored(lambda: os.mkfifo(CONFIGURATION))

    def test_pipe_of_the_user_is_not_opened(self):
        def prepare():
            os.mkfifo(CONFIGURATION)
            os.chown(CONFIGURATION, IN_FRONT, IN_FRONT)

        self.check_ignored(prepare)

    def test_folder_is_ignored(self):
        self.check_ignored(lambda: os.mkdir(CONFIGURATION))

    def test_socket_is_ignored(self):
        def prepare():
            with socket.socket(socket.AF_UNIX) as listener:
                listener.bind(CONFIGURATION)
            os.chown(CONFIGURATION, IN_FRONT, IN_FRONT)

        self.check_ignored(prepare)

    def test_device_is_not_opened(self):
        def prepare():
            subprocess.run(["mknod", CONFIGURATION, "c", "1", "5"], check=True)
            os.chown(CONFIGURATION, IN_FRONT, IN_FRONT)

        self.check_ignored(prepare)

    # --- what a file of the user's in front holds

    def test_anything_but_the_two_digits_is_ignored(self):
        for text in ("", "2", " 0", "\n0", "off", "\0", "-0"):
            self.check_ignored(lambda text=text: put(text))

    def test_one_byte_of_a_large_file_counts_and_no_more_is_read(self):
        before = self.unshared_memory()
        put("0")
        os.truncate(CONFIGURATION, GIGABYTE)
        wait_until(power_attributes.is_turbo_off, "turbo off")
        self.assertLess(self.unshared_memory() - before, 1024)  # kB; far from what lies there
        put("\0")
        os.truncate(CONFIGURATION, GIGABYTE)
        wait_until(lambda: not power_attributes.is_turbo_off(), "turbo on")
        self.check_counts()

    def test_file_replaced_a_thousand_times_ends_with_what_it_says_last(self):
        for last in ("0", "1"):
            for number in range(1000):
                put(str(number % 2))
            put(last)
            wait_until(lambda last=last: power_attributes.is_turbo_off() == (last == "0"),
                       "what it says last")
            self.check_unharmed()

    def test_kinds_that_take_turns_do_no_harm(self):
        put("0", path="/tmp/target")
        kinds = (lambda: put("0"), lambda: os.symlink("/tmp/target", CONFIGURATION),
                 lambda: os.mkfifo(CONFIGURATION), lambda: os.mkdir(CONFIGURATION),
                 lambda: put("0", OTHER))
        for number in range(1000):
            clear()
            kinds[number % len(kinds)]()
        self.check_counts()

    def test_user_who_is_no_longer_in_front_does_not_count(self):
        with open(SEAT, "w", encoding="ascii") as file:
            file.write(f"IS_SEAT0=1\nACTIVE=2\nACTIVE_UID={OTHER}\n")
        put("0", IN_FRONT)
        self.user.ask("UnloadModuleNamed", CPU_TUNE)
        self.user.ask("LoadModuleNamed", CPU_TUNE)
        self.assertFalse(power_attributes.is_turbo_off())
        put("0", OTHER)
        wait_until(power_attributes.is_turbo_off, "turbo off")
        clear()


if __name__ == "__main__":
    unittest.main()
