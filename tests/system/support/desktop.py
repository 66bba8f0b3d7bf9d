"""A user's desktop session on a laptop that does not exist: private buses, a real upowerd, a real
notification server under a real X server, and the built Quorvane as the user runs it."""

import configparser
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

FIXTURES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "fixtures")
sys.path.insert(0, FIXTURES)

from fake_laptop import FakeLaptop, end_with_parent, environment  # noqa: E402
from session_bus import Bus  # noqa: E402

PROGRAMS = os.path.join(os.environ["QUORVANE_APP"], "Contents", "Linux")
NAME = "com.TarnwickStudios.quorvane"
PATIENCE = 20  # seconds that a state may take on a busy machine

BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>{kind}</type>
  <listen>unix:path={socket}</listen>
  <servicedir>{services}</servicedir>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
"""

# dunst asks this program which action of a notification to take: the one with this label.
PICK = """#!/bin/sh
grep -m1 -F "#$(cat '{folder}/pick') "
"""

DUNSTRC = """[global]
    width = 420
    offset = 10x10
    font = DejaVu Sans 11
    dmenu = {folder}/pick.sh
    idle_threshold = 0
    sort = no
"""


def wait_until(condition, what, limit=PATIENCE):
    """Waits until the condition gives something true, and gives that. Looks the less often the
    longer it waits, because some conditions take a process or a picture."""
    began = time.monotonic()
    while True:
        value = condition()
        if value:
            return value
        waited = time.monotonic() - began
        if waited > limit:
            raise AssertionError(f"waited {limit} s in vain: {what}")
        time.sleep(min(0.02 + waited / 10, 0.2))


class Desktop:
    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="quorvane-desktop-")
        self.processes = {}
        self.laptop = None
        self.terminals = []  # descriptors of the shells' other ends
        self.entered = []  # former control group and process
        self.env = dict(
            PATH="/usr/sbin:/usr/bin:/sbin:/bin", LANG="C.UTF-8", HOME=self.path("home"),
            XDG_CONFIG_HOME=self.path("home/.config"), XDG_DATA_HOME=self.path("home/.local/share"),
            XDG_RUNTIME_DIR=self.path("run"),
            DBUS_SESSION_BUS_ADDRESS="unix:path=" + self.path("session.bus"),
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=" + self.path("system.bus"),
            # the fake laptop is preloaded, so it comes before the sanitizer's own library
            ASAN_OPTIONS="verify_asan_link_order=0:" + os.environ.get("ASAN_OPTIONS", ""),
            UBSAN_OPTIONS=os.environ.get("UBSAN_OPTIONS", ""))
        self.buses = {kind: Bus(self.env[f"DBUS_{kind.upper()}_BUS_ADDRESS"])
                      for kind in ("session", "system")}
        for folder in ("home/.config", "home/.local/share", "run"):
            os.makedirs(self.path(folder), mode=0o700)

    def path(self, name):
        return os.path.join(self.folder, name)

    # --- start and end

    def start(self, percent=80, plugged=True):
        self.laptop = FakeLaptop.start(self.folder)
        self.laptop.charge(percent)
        if not plugged:
            self.laptop.unplug()
        for kind in ("session", "system"):
            self.start_bus(kind)
        self.start_upowerd()
        self.spawn("monitor", ["dbus-monitor", "--address", self.env["DBUS_SESSION_BUS_ADDRESS"],
                               "interface='org.freedesktop.Notifications'"])
        self.start_x()
        self.start_notification_server()
        # Not the user's first start; and the file that tells the turbo's state is the machine's own.
        self.set(SplashWindowShown=True, TurboModuleActivated=False)
        return self

    def stop(self):
        for former, pid in self.entered:
            self.control("leave", former, str(pid))
        for terminal in self.terminals:  # a shell at a terminal ends with that, by no signal of ours
            os.close(terminal)
        for bus in self.buses.values():
            bus.close()
        for name in reversed(list(self.processes)):
            self.end(name)
        if self.laptop:
            self.laptop.stop()
        shutil.rmtree(self.folder, ignore_errors=True)

    def spawn(self, name, command, extra=None, stdin=subprocess.DEVNULL, **options):
        with open(self.path(name + ".log"), "ab") as log:
            process = subprocess.Popen(
                command, env=dict(self.env, **(extra or {})), stdin=stdin,
                stdout=log, stderr=log, cwd=self.folder, preexec_fn=end_with_parent, **options)
        self.processes[name] = process
        return process

    def has_process(self, pid):
        """Whether it runs in this session and not in that of a test at the same time."""
        try:
            with open(f"/proc/{pid}/environ", "rb") as file:
                return f"DISPLAY={self.env['DISPLAY']}".encode() in file.read().split(b"\0")
        except OSError:  # gone since, or another user's
            return False

    def end(self, name, how=signal.SIGTERM):
        process = self.processes.pop(name)
        if process.poll() is None:
            process.send_signal(how)
        try:
            return process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            raise

    def log(self, name):
        with open(self.path(name + ".log"), encoding="utf-8", errors="replace") as file:
            return file.read()

    # --- services

    def start_bus(self, kind):
        configuration = self.path(kind + ".conf")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(BUS.format(kind=kind, socket=self.path(kind + ".bus"),
                                  services=self.path(kind + ".services")))
        self.spawn(kind, ["dbus-daemon", "--nofork", "--nopidfile",
                          "--config-file=" + configuration])
        wait_until(lambda: os.path.exists(self.path(kind + ".bus")), kind + " bus")

    def service(self, name, *arguments):
        """One of the real services of a laptop."""
        return self.spawn(name, ["/usr/bin/python3", os.path.join(FIXTURES, "laptop_services.py"),
                                 *arguments])

    def start_upowerd(self):
        self.service("upowerd", "upowerd", self.laptop.root, self.folder)
        wait_until(lambda: self.has_owner("system", "org.freedesktop.UPower"), "upowerd")

    def start_systemd(self):
        """As much of systemd as logind needs."""
        self.spawn("systemd", ["/usr/bin/python3", os.path.join(FIXTURES, "fake_systemd.py")])
        wait_until(lambda: self.has_owner("system", "org.freedesktop.systemd1"), "systemd")

    def enter_session(self, pid):
        """Makes the process a member of a session that shows on logind's seat. Returns whether the
        machine lets a test do that."""
        leader = self.spawn("session leader", ["sleep", "infinity"])
        self.service("login", "session", str(os.getuid()), str(leader.pid), "x11")
        path = wait_until(lambda: self.log("login").strip(), "a session of logind's")
        done = self.control("enter", str(os.getuid()), path, str(pid))
        if done.returncode == 0:
            self.entered.append((done.stdout.strip(), pid))
        return done.returncode == 0

    def control(self, *arguments):
        return subprocess.run(["/usr/bin/python3", os.path.join(FIXTURES, "laptop_services.py"),
                               *arguments], env=self.env, capture_output=True, text=True,
                              check=False)

    def start_x(self):
        """Without a picture of the pointer, which a look at the screen would take for a change."""
        reading, writing = os.pipe()
        self.spawn("xvfb", ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x800x24",
                            "-nolisten", "tcp", "-noreset", "-nocursor", "-fbdir", self.folder],
                   pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as stream:
            self.env["DISPLAY"] = ":" + stream.readline().strip()

    def start_openbox(self):
        """Waits until it manages windows: one that is mapped while openbox starts stays hidden."""
        started = self.path("openbox.started")
        self.spawn("openbox", ["openbox", "--sm-disable", "--startup", f"touch {started}"])
        wait_until(lambda: os.path.exists(started), "openbox")

    def start_notification_server(self):
        with open(self.path("pick.sh"), "w", encoding="utf-8") as file:
            file.write(PICK.format(folder=self.folder))
        os.chmod(self.path("pick.sh"), 0o755)
        with open(self.path("dunstrc"), "w", encoding="utf-8") as file:
            file.write(DUNSTRC.format(folder=self.folder))
        self.spawn("dunst", ["dunst", "-conf", self.path("dunstrc")])
        wait_until(lambda: self.has_owner("session", "org.freedesktop.Notifications"), "dunst")

    def has_owner(self, bus, name):
        return self.buses[bus].call_bus("NameHasOwner", name) is True

    # --- what the user does

    def quorvane(self, name="quorvane"):
        """Starts the resident program and waits until it is there."""
        process = self.spawn(name, [os.path.join(PROGRAMS, "quorvane")],
                             environment(self.laptop.root))
        wait_until(lambda: self.has_owner("session", NAME) or process.poll() is not None,
                   "the program's name on the bus")
        if process.poll() is not None:
            raise AssertionError("quorvane ended: " + self.log(name))
        return process

    def run(self, *arguments, **extra):
        """Runs the program to its end."""
        return subprocess.run([os.path.join(PROGRAMS, "quorvane"), *arguments],
                              env=dict(self.env, **environment(self.laptop.root), **extra),
                              capture_output=True, text=True, check=False, timeout=60)

    def quit(self):
        done = self.run("--quit")
        assert done.returncode == 0, done.stderr
        self.processes.pop("quorvane").wait(PATIENCE)

    def set(self, **settings):
        """Edits the settings file by hand."""
        file = configparser.RawConfigParser()
        file.optionxform = str
        file.read(self.settings_file, encoding="utf-8")
        if not file.has_section("General"):
            file.add_section("General")
        for key, value in settings.items():
            file.set("General", key, str(value).lower())
        with open(self.settings_file + ".new", "w", encoding="utf-8") as stream:
            file.write(stream, space_around_delimiters=False)
        os.replace(self.settings_file + ".new", self.settings_file)

    def answer(self, label):
        """Clicks a button of the notification that is shown."""
        with open(self.path("pick"), "w", encoding="utf-8") as file:
            file.write(label)
        subprocess.run(["dunstctl", "context"], env=self.env, check=True, timeout=PATIENCE)

    # --- what the user sees

    @property
    def settings_file(self):
        return self.path(f"home/.config/{NAME}.conf")

    def setting(self, key):
        file = configparser.RawConfigParser()
        file.optionxform = str
        file.read(self.settings_file, encoding="utf-8")
        return file.get("General", key, fallback=None)

    def data_file(self, name):
        return self.path("home/.local/share/Quorvane/" + name)

    @property
    def brightness(self):
        # between two values the file is empty for a moment
        return int(wait_until(lambda: self.laptop.get("intel_backlight", "brightness"),
                              "a brightness"))

    def notifications(self):
        """Everything that was sent to the notification server: (title, text, actions)."""
        found = []
        for call in re.split(r"^(?=method call |method return |signal |error )", self.log("monitor"),
                             flags=re.MULTILINE):
            if "member=Notify\n" not in call:
                continue
            head, _, rest = call.partition("array [")
            strings = re.findall(r'^ +string "(.*?)"$', head, re.MULTILINE | re.DOTALL)
            actions = re.findall(r'^ +string "(.*?)"$', rest.partition("]")[0], re.MULTILINE)
            found.append((strings[2], strings[3], actions))
        return found

    def titles(self):
        return [title for title, _, _ in self.notifications()]

    def displayed(self):
        """How many notifications are on the screen."""
        return self.buses["session"].property(
            "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
            "org.dunstproject.cmd0", "displayedLength")

    def journal(self):
        """What a crash now would have to be put back from."""
        folder = self.path("run/quorvane")
        entries = []
        for name in os.listdir(folder) if os.path.isdir(folder) else []:
            try:
                with open(os.path.join(folder, name), encoding="utf-8") as file:
                    entries += [json.loads(line) for line in file if line.startswith("{")]
            except (FileNotFoundError, IsADirectoryError):
                pass  # gone since, as a journal goes when nothing is left in it
        return entries

    def wait_for_empty_journal(self):
        """A change is struck off after it has been undone: whoever writes it may be another."""
        wait_until(lambda: not self.journal(), "an empty journal")

    @property
    def framebuffer(self):
        """The file, in X's own format, that holds what is on the screen at any time."""
        return self.path("Xvfb_screen0")

    def screenshot(self, path):
        subprocess.run(["import", "-window", "root", path], env=self.env, check=True,
                       timeout=PATIENCE)
