"""Messages that no honest program sends."""

import os
import socket

from gi.repository import Gio, GLib

from helper_files import NAME, PATH

METHODS = ("LoadModuleNamed", "UnloadModuleNamed", "GetTaskPowerMetrics", "GetVersion",
           "EnableLowPowerMode", "DisableLowPowerMode")
MEGABYTE = 1 << 20
DEEPEST = 30  # containers within each other; the bus itself cuts off a little above


def nested(depth):
    value = GLib.Variant("s", "deep")
    for _ in range(depth):
        value = GLib.Variant("v", value)
    return value


def nested_arrays(depth):
    return GLib.Variant("a" * depth + "s", [] if depth == 1 else [nested_arrays(depth - 1)])


def wrong_arguments():
    """Tuples of a wrong type for every method, by what is wrong."""
    basic = {"y": 255, "b": True, "n": -1, "q": 65535, "i": -1, "u": 4294967295,
             "x": -9223372036854775808, "t": 18446744073709551615, "d": float("nan"),
             "o": "/", "g": "a{sv}"}
    wrong = {kind: GLib.Variant(f"({kind})", (value,)) for kind, value in basic.items()}
    wrong.update({
        "v": GLib.Variant("(v)", (GLib.Variant("s", "DisableTurboBoost.64bits.kext"),)),
        "as": GLib.Variant("(as)", (["DisableTurboBoost.64bits.kext"],)),
        "empty as": GLib.Variant("(as)", ([],)),
        "ay": GLib.Variant("(ay)", (b"DisableTurboBoost.64bits.kext\0",)),
        "a{sv}": GLib.Variant("(a{sv})", ({"path": GLib.Variant("s", "/etc")},)),
        "(s)": GLib.Variant("((s))", (("DisableTurboBoost.64bits.kext",),)),
        "ss": GLib.Variant("(ss)", ("DisableTurboBoost.64bits.kext", "")),
        "many": GLib.Variant("(" + "s" * 200 + ")", ("x",) * 200),
        "large": GLib.Variant.new_tuple(GLib.Variant.new_from_bytes(
            GLib.VariantType("ay"), GLib.Bytes(b"\xff" * MEGABYTE), True)),
        "deep variants": GLib.Variant.new_tuple(nested(DEEPEST)),
        "deep arrays": GLib.Variant.new_tuple(nested_arrays(DEEPEST)),
    })
    return wrong


def hostile_texts():
    """Well-typed, and of no extension."""
    return ("", "/", "//", "..", "../", "../" * 1000, "/etc/passwd", "/etc/shadow",
            "../../../../etc/passwd", "/proc/self/root", "/dev/zero", "\n", "a\nb", "\t\r\x1b[2J",
            "\x01\x02\x7f", "%s%n%x", "${HOME}", "$(id)", "`id`", "; id", "\u202e",
            "\U0010ffff", "CPUTune.kext\n", "\nCPUTune.kext", "cputune.kext", "CPUTune.kext/x",
            "CPUTune.kext/..", "CPUTune.kext\\", "CPUTune.kexť", "x" * MEGABYTE, "/" * MEGABYTE,
            "/x" * (MEGABYTE // 2), "\n" * MEGABYTE)


def call(method, arguments=None, path=PATH, interface=NAME):
    message = Gio.DBusMessage.new_method_call(NAME, path, interface, method)
    if arguments is not None:
        message.set_body(arguments)
    return message


def with_descriptors(method, count):
    """A call that carries open files, once as an argument and for the rest unasked."""
    files = Gio.UnixFDList.new()
    for _ in range(count):
        with open("/etc/passwd", "rb") as file:
            files.append(file.fileno())
    message = call(method, GLib.Variant("(h)", (0,)))
    message.set_unix_fd_list(files)
    return message


class RawConnection:
    """A connection to the bus that can send any bytes."""

    def __init__(self):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect("/run/dbus/system_bus_socket")
        user = str(os.getuid()).encode().hex().encode()
        self.socket.sendall(b"\0AUTH EXTERNAL " + user + b"\r\n")
        assert self.socket.recv(4096).startswith(b"OK")
        self.socket.sendall(b"BEGIN\r\n")
        hello = Gio.DBusMessage.new_method_call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                "org.freedesktop.DBus", "Hello")
        self.send(self.bytes_of(hello, 1))
        assert self.socket.recv(4096)

    @staticmethod
    def bytes_of(message, serial):
        message.set_serial(serial)
        return bytes(message.to_blob(Gio.DBusCapabilityFlags.UNIX_FD_PASSING))

    def send(self, data):
        """Returns whether the bus still listens."""
        try:
            self.socket.sendall(data)
        except OSError:
            return False
        return True

    def close(self):
        self.socket.close()
