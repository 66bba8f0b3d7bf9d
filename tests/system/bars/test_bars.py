"""The whole program in the bars of real desktops: the user looks at the icon, opens the menu and
switches Low Power Mode."""

import unittest

from desktop import wait_until
from hosts import AyatanaIndicator, Waybar, XfcePanel
from resident import DIMMED, FOUND, ResidentSession

START, IS_ON = "Start Low Power Mode Now", "Low Power Mode is On"


class BarsTest(ResidentSession):
    def start_with(self, bar, percent, **settings):
        self.prepare_bar(bar, percent).start()
        if settings:
            self.desktop.set(**settings)
        self.desktop.quorvane()
        self.host.wait_for_icon()

    def prepare_bar(self, bar, percent):
        if bar.missing():
            self.skipTest(f"skipped: {bar.missing()} is not installed")
        self.desktop.start(percent, False)
        self.host = bar(self.desktop)
        return self.host

    def icon_changes(self, action, what):
        before = self.host.still_picture("before")
        action()
        wait_until(lambda: self.host.difference(before, self.host.picture("after"), self.host.BAR),
                   what)

    def switch(self, title):
        self.host.choose(self.host.open_menu(), title)

    # --- the mode from the menu

    def mode_is_switched(self, bar):
        self.start_with(bar, 90)
        self.icon_changes(lambda: self.switch(START), "the icon of the mode")
        self.wait_for_brightness(DIMMED)
        wait_until(lambda: self.desktop.setting("QuorvaneActive") == "true", "the setting")
        wait_until(lambda: IS_ON in self.host.rows(), "the title of the switch")
        self.icon_changes(lambda: self.switch(IS_ON), "the icon without the mode")
        self.wait_for_brightness(FOUND)
        wait_until(lambda: self.desktop.setting("QuorvaneActive") == "false", "the setting")

    def test_mode_is_switched_from_the_menu_of_the_xfce_panel(self):
        self.mode_is_switched(XfcePanel)

    def test_mode_is_switched_from_the_menu_of_the_ayatana_indicator(self):
        self.mode_is_switched(AyatanaIndicator)

    def test_mode_is_switched_from_the_menu_of_waybar(self):
        self.mode_is_switched(Waybar)

    # --- the icon and the text

    def icon_follows(self, bar):
        self.start_with(bar, 100, MenuBarShowBatteryIcon=True, QuorvaneAutoStartSetting=2)
        for percent in (90, 60, 30, 10):
            self.icon_changes(lambda p=percent: self.discharge(p), f"the gauge at {percent} %")
        self.icon_changes(self.desktop.laptop.plug, "the icon of the charging battery")

    def test_icon_in_the_xfce_panel_follows_the_discharge_and_the_plug(self):
        self.icon_follows(XfcePanel)

    def test_icon_in_the_ayatana_indicator_follows_the_discharge_and_the_plug(self):
        self.icon_follows(AyatanaIndicator)

    def test_icon_in_waybar_follows_the_discharge_and_the_plug(self):
        self.icon_follows(Waybar)

    def test_percentage_stands_beside_the_icon_and_follows_the_discharge(self):
        self.start_with(AyatanaIndicator, 90, QuorvaneAutoStartSetting=2)
        alone = self.host.icon_place()
        self.desktop.set(MenuBarDisplayMode=1)
        wait_until(lambda: self.host.icon_place().width > alone.width + 15, "a text")
        self.icon_changes(lambda: self.discharge(9), "another percentage")
        self.desktop.set(MenuBarDisplayMode=99)
        wait_until(lambda: self.host.icon_place().width == alone.width, "the icon alone")

    # --- bars that come and go

    def bar_crashes(self, bar):
        self.start_with(bar, 90)
        off = self.host.still_picture("off")
        self.host.kill()
        self.desktop.set(QuorvaneActive=True)
        self.wait_for_brightness(DIMMED)
        self.host.start()
        self.host.wait_for_icon()
        self.assertTrue(self.host.difference(off, self.host.still_picture("on"), self.host.BAR))
        self.switch(IS_ON)
        self.wait_for_brightness(FOUND)

    def test_xfce_panel_that_crashes_and_returns_shows_the_icon_as_it_is_by_then(self):
        self.bar_crashes(XfcePanel)

    def test_ayatana_indicator_that_crashes_and_returns_shows_the_icon_as_it_is_by_then(self):
        self.bar_crashes(AyatanaIndicator)

    def test_waybar_that_crashes_and_returns_shows_the_icon_as_it_is_by_then(self):
        self.bar_crashes(Waybar)

    def program_is_first(self, bar):
        self.prepare_bar(bar, 90).start().stop()  # to know the bar without the item
        self.desktop.quorvane()
        self.host.start()
        self.host.wait_for_icon()
        self.switch(START)
        self.wait_for_brightness(DIMMED)

    def test_program_that_was_there_before_the_xfce_panel_can_be_used(self):
        self.program_is_first(XfcePanel)

    def test_program_that_was_there_before_the_ayatana_indicator_can_be_used(self):
        self.program_is_first(AyatanaIndicator)

    def test_program_that_was_there_before_waybar_can_be_used(self):
        self.program_is_first(Waybar)


if __name__ == "__main__":
    unittest.main()
