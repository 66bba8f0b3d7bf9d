"""What test_helper_sandbox runs inside of its container: what the helper's unit lets it reach."""

import json
import os
import re
import shutil
import signal
import subprocess

from helper_callers import outside, root
from helper_files import NAME, PACKAGED, RUNTIME, UNIT
from helper_system import HelperSystem, add_user, override

# How an attempt may be refused.
REFUSED = {"EACCES", "EPERM", "EROFS", "ENOENT", "EAFNOSUPPORT"}
ALLOWED = {"socket AF_UNIX", "write /run/" + NAME, "write the turbo switch",
           "write the profile of the firmware", "read another's process"}


class SandboxChecks(HelperSystem):
    def status(self):
        with open(f"/proc/{self.process()}/status", encoding="ascii") as file:
            return dict(re.findall(r"^(\w+):\s*(.*)$", file.read(), re.MULTILINE))

    def properties(self):
        root(self).ask("GetVersion")
        status = self.status()
        for kind in ("CapInh", "CapPrm", "CapEff", "CapBnd", "CapAmb"):
            self.assertEqual(int(status[kind], 16), 0, kind)
        self.assertEqual((status["NoNewPrivs"], status["Seccomp"]), ("1", "2"))
        self.assertEqual(status["Uid"].split(), ["0"] * 4)
        self.assertEqual(status["Umask"], "0077")

    def writable_places(self):
        root(self).ask("GetVersion")
        with open(f"/proc/{self.process()}/mountinfo", encoding="ascii") as file:
            fields = [line.split() for line in file]
        writable = {each[4] for each in fields if "rw" in each[5].split(",")}
        strange = {place for place in writable
                   if not re.match(rf"(/proc$|/dev(/|$)|{re.escape(RUNTIME)}$)", place)}
        strange -= {"/sys/devices/system/cpu", "/sys/firmware/acpi"}
        # The container's own, which can be written to by nobody in it.
        self.assertEqual(strange - {"/run/host/os-release", "/run/host/incoming"}, set())
        self.assertIn(RUNTIME, writable)

    def prepare_probe(self):
        """The probe in the helper's place; all else of the unit stays as it is. Python has to be
        executable for that, and the programs that the probe tries have to be there."""
        shutil.copy(os.path.join(os.path.dirname(os.path.abspath(__file__)), "sandbox_probe.py"),
                    f"{PACKAGED}/probe.py")
        for path in ("/home/plain/secret", "/root/secret"):
            with open(path, "w", encoding="ascii") as file:
                file.write("secret")
            os.chmod(path, 0o644)
        os.chmod("/home/plain", 0o755)
        shutil.copy("/usr/bin/true", "/tmp/program")
        shutil.copy(os.path.realpath("/usr/bin/python3"), f"{PACKAGED}/python3")

    def probe(self):
        plain = outside(self, "plain")
        other = root(self)  # is left stopped where it can be traced
        self.addCleanup(os.kill, other.pid, signal.SIGCONT)
        override(UNIT, "Type=oneshot\nExecStart=\nExecStopPost=\nBusName=\nStandardOutput=truncate:"
                 f"/run/probe.out\nExecStart={PACKAGED}/python3 {PACKAGED}/probe.py {plain.pid} "
                 f"{other.pid}\n")
        subprocess.run(["systemctl", "start", UNIT], check=False)
        with open("/run/probe.out", encoding="ascii") as file:
            return json.loads(re.search(r"^probe: (.*)$", file.read(), re.MULTILINE).group(1))

    def attempts(self):
        add_user()
        self.prepare_probe()
        found = self.probe()
        for name, outcome in found.items():
            if name in ALLOWED:
                self.assertEqual(outcome, "done", name)
            else:
                self.assertIn(outcome, REFUSED, name)

    def attempts_without_the_sandbox(self):
        """The probe's own test: what the sandbox refuses is refused by nothing else."""
        add_user()
        self.prepare_probe()
        with open(f"/usr/lib/systemd/system/{UNIT}", encoding="ascii") as file:
            text = file.read()
        kept = text[:text.index("# It writes attributes")]
        with open(f"/usr/lib/systemd/system/{UNIT}", "w", encoding="ascii") as file:
            file.write(kept)
        found = self.probe()
        missing = {"read the memory", "make a device", "set the clock", "read the kernel's log"}
        for name, outcome in found.items():
            if name not in missing:  # the container itself refuses these
                self.assertEqual(outcome, "done", name)
