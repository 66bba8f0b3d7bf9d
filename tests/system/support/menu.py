"""The status item's menu without any bar: clicked as a bar does it."""

import re

from desktop import NAME

INTERFACE, PATH = "com.canonical.dbusmenu", "/MenuBar"


def owner(desktop):
    answer = desktop.call("session", "org.freedesktop.DBus", "/org/freedesktop/DBus",
                          "org.freedesktop.DBus.GetNameOwner", NAME)
    return re.search(r":[\d.]+", answer).group()


def click_item(desktop, title):
    program = owner(desktop)
    layout = desktop.call("session", program, PATH, INTERFACE + ".GetLayout", "0", "--", "-1",
                          "['label']")
    item = re.search(r"\((\d+), \{'label': <['\"]" + re.escape(title), layout).group(1)
    desktop.call("session", program, PATH, INTERFACE + ".Event", item, "clicked", "<''>", "0")
