"""A machine on which a run of the program has died in Low Power Mode, and where nobody answers."""

import json
import os
import signal

import processes
from desktop import Desktop, wait_until
from fake_laptop import FakeLaptop

FOUND, DIMMED = 700, 350  # the brightnesses before and in the mode
DEAD = {"pid": 1 << 40, "start": 5}  # no process has such an id

SERVICES = {
    "system": ["com.TarnwickStudios.quorvane.helper", "org.freedesktop.PackageKit",
               "org.freedesktop.PolicyKit1", "org.freedesktop.UPower", "org.freedesktop.login1"],
    "session": ["org.freedesktop.Notifications", "org.freedesktop.portal.Desktop",
                "org.kde.StatusNotifierWatcher"],
}

# Says that it was started, and ends with the session's folder.
SILENT_SERVICE = """#!/bin/sh
echo "$1" >> '{folder}/started'
while [ -d '{folder}' ]; do sleep 0.2; done
"""


class DeadRun:
    def __init__(self):
        self.desktop = Desktop()
        self.stopped = None

    def start(self, services=None):
        """`services`: those that could be started, by bus; all of the above unless given."""
        desktop = self.desktop
        desktop.laptop = FakeLaptop.start(desktop.folder)
        with open(desktop.path("silent"), "w", encoding="utf-8") as file:
            file.write(SILENT_SERVICE.format(folder=desktop.folder))
        os.chmod(desktop.path("silent"), 0o755)
        for kind in SERVICES:
            os.mkdir(desktop.path(kind + ".services"))
            for name in (SERVICES if services is None else services).get(kind, []):
                self.add_service(kind, name)
            desktop.start_bus(kind)
        desktop.set(SplashWindowShown=True, TurboModuleActivated=False)
        return self

    def stop(self):
        for name in ("stopped", "upowerd"):  # stopped as they are, nothing else would end them
            if name in self.desktop.processes:
                self.desktop.end(name, signal.SIGKILL)
        self.desktop.stop()

    def add_silent_upowerd(self):
        """One that has its name on the bus. It needs services that answer, or there may be none."""
        self.desktop.start_upowerd()
        self.desktop.processes["upowerd"].send_signal(signal.SIGSTOP)

    def add_service(self, kind, name):
        with open(self.desktop.path(f"{kind}.services/{name}.service"), "w",
                  encoding="utf-8") as file:
            file.write(f"[D-BUS Service]\nName={name}\nExec={self.desktop.path('silent')} {name}\n")

    def leave(self):
        """A dimmed display, a stopped process, and the journal that names both."""
        desktop = self.desktop
        if self.stopped:
            desktop.end("stopped", signal.SIGKILL)
        self.stopped = desktop.spawn("stopped", ["sleep", "infinity"]).pid
        os.kill(self.stopped, signal.SIGSTOP)
        wait_until(lambda: not self.runs(), "a stopped process")
        desktop.laptop.set("intel_backlight", "brightness", DIMMED)
        entries = [
            dict(DEAD, kind="display", key="intel_backlight", found=FOUND, set=[DIMMED]),
            dict(DEAD, kind="process", key=str(self.stopped), found=self.start_time(),
                 set={"application": self.stopped, "group": False})]
        os.makedirs(desktop.path("run/quorvane"), mode=0o700, exist_ok=True)
        with open(desktop.path("run/quorvane/putting-back.journal"), "w",
                  encoding="utf-8") as file:
            file.writelines(json.dumps(entry) + "\n" for entry in entries)

    def start_time(self):
        return processes.stat(self.stopped)[2][18]

    def runs(self):
        return processes.state(self.stopped) != "T"

    def started(self):
        """The services that somebody has asked the buses to start."""
        try:
            with open(self.desktop.path("started"), encoding="utf-8") as file:
                return file.read().split()
        except FileNotFoundError:
            return []
