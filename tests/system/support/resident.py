"""What the tests of the resident program share: a desktop session with the program running in it."""

import time
import unittest

from desktop import Desktop, wait_until

FOUND = 700    # the fake laptop's brightness, of 1000
DIMMED = 350   # with the default amount


class ResidentSession(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)

    def start(self, percent, plugged=False, mode=None, **settings):
        """A session with the program running in it."""
        desktop = self.desktop
        desktop.start(percent, plugged)
        self.prepare(desktop)
        if mode is not None:
            settings["QuorvaneAutoStartSetting"] = mode
        if settings:
            desktop.set(**settings)
        desktop.quorvane()
        return desktop

    def prepare(self, desktop):
        """What else there is before the program is started."""

    def discharge(self, *percents):
        """One reading after the other, each seen by the program before the next."""
        for percent in percents:
            self.desktop.laptop.charge(percent)
            wait_until(lambda p=percent: self.percentage() == p, f"{percent} % at upowerd")

    def percentage(self):
        return self.desktop.buses["system"].property(
            "org.freedesktop.UPower", "/org/freedesktop/UPower/devices/battery_BAT0",
            "org.freedesktop.UPower.Device", "Percentage")

    def wait_for_brightness(self, raw):
        wait_until(lambda: self.desktop.brightness == raw,
                   f"brightness {raw}, it is {self.desktop.brightness}")

    def wait_for_titles(self, *titles):
        wait_until(lambda: self.desktop.titles() == list(titles),
                   f"notifications {titles}, there were {self.desktop.titles()}")

    def settle(self):
        """Time for something to happen that must not."""
        time.sleep(1.0)
