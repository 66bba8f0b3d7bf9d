"""The resident program on real services, as a user has it."""

import os
import plistlib
import signal
import subprocess
import unittest

from desktop import NAME, PROGRAMS, wait_until
from resident import DIMMED, FOUND, ResidentSession

MODE_IS_ON = "Low Power Mode is on"
QUESTION = "Less Than 70% Battery Remaining"
STOPPING = "Stopping Low Power Mode"

AUTOMATIC, ASK, MANUAL = 0, 1, 2


class ResidentTest(ResidentSession):
    # --- the charge falls from 73 to 69 with the threshold at 70

    def test_ask_mode_asks_once_at_the_threshold(self):
        desktop = self.start(73, mode=ASK)
        self.discharge(72, 71)
        self.settle()
        self.assertEqual(desktop.titles(), [])
        self.discharge(70)
        self.wait_for_titles(QUESTION)
        self.discharge(69)
        self.settle()
        self.assertEqual(desktop.titles(), [QUESTION])
        _, text, actions = desktop.notifications()[0]
        self.assertEqual(text, "Start Low Power Mode?")
        self.assertEqual(actions[2:], ["action", "Start", "other", "Not Now"])
        self.assertEqual(desktop.brightness, FOUND)
        self.assertEqual(desktop.displayed(), 1)

    def test_automatic_mode_starts_at_the_threshold(self):
        desktop = self.start(73, mode=AUTOMATIC)
        self.discharge(72, 71, 70, 69)
        self.wait_for_titles(MODE_IS_ON)
        self.wait_for_brightness(DIMMED)
        self.assertEqual(desktop.setting("QuorvaneActive"), "true")
        wait_until(lambda: desktop.displayed() == 0, "the notice goes away by itself")

    def test_manual_mode_does_nothing_at_the_threshold(self):
        desktop = self.start(73, mode=MANUAL)
        self.discharge(72, 71, 70, 69)
        self.settle()
        self.assertEqual(desktop.titles(), [])
        self.assertEqual(desktop.brightness, FOUND)

    # --- the question

    def test_start_answer_starts_the_mode(self):
        desktop = self.start(71, mode=ASK)
        self.discharge(70)
        self.wait_for_titles(QUESTION)
        wait_until(lambda: desktop.displayed() == 1, "the question on the screen")
        desktop.answer("Start")
        self.wait_for_brightness(DIMMED)
        wait_until(lambda: desktop.setting("QuorvaneActive") == "true", "the setting")
        self.assertEqual(desktop.titles(), [QUESTION])

    def test_not_now_answer_changes_nothing(self):
        desktop = self.start(71, mode=ASK)
        self.discharge(70)
        self.wait_for_titles(QUESTION)
        wait_until(lambda: desktop.displayed() == 1, "the question on the screen")
        desktop.answer("Not Now")
        wait_until(lambda: desktop.displayed() == 0, "the question is gone")
        self.discharge(69, 68)
        self.settle()
        self.assertEqual(desktop.brightness, FOUND)
        self.assertEqual(desktop.titles(), [QUESTION])

    # --- unplugging and plugging in

    def test_unplugging_at_a_low_charge_asks(self):
        desktop = self.start(50, plugged=True, mode=ASK)
        self.settle()
        self.assertEqual(desktop.titles(), [])
        desktop.laptop.unplug()
        self.wait_for_titles(QUESTION)

    def test_unplugging_at_a_low_charge_starts_in_automatic_mode(self):
        desktop = self.start(50, plugged=True, mode=AUTOMATIC)
        desktop.laptop.unplug()
        self.wait_for_brightness(DIMMED)
        desktop.laptop.plug()
        self.wait_for_brightness(FOUND)
        self.wait_for_titles(MODE_IS_ON, STOPPING)

    def test_plugging_in_with_hardly_a_minute_saved_says_that_the_mode_stops(self):
        desktop = self.start(71, mode=AUTOMATIC)
        self.discharge(70)
        self.wait_for_brightness(DIMMED)
        desktop.laptop.plug()
        self.wait_for_brightness(FOUND)
        self.wait_for_titles(MODE_IS_ON, STOPPING)
        self.assertEqual(desktop.notifications()[1][1], "Your computer is now plugged in.")
        self.assertEqual(desktop.setting("QuorvaneActive"), "false")
        desktop.wait_for_empty_journal()

    # --- the screen

    def test_brightness_raised_by_the_user_during_the_mode_stays(self):
        desktop = self.start(71, mode=AUTOMATIC)
        self.discharge(70)
        self.wait_for_brightness(DIMMED)
        desktop.laptop.set("intel_backlight", "brightness", 900)
        desktop.laptop.plug()
        self.wait_for_titles(MODE_IS_ON, STOPPING)
        self.assertEqual(desktop.brightness, 900)

    def test_amount_changed_by_hand_during_the_mode_is_applied(self):
        desktop = self.start(71, mode=AUTOMATIC)
        self.discharge(70)
        self.wait_for_brightness(DIMMED)
        desktop.set(BrightnessModuleAmount=100)
        self.wait_for_brightness(630)
        desktop.set(BrightnessModuleActivated=False)
        self.wait_for_brightness(FOUND)

    def test_mode_is_switched_by_the_settings_file(self):
        desktop = self.start(90, mode=MANUAL)
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        desktop.set(QuorvaneActive=False)
        self.wait_for_brightness(FOUND)
        self.assertEqual(desktop.titles(), [])

    # --- quitting and starting again

    def quit_with_the_mode_on_and_start_again(self, mode, **settings):
        desktop = self.start(90, mode=mode, **settings)
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        desktop.quit()
        self.assertEqual(desktop.brightness, FOUND)
        self.assertEqual(desktop.setting("WasEnabledOnQuit"), "true")
        self.assertEqual(desktop.setting("QuorvaneActive"), "false")
        self.assertEqual(desktop.journal(), [])
        desktop.quorvane()
        return desktop

    def test_quit_with_the_mode_on_and_start_again_in_automatic_mode_is_off(self):
        desktop = self.quit_with_the_mode_on_and_start_again(AUTOMATIC)
        self.settle()
        self.assertEqual(desktop.brightness, FOUND)
        self.assertEqual(desktop.titles(), [])

    def test_quit_with_the_mode_on_and_start_again_in_ask_mode_is_off(self):
        desktop = self.quit_with_the_mode_on_and_start_again(ASK)
        self.settle()
        self.assertEqual(desktop.brightness, FOUND)
        self.assertEqual(desktop.titles(), [])

    def test_quit_with_the_mode_on_and_start_again_in_manual_mode_is_on_silently(self):
        desktop = self.quit_with_the_mode_on_and_start_again(MANUAL)
        self.wait_for_brightness(DIMMED)
        self.settle()
        self.assertEqual(desktop.titles(), [])
        self.assertEqual(desktop.setting("QuorvaneActive"), "true")

    def test_start_below_the_threshold_in_ask_mode_starts_briefly_and_then_asks(self):
        desktop = self.start(50, mode=ASK)
        self.wait_for_titles(MODE_IS_ON, QUESTION)
        self.wait_for_brightness(FOUND)
        self.discharge(49)
        self.settle()
        self.assertEqual(desktop.titles(), [MODE_IS_ON, QUESTION])

    def test_start_below_the_threshold_in_automatic_mode_ends_up_on(self):
        desktop = self.start(50, mode=AUTOMATIC)
        self.wait_for_brightness(DIMMED)
        wait_until(lambda: desktop.setting("QuorvaneActive") == "true", "the setting")

    def test_history_and_log_are_read_by_other_programs(self):
        desktop = self.start(71, mode=AUTOMATIC)
        desktop.quit()  # makes the folder that the log needs
        desktop.quorvane()
        self.discharge(70)
        self.wait_for_brightness(DIMMED)
        desktop.quit()
        with open(desktop.data_file("Battery.plist"), "rb") as file:
            history = plistlib.load(file)
        self.assertEqual(sorted(history), ["dataPoints", "dataTimes"])
        self.assertIn(70, history["dataPoints"])
        self.assertEqual(len(history["dataPoints"]), len(history["dataTimes"]))
        expected = ("Quorvane log file:\nPower saving is enabled\nPower saving is disabled")
        with open(desktop.data_file("Log.txt"), encoding="utf-16") as file:
            self.assertEqual(file.read(), expected)
        converted = subprocess.run(
            ["iconv", "-f", "UTF-16", "-t", "UTF-8", desktop.data_file("Log.txt")],
            capture_output=True, text=True, check=True)
        self.assertEqual(converted.stdout, expected)

    # --- crashes

    def crash_in_the_mode(self):
        desktop = self.start(90, mode=ASK)
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        self.assertEqual(len(desktop.journal()), 1)
        desktop.end("quorvane", signal.SIGKILL)
        self.assertEqual(desktop.brightness, DIMMED)
        return desktop

    def test_killed_in_the_mode_and_started_again_the_brightness_is_back(self):
        desktop = self.crash_in_the_mode()
        desktop.quorvane()
        self.wait_for_brightness(FOUND)
        desktop.wait_for_empty_journal()
        self.settle()
        self.assertEqual(desktop.brightness, FOUND)

    def test_killed_in_the_mode_restore_puts_the_brightness_back(self):
        desktop = self.crash_in_the_mode()
        self.assertEqual(desktop.run("--restore").returncode, 0)
        self.assertEqual(desktop.brightness, FOUND)
        self.assertEqual(desktop.journal(), [])

    def test_killed_in_the_mode_a_brightness_set_since_by_the_user_stays(self):
        desktop = self.crash_in_the_mode()
        desktop.laptop.set("intel_backlight", "brightness", 500)
        self.assertEqual(desktop.run("--restore").returncode, 0)
        self.assertEqual(desktop.brightness, 500)
        self.assertEqual(desktop.journal(), [])

    def test_restore_leaves_the_work_of_a_living_copy_alone(self):
        desktop = self.start(90, mode=ASK)
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        self.assertEqual(desktop.run("--restore").returncode, 0)
        self.assertEqual(desktop.brightness, DIMMED)

    def test_terminated_in_the_mode_the_brightness_is_back_at_once(self):
        desktop = self.start(90, mode=ASK)
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        self.assertEqual(desktop.end("quorvane", signal.SIGTERM), 0)
        self.assertEqual(desktop.brightness, FOUND)
        self.assertEqual(desktop.journal(), [])
        self.assertEqual(desktop.setting("QuorvaneActive"), "true")

    def test_session_bus_that_goes_away_ends_the_program_and_the_dimming(self):
        desktop = self.start(90, mode=ASK)
        desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        desktop.end("session")
        self.assertEqual(desktop.processes.pop("quorvane").wait(20), 0)
        self.assertEqual(desktop.brightness, FOUND)

    # --- services that come and go

    def test_upowerd_stopped_and_started_again_goes_on_with_correct_state(self):
        desktop = self.start(73, mode=ASK)
        desktop.end("upowerd")
        desktop.laptop.charge(72)
        desktop.start_upowerd()
        self.discharge(71)
        self.settle()
        self.assertEqual(desktop.titles(), [])
        desktop.end("upowerd", signal.SIGKILL)
        desktop.laptop.charge(69)
        desktop.start_upowerd()
        self.wait_for_titles(QUESTION)

    def test_upowerd_that_appears_late_is_used_from_then_on(self):
        desktop = self.desktop.start(73, plugged=False)
        desktop.end("upowerd")
        desktop.set(QuorvaneAutoStartSetting=AUTOMATIC)
        desktop.quorvane()
        desktop.start_upowerd()
        self.discharge(70)
        self.wait_for_brightness(DIMMED)

    def test_notification_server_that_appears_late_shows_the_question(self):
        desktop = self.desktop.start(71, plugged=False)
        desktop.end("dunst")
        desktop.quorvane()
        self.discharge(70)
        self.settle()
        desktop.start_notification_server()
        wait_until(lambda: desktop.displayed() == 1, "the question on the screen")
        desktop.answer("Start")
        self.wait_for_brightness(DIMMED)

    def test_notification_server_that_restarts_shows_the_unanswered_question_again(self):
        desktop = self.start(71, mode=ASK)
        self.discharge(70)
        wait_until(lambda: desktop.displayed() == 1, "the question on the screen")
        desktop.end("dunst", signal.SIGKILL)
        desktop.start_notification_server()
        wait_until(lambda: desktop.displayed() == 1, "the question on the screen again")
        desktop.answer("Start")
        self.wait_for_brightness(DIMMED)

    def test_no_upowerd_at_all_the_kernel_is_read(self):
        desktop = self.desktop.start(73, plugged=False)
        desktop.end("upowerd")
        desktop.set(QuorvaneAutoStartSetting=AUTOMATIC)
        desktop.quorvane()
        desktop.laptop.charge(70)
        self.wait_for_brightness(DIMMED)
        desktop.laptop.plug()
        self.wait_for_brightness(FOUND)

    # --- one copy, plain refusals

    def test_second_copy_is_refused(self):
        desktop = self.start(90)
        second = desktop.run(DISPLAY="")
        self.assertEqual(second.returncode, 1)
        self.assertIn("Quorvane already running", second.stderr)

    def test_copy_of_the_other_edition_is_respected(self):
        desktop = self.desktop.start(90)
        other = "com.tarnwick.quorvane-setapp"
        desktop.spawn("other", ["/usr/bin/python3", "-c",
                                "import dbus, dbus.mainloop.glib as g;"
                                "from gi.repository import GLib;"
                                "g.DBusGMainLoop(set_as_default=True);"
                                f"n = dbus.service.BusName('{other}', dbus.SessionBus())"
                                " if hasattr(dbus, 'service') else None;"
                                f"dbus.SessionBus().request_name('{other}');"
                                "GLib.MainLoop().run()"])
        wait_until(lambda: desktop.has_owner("session", other), "the other edition")
        self.assertEqual(desktop.run(DISPLAY="").returncode, 1)

    def test_two_starts_at_the_same_moment_leave_exactly_one(self):
        desktop = self.desktop.start(90)
        del desktop.env["DISPLAY"]  # nobody is there to read the alert
        programs = [desktop.spawn(f"copy{i}", [os.path.join(PROGRAMS, "quorvane")])
                    for i in range(2)]
        wait_until(lambda: sum(p.poll() is None for p in programs) == 1, "one copy")
        self.settle()
        self.assertEqual(sum(p.poll() is None for p in programs), 1)
        self.assertTrue(desktop.has_owner("session", NAME))

    def test_without_session_bus_it_refuses_in_plain_words(self):
        desktop = self.desktop.start(90)
        del desktop.env["DBUS_SESSION_BUS_ADDRESS"]
        refused = desktop.run()
        self.assertEqual(refused.returncode, 1)
        self.assertIn("there is no session bus here", refused.stderr)
        dead = desktop.run(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")
        self.assertEqual(dead.returncode, 1)
        self.assertIn("there is no session bus here", dead.stderr)

    def test_quit_without_a_copy_says_so(self):
        done = self.desktop.start(90).run("--quit")
        self.assertEqual(done.returncode, 1)
        self.assertIn("no copy of Quorvane runs", done.stderr)

    def test_help_version_and_nonsense(self):
        desktop = self.desktop.start(90)
        usage = desktop.run("--help").stdout
        self.assertIn("--restore", usage)
        self.assertIn("AppNapModuleTimeInterval=minutes", usage)
        self.assertRegex(desktop.run("--version").stdout, r"^quorvane \d+\.\d+\.\d+$")
        self.assertEqual(desktop.run("--nonsense").returncode, 1)
        self.assertEqual(desktop.run("nonsense").returncode, 2)

    # --- bad input

    def test_settings_file_of_nonsense_is_kept_aside_and_defaults_are_used(self):
        desktop = self.desktop.start(73, plugged=False)
        nonsense = b"\x00\xff[[[ this is no settings file"
        with open(desktop.settings_file, "wb") as file:
            file.write(nonsense)
        desktop.quorvane()
        wait_until(lambda: os.path.exists(desktop.settings_file + ".corrupt"), "the kept file")
        with open(desktop.settings_file + ".corrupt", "rb") as file:
            self.assertEqual(file.read(), nonsense)
        self.discharge(70)
        self.wait_for_titles(QUESTION)

    def test_nonsense_values_are_reported_and_the_defaults_used(self):
        self.start(73, BatteryThreshold="many", QuorvaneAutoStartSetting="maybe")
        self.discharge(70)
        self.wait_for_titles(QUESTION)
        log = self.desktop.log("quorvane")
        self.assertIn('The setting BatteryThreshold cannot be "many"', log)

    def test_history_of_nonsense_is_kept_aside(self):
        desktop = self.desktop.start(90)
        os.makedirs(os.path.dirname(desktop.data_file("")))
        with open(desktop.data_file("Battery.plist"), "wb") as file:
            file.write(b"<plist><dict>")
        desktop.quorvane()
        desktop.quit()
        with open(desktop.data_file("Battery.plist.corrupt"), "rb") as file:
            self.assertEqual(file.read(), b"<plist><dict>")
        with open(desktop.data_file("Battery.plist"), "rb") as file:
            plistlib.load(file)


if __name__ == "__main__":
    unittest.main(verbosity=2)
