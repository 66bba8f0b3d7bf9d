"""A whole system with systemd as its first process, in a container: a copy of this machine's root
that is thrown away at the end. Nothing outside can be reached by signals from there."""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

from desktop import PATIENCE, wait_until

SOURCES = str(pathlib.Path(__file__).resolve().parents[3])

# $1 the folder of the container, $2 its name, $3 the folder that it shares
BOOT = """set -e
mount -t cgroup2 none /sys/fs/cgroup
mkdir -p "/sys/fs/cgroup/$2"
echo $$ > "/sys/fs/cgroup/$2/cgroup.procs"
mount -t tmpfs -o size=2g tmpfs "$1"
mkdir "$1/upper" "$1/work" "$1/root" "$1/lower"
mount --bind / "$1/lower"
mount -t overlay overlay -o "lowerdir=/,upperdir=$1/upper,workdir=$1/work" "$1/root"
units="$1/root/etc/systemd/system"
mkdir -p "$units"
for service in docker.service docker.socket containerd.service NetworkManager.service \\
    NetworkManager-wait-online.service ssh.service; do
  ln -sfn /dev/null "$units/$service"
done
rm -f "$1/root/etc/machine-id"
systemd-machine-id-setup --root="$1/root" >/dev/null
exec systemd-nspawn -D "$1/root" -b --register=no --keep-unit --machine="$2" --private-network \\
  --console=pipe --bind-ro="$3" --bind-ro="$1/upper:/run/of-the-container:norbind" \\
  --bind-ro="$1/lower:/run/of-the-machine:norbind"
"""

# Where the container finds what it has changed of the machine's files, and the files themselves.
CHANGED, UNCHANGED = "/run/of-the-container", "/run/of-the-machine"

ENVIRONMENT = ["env", "-i", "PATH=/usr/sbin:/usr/bin:/sbin:/bin", "TERM=dumb", "LANG=C.UTF-8",
               "HOME=/root", "PYTHONDONTWRITEBYTECODE=1"]


class Container:
    def __init__(self):
        if os.getuid() != 0:
            raise unittest.SkipTest("only root can start a container")
        if shutil.which("systemd-nspawn") is None:
            raise unittest.SkipTest("no systemd-nspawn")
        allowed = subprocess.run(
            ["unshare", "--mount", "--propagation", "private", "sh", "-c",
             "mount -t tmpfs tmpfs /mnt && mount -t cgroup2 none /mnt"],
            capture_output=True, text=True, check=False)
        if allowed.returncode != 0:
            raise unittest.SkipTest("no container: " + allowed.stderr.strip())
        self.folder = tempfile.mkdtemp(prefix="quorvane-container-")
        self.name = "quorvane-" + os.path.basename(self.folder)[-8:].replace("_", "x")
        self.process = None
        self.leader = None

    def start(self):
        with open(os.path.join(tempfile.gettempdir(), self.name + ".log"), "wb") as log:
            self.process = subprocess.Popen(
                ["unshare", "--mount", "--propagation", "private", "bash", "-c", BOOT, "container",
                 self.folder, self.name, SOURCES], stdin=subprocess.DEVNULL, stdout=log,
                stderr=log, start_new_session=True)
        self.leader = wait_until(self.find_leader, "the container's first process")
        wait_until(lambda: self.run("systemctl", "is-system-running", "--wait").stdout.strip()
                   in ("running", "degraded"), "the container's start", 60)
        return self

    def find_leader(self):
        if self.process.poll() is not None:  # a mount or the container itself is refused
            raise unittest.SkipTest("no container: " + self.log().strip())
        found = subprocess.run(["pgrep", "-x", "-P", str(self.process.pid), "systemd"], capture_output=True,
                               text=True, check=False).stdout.split()
        return found[0] if found else None

    def log(self):
        with open(os.path.join(tempfile.gettempdir(), self.name + ".log"), encoding="utf-8",
                  errors="replace") as file:
            return file.read()

    def run(self, *command, timeout=PATIENCE, environment=()):
        return subprocess.run(
            ["nsenter", "-t", self.leader, "-m", "-u", "-i", "-p", "-n", "-C", *ENVIRONMENT,
             *environment, *command], stdin=subprocess.DEVNULL, capture_output=True, text=True,
            check=False, timeout=timeout)

    def unittest(self, folder, name, limit, environment=()):
        """Runs a test of the folder's modules in there. `limit` in seconds."""
        done = self.run(
            "sh", "-c", f"cd {folder} && exec /usr/bin/python3 -W ignore -m unittest {name}",
            timeout=limit, environment=[
                "PYTHONPATH=" + os.environ["PYTHONPATH"],
                "QUORVANE_APP=" + os.environ["QUORVANE_APP"], *environment])
        if done.returncode != 0:
            raise AssertionError(done.stdout + done.stderr)

    def stop(self):
        if self.process is not None and self.process.poll() is None:
            if self.leader:
                self.run("systemctl", "poweroff", "--force", "--force")
            try:
                self.process.wait(PATIENCE)
            except subprocess.TimeoutExpired:
                os.killpg(self.process.pid, signal.SIGKILL)
                self.process.wait()
        self.remove_control_groups()
        os.remove(os.path.join(tempfile.gettempdir(), self.name + ".log"))
        os.rmdir(self.folder)

    def remove_control_groups(self):
        """With whatever still runs in there."""
        for root in ("/sys/fs/cgroup/unified", "/sys/fs/cgroup"):
            folder = os.path.join(root, self.name)
            if os.path.isdir(folder):
                with open(folder + "/cgroup.kill", "w", encoding="ascii") as file:
                    file.write("1")
            end = time.monotonic() + PATIENCE
            while os.path.isdir(folder) and time.monotonic() < end:
                for path, _, _ in os.walk(folder, topdown=False):
                    try:
                        os.rmdir(path)
                    except OSError:
                        time.sleep(0.1)
