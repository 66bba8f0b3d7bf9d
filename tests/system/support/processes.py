"""What /proc tells of processes."""

import os


def stat(pid):
    """(name, state, fields from the parent's id on), or nothing when the process has ended."""
    try:
        with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as file:
            head, _, rest = file.read().rpartition(") ")
    except OSError:
        return None
    fields = rest.split()
    return head.partition("(")[2], fields[0], [int(field) for field in fields[1:]]


def state(pid):
    found = stat(pid)
    return found[1] if found else None


def ticks(pid):
    """Clock ticks of the processor that the process has used, all threads together."""
    found = stat(pid)
    return sum(found[2][10:12]) if found else 0


def every():
    return [int(name) for name in os.listdir("/proc") if name.isdigit()]


def program(pid):
    """The path of the executable; empty for kernel threads and processes that have ended."""
    try:
        return os.readlink(f"/proc/{pid}/exe")
    except OSError:
        return ""


def stopped():
    """Everything in the namespace that is stopped: {process id: executable}."""
    return {pid: program(pid) for pid in every() if state(pid) == "T"}
