"""How long Quorvane takes from UPower's signal to the last module."""

import os
import time

from measuring import BusObserver

THRESHOLD = 70
AUTOMATIC = 0
DISCHARGING = 2  # UPower's state
FOUND, DIMMED = "700", "350"  # of the fake laptop's 1000, with the default setting
LOG_LINE = "Power saving is enabled".encode("utf-16-le")


class Dimming:
    """Quorvane on a laptop that discharges again and again. Each time the battery reaches the
    threshold, the mode starts by itself; plugging in ends it."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.upower = BusObserver(desktop.env["DBUS_SYSTEM_BUS_ADDRESS"])
        self.backlight = (desktop.laptop.sysfs +
                          "/devices/platform/intel_backlight/backlight/intel_backlight/brightness")
        self.log = desktop.data_file("Log.txt")
        os.makedirs(os.path.dirname(self.log), exist_ok=True)  # without it nothing is logged
        desktop.laptop.plug()
        desktop.set(QuorvaneAutoStartSetting=AUTOMATIC, BatteryThreshold=THRESHOLD)
        desktop.quorvane()

    def once(self):
        """Milliseconds from the first signal that tells the percentage of the threshold until the
        display has its new brightness and Quorvane has noted that all modules are on."""
        laptop = self.desktop.laptop
        self.until_told("Percentage", THRESHOLD + 1, lambda: laptop.charge(THRESHOLD + 1))
        self.until_told("State", DISCHARGING, laptop.unplug)
        if os.path.exists(self.log):
            os.remove(self.log)
        told = self.until_told("Percentage", THRESHOLD, lambda: laptop.charge(THRESHOLD))
        while not (self.read(self.backlight).strip() == DIMMED.encode() and
                   LOG_LINE in self.read(self.log)):
            if time.monotonic_ns() - told > 20e9:
                raise RuntimeError("the mode does not start: " + self.desktop.log("quorvane"))
            time.sleep(0.0002)
        duration = (time.monotonic_ns() - told) / 1e6
        laptop.plug()
        while self.read(self.backlight).strip() != FOUND.encode():
            time.sleep(0.01)
        return duration

    def until_told(self, name, value, action):
        """Acts, and gives the time of the first signal of a battery that then tells this value."""
        told = []

        def note(arguments, now):
            if arguments[1].get(name) == value:
                told.append(now)

        subscription = self.upower.subscribe(
            "org.freedesktop.UPower", "org.freedesktop.DBus.Properties", "PropertiesChanged",
            "org.freedesktop.UPower.Device", note)
        action()
        self.upower.wait(lambda: told, f"UPower's signal of {name} {value}")
        self.upower.unsubscribe(subscription)
        return told[0]

    @staticmethod
    def read(path):
        try:
            with open(path, "rb") as file:
                return file.read()
        except FileNotFoundError:
            return b""
