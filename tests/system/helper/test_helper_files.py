"""Which files the helper opens and writes whatever it is asked: the production program under strace
on a private machine."""

import os
import re
import unittest

from gi.repository import GLib

from desktop import wait_until
from helper_files import (CONFIGURATION, CPU_TUNE, DISABLE_TURBO, NAME, PACKAGED, RUNTIME, UNIT)
from helper_machine import Connection, HelperMachine
from hostile_machine import require_no_sanitizer
from hostile_messages import call, hostile_texts

TRACE = "/run/trace"
IN_FRONT = 4711
COMMANDS = (("GetVersion",), ("LoadModuleNamed", DISABLE_TURBO),
            ("UnloadModuleNamed", DISABLE_TURBO), ("LoadModuleNamed", CPU_TUNE),
            ("UnloadModuleNamed", CPU_TUNE), ("EnableLowPowerMode",), ("DisableLowPowerMode",),
            ("GetTaskPowerMetrics",))

OWN = rf"{re.escape(RUNTIME)}(/(putting-back\.journal(\.lock|\.\w+)?|loaded(\.\w+)?))?"
ATTRIBUTES = r"/sys/devices/system/cpu/(intel_pstate/no_turbo|cpufreq/(boost|policy\d+/boost)|" \
             r"cpufreq|possible|online)|/sys/firmware/acpi/platform_profile(_choices)?"

# By the kind of thing; each has to be matched whole.
READ = {
    "libraries": r"(/usr)?/lib(64)?/([\w-]+/)?(lib[\w.+-]+\.so[\w.]*|gconv/gconv-modules\.cache)",
    "the dynamic linker's": r"/etc/ld\.so\.cache",
    "the language C": r"/usr/lib/locale/(locale-archive|C\.(UTF-8|utf8)/[\w/]+)|"
                      r"/usr/share/locale/locale\.alias",
    "the time zone": r"/etc/localtime|/usr/share/zoneinfo/[\w/+-]*",
    "processes": r"/proc(/stat|/\d+/(stat|status|task|task/\d+/status))?",
    "itself": r"/proc/self/(exe|maps|fd/\d+)|/proc/mounts",
    "extensions": rf"{re.escape(PACKAGED)}/({CPU_TUNE}|{re.escape(DISABLE_TURBO)})"
                  r"/Contents/Info\.plist",
    "attributes": ATTRIBUTES,
    "its own folder": OWN,
    "the configuration": re.escape(CONFIGURATION),
    "who is in front": r"/run/systemd/(seats|seats/seat0)/?",
}
WRITTEN = {"attributes": ATTRIBUTES, "its own folder": OWN}

# Of names: made, renamed and removed.
CHANGED = {"its own folder": OWN, "a file of its own that had no name yet": r"/proc/self/fd/\d+"}
CHANGING = "mkdir|rmdir|unlink|unlinkat|rename|renameat|renameat2|link|linkat|symlink|chmod|chown"

CALL = re.compile(r'^\d+ +(\w+)\((?:AT_FDCWD, )?"([^"]*)"(?:\.\.\.)?(?:, ([A-Z_|]+))?(.*)$',
                  re.MULTILINE)


def is_among(kinds, path):
    return any(re.fullmatch(pattern, path) for pattern in kinds.values())


class HelperFilesTest(HelperMachine):
    def setUp(self):
        require_no_sanitizer(self, "a sanitizer reads files of its own, and does not work traced")
        super().setUp()
        self.run_traced()
        with open("/run/systemd/seats/seat0", "w", encoding="ascii") as file:
            file.write(f"IS_SEAT0=1\nACTIVE=1\nACTIVE_UID={IN_FRONT}\n")
        with open(CONFIGURATION, "w", encoding="ascii") as file:
            file.write("0")
        os.chown(CONFIGURATION, IN_FRONT, IN_FRONT)
        self.caller = Connection()

    def run_traced(self):
        service = f"/usr/share/dbus-1/system-services/{UNIT}"
        with open(service, encoding="ascii") as file:
            text = file.read()
        traced = "Exec=/usr/bin/strace -f -qq -s 4096 -e trace=%file,%network,%process " \
                 f"-o {TRACE} "
        with open(service, "w", encoding="ascii") as file:
            file.write(text.replace("Exec=", traced))
        self.bus.call("ReloadConfig")

    def work(self):
        """Everything that it can be asked, and the end of a caller that holds all of it."""
        self.start_profiles()
        for command in COMMANDS:
            self.assertNotIn("org.freedesktop.DBus.Error", str(self.caller.ask(*command)))
        for text in hostile_texts():
            for method in ("LoadModuleNamed", "UnloadModuleNamed"):
                message = call(method, GLib.Variant("(s)", (text,)))
                self.caller.bus.send_message_with_reply_sync(message, 0, 20000, None)
        self.end("profiles")
        for command in COMMANDS[0], COMMANDS[1], COMMANDS[3], COMMANDS[5]:
            self.caller.ask(*command)
        self.caller.leave()
        wait_until(lambda: self.snapshot() == self.found, "everything as found")

    def calls(self):
        """(name, path, flags) of all that the helper has tried, also in vain."""
        with open(TRACE, encoding="ascii") as file:
            text = file.read()
        return {(found[1], found[2], found[3] or "") for found in CALL.finditer(text)}

    def test_nothing_is_opened_but_what_the_helper_is_about(self):
        self.work()
        opened = {(path, flags) for name, path, flags in self.calls()
                  if name in ("open", "openat", "openat2", "creat")}
        self.assertIn((CONFIGURATION, "O_RDONLY|O_NOFOLLOW|O_CLOEXEC|O_PATH"), opened)
        reading = {path for path, flags in opened if "O_WRONLY" not in flags
                   and "O_RDWR" not in flags}
        self.assertEqual({path for path in reading if not is_among(READ, path)}, set())
        writing = {path for path, _ in opened} - reading
        self.assertIn("/sys/devices/system/cpu/intel_pstate/no_turbo",
                      {path for path, flags in opened if "O_WRONLY" in flags})
        self.assertEqual({path for path in writing if not is_among(WRITTEN, path)}, set())

    def test_nothing_is_made_renamed_or_removed_outside_of_its_own_folder(self):
        self.work()
        changed = {path for name, path, _ in self.calls() if re.fullmatch(CHANGING, name)}
        self.assertIn(RUNTIME + "/loaded", changed)
        self.assertEqual({path for path in changed if not is_among(CHANGED, path)}, set())

    def test_no_other_program_is_run(self):
        self.work()
        run = {path for name, path, _ in self.calls() if name.startswith("exec")}
        self.assertEqual(run, {f"{PACKAGED}/{NAME}"})

    def test_nobody_but_the_bus_and_the_journal_is_spoken_to(self):
        self.work()
        with open(TRACE, encoding="ascii") as file:
            text = file.read()
        families = set(re.findall(r"\bsocket\((\w+)", text))
        places = set(re.findall(r'\bsun_path="([^"]*)"', text))
        self.assertEqual(families, {"AF_UNIX"})
        self.assertLessEqual(places, {"/run/dbus/system_bus_socket", "/run/systemd/journal/socket",
                                      "/run/systemd/journal/stdout"})


if __name__ == "__main__":
    unittest.main()
