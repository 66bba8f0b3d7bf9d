"""Runs unittest in a process namespace of its own: what a test stops or leaves behind there cannot
be a process of the machine's.

usage: process_namespace.py TEST
"""

import os
import subprocess
import sys

UNSHARE = ["unshare", "--pid", "--fork", "--kill-child", "--mount-proc"]


def main(test):
    allowed = subprocess.run([*UNSHARE, "true"], check=False, capture_output=True, text=True)
    if allowed.returncode != 0:
        print(f"skipped: no process namespace ({allowed.stderr.strip()})")
        return
    os.execvp(UNSHARE[0], [*UNSHARE, sys.executable, "-W", "ignore", "-m", "unittest", test])


main(*sys.argv[1:])
