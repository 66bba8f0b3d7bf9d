#!/usr/bin/python3
"""A program that asks the helper, as whichever user it is run. It stays on the bus between the
commands, as what it has switched on is put back when it leaves.

Prints its process id and its name on the bus, then answers each line of standard input,
["METHOD", ARGUMENT...], with a line: {"reply": VALUE} or {"error": NAME, "text": MESSAGE}.
"""

import json
import os
import sys

from gi.repository import Gio, GLib

NAME = "com.TarnwickStudios.quorvane.helper"
PATH = "/com/TarnwickStudios/quorvane/helper"
LIMIT = 25000  # milliseconds


def ask(bus, method, *arguments):
    texts = GLib.Variant("(" + "s" * len(arguments) + ")", arguments)
    try:
        reply = bus.call_sync(NAME, PATH, NAME, method, texts, None, Gio.DBusCallFlags.NONE, LIMIT,
                              None)
    except GLib.Error as error:
        name = Gio.DBusError.get_remote_error(error)
        Gio.DBusError.strip_remote_error(error)
        return {"error": name or "none from the bus", "text": error.message}
    return {"reply": reply.unpack()[0]}


def main():
    bus = Gio.bus_get_sync(Gio.BusType.SYSTEM, None)
    print(json.dumps([os.getpid(), bus.get_unique_name()]), flush=True)
    for line in sys.stdin:
        print(json.dumps(ask(bus, *json.loads(line))), flush=True)


if __name__ == "__main__":
    main()
