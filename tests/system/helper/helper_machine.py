"""A private machine without a service manager: the packaged helper on a system bus of its own,
which starts it and the real polkitd. Its configuration is the distribution's."""

import os
import signal
import subprocess
import unittest

from gi.repository import Gio, GLib

import power_attributes
import private_machine
from desktop import end_with_parent, wait_until
from helper_callers import Bus
from helper_files import LOADED, NAME, PATH, install

PROFILES = "net.hadess.PowerProfiles"
PROFILES_DAEMON = "/usr/libexec/power-profiles-daemon"
POLKIT = "org.freedesktop.PolicyKit1"
LIMIT = 25000  # milliseconds


class Connection:
    """One caller of root's, on the bus by itself."""

    def __init__(self):
        self.bus = Gio.DBusConnection.new_for_address_sync(
            "unix:path=/run/dbus/system_bus_socket",
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)

    def ask(self, method, *arguments):
        """The text of the reply, or the name of the error."""
        texts = GLib.Variant("(" + "s" * len(arguments) + ")", arguments)
        try:
            return self.bus.call_sync(NAME, PATH, NAME, method, texts, None,
                                      Gio.DBusCallFlags.NONE, LIMIT, None).unpack()[0]
        except GLib.Error as error:
            return Gio.DBusError.get_remote_error(error)

    def leave(self):
        self.bus.close_sync(None)


class HelperMachine(unittest.TestCase):
    def setUp(self):
        private_machine.require()
        power_attributes.set_up()
        error = install("")
        self.assertIsNone(error)
        self.processes = {}
        self.addCleanup(self.end_everything)
        self.start_bus()
        self.bus = Bus()
        self.found = power_attributes.snapshot()

    def spawn(self, name, command, **options):
        with open(f"/run/{name}.log", "ab") as log:
            self.processes[name] = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                preexec_fn=end_with_parent, **options)
        return self.processes[name]

    def end(self, name, how=signal.SIGTERM):
        process = self.processes.pop(name)
        process.send_signal(how)
        process.wait()

    def end_everything(self):
        for name in reversed(list(self.processes)):
            self.end(name)

    def start_bus(self):
        self.spawn("bus", ["dbus-daemon", "--system", "--nofork", "--nopidfile", "--nosyslog"])
        wait_until(lambda: os.path.exists("/run/dbus/system_bus_socket"), "the bus")

    def start_profiles(self):
        """The service that this bus cannot start: its file is for a service manager."""
        os.makedirs("/var/lib/power-profiles-daemon", exist_ok=True)
        self.spawn("profiles", [PROFILES_DAEMON])
        wait_until(lambda: self.bus.has_owner(PROFILES), "power-profiles-daemon")

    def helper(self):
        return self.bus.process_of()

    @staticmethod
    def snapshot():
        return power_attributes.snapshot()

    def check_nothing_is_changed(self):
        self.assertEqual(self.snapshot(), self.found)
        self.assertFalse(os.path.exists(LOADED))

    @staticmethod
    def log(name):
        with open(f"/run/{name}.log", encoding="utf-8", errors="replace") as file:
            return file.read()

    def kill_polkit(self):
        os.kill(self.bus.process_of(POLKIT), signal.SIGKILL)
        wait_until(lambda: not self.bus.has_owner(POLKIT), "polkitd's end")
