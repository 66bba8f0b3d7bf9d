"""What can be seen of a running program from outside: its memory, its wake-ups, how soon it is
there."""

import os
import signal
import statistics
import struct
import subprocess
import time

from gi.repository import Gio, GLib


def memory(pid):
    """In MB of 1,000,000 bytes. PSS counts a page that several processes have for each of them in
    part. Unshareable are the pages that the program has written: nobody else can ever have them.
    Unshared are these and the pages of files that no other program here happens to have loaded."""
    sizes = {}
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
        for line in file:
            name, _, value = line.partition(":")
            if value.endswith("kB\n"):
                sizes[name] = int(value.split()[0]) * 1024 / 1e6
    return {"pss": sizes["Pss"], "unshareable": sizes["Private_Dirty"],
            "unshared": sizes["Private_Dirty"] + sizes["Private_Clean"]}


def switches(pid):
    """How often each thread has given its processor up so far, to be woken again later; by thread.
    A thread that another one has pushed off its processor was not asleep, and does not count."""
    found = {}
    for thread in os.listdir(f"/proc/{pid}/task"):
        try:
            with open(f"/proc/{pid}/task/{thread}/status", encoding="utf-8") as file:
                found[thread] = next(int(line.split()[1]) for line in file
                                     if line.startswith("voluntary_ctxt_switches"))
        except FileNotFoundError:
            pass  # it has just ended
    return found


def wakeups_during(pid, action):
    """How often the program was woken while the action ran."""
    before = switches(pid)
    action()
    return sum(count - before.get(thread, 0) for thread, count in switches(pid).items())


class BusObserver:
    """A connection of the benchmark's own to one of the private buses."""

    def __init__(self, address):
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
                 Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def subscribe(self, sender, interface, member, argument, callback):
        """`callback` gets the signal's arguments and when it arrived, in ns."""
        return self.bus.signal_subscribe(
            sender, interface, member, None, argument, Gio.DBusSignalFlags.NONE,
            lambda *signal: callback(signal[5].unpack(), time.monotonic_ns()))

    def unsubscribe(self, subscription):
        self.bus.signal_unsubscribe(subscription)

    def wait(self, condition, what, limit=20):
        """Handles signals until the condition holds."""
        context = GLib.MainContext.default()
        end = time.monotonic() + limit
        timer = GLib.timeout_add(100, lambda: True)  # so that the limit is looked at
        while not condition():
            if time.monotonic() > end:
                raise RuntimeError(f"waited {limit} s in vain: {what}")
            context.iteration(True)
        GLib.source_remove(timer)


class PanelSignals:
    """Counts what a status item tells the panels."""

    def __init__(self, address):
        self.observer = BusObserver(address)
        self.count = 0
        for interface in ("org.kde.StatusNotifierItem", "com.canonical.dbusmenu",
                          "org.freedesktop.DBus.Properties"):
            self.observer.subscribe(None, interface, None, None, self.tell)

    def tell(self, _arguments, _now):
        self.count += 1

    def during(self, action, seconds=3):
        """How many there were from the action until all has settled."""
        before = self.count
        action()
        end = time.monotonic() + seconds
        self.observer.wait(lambda: time.monotonic() > end, "the end of the settling")
        return self.count - before


def start_time(desktop, command, name, extra=None):
    """Milliseconds from exec until the program owns its name on the session bus; the program is
    ended again."""
    observer = BusObserver(desktop.env["DBUS_SESSION_BUS_ADDRESS"])
    owned = []
    observer.subscribe("org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged", name,
                       lambda change, now: owned.append(now) if change[2] else None)
    desktop.buses["session"].call_bus("GetId")  # by now the bus knows the subscription
    reading, writing = os.pipe()
    with open(desktop.path("start.log"), "ab") as log:
        process = subprocess.Popen(
            command, env=dict(desktop.env, **(extra or {})), stdin=subprocess.DEVNULL, stdout=log,
            stderr=log, preexec_fn=lambda: os.write(writing, struct.pack("q", time.monotonic_ns())))
    try:
        began, = struct.unpack("q", os.read(reading, 8))
        observer.wait(lambda: owned, f"{name} on the session bus")
    finally:
        os.close(reading)
        os.close(writing)
        end(process)
    return (owned[0] - began) / 1e6


def end(process):
    process.send_signal(signal.SIGTERM)
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def median_of(count, measure):
    return statistics.median(measure() for _ in range(count))
