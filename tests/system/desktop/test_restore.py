"""What a run that has died has left is put back by `quorvane --restore` and by the next start,
whether or not the machine's services answer."""

import os
import re
import signal
import socket
import unittest

from dead_run import FOUND, DeadRun
from desktop import PROGRAMS, wait_until
from fake_laptop import environment

BUS = "org.freedesktop.DBus"
LOGIND = "org.freedesktop.login1"
UPOWER = "org.freedesktop.UPower"


class RestoreTest(unittest.TestCase):
    def setUp(self):
        self.machine = DeadRun()
        self.desktop = self.machine.desktop
        self.addCleanup(self.machine.stop)
        self.machine.start().leave()

    def watch(self, kind):
        """From here on everything that is said on this bus goes to a log."""
        self.desktop.spawn(f"{kind} calls", [
            "dbus-monitor", "--address", self.desktop.env[f"DBUS_{kind.upper()}_BUS_ADDRESS"]])
        wait_until(lambda: self.desktop.log(f"{kind} calls"), "a monitor of the bus")

    def calls(self, kind):
        """(whom, what, the whole message) of every call, in their order."""
        messages = re.split(r"^(?=method call |method return |signal |error )",
                            self.desktop.log(f"{kind} calls"), flags=re.MULTILINE)
        heads = (re.match(r"method call .* destination=(\S+) .* member=(\S+)", each)
                 for each in messages)
        return [(*head.groups(), message) for head, message in zip(heads, messages) if head]

    def check_all_is_back(self):
        self.assertTrue(self.machine.runs())
        self.assertEqual(self.desktop.brightness, FOUND)
        self.assertEqual(self.desktop.journal(), [])

    def home(self):
        return sorted(os.path.join(folder, name)
                      for folder, folders, files in os.walk(self.desktop.path("home"))
                      for name in folders + files)

    def test_restore_asks_nobody_but_logind_and_starts_no_service(self):
        home = self.home()
        for kind in ("session", "system"):
            self.watch(kind)
        with socket.create_server(("127.0.0.1", 0)) as display:
            display.setblocking(False)
            number = display.getsockname()[1] - 6000  # that is how X counts its ports
            done = self.desktop.run("--restore", DISPLAY=f"127.0.0.1:{number}")
            with self.assertRaises(BlockingIOError, msg="the display was asked"):
                display.accept()
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        self.check_all_is_back()
        wait_until(lambda: "SetBrightness" in self.desktop.log("system calls"),
                   "the call of logind at the monitor")
        system = [(whom, what) for whom, what, _ in self.calls("system")]
        self.assertIn((LOGIND, "SetBrightness"), system)
        self.assertLessEqual({whom for whom, _ in system}, {BUS, LOGIND})
        self.assertLessEqual({what for whom, what in system if whom == BUS},
                             {"Hello", "AddMatch", "RemoveMatch"})
        self.assertEqual(self.calls("session"), [])
        self.assertEqual(self.machine.started(), [])
        self.assertEqual(self.home(), home)

    def test_restore_resumes_processes_also_while_the_system_bus_hangs(self):
        bus = self.desktop.processes["system"]
        bus.send_signal(signal.SIGSTOP)
        self.addCleanup(bus.send_signal, signal.SIGCONT)
        restore = self.desktop.spawn("restore", [os.path.join(PROGRAMS, "quorvane"), "--restore"],
                                     environment(self.desktop.laptop.root))
        wait_until(self.machine.runs, "a process that runs again")
        bus.send_signal(signal.SIGCONT)
        self.assertEqual(restore.wait(60), 0)
        self.check_all_is_back()

    def test_start_puts_back_before_it_asks_for_the_battery(self):
        self.watch("system")
        self.desktop.quorvane()
        wait_until(lambda: UPOWER in self.machine.started(), "a start of UPower")
        self.assertTrue(self.machine.runs())
        messages = wait_until(
            lambda: self.asked_for_upower() and [(whom, what) for whom, what, _ in
                                                 self.calls("system")], "the battery asked for")
        first = messages.index((LOGIND, "SetBrightness"))
        self.assertLess(first, self.asked_for_upower()[0])
        wait_until(lambda: self.desktop.brightness == FOUND, "the brightness that was found")

    def asked_for_upower(self):
        """The places of the calls that are about UPower, not those that listen to its signals."""
        return [place for place, (_, what, message) in enumerate(self.calls("system"))
                if UPOWER in message and what != "AddMatch"]
