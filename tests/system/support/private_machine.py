"""Runs unittest on what looks like a machine of its own, without a service manager: its own
processes, /run and /tmp, and an /etc, /usr and /var that are thrown away at the end. Whatever a
test installs, starts or leaves behind there never reaches the machine.

usage: private_machine.py TEST
"""

import os
import pathlib
import subprocess
import sys

SOURCES = str(pathlib.Path(__file__).resolve().parents[3])

UNSHARE = ["unshare", "--mount", "--propagation", "private", "--pid", "--fork", "--kill-child",
           "--mount-proc"]

# $1 the clone, which may lie in /tmp, $2 the folder to work in. The rest is the command; the shell
# stays as the first process and sees to those that lose their parents.
MACHINE = """set -e
clone=$1
place=$2
shift 2
mount -t tmpfs -o mode=0755 tmpfs /run
mkdir -p /run/clone /run/dbus /run/lock /run/systemd/seats /run/systemd/sessions
mount --bind "$clone" /run/clone
mount -t tmpfs -o mode=1777 tmpfs /tmp
mkdir -p "$clone"
case $clone in /tmp/*) mount --bind /run/clone "$clone";; esac
for folder in etc usr var; do
  mkdir -p "/run/changes/$folder/upper" "/run/changes/$folder/work"
  mount -t overlay overlay -o \\
    "lowerdir=/$folder,upperdir=/run/changes/$folder/upper,workdir=/run/changes/$folder/work" \\
    "/$folder"
done
cd "$place"
set +e
"$@"
exit $?
"""

MARK = "QUORVANE_PRIVATE_MACHINE"


def require():
    """For the start of a test that would change the machine elsewhere."""
    if MARK not in os.environ:
        raise RuntimeError("this test is to be run by private_machine.py, as ctest does")


def command(*words):
    return [*UNSHARE, "sh", "-c", MACHINE, "machine", SOURCES, os.getcwd(), *words]


def main(test):
    if os.getuid() != 0:
        print("skipped: only root can have a machine of its own")
        return
    allowed = subprocess.run(command("true"), check=False, capture_output=True, text=True)
    if allowed.returncode != 0:
        print(f"skipped: no private machine ({allowed.stderr.strip()})")
        return
    os.environ[MARK] = "1"
    everything = command(sys.executable, "-W", "ignore", "-m", "unittest", test)
    os.execvp(everything[0], everything)


if __name__ == "__main__":
    main(*sys.argv[1:])
