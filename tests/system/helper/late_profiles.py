"""A power-profiles service that answers when a test says so, for what a real one does only at the
wrong moment."""

import threading

from gi.repository import Gio, GLib

from helper_machine import PROFILES, Connection

PATH = "/net/hadess/PowerProfiles"
DESCRIPTION = """<node><interface name="net.hadess.PowerProfiles">
  <method name="HoldProfile">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="u" direction="out"/>
  </method>
  <method name="ReleaseProfile"><arg type="u" direction="in"/></method>
</interface></node>"""


class LateProfiles:
    """Gives out the cookies 1, 2 ..., at once unless `is_late`."""

    def __init__(self):
        self.is_late = False
        self.held = set()
        self.waiting = []
        self.given = 0
        self.loop = None
        self.connection = None
        self.ready = threading.Event()
        self.thread = threading.Thread(target=self.run, daemon=True)
        self.thread.start()
        self.ready.wait()

    def run(self):
        context = GLib.MainContext.new()
        context.push_thread_default()
        self.loop = GLib.MainLoop.new(context, False)
        self.connection = Connection().bus
        interface = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
        self.connection.register_object(PATH, interface, self.called, None, None)
        self.appear()
        self.ready.set()
        self.loop.run()

    def stop(self):
        self.loop.quit()
        self.thread.join()
        self.connection.close_sync(None)

    def ask_bus(self, method, *arguments):
        kinds = {"RequestName": "(su)", "ReleaseName": "(s)"}
        self.connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
            GLib.Variant(kinds[method], arguments), None, Gio.DBusCallFlags.NONE, -1, None)

    def appear(self):
        self.ask_bus("RequestName", PROFILES, 0)

    def disappear(self):
        """As one that ends: whatever it held is forgotten."""
        self.ask_bus("ReleaseName", PROFILES)
        self.held.clear()

    def called(self, _connection, _sender, _path, _interface, method, arguments, invocation):
        if method == "ReleaseProfile":
            self.held.discard(arguments.unpack()[0])
            invocation.return_value(None)
        elif self.is_late:
            self.waiting.append(invocation)
        else:
            self.hold(invocation)

    def hold(self, invocation):
        self.given += 1
        self.held.add(self.given)
        invocation.return_value(GLib.Variant("(u)", (self.given,)))

    def answer(self):
        while self.waiting:
            self.hold(self.waiting.pop())

    def refuse(self):
        """As the bus does for a service that ends."""
        while self.waiting:
            self.waiting.pop().return_dbus_error("org.freedesktop.DBus.Error.NoReply", "It ended.")
