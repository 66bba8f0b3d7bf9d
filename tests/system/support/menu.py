"""The status item's menu without any bar: clicked as a bar does it."""

from desktop import NAME
from gi.repository import GLib

INTERFACE, PATH = "com.canonical.dbusmenu", "/MenuBar"


def layout(desktop, owner, depth=-1):
    """The children of the menu: (id, properties, children). `depth` is -1 for all of it."""
    _, (_, _, children) = desktop.buses["session"].call(
        owner, PATH, INTERFACE, "GetLayout", GLib.Variant("(iias)", (0, depth, [])))
    return children


def items(children):
    """(id, properties) of these and of what is in their submenus."""
    for identifier, properties, grandchildren in children:
        yield identifier, properties
        yield from items(grandchildren)


def click_item(desktop, title):
    bus = desktop.buses["session"]
    program = bus.call_bus("GetNameOwner", NAME)
    item = next(identifier for identifier, properties in items(layout(desktop, program))
                if properties.get("label", "").startswith(title))
    bus.call(program, PATH, INTERFACE, "Event",
             GLib.Variant("(isvu)", (item, "clicked", GLib.Variant("s", ""), 0)))
