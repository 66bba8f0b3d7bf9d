"""How the program starts and ends, with the windows that the user sees then."""

import os
import signal
import subprocess

from desktop import PATIENCE, PROGRAMS, wait_until
from menu import click_item
from resident import DIMMED, FOUND, ResidentSession

WELCOME = "Welcome to Quorvane"
ALERT = "^Quorvane$"
NO_BAR = "has no bar for status items"
PREFERENCES, FEEDBACK = "Open Quorvane Preferences...", "Send Feedback"
QUIT = "Quit Quorvane"
SWITCH = "Start Low Power Mode Now"


class StartTest(ResidentSession):
    def prepare(self, desktop):
        desktop.start_openbox()

    def x(self, *command):
        return subprocess.run(command, env=self.desktop.env, capture_output=True, text=True,
                              check=False, timeout=PATIENCE).stdout

    def windows(self, title):
        return self.x("xdotool", "search", "--onlyvisible", "--name", title).split()

    def wait_for_window(self, title):
        return wait_until(lambda: self.windows(title), f"a window \"{title}\"")[0]

    def press(self, window, key):
        self.x("xdotool", "windowactivate", "--sync", window, "key", key)

    def window_processes(self):
        """The process ids of the programs with windows that Quorvane has started."""
        found = self.x("pgrep", "-f", os.path.join(PROGRAMS, "quorvane-window")).split()
        return [int(pid) for pid in found if self.desktop.has_process(pid)]

    # --- the first start

    def start_first_time(self, **settings):
        desktop = self.desktop
        desktop.start(90)
        self.prepare(desktop)
        os.remove(desktop.settings_file)
        if settings:
            desktop.set(**settings)
        desktop.quorvane()
        return desktop

    def test_first_start_shows_the_splash_in_front_and_the_second_does_not(self):
        desktop = self.start_first_time()
        splash = self.wait_for_window(WELCOME)
        wait_until(lambda: desktop.setting("SplashWindowShown") == "true", "the setting")
        state = self.x("xprop", "-id", splash, "_NET_WM_STATE")
        self.assertIn("_NET_WM_STATE_ABOVE", state)
        self.assertIn("0xffffffff", self.x("xprop", "-id", splash, "-notype", "32x", "_NET_WM_DESKTOP").lower()
                      .replace("4294967295", "0xffffffff"))
        desktop.quit()
        wait_until(lambda: not self.windows(WELCOME), "the splash goes with the program")
        desktop.quorvane()
        self.settle()
        self.assertEqual(self.windows(WELCOME), [])

    def test_shown_stored_as_false_counts_as_shown(self):
        self.start_first_time(SplashWindowShown=False)
        self.settle()
        self.assertEqual(self.windows(WELCOME), [])

    def test_splash_closed_with_the_keyboard_ends_its_process_and_quorvane_goes_on(self):
        desktop = self.start_first_time()
        self.press(self.wait_for_window(WELCOME), "Return")
        wait_until(lambda: not self.window_processes(), "the end of the window's process")
        self.assertIsNone(desktop.processes["quorvane"].poll())
        self.assertNotIn("was not shown", desktop.log("quorvane"))

    def test_splash_that_crashes_is_logged_and_quorvane_goes_on(self):
        desktop = self.start_first_time()
        self.wait_for_window(WELCOME)
        for pid in self.window_processes():
            os.kill(pid, signal.SIGKILL)
        wait_until(lambda: "has crashed" in desktop.log("quorvane"), "a line in the log")
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)

    def test_splash_does_not_outlive_a_crash_of_quorvane(self):
        desktop = self.start_first_time()
        self.wait_for_window(WELCOME)
        desktop.end("quorvane", signal.SIGKILL)
        wait_until(lambda: not self.windows(WELCOME), "the splash is gone")

    def test_first_start_without_display_is_remembered_and_logged(self):
        desktop = self.desktop.start(90)
        os.remove(desktop.settings_file)
        del desktop.env["DISPLAY"]
        desktop.quorvane()
        wait_until(lambda: "display" in desktop.log("quorvane"), "a line in the log")
        self.assertEqual(desktop.setting("SplashWindowShown"), "true")
        self.assertIsNone(desktop.processes["quorvane"].poll())

    # --- one copy

    def test_second_copy_shows_an_alert_and_ends_when_it_is_dismissed(self):
        desktop = self.start(90)
        second = desktop.spawn("second", [os.path.join(PROGRAMS, "quorvane")])
        alert = self.wait_for_window(ALERT)
        self.assertIsNone(second.poll(), "the user has not read it yet")
        self.press(alert, "Return")
        self.assertEqual(second.wait(PATIENCE), 1)
        self.assertIsNone(desktop.processes["quorvane"].poll())

    def test_alert_that_is_killed_ends_the_second_copy(self):
        desktop = self.start(90)
        second = desktop.spawn("second", [os.path.join(PROGRAMS, "quorvane")])
        self.wait_for_window(ALERT)
        for pid in self.window_processes():
            os.kill(pid, signal.SIGKILL)
        self.assertEqual(second.wait(PATIENCE), 1)

    def test_second_copy_changes_neither_settings_nor_the_dimmed_screen(self):
        desktop = self.start(90)
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        with open(desktop.settings_file, "rb") as file:
            before = file.read()
        second = desktop.spawn("second", [os.path.join(PROGRAMS, "quorvane")])
        self.press(self.wait_for_window(ALERT), "Return")
        second.wait(PATIENCE)
        with open(desktop.settings_file, "rb") as file:
            self.assertEqual(file.read(), before)
        self.assertEqual(desktop.brightness, DIMMED)

    # --- the menu without any bar

    def test_without_any_bar_it_says_so_once_and_runs_on(self):
        desktop = self.start(90)
        self.settle()
        self.assertEqual(desktop.log("quorvane").count(NO_BAR), 1, desktop.log("quorvane"))
        self.assertIsNone(desktop.processes["quorvane"].poll())

    def test_quit_item_puts_everything_back_and_ends(self):
        desktop = self.start(90)
        click_item(self.desktop, SWITCH)
        self.wait_for_brightness(DIMMED)
        wait_until(lambda: desktop.setting("QuorvaneActive") == "true", "the setting")
        click_item(self.desktop, QUIT)
        self.assertEqual(desktop.processes.pop("quorvane").wait(PATIENCE), 0)
        self.assertEqual(desktop.brightness, FOUND)
        self.assertEqual(desktop.setting("WasEnabledOnQuit"), "true")
        self.assertEqual(desktop.setting("QuorvaneActive"), "false")
        self.assertTrue(desktop.log("quorvane").rstrip().endswith("The main queue is finished!"))

    def test_preferences_item_tells_where_the_settings_are_and_the_mode_goes_on(self):
        desktop = self.start(90)
        click_item(self.desktop, PREFERENCES)
        alert = self.wait_for_window(ALERT)
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)  # the alert holds nothing up
        self.press(alert, "Escape")
        wait_until(lambda: not self.windows(ALERT), "the alert is gone")

    def test_feedback_item_opens_the_contact_page(self):
        folder = self.desktop.path("bin")
        os.makedirs(folder)
        with open(os.path.join(folder, "xdg-open"), "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\necho \"$@\" >" + self.desktop.path("opened") + "\n")
        os.chmod(os.path.join(folder, "xdg-open"), 0o755)
        self.desktop.env["PATH"] = folder + ":" + self.desktop.env["PATH"]
        self.start(90)
        click_item(self.desktop, FEEDBACK)
        wait_until(lambda: os.path.exists(self.desktop.path("opened")) and
                   os.path.getsize(self.desktop.path("opened")), "the page")
        with open(self.desktop.path("opened"), encoding="utf-8") as file:
            self.assertTrue(file.read().strip().endswith("?contact=1"))

    def test_updates_item_tells_that_the_distribution_delivers_them(self):
        self.start(90)
        click_item(self.desktop, "Check For Updates")
        self.wait_for_titles("Updates come with your system")

    def test_german_user_gets_a_german_menu(self):
        self.desktop.env["LANGUAGE"] = "de"
        self.desktop.env["LANG"] = "de_DE.UTF-8"
        desktop = self.start(90)
        click_item(self.desktop, "Stromsparmodus jetzt starten")
        self.wait_for_brightness(DIMMED)
        self.assertIsNone(desktop.processes["quorvane"].poll())

    def test_windows_speak_the_language_of_the_menu(self):
        self.desktop.start(90)
        self.prepare(self.desktop)
        english, french, german = ((WELCOME, QUIT),
                                   ("Bienvenue dans Quorvane", "Quitter Quorvane"),
                                   ("Willkommen bei Quorvane", "Quorvane beenden"))
        for environment, (title, item) in (
                ({"LANGUAGE": "en:fr"}, english), ({"LANGUAGE": "fr:en"}, french),
                ({"LANGUAGE": "ja:de:en"}, german), ({"LC_MESSAGES": "de_AT.UTF-8"}, german),
                ({"LC_ALL": "C", "LANGUAGE": "fr"}, english)):
            with self.subTest(**environment):
                os.remove(self.desktop.settings_file)  # so that it is the first start
                quorvane = self.desktop.spawn("quorvane", [os.path.join(PROGRAMS, "quorvane")],
                                              {"LANG": "en_US.UTF-8", **environment})
                try:
                    self.wait_for_window(f"^{title}$")
                    click_item(self.desktop, item)
                    self.assertEqual(quorvane.wait(PATIENCE), 0)
                finally:
                    self.desktop.end("quorvane")  # not to be there at the next language
                wait_until(lambda: not self.window_processes(), "the end of the window's process")

    def test_start_records_where_the_application_lies(self):
        desktop = self.start(90)
        self.assertEqual(desktop.setting("AppLocation"),
                         "file://" + os.path.realpath(os.path.join(PROGRAMS, "..", "..")))
