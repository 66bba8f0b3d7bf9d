"""Programs of different users that ask the helper; and the helper's own process."""

import itertools
import json
import os
import re
import signal
import subprocess

from gi.repository import Gio, GLib

from desktop import end_with_parent, wait_until
from helper_files import NAME

CLIENT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "helper_client.py")
DENIED = "org.freedesktop.DBus.Error.AccessDenied"

numbers = itertools.count(1)


class Caller:
    """A process that stays on the bus. `command` is put in front of it."""

    def __init__(self, test, *command):
        self.process = subprocess.Popen(
            [*command, "/usr/bin/python3", CLIENT], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            text=True, preexec_fn=end_with_parent)
        test.addCleanup(self.leave)
        greeting = self.process.stdout.readline()
        assert greeting, f"no caller: {command}"
        self.pid, self.name = json.loads(greeting)

    def ask(self, method, *arguments):
        """The text of the reply, or the name of the error."""
        self.process.stdin.write(json.dumps([method, *arguments]) + "\n")
        self.process.stdin.flush()
        answer = json.loads(self.process.stdout.readline())
        return answer.get("reply", answer.get("error"))

    def leave(self):
        if not self.process.stdin.closed:
            self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait()

    def kill(self):
        os.kill(self.pid, signal.SIGKILL)
        self.leave()


def root(test):
    return Caller(test)


def stranger(test):
    """A user who is nowhere logged in and owns nothing."""
    return Caller(test, "setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups")


def outside(test, user):
    """A process of the user's that belongs to no session of his."""
    return Caller(test, "setpriv", "--reuid=" + user, "--regid=" + user, "--init-groups")


class Session:
    """A login of the user's in front of the machine, through PAM and logind. The latest one is the
    active one."""

    def __init__(self, test, user):
        self.unit = f"session-of-{user}-{next(numbers)}"
        self.caller = Caller(
            test, "systemd-run", "--quiet", "--pipe", "--collect", "--unit=" + self.unit,
            "--uid=" + user, "--property=PAMName=login", "--setenv=XDG_SESSION_TYPE=x11",
            "--setenv=XDG_SESSION_CLASS=user", "--setenv=XDG_SEAT=seat0",
            "--setenv=PYTHONDONTWRITEBYTECODE=1")
        self.id = session_of(self.caller.pid)
        wait_until(self.is_active, "the session in front")

    def is_active(self):
        return property_of(["loginctl", "show-session", self.id], "Active") == "yes"

    def activate(self):
        subprocess.run(["loginctl", "activate", self.id], check=True)
        wait_until(self.is_active, "the session in front")


def session_of(pid):
    """The session that the process belongs to, by its control group."""
    with open(f"/proc/{pid}/cgroup", encoding="ascii") as file:
        return re.search(r"/session-(\w+)\.scope", file.read()).group(1)


def property_of(command, name):
    done = subprocess.run([*command, "--property=" + name, "--value"], capture_output=True,
                          text=True, check=True)
    return done.stdout.strip()


class Bus:
    """What the bus tells of the helper, without starting it."""

    def __init__(self):
        self.connection = Gio.bus_get_sync(Gio.BusType.SYSTEM, None)

    def call(self, method, arguments=None):
        reply = self.connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
            arguments, None, Gio.DBusCallFlags.NONE, -1, None).unpack()
        return reply[0] if reply else None

    def has_owner(self, name=NAME):
        return self.call("NameHasOwner", GLib.Variant("(s)", (name,)))

    def process_of(self, name=NAME):
        return self.call("GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))
