"""The program with the windows, as the resident program starts it, under a real window manager."""

import json
import os
import re
import shutil
import subprocess
import unittest

from desktop import PATIENCE, PROGRAMS, Desktop, wait_until

PROGRAM = os.path.join(PROGRAMS, "quorvane-window")
SPLASH = os.path.join(PROGRAMS, "..", "Resources", "Splash.ui")
ALERT = {"messageText": "Move?", "informativeText": "It can be moved.",
         "buttons": ["Move", "Do Not Move"], "safeButton": 1}
EVERY_DESKTOP = 0xFFFFFFFF
BLUR = "_KDE_NET_WM_BLUR_BEHIND_REGION"
LRELEASE = "/usr/lib/qt6/bin/lrelease"
GERMAN = """<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE"><context><name>Quorvane</name><message>
<source>Welcome to Quorvane</source><translation>Willkommen</translation>
</message></context></TS>
"""


def output_of(desktop, *command):
    return subprocess.run(command, env=desktop.env, capture_output=True, text=True, check=False,
                          timeout=PATIENCE).stdout


class WithoutDisplay(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)

    def run_program(self, *arguments, text="", **extra):
        return subprocess.run([PROGRAM, *arguments], env=dict(self.desktop.env, **extra),
                              input=text, capture_output=True, text=True, check=False,
                              timeout=PATIENCE, cwd=self.desktop.folder)

    def check_no_display(self, **extra):
        for arguments in (["window", SPLASH], ["alert"], ["copy"]):
            done = self.run_program(*arguments, text=json.dumps(ALERT), **extra)
            self.assertEqual(done.returncode, 3, arguments)
            self.assertRegex(done.stderr, r"\Aquorvane-window: no display: [^\n]+\n\Z")
            self.assertEqual(done.stdout, "")
        self.assertEqual([name for name in os.listdir(self.desktop.folder) if "core" in name], [])

    def test_no_display_at_all_ends_with_three(self):
        self.check_no_display()

    def test_dead_x_display_ends_with_three(self):
        self.check_no_display(DISPLAY=":987")

    def test_dead_wayland_display_ends_with_three(self):
        self.check_no_display(WAYLAND_DISPLAY="wayland-987")

    def test_display_that_is_no_display_ends_with_three(self):
        self.check_no_display(DISPLAY="garbage")

    def test_help_and_version_need_no_display(self):
        self.assertIn("usage: quorvane-window", self.run_program("--help").stdout)
        self.assertRegex(self.run_program("--version").stdout, r"\Aquorvane-window [0-9.]+\n\Z")

    def test_command_that_does_not_exist_ends_with_two(self):
        done = self.run_program("open")
        self.assertEqual(done.returncode, 2)
        self.assertIn('"open"', done.stderr)


class OnScreen(unittest.TestCase):
    def setUp(self):
        for program in ("Xvfb", "openbox", "xdotool", "xprop"):
            if not shutil.which(program):
                self.skipTest(f"skipped: {program} is not installed")
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)
        self.desktop.start_x()
        self.desktop.start_openbox()

    # --- what the resident program does

    def start(self, *arguments, text=None, program=PROGRAM, **extra):
        """Starts it, with the text at its standard input."""
        source = self.desktop.path("stdin")
        with open(source, "w", encoding="utf-8") as file:
            file.write(text or "")
        with open(source, encoding="utf-8") as stdin:
            process = subprocess.Popen([program, *arguments], env=dict(self.desktop.env, **extra),
                                       stdin=stdin, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                       text=True)
        self.addCleanup(self.end, process)
        return process

    @staticmethod
    def end(process):
        if process.poll() is None:
            process.kill()
        process.communicate()

    def finish(self, process):
        """Waits for its end: (status, standard output, standard error)."""
        out, err = process.communicate(timeout=PATIENCE)
        return process.returncode, out, err

    def finish_by_key(self, process, key):
        """Presses the key until the process ends: the window manager takes note of some only when
        it has done with showing the window."""
        def pressed():
            self.tool("key", key)
            return process.poll() is not None
        wait_until(pressed, "the end after " + key)
        return self.finish(process)

    # --- what the user does and sees

    def tool(self, *arguments):
        return output_of(self.desktop, "xdotool", *arguments)

    def active_window(self):
        """0 when there is none, also before the window manager has ever said so."""
        found = re.search(r"# (0x[0-9a-f]+)", self.property_of("-root", "_NET_ACTIVE_WINDOW"))
        return int(found.group(1), 16) if found else 0

    def property_of(self, window, name):
        where = ["-root"] if window == "-root" else ["-id", str(window)]
        return output_of(self.desktop, "xprop", *where, name)

    def window_called(self, title):
        found = wait_until(lambda: self.tool("search", "--onlyvisible", "--name", f"^{title}$"),
                           f"a window {title}")
        window = int(found.split()[-1])
        wait_until(lambda: self.active_window() == window, "the keyboard")
        return window

    def geometry(self, window):
        """Of the window without its frame: x, y, width, height."""
        text = output_of(self.desktop, "xwininfo", "-id", str(window))
        return [int(re.search(name + r":\s+(-?\d+)", text).group(1))
                for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")]

    def stack(self):
        """The windows from the lowest to the highest."""
        line = self.property_of("-root", "_NET_CLIENT_LIST_STACKING")
        return [int(number, 16) for number in line.partition("#")[2].split(",")]

    def ordinary_window(self):
        layout = self.desktop.path("Ordinary.ui")
        with open(layout, "w", encoding="utf-8") as file:
            file.write('<ui version="4.0"><widget class="QWidget" name="Window"><property '
                       'name="windowTitle"><string>Ordinary</string></property></widget></ui>')
        self.start("window", layout)
        return self.window_called("Ordinary")

    # --- tests

    def test_splash_is_above_ordinary_windows_also_when_they_are_used(self):
        self.start("window", SPLASH, "--all-desktops", "--level", "26")
        splash = self.window_called("Welcome to Quorvane")
        ordinary = self.ordinary_window()
        wait_until(lambda: ordinary in self.stack(), "the ordinary window")
        self.assertGreater(self.stack().index(splash), self.stack().index(ordinary))
        self.assertIn("_NET_WM_STATE_ABOVE", self.property_of(splash, "_NET_WM_STATE"))

    def test_splash_is_on_every_desktop(self):
        self.start("window", SPLASH, "--all-desktops", "--level", "26")
        splash = self.window_called("Welcome to Quorvane")
        line = self.property_of(splash, "_NET_WM_DESKTOP")
        self.assertEqual(int(line.split()[-1]), EVERY_DESKTOP)
        self.tool("set_desktop", "1")
        wait_until(lambda: self.property_of("-root", "_NET_CURRENT_DESKTOP").endswith("= 1\n"),
                   "the other desktop")
        self.assertIn(str(splash), self.tool("search", "--onlyvisible", "--name",
                                             "^Welcome to Quorvane$").split())

    def test_ordinary_window_is_on_its_desktop_and_not_above(self):
        window = self.ordinary_window()
        self.assertEqual(self.property_of(window, "_NET_WM_DESKTOP").split()[-1], "0")
        self.assertNotIn("ABOVE", self.property_of(window, "_NET_WM_STATE"))

    def test_window_asks_for_blur_behind_it(self):
        self.start("window", SPLASH)
        splash = self.window_called("Welcome to Quorvane")
        self.assertNotIn("not found", self.property_of(splash, BLUR))

    def offer_blur(self):
        """As a window manager that has it tells everybody."""
        subprocess.run(["xprop", "-root", "-f", "_NET_SUPPORTED", "32a", "-set", "_NET_SUPPORTED",
                        BLUR], env=self.desktop.env, check=True, timeout=PATIENCE)

    def test_where_blur_is_offered_the_content_takes_the_title_bars_place(self):
        if not shutil.which("xcompmgr"):
            self.skipTest("skipped: xcompmgr is not installed")
        self.desktop.spawn("xcompmgr", ["xcompmgr"])
        self.offer_blur()
        # The compositor says nowhere when it is there; a window that comes too early has a frame.
        def frame():
            process = self.start("window", SPLASH)
            extents = self.property_of(self.window_called("Welcome to Quorvane"),
                                       "_NET_FRAME_EXTENTS")
            self.end(process)
            return extents
        wait_until(lambda: frame().endswith("= 0, 0, 0, 0\n"), "a window without a frame")

    def test_without_a_compositor_the_window_keeps_its_frame(self):
        self.offer_blur()
        self.start("window", SPLASH)
        extents = self.property_of(self.window_called("Welcome to Quorvane"),
                                   "_NET_FRAME_EXTENTS")
        self.assertNotIn("= 0, 0, 0, 0", extents)

    def test_translations_of_the_bundle_are_used(self):
        if not os.path.exists(LRELEASE):
            self.skipTest("skipped: lrelease (qt6-l10n-tools) is not installed")
        # A bundle of its own, because the real one may have translations.
        contents = self.desktop.path("Contents")
        translations = os.path.join(contents, "Resources", "Translations")
        for folder in (translations, os.path.join(contents, "Linux")):
            os.makedirs(folder)
        program = shutil.copy(PROGRAM, os.path.join(contents, "Linux"))
        source = self.desktop.path("german.ts")
        with open(source, "w", encoding="utf-8") as file:
            file.write(GERMAN)
        subprocess.run([LRELEASE, "-silent", source, "-qm",
                        os.path.join(translations, "quorvane_de.qm")], check=True,
                       timeout=PATIENCE)
        self.start("window", SPLASH, program=program, LANG="de_DE.UTF-8", LANGUAGE="de")
        self.window_called("Willkommen")

    def test_window_takes_the_keyboard_from_the_program_in_use(self):
        self.ordinary_window()
        self.tool("type", "abc")
        self.start("window", SPLASH)
        self.window_called("Welcome to Quorvane")

    def test_centered_window_is_in_the_middle(self):
        self.start("window", SPLASH, "--center")
        splash = self.window_called("Welcome to Quorvane")
        x, y, width, height = self.geometry(splash)
        self.assertAlmostEqual(x + width / 2, 640, delta=5)
        self.assertAlmostEqual(y + height / 2, 400, delta=5)

    def test_escape_closes_the_splash(self):
        process = self.start("window", SPLASH)
        self.window_called("Welcome to Quorvane")
        self.assertEqual(self.finish_by_key(process, "Escape"), (0, "", ""))

    def test_window_manager_closes_the_splash(self):
        process = self.start("window", SPLASH)
        self.window_called("Welcome to Quorvane")
        self.assertEqual(self.finish_by_key(process, "alt+F4")[0], 0)

    def test_layout_that_cannot_be_loaded_ends_with_two(self):
        layout = self.desktop.path("Faulty.ui")
        with open(layout, "w", encoding="utf-8") as file:
            file.write("<ui")
        for name in (layout, self.desktop.path("Missing.ui"), self.desktop.folder):
            status, out, err = self.finish(self.start("window", name))
            self.assertEqual(status, 2)
            self.assertEqual(out, "")
            self.assertRegex(err, rf"\Aquorvane-window: {name}: [^\n]+\n\Z")

    def click(self, window, x, y):
        self.tool("mousemove", "--window", str(window), str(x), str(y), "click", "1")

    def test_clicked_button_of_an_alert_is_printed(self):
        # The first button is the rightmost one, and the second is left of it.
        for expected, share in (("0\n", 0.88), ("1\n", 0.62)):
            process = self.start("alert", text=json.dumps(ALERT))
            window = self.window_called("Quorvane")
            _, _, width, height = self.geometry(window)
            self.click(window, int(width * share), height - 36)
            self.assertEqual(self.finish(process), (0, expected, ""))

    def test_return_presses_the_first_button_of_an_alert(self):
        process = self.start("alert", text=json.dumps(ALERT))
        self.window_called("Quorvane")
        self.assertEqual(self.finish_by_key(process, "Return"), (0, "0\n", ""))

    def test_escape_and_closing_an_alert_are_its_safe_button(self):
        for key in ("Escape", "alt+F4"):
            process = self.start("alert", text=json.dumps(ALERT))
            self.window_called("Quorvane")
            self.assertEqual(self.finish_by_key(process, key), (0, "1\n", ""))

    def test_alert_that_is_no_json_ends_with_two(self):
        for text in ("", "{", "[]", '{"messageText": "a", "buttons": []}'):
            status, out, err = self.finish(self.start("alert", text=text))
            self.assertEqual((status, out), (2, ""), text)
            self.assertRegex(err, r"\Aquorvane-window: the alert on standard input: [^\n]+\n\Z")

    def pasted(self):
        return output_of(self.desktop, "xclip", "-selection", "clipboard", "-out")

    def test_copied_text_stays_until_another_program_copies(self):
        if not shutil.which("xclip"):
            self.skipTest("skipped: xclip is not installed")
        text = "Gr\u00fc\u00dfe\nfrom <here>"
        process = self.start("copy", text=text)
        wait_until(lambda: self.pasted() == text, "the text on the clipboard")
        self.assertEqual(self.pasted(), text)
        self.assertIsNone(process.poll())
        subprocess.run(["xclip", "-selection", "clipboard", "-in"], env=self.desktop.env,
                       input=b"other", check=True, timeout=PATIENCE,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.assertEqual(self.finish(process), (0, "", ""))
        self.assertEqual(self.pasted(), "other")


if __name__ == "__main__":
    unittest.main()
