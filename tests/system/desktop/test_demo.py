"""The demonstration as a user runs it: in a pipe, and on a terminal."""

import fcntl
import os
import pty
import re
import select
import signal
import struct
import subprocess
import termios
import time
import unittest

PROGRAM = os.path.join(os.environ["QUORVANE_APP"], "Contents", "Linux", "quorvane-demo")
PATIENCE = 60  # seconds that anything may take on a busy machine

ENTER_PICTURE = b"\x1b[?1049h"
LEAVE_PICTURE = b"\x1b[?1049l"
HIDE_CURSOR = b"\x1b[?25l"
SHOW_CURSOR = b"\x1b[?25h"

EVENT = re.compile(r"^\d\d:\d\d  +\d+ %  (settings|laptop|user|question|notice|mode|screen"
                   r"|stored|log): .+$")


def environment(**changes):
    """The test's own environment with a UTF-8 terminal of 256 colors, or what is said instead."""
    kept = {name: value for name, value in os.environ.items()
            if name not in ("COLORTERM", "NO_COLOR")}
    return kept | {"TERM": "xterm-256color", "LC_ALL": "C.UTF-8"} | changes


def run(*arguments, **changes):
    return subprocess.run([PROGRAM, *arguments], stdin=subprocess.DEVNULL, capture_output=True,
                          timeout=PATIENCE, env=environment(**changes), check=False)


class Terminal:
    """The program on a terminal of its own."""

    def __init__(self, *arguments, columns=80, rows=24, **changes):
        self.output = b""
        self.pid, self.master = pty.fork()
        if self.pid == 0:
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))
            os.execve(PROGRAM, [PROGRAM, *arguments], environment(**changes))
        self.status = None

    def read_until(self, done, what):
        end = time.monotonic() + PATIENCE
        while not done():
            if time.monotonic() > end:
                raise AssertionError(f"{what}: not within {PATIENCE} s; {self.output[-500:]!r}")
            if not self.read_some(0.2):
                return done()
        return True

    def read_some(self, seconds):
        """False when the program has closed the terminal."""
        if not select.select([self.master], [], [], seconds)[0]:
            return True
        try:
            data = os.read(self.master, 65536)
        except OSError:
            data = b""
        self.output += data
        return bool(data)

    def wait_for(self, words):
        if not self.read_until(lambda: words in self.output, repr(words)):
            raise AssertionError(f"{words!r} never came; {self.output[-500:]!r}")

    def wait_for_end(self):
        """The exit status, negative for a signal."""
        self.read_until(lambda: False, "the end")
        _, status = os.waitpid(self.pid, 0)
        self.status = os.waitstatus_to_exitcode(status)
        return self.status

    def resize(self, columns, rows):
        fcntl.ioctl(self.master, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def echoes(self):
        return bool(termios.tcgetattr(self.master)[3] & termios.ECHO)

    def stop(self):
        if self.status is None:
            os.kill(self.pid, signal.SIGKILL)
            os.waitpid(self.pid, 0)
        os.close(self.master)


class DemoProgramTest(unittest.TestCase):
    def on_terminal(self, *arguments, **details):
        terminal = Terminal(*arguments, **details)
        self.addCleanup(terminal.stop)
        return terminal

    def assert_restored(self, terminal):
        output = terminal.output
        for taken, restored in ((ENTER_PICTURE, LEAVE_PICTURE), (HIDE_CURSOR, SHOW_CURSOR)):
            self.assertEqual(output.count(taken), 1)
            self.assertGreater(output.rfind(restored), output.rfind(taken))

    # --- in a pipe

    def test_pipe_gets_a_line_per_event(self):
        result = run()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stderr, b"")
        self.assertNotIn(b"\x1b", result.stdout)
        events, _, closing = result.stdout.decode().partition("\n\n")
        for line in events.splitlines():
            self.assertRegex(line, EVENT)
        self.assertIn("10:51   70 %  question: Less Than 70% Battery Remaining \u2014 "
                      "Start Low Power Mode? [Start] [Not Now]", events)
        self.assertIn("10:51   70 %  user: clicks [Start]", events)
        self.assertIn("screen: brightness 100 % \u2192 50 %", events)
        minutes = re.search(r"notice: (You saved \d+ minutes of battery!)", events)
        self.assertTrue(minutes, events)
        self.assertIn(minutes[1], closing)
        self.assertIn("simulated", closing)

    def test_pipe_automatic_mode_asks_nothing(self):
        events = run("--mode", "automatic", "--threshold", "40").stdout.decode()
        self.assertNotIn("question:", events)
        self.assertRegex(events, r"40 %  notice: Low Power Mode is on")

    def test_pipe_not_now_leaves_the_screen_alone(self):
        events = run("--answer", "not-now").stdout.decode()
        self.assertIn("clicks [Not Now]", events)
        self.assertNotIn("screen:", events)
        self.assertNotIn("mode: Low Power Mode is on", events)

    def test_pipe_manual_mode_is_the_users_business(self):
        events = run("--mode", "manual").stdout.decode()
        self.assertNotIn("question:", events)
        self.assertRegex(events, r"55 %  user: switches Low Power Mode on")

    def test_same_day_every_time(self):
        self.assertEqual(run().stdout, run().stdout)

    def test_ascii_locale_gets_ascii(self):
        result = run(LC_ALL="C")
        self.assertEqual(result.returncode, 0)
        self.assertEqual(result.stderr, b"")
        lines = result.stdout.decode("ascii")
        self.assertIn("brightness 100 % -> 50 %", lines)

    def test_bad_value_is_named_with_what_is_allowed(self):
        result = run("--threshold", "101")
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stdout, b"")
        self.assertIn(b'--threshold cannot be "101"; allowed are whole numbers from 0 to 100.',
                      result.stderr)

    def test_help_and_version_succeed(self):
        self.assertIn(b"--answer", run("--help").stdout)
        self.assertRegex(run("--version").stdout, rb"^quorvane-demo \d+\.\d+\.\d+\n$")
        self.assertEqual(run("--help").returncode, 0)

    def test_full_disk_is_an_error(self):
        with open("/dev/full", "wb") as full:
            result = subprocess.run([PROGRAM], stdout=full, stderr=subprocess.PIPE,
                                    timeout=PATIENCE, env=environment(), check=False)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"could not be written", result.stderr)

    # --- on a terminal

    def test_terminal_gets_a_picture_and_then_the_summary(self):
        terminal = self.on_terminal("--speed", "100")
        self.assertEqual(terminal.wait_for_end(), 0)
        self.assert_restored(terminal)
        picture, _, rest = terminal.output.rpartition(LEAVE_PICTURE)
        self.assertIn("\u256d".encode(), picture)
        self.assertIn(b"\x1b[0;1;38;5;", picture)
        self.assertIn(b"10:51   70 %  mode: Low Power Mode is on", rest)
        self.assertRegex(rest, rb"In the end Quorvane said: \"You saved \d+ minutes")
        self.assertNotIn(b"\x1b", rest)
        self.assertTrue(terminal.output.startswith(ENTER_PICTURE))

    def test_picture_stands_still_without_output(self):
        terminal = self.on_terminal("--speed", "0.1")
        terminal.wait_for(b"on the desk")
        terminal.read_some(1.0)
        before = len(terminal.output)
        for _ in range(5):
            terminal.read_some(0.2)
        self.assertEqual(len(terminal.output), before)

    def test_interrupt_gives_the_terminal_back(self):
        terminal = self.on_terminal()
        terminal.wait_for(b"on the desk")
        self.assertFalse(terminal.echoes())
        os.write(terminal.master, b"\x03")
        self.assertEqual(terminal.wait_for_end(), 128 + signal.SIGINT)
        self.assert_restored(terminal)
        self.assertIn(b"ended early", terminal.output)

    def test_termination_gives_the_terminal_back(self):
        terminal = self.on_terminal()
        terminal.wait_for(b"on the desk")
        os.kill(terminal.pid, signal.SIGTERM)
        self.assertEqual(terminal.wait_for_end(), 128 + signal.SIGTERM)
        self.assert_restored(terminal)

    def test_key_q_ends_it(self):
        terminal = self.on_terminal()
        terminal.wait_for(b"on the desk")
        os.write(terminal.master, b"xq")
        self.assertEqual(terminal.wait_for_end(), 0)
        self.assert_restored(terminal)

    def test_closed_window_ends_the_program(self):
        terminal = self.on_terminal()
        terminal.wait_for(b"on the desk")
        os.kill(terminal.pid, signal.SIGHUP)
        self.assertEqual(terminal.wait_for_end(), 128 + signal.SIGHUP)

    def test_resized_window_is_painted_anew(self):
        terminal = self.on_terminal("--speed", "0.1")
        terminal.wait_for(b"q quits")
        terminal.output = b""
        terminal.resize(120, 40)
        terminal.wait_for(b"\x1b[2J")
        terminal.wait_for(b"\x1b[40;2H")
        terminal.output = b""
        terminal.resize(30, 5)
        terminal.wait_for(b"The window is too small.")

    def test_background_and_back(self):
        terminal = self.on_terminal("--speed", "0.1")
        terminal.wait_for(b"on the desk")
        os.write(terminal.master, b"\x1a")
        terminal.wait_for(LEAVE_PICTURE)
        _, status = os.waitpid(terminal.pid, os.WUNTRACED)
        self.assertTrue(os.WIFSTOPPED(status))
        self.assertTrue(terminal.echoes())
        terminal.output = b""
        os.kill(terminal.pid, signal.SIGCONT)
        terminal.wait_for(ENTER_PICTURE)
        terminal.wait_for(b"on the desk")

    def test_no_color_is_respected(self):
        terminal = self.on_terminal("--speed", "100", NO_COLOR="1")
        self.assertEqual(terminal.wait_for_end(), 0)
        self.assertIn(b"on the desk", terminal.output)
        self.assertNotRegex(terminal.output, rb"\x1b\[[0-9;]*[;\[](3|4|9)[0-9][;m]")

    def test_ascii_terminal_gets_an_ascii_picture(self):
        terminal = self.on_terminal("--speed", "100", LC_ALL="C")
        self.assertEqual(terminal.wait_for_end(), 0)
        terminal.output.decode("ascii")
        self.assertIn(b"+------", terminal.output)

    def test_plain_terminals_get_lines(self):
        for details in ({"TERM": "dumb"}, {"columns": 59}, {"rows": 10}):
            with self.subTest(**details):
                terminal = self.on_terminal(**details)
                self.assertEqual(terminal.wait_for_end(), 0)
                self.assertNotIn(b"\x1b", terminal.output)
                self.assertIn(b"10:51   70 %  question:", terminal.output)

    def test_plain_option_gets_lines(self):
        terminal = self.on_terminal("--plain")
        self.assertEqual(terminal.wait_for_end(), 0)
        self.assertNotIn(b"\x1b", terminal.output)


if __name__ == "__main__":
    unittest.main()
