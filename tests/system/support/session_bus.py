"""A test's own connection to a bus, which stays: asking something costs no process."""

from gi.repository import Gio, GLib

CLIENT = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
          Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)


class Bus:
    def __init__(self, address):
        self.address = address
        self.connection = None  # made by the first call, as the bus may not be there yet

    def call(self, destination, path, interface, method, arguments=None, limit=20):
        """The reply's values; None for an error, or without a bus. `arguments` is a GLib.Variant,
        `limit` is in seconds."""
        try:
            if self.connection is None or self.connection.is_closed():
                self.connection = Gio.DBusConnection.new_for_address_sync(
                    self.address, CLIENT, None, None)
            reply = self.connection.call_sync(destination, path, interface, method, arguments, None,
                                              Gio.DBusCallFlags.NONE, limit * 1000, None)
        except GLib.Error:
            return None
        return reply.unpack()

    def call_bus(self, method, *names):
        """A question about names to the bus itself; None for an error, else the reply's value."""
        arguments = GLib.Variant("(" + "s" * len(names) + ")", names) if names else None
        reply = self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                          method, arguments)
        return reply[0] if reply else None

    def property(self, destination, path, interface, name):
        """None where there is none."""
        reply = self.call(destination, path, "org.freedesktop.DBus.Properties", "Get",
                          GLib.Variant("(ss)", (interface, name)))
        return reply[0] if reply else None

    def close(self):
        if self.connection is not None and not self.connection.is_closed():
            self.connection.close_sync(None)
