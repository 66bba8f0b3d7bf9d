#!/usr/bin/python3
"""Tries what the helper's sandbox is to refuse, and what it has to allow, and prints what became of
each attempt as JSON: {"name": "done" or the name of the error}. Run by the helper's unit in the
helper's place."""

import ctypes
import errno
import json
import os
import socket
import stat
import sys
import time

libc = ctypes.CDLL(None, use_errno=True)

NAME = "com.TarnwickStudios.quorvane.helper"
NEW_USERS = 0x10000000
EXECUTABLE_MEMORY = (0, 4096, 7, 0x22, -1, 0)  # read, write and execute; private and anonymous
ATTACH = 16
KERNEL_LOG_READ_ALL = 3


def called(result):
    if result in (-1, ctypes.c_void_p(-1).value):
        number = ctypes.get_errno()
        raise OSError(number, os.strerror(number))


def write(path):
    with open(path, "w", encoding="ascii"):
        pass
    os.remove(path)


def overwrite(path, text):
    with open(path, "w", encoding="ascii") as file:
        file.write(text)


def read(path):
    with open(path, "rb") as file:
        file.read(1)


def map_executable():
    libc.mmap.restype = ctypes.c_void_p
    called(libc.mmap(*map(ctypes.c_void_p, EXECUTABLE_MEMORY)))


def set_user_bit():
    path = f"/run/{NAME}/probe"
    with open(path, "w", encoding="ascii"):
        pass
    try:
        os.chmod(path, stat.S_ISUID | 0o755)
    finally:
        os.remove(path)


def run(program):
    os.posix_spawn(program, [program], {})


def open_socket(name):
    kind = socket.SOCK_RAW if name in ("AF_NETLINK", "AF_PACKET") else socket.SOCK_STREAM
    socket.socket(getattr(socket, name), kind).close()


def attempts(plain, parent):
    """`plain` is a process of another user, `parent` one of root's outside."""
    everything = {f"socket {name}": lambda name=name: open_socket(name) for name in
                  ("AF_UNIX", "AF_INET", "AF_INET6", "AF_NETLINK", "AF_PACKET")}
    everything.update({f"write {folder}": lambda folder=folder: write(folder + "/probe")
                       for folder in ("/", "/etc", "/usr", "/usr/local/lib", f"/usr/lib/{NAME}",
                                      "/var", "/var/lib", "/var/tmp", "/tmp", "/run", "/opt",
                                      "/boot", "/dev", "/home", "/root", f"/run/{NAME}")})
    everything.update({
        "read a home": lambda: read("/home/plain/secret"),
        "list the homes": lambda: os.listdir("/home/plain"),
        "read root's home": lambda: read("/root/secret"),
        "write the turbo switch": lambda: overwrite(
            "/sys/devices/system/cpu/intel_pstate/no_turbo", "0\n"),
        "write the profile of the firmware": lambda: overwrite(
            "/sys/firmware/acpi/platform_profile", "balanced\n"),
        "write another attribute of the kernel": lambda: write("/sys/firmware/probe"),
        "write a control group": lambda: os.mkdir("/sys/fs/cgroup/probe"),
        "read another's process": lambda: read(f"/proc/{plain}/stat"),
        "open another's memory": lambda: os.open(f"/proc/{parent}/mem", os.O_RDONLY),
        "look into another's files": lambda: os.listdir(f"/proc/{plain}/fd"),
        "signal another's process": lambda: os.kill(plain, 0),
        "write shared memory": lambda: write("/dev/shm/probe"),
        "trace a process": lambda: called(libc.ptrace(ATTACH, parent, None, None)),
        "become another user": lambda: os.setuid(65534),
        "give a file away": lambda: os.chown(f"/run/{NAME}", 65534, 65534),
        "make a user bit": set_user_bit,
        "make a device": lambda: os.mknod(f"/run/{NAME}/device", stat.S_IFCHR, os.makedev(1, 1)),
        "read the memory": lambda: read("/dev/mem"),
        "mount": lambda: called(libc.mount(b"tmpfs", b"/mnt", b"tmpfs", 0, None)),
        "unshare": lambda: called(libc.unshare(NEW_USERS)),
        "read the kernel's log": lambda: called(libc.klogctl(KERNEL_LOG_READ_ALL, None, 0)),
        "set the clock": lambda: time.clock_settime(time.CLOCK_REALTIME, time.time()),
        "name the machine": lambda: socket.sethostname("probe"),
        "be more important": lambda: os.nice(-5),
        "map executable memory": map_executable,
        "run a program of the system": lambda: run("/usr/bin/true"),
        "run a program from /tmp": lambda: run("/tmp/program"),
    })
    return everything


def error_of(attempt):
    try:
        attempt()
    except OSError as error:
        return error.errno
    return 0


def outcome(attempt):
    """Each in a process of its own, as some change what it is."""
    pid = os.fork()
    if pid == 0:
        os._exit(error_of(attempt))
    number = os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1])
    return errno.errorcode.get(number, str(number)) if number else "done"


def main(plain, parent):
    print("probe: " + json.dumps({name: outcome(attempt) for name, attempt in
                                  attempts(int(plain), int(parent)).items()}), flush=True)


main(*sys.argv[1:])
