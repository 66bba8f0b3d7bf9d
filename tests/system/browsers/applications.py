"""Real applications on a desktop: browsers started in the ways that users start them, and small
programs of X11."""

import os
import pty
import subprocess
import time
import unittest

import host_settings
import processes
from desktop import PATIENCE, wait_until
from hosts import XFCONFD

PAGE = """<!doctype html>
<title>Busy %s</title><p id=count>0</p><script>
let n = 0;
setInterval(() => {
  const end = performance.now() + 10;
  while (performance.now() < end) n++;
  document.getElementById('count').textContent = n;
}, 50);
</script>
"""

ENTRY = """[Desktop Entry]
Type=Application
Name={name}
Exec={command}
StartupWMClass={window_class}
"""


class Browser:
    """A browser of the distribution with one page that never rests."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.page = desktop.path(self.name + ".html")
        with open(self.page, "w", encoding="utf-8") as file:
            file.write(PAGE % self.name)

    @property
    def title(self):
        return "Busy " + self.name

    @property
    def command(self):
        return [self.program, *self.options(), "file://" + self.page]

    def options(self):
        raise NotImplementedError

    def processes(self):
        """All that have its executables, except those that have ended."""
        return [pid for pid in processes.every()
                if processes.program(pid).startswith(self.folder)
                and processes.state(pid) not in ("Z", "X")]

    def all_stopped(self):
        """Whether none of its processes, with the page open, can do anything."""
        found = self.workers()
        return bool(found) and all(processes.state(pid) == "T" for pid in found)

    def none_stopped(self):
        return all(processes.state(pid) != "T" for pid in self.processes())

    def workers(self):
        """Without the ones that wait for a crash of the others, in a session of their own."""
        return [pid for pid in self.processes()
                if not os.path.basename(processes.program(pid)).startswith(self.watchers)]

    def ticks(self):
        return sum(processes.ticks(pid) for pid in self.processes())

    def install_entry(self):
        """In front of the distribution's own."""
        folder = self.desktop.path("home/.local/share/applications")
        os.makedirs(folder, exist_ok=True)
        return self.write_entry(os.path.join(folder, self.entry + ".desktop"))

    def write_entry(self, path):
        """A desktop entry with the options that a test needs."""
        with open(path, "w", encoding="utf-8") as file:
            file.write(ENTRY.format(name=self.name, command=" ".join(self.command),
                                    window_class=self.window_class))
        return path


class Chromium(Browser):
    name, program, folder = "Chromium", "/usr/bin/chromium", "/usr/lib/chromium"
    entry, window_class, watchers = "chromium", "chromium", "chrome_crashpad"

    def options(self):
        options = ["--no-first-run", "--no-default-browser-check", "--disable-gpu",
                   "--password-store=basic", "--disable-dev-shm-usage",
                   "--user-data-dir=" + self.desktop.path("chromium")]
        return options + (["--no-sandbox"] if os.getuid() == 0 else [])


class Firefox(Browser):
    name, program, folder = "Firefox", "/usr/bin/firefox-esr", "/usr/lib/firefox-esr"
    entry, window_class, watchers = "firefox-esr", "firefox-esr", "crashhelper"

    def options(self):
        profile = self.desktop.path("firefox")
        os.makedirs(profile, exist_ok=True)
        with open(os.path.join(profile, "user.js"), "w", encoding="utf-8") as file:
            file.write('user_pref("browser.shell.checkDefaultBrowser", false);\n'
                       'user_pref("browser.aboutwelcome.enabled", false);\n'
                       'user_pref("datareporting.policy.dataSubmissionEnabled", false);\n'
                       'user_pref("app.normandy.enabled", false);\n')
        return ["--no-remote", "--profile", profile]


# --- the ways in which a user starts a program; each returns the process that the test started

def from_script(desktop, name, command):
    """In the script's own process group, which is not the browser's."""
    path = desktop.path(name + ".sh")
    with open(path, "w", encoding="utf-8") as file:
        file.write("#!/bin/sh\n" + " ".join(command) + " &\nwait\n")
    os.chmod(path, 0o755)
    return desktop.spawn(name, [path], start_new_session=True)


def from_job_control_shell(desktop, name, command):
    """In a group of its own, in the session of a terminal."""
    main, terminal = pty.openpty()
    line = " ".join(command) + " &\n"
    process = desktop.spawn(name, ["setsid", "--ctty", "bash", "--norc", "-i"], stdin=terminal)
    os.close(terminal)
    os.write(main, line.encode())
    desktop.terminals.append(main)
    return process


def by_setsid(desktop, name, command):
    return desktop.spawn(name, ["setsid", *command])


def by_gio(desktop, name, entry):
    return desktop.spawn(name, ["gio", "launch", entry])


class ControlGroup:
    """A unit of the user's service manager as the kernel has it: a control group with its name."""

    def __init__(self, unit):
        root = next((each for each in ("/sys/fs/cgroup/unified", "/sys/fs/cgroup")
                     if os.path.exists(each + "/cgroup.procs")), None)
        if root is None:
            raise unittest.SkipTest("no cgroup2")
        # The namespace has a number of its own: tests at the same time must not share a unit.
        slice_ = f"user.slice/user-{os.getuid()}.slice/quorvane-test-{os.stat('/proc').st_dev}"
        self.path = os.path.join(root, slice_, "app.slice", unit)
        self.made = []
        try:
            self.make(root)
        except OSError as error:
            self.remove()
            raise unittest.SkipTest(f"no control group can be made: {error}") from error

    def make(self, root):
        path = root
        for name in os.path.relpath(self.path, root).split(os.sep):
            path = os.path.join(path, name)
            if not os.path.isdir(path):
                os.mkdir(path)
                self.made.append(path)

    def start(self, desktop, name, command):
        return desktop.spawn(name, ["sh", "-c", f"echo $$ > {self.path}/cgroup.procs; exec \"$@\"",
                                    "sh", *command])

    def remove(self):
        for path in reversed(self.made):
            try:
                os.rmdir(path)
            except OSError:
                pass  # somebody else has made a unit in it


class PanelLaunchers:
    """xfce4-panel with one button for each browser, at its left end. To be made before anything reads
    Xfce's settings."""

    ITEM = "launcher.desktop"
    SIZE = 30

    def __init__(self, desktop, browsers):
        self.desktop = desktop
        self.browsers = browsers
        folder = desktop.path("home/.config/xfce4")
        os.makedirs(folder + "/xfconf/xfce-perchannel-xml")
        with open(folder + "/xfconf/xfce-perchannel-xml/xfce4-panel.xml", "w",
                  encoding="utf-8") as file:
            file.write(host_settings.panel(["launcher"] * len(browsers), self.ITEM))
        for number, browser in enumerate(browsers, start=1):
            place = f"{folder}/panel/launcher-{number}"
            os.makedirs(place)
            browser.write_entry(os.path.join(place, self.ITEM))

    def start(self):
        if "xfconfd" not in self.desktop.processes:
            self.desktop.spawn("xfconfd", [XFCONFD])
            wait_until(lambda: self.desktop.has_owner("session", "org.xfce.Xfconf"), "xfconfd")
        self.desktop.spawn("panel", ["xfce4-panel", "--disable-wm-check",
                                     "--sm-client-disable"])

    def click(self, screen, browser):
        """Again when the panel has not drawn its button yet."""
        x = self.browsers.index(browser) * self.SIZE + self.SIZE // 2

        def press():
            screen.run("xdotool", "mousemove", str(x), str(self.SIZE // 2), "click", "1")
            time.sleep(1)
            return browser.processes()

        wait_until(press, browser.name + " started by the panel", 60)


class Screen:
    """The windows of the desktop, and the hand of its user."""

    def __init__(self, desktop):
        self.desktop = desktop

    def run(self, *command):
        return subprocess.run(command, env=self.desktop.env, capture_output=True, text=True,
                              check=False, timeout=PATIENCE).stdout.strip()

    def window(self, title):
        """The window with this in its title; it may take a browser long to make it."""
        return wait_until(lambda: self.run("xdotool", "search", "--name", title).split(),
                          f"a window \"{title}\"", 90)[-1]

    def bring_to_front(self, title):
        window = self.window(title)
        self.run("xdotool", "windowactivate", window)
        wait_until(lambda: self.run("xdotool", "getactivewindow") == window,
                   f"\"{title}\" in front")

    def is_iconic(self, title):
        return "Iconic" in self.run("xprop", "-id", self.window(title), "WM_STATE")
