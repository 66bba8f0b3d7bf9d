"""A status item in the bars of real desktops, as a user sees and clicks it."""

import os
import subprocess
import unittest

from desktop import FIXTURES, Desktop, end_with_parent, wait_until
from hosts import AyatanaIndicator, Waybar, XfcePanel

PROGRAM = os.path.join(os.environ["QUORVANE_TEST_PROGRAMS"], "status_item_process")
IMAGES = os.path.join(FIXTURES, "status-images")


class SampleProgram:
    """A program with the status item and the menu that tests share."""

    def __init__(self, desktop):
        self.desktop = desktop
        with open(desktop.path("item.log"), "ab") as log:
            self.process = subprocess.Popen(
                [PROGRAM, IMAGES], env=desktop.env, stdin=subprocess.PIPE, stdout=log, stderr=log,
                text=True, preexec_fn=end_with_parent)
        desktop.processes["item"] = self.process
        self.wait_for("ready")

    def tell(self, command):
        count = self.lines().count("done")
        self.process.stdin.write(command + "\n")
        self.process.stdin.flush()
        wait_until(lambda: self.lines().count("done") > count, command)

    def lines(self):
        return self.desktop.log("item").splitlines()

    def wait_for(self, line):
        wait_until(lambda: line in self.lines(), f"the program prints {line}")

    def end(self):
        self.process.stdin.close()
        self.process.wait(10)


class StatusItemTest(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)

    def host(self, kind):
        """A desktop with one kind of bar, which is not started yet."""
        if kind.missing():
            self.skipTest(f"skipped: {kind.missing()} is not installed")
        self.desktop.start_bus("session")
        self.desktop.start_x()
        return kind(self.desktop)

    # --- what there is to see and to click

    def see_and_click(self, kind):
        host = self.host(kind).start()
        program = SampleProgram(self.desktop)
        host.wait_for_icon()

        off = host.picture("off")
        program.tell("image icon-infinity-on")
        wait_until(lambda: host.difference(off, host.picture("on"), host.BAR), "another icon")

        host.choose(host.open_menu(), "Start now")
        program.wait_for("clicked start")
        self.assertIn("opening", program.lines())

        unchecked = self.picture_of_open_menu(host)
        program.tell("check on")
        wait_until(lambda: host.difference(unchecked, host.picture("checked"), host.BELOW),
                   "a check mark in the open menu")
        host.close_menu()

        program.end()
        host.wait_for_no_icon()

    def picture_of_open_menu(self, host):
        host.open_menu()
        return host.picture("menu")

    def test_xfce_panel_shows_the_icon_and_its_menu(self):
        self.see_and_click(XfcePanel)

    def test_ayatana_indicator_shows_the_icon_and_its_menu(self):
        self.see_and_click(AyatanaIndicator)

    def test_waybar_shows_the_icon_and_its_menu(self):
        self.see_and_click(Waybar)

    # --- the images

    def test_ayatana_indicator_shows_no_battery_of_the_theme(self):
        host = self.host(AyatanaIndicator).start()
        program = SampleProgram(self.desktop)
        program.tell("image icon-infinity-on")
        host.wait_for_icon()
        own = host.still_picture("own")
        program.tell("image icon-infinity-off")
        wait_until(lambda: host.difference(own, host.picture("off"), host.BAR), "another icon")
        program.tell("image battery-charged")  # the same picture by another name
        wait_until(lambda: not host.difference(own, host.picture("gauge"), host.BAR), "the icon")

    def dark_bar(self, kind):
        """The images are nearly as dark as the bar."""
        self.desktop.env["GTK_THEME"] = "Adwaita:dark"
        host = self.host(kind).start()
        SampleProgram(self.desktop).tell("image icon-infinity-on")
        host.wait_for_icon()

    def test_xfce_panel_draws_the_image_in_the_colour_of_a_dark_bar(self):
        self.dark_bar(XfcePanel)

    def test_ayatana_indicator_draws_the_image_in_the_colour_of_a_dark_bar(self):
        self.dark_bar(AyatanaIndicator)

    # --- the submenu

    def choose_from_submenu(self, kind):
        host = self.host(kind).start()
        program = SampleProgram(self.desktop)
        host.open_menu()
        host.press("Up", "Right", "Up", "Return")
        program.wait_for("clicked quit")

    def test_xfce_panel_opens_the_submenu(self):
        self.choose_from_submenu(XfcePanel)

    def test_ayatana_indicator_opens_the_submenu(self):
        self.choose_from_submenu(AyatanaIndicator)

    # --- the text beside the icon

    def test_ayatana_indicator_shows_the_text_beside_the_icon(self):
        host = self.host(AyatanaIndicator).start()
        program = SampleProgram(self.desktop)
        icon = host.wait_for_icon()
        program.tell("text 85% ")
        wait_until(lambda: host.icon_place().width > icon.width + 15, "a text beside the icon")
        with_text = host.icon_place()
        program.tell("text 9% ")
        wait_until(lambda: host.icon_place() != with_text, "a shorter text")
        self.assertEqual(host.icon_place().x, with_text.x, "the icon has moved")
        program.tell("text ")
        wait_until(lambda: host.icon_place().width == icon.width, "the icon alone")

    # --- bars and programs that come and go

    def bar_restarts(self, kind):
        host = self.host(kind).start()
        program = SampleProgram(self.desktop)
        host.wait_for_icon()
        for end in (host.kill, host.stop):
            end()
            host.start()
            host.wait_for_icon()
        host.choose(host.open_menu(), "Start now")
        program.wait_for("clicked start")

    def test_xfce_panel_that_restarts_shows_the_icon_again(self):
        self.bar_restarts(XfcePanel)

    def test_ayatana_indicator_that_restarts_shows_the_icon_again(self):
        self.bar_restarts(AyatanaIndicator)

    def test_waybar_that_restarts_shows_the_icon_again(self):
        self.bar_restarts(Waybar)

    def program_is_first(self, kind):
        host = self.host(kind)
        host.start().stop()  # to know the bar without the item
        program = SampleProgram(self.desktop)
        wait_until(lambda: "no bar for status items" in self.desktop.log("item"), "a log line")
        program.tell("image battery-on-60")
        host.start()
        host.choose(host.open_menu(), "Keep_this")
        program.wait_for("clicked keep")
        self.assertEqual(self.desktop.log("item").count("no bar for status items"), 1)

    def test_program_that_was_there_before_the_xfce_panel(self):
        self.program_is_first(XfcePanel)

    def test_program_that_was_there_before_the_ayatana_indicator(self):
        self.program_is_first(AyatanaIndicator)

    def test_program_that_was_there_before_waybar(self):
        self.program_is_first(Waybar)

    def test_two_bars_at_once_both_show_the_icon(self):
        panel = self.host(XfcePanel).start()
        if Waybar.missing():
            self.skipTest(f"skipped: {Waybar.missing()} is not installed")
        Waybar(self.desktop).start()  # in a window below the panel
        before = panel.still_picture("before")
        SampleProgram(self.desktop)
        for region in (panel.BAR, panel.BELOW):
            wait_until(lambda r=region: panel.difference(before, panel.picture("now"), r),
                       "an icon in each bar")


if __name__ == "__main__":
    unittest.main()
