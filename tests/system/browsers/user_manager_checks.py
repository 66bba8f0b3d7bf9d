"""What test_user_manager runs inside of its container."""

import os
import pathlib
import signal
import subprocess
import unittest

import processes
from applications import Chromium, Firefox, Screen
from desktop import NAME, PATIENCE, PROGRAMS, Desktop, wait_until

OTHER = "Event Tester"
RUNTIME = "/run/user/0"
PACKAGING = str(pathlib.Path(__file__).resolve().parents[3] / "packaging")
PASS = 60


class UserDesktop(Desktop):
    """A desktop on the buses of the container's user."""

    def __init__(self):
        super().__init__()
        self.env.update(XDG_RUNTIME_DIR=RUNTIME,
                        DBUS_SESSION_BUS_ADDRESS=f"unix:path={RUNTIME}/bus")
        del self.env["DBUS_SYSTEM_BUS_ADDRESS"]

    def start(self):
        self.start_x()
        self.start_openbox()
        self.spawn("xev", ["xev", "-event", "keyboard"])
        self.set(SplashWindowShown=True, QuorvaneAutoStartSetting=2, BrowserModuleActivated=True,
                 BrightnessModuleActivated=False)
        known = ("DISPLAY", "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "ASAN_OPTIONS",
                 "UBSAN_OPTIONS")
        self.systemctl("set-environment", *(f"{key}={self.env[key]}" for key in known))
        return self

    def systemctl(self, *arguments):
        done = subprocess.run(["systemctl", "--user", *arguments], env=self.env,
                              capture_output=True, text=True, check=False, timeout=PATIENCE)
        assert done.returncode == 0, (arguments, done.stderr)
        return done.stdout.strip()

    def journal_file(self):
        return RUNTIME + "/quorvane/putting-back.journal"


class UserManagerChecks(unittest.TestCase):
    def setUp(self):
        self.desktop = UserDesktop()
        self.addCleanup(self.desktop.stop)
        self.desktop.start()
        self.screen = Screen(self.desktop)
        self.browsers = [Chromium(self.desktop), Firefox(self.desktop)]
        os.makedirs("/etc/systemd/user", exist_ok=True)
        with open(PACKAGING + "/systemd/quorvane.service", encoding="utf-8") as file:
            text = file.read()
        with open("/etc/systemd/user/quorvane.service", "w", encoding="utf-8") as file:
            file.write(text.replace("/usr/bin/quorvane", os.path.join(PROGRAMS, "quorvane")))
        self.desktop.systemctl("daemon-reload")

    def start_unit(self):
        self.desktop.systemctl("start", "quorvane.service")

    def main_process(self):
        return int(self.desktop.systemctl("show", "-P", "MainPID", "quorvane.service"))

    def open(self, browser, *how):
        environment = [f"--setenv={key}={self.desktop.env[key]}" for key in ("DISPLAY", "HOME")]
        self.desktop.spawn(browser.name, ["systemd-run", "--user", "--quiet", *how, *environment,
                                          "--", *browser.command])
        self.screen.window(browser.title)
        self.screen.bring_to_front(OTHER)

    def stop_browsers(self):
        self.desktop.set(QuorvaneActive=True)
        for browser in self.browsers:
            wait_until(browser.all_stopped, browser.name + " stopped", PASS)
        for pid, program in processes.stopped().items():
            self.assertTrue(any(program.startswith(each.folder) for each in self.browsers), program)

    def check_nothing_is_stopped(self):
        wait_until(lambda: not processes.stopped(), "nothing stopped", PASS)
        wait_until(lambda: not os.path.exists(self.desktop.journal_file()), "no journal", PASS)

    def whole_cycle(self):
        self.start_unit()
        self.stop_browsers()
        chromium, firefox = self.browsers
        self.screen.bring_to_front(chromium.title)
        wait_until(chromium.none_stopped, "Chromium running", PASS)
        self.assertTrue(firefox.all_stopped())
        self.desktop.set(QuorvaneActive=False)
        self.check_nothing_is_stopped()

    def open_in_scopes(self):
        self.open(self.browsers[0], "--scope", "--unit=app-gnome-chromium-4711.scope")
        self.open(self.browsers[1], "--scope", r"--unit=app-firefox\x2desr-4712.scope")

    def scopes(self):
        self.open_in_scopes()
        self.whole_cycle()

    def services(self):
        self.open(self.browsers[0], "--unit=app-chromium@4711.service")
        self.open(self.browsers[1], r"--unit=app-firefox\x2desr@4712.service")
        self.whole_cycle()

    def unit_killed(self):
        self.open_in_scopes()
        self.start_unit()
        self.stop_browsers()
        killed = self.main_process()
        self.desktop.set(QuorvaneActive=False)  # as it is when the next copy decides
        os.kill(killed, signal.SIGKILL)
        self.check_nothing_is_stopped()
        wait_until(lambda: self.main_process() not in (0, killed), "the unit started again", PASS)

    def unit_stopped(self):
        self.open_in_scopes()
        self.start_unit()
        self.stop_browsers()
        self.desktop.systemctl("stop", "quorvane.service")
        self.check_nothing_is_stopped()

    def copies(self):
        return [pid for pid in processes.every()
                if os.path.basename(processes.program(pid)) == "quorvane"]

    def autostart(self):
        self.start_unit()
        before = self.main_process()
        with open(f"{PACKAGING}/autostart/{NAME}.desktop", encoding="utf-8") as file:
            line = next(each for each in file if each.startswith("Exec="))
        done = subprocess.run(line.removeprefix("Exec="), shell=True, env=self.desktop.env,
                              check=False, timeout=PATIENCE)
        self.assertEqual(done.returncode, 0)
        self.assertEqual(self.main_process(), before)
        self.assertEqual(self.copies(), [before])
