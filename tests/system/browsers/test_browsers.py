"""Real browsers and other applications under the whole program: who is stopped and hidden while
Low Power Mode is on, and that nothing stays so."""

import os
import signal
import time

import processes
from applications import (Chromium, ControlGroup, Firefox, PanelLaunchers, Screen, by_gio,
                          by_setsid, from_job_control_shell, from_script)
from desktop import Desktop, wait_until
from hosts import XFCONFD
from resident import ResidentSession

OTHER = "Event Tester"
MANUAL = 2
BUSY_SECONDS = 2   # for which a stopped browser must not use a tick
PASS = 30          # seconds; a pass comes every five, the machine may be busy


def xfwm4(desktop):
    desktop.spawn("xfconfd", [XFCONFD])
    wait_until(lambda: desktop.has_owner("session", "org.xfce.Xfconf"), "xfconfd")
    desktop.spawn("xfwm4", ["xfwm4", "--compositor=off"])
    wait_until(lambda: "window id" in Screen(desktop).run("xprop", "-root",
                                                          "_NET_SUPPORTING_WM_CHECK"), "xfwm4")


class BrowserSession(ResidentSession):
    """A desktop with both browsers open, a page in each that never rests, and another window."""

    window_manager = Desktop.start_openbox

    def prepare(self, desktop):
        self.screen = Screen(desktop)
        self.browsers = [Chromium(desktop), Firefox(desktop)]
        self.chromium, self.firefox = self.browsers
        self.launchers = PanelLaunchers(desktop, self.browsers)
        type(self).window_manager(desktop)
        desktop.spawn("xev", ["xev", "-event", "keyboard"])

    def start_session(self, **settings):
        self.start(90, mode=MANUAL, BrowserModuleActivated=True, **settings)

    def open(self, browser, how):
        how(self.desktop, browser.name, browser.command)
        self.screen.window(browser.title)

    def open_both(self, how=by_setsid):
        for browser in self.browsers:
            self.open(browser, how)
        self.screen.bring_to_front(OTHER)

    def open_by_gio(self):
        for browser in self.browsers:
            by_gio(self.desktop, browser.name, browser.install_entry())
            self.screen.window(browser.title)
        self.screen.bring_to_front(OTHER)

    def open_by_panel(self):
        self.launchers.start()
        for browser in self.browsers:
            self.launchers.click(self.screen, browser)
            self.screen.window(browser.title)
        self.screen.bring_to_front(OTHER)

    def switch(self, on):
        self.desktop.set(QuorvaneActive=on)

    def wait_until_stopped(self, browser):
        wait_until(browser.all_stopped, f"{browser.name} stopped", PASS)

    def wait_until_running(self, browser):
        wait_until(browser.none_stopped, f"{browser.name} running", PASS)

    def check_only_browsers_are_stopped(self):
        for pid, program in processes.stopped().items():
            self.assertTrue(any(program.startswith(each.folder) for each in self.browsers),
                            f"{pid} {program} is stopped")

    def check_nothing_works(self, browser):
        before = browser.ticks()
        time.sleep(BUSY_SECONDS)
        self.assertEqual(browser.ticks(), before, browser.name)

    def check_nothing_is_stopped(self):
        wait_until(lambda: not processes.stopped(), "nothing stopped", PASS)
        self.desktop.wait_for_empty_journal()

    def check_whole_cycle(self):
        """Stopped behind, running in front, stopped again when left, running afterwards."""
        self.switch(True)
        for browser in self.browsers:
            self.wait_until_stopped(browser)
        for browser in self.browsers:
            self.check_nothing_works(browser)
        self.check_only_browsers_are_stopped()
        self.screen.bring_to_front(self.chromium.title)
        self.wait_until_running(self.chromium)
        self.assertTrue(self.firefox.all_stopped())
        self.screen.bring_to_front(OTHER)
        self.wait_until_stopped(self.chromium)
        self.switch(False)
        self.check_nothing_is_stopped()


class BrowsersUnderOpenboxTest(BrowserSession):
    def test_started_from_a_script(self):
        self.start_session()
        self.open_both(from_script)
        self.check_whole_cycle()

    def test_started_from_a_shell_with_job_control(self):
        self.start_session()
        self.open_both(from_job_control_shell)
        self.check_whole_cycle()

    def test_started_by_setsid(self):
        self.start_session()
        self.open_both(by_setsid)
        self.check_whole_cycle()

    def test_started_by_gio(self):
        self.start_session()
        self.open_by_gio()
        self.check_whole_cycle()

    def test_started_by_a_panel(self):
        self.start_session()
        self.open_by_panel()
        self.check_whole_cycle()

    # --- in a unit of their own, which neither the test nor the panel is in

    def check_units(self, *units):
        self.start_session()
        for browser, unit in zip(self.browsers, units):
            group = ControlGroup(unit)
            self.addCleanup(group.remove)
            # in the same process group as everything else here
            group.start(self.desktop, browser.name, browser.command)
            self.screen.window(browser.title)
        self.screen.bring_to_front(OTHER)
        self.check_whole_cycle()

    def test_started_in_scopes_of_their_own(self):
        self.check_units("app-gnome-chromium-4711.scope", r"app-firefox\x2desr-4712.scope")

    def test_started_as_services_of_their_own(self):
        self.check_units("app-chromium@4711.service", r"app-firefox\x2desr@4712.service")

    # --- ends of all kinds

    def both_stopped(self):
        self.start_session()
        self.open_both()
        self.switch(True)
        for browser in self.browsers:
            self.wait_until_stopped(browser)

    def test_quit_leaves_nothing_stopped(self):
        self.both_stopped()
        self.desktop.quit()
        self.check_nothing_is_stopped()

    def test_terminated_leaves_nothing_stopped(self):
        self.both_stopped()
        self.desktop.end("quorvane")
        self.check_nothing_is_stopped()

    def test_killed_leaves_nothing_stopped(self):
        self.both_stopped()
        self.desktop.end("quorvane", signal.SIGKILL)
        self.check_nothing_is_stopped()

    def test_killed_with_its_guard_is_put_back_by_restore(self):
        self.both_stopped()
        for pid in processes.every():
            if processes.program(pid).endswith("/quorvane"):
                os.kill(pid, signal.SIGKILL)
        self.desktop.processes.pop("quorvane").wait()
        self.assertTrue(processes.stopped())
        self.assertEqual(self.desktop.run("--restore").returncode, 0)
        self.check_nothing_is_stopped()

    # --- browsers that come and go

    def test_browser_killed_while_stopped_is_no_harm(self):
        self.both_stopped()
        for pid in self.firefox.processes():
            os.kill(pid, signal.SIGKILL)
        self.screen.bring_to_front(self.chromium.title)
        self.wait_until_running(self.chromium)
        self.switch(False)
        self.check_nothing_is_stopped()

    def test_browser_started_in_the_mode_is_stopped_when_it_is_left(self):
        self.start_session()
        self.switch(True)
        self.open(self.firefox, by_setsid)
        self.screen.bring_to_front(OTHER)
        self.wait_until_stopped(self.firefox)
        self.switch(False)
        self.check_nothing_is_stopped()

    def test_browser_that_is_not_chosen_keeps_running(self):
        self.start_session(BrowserModuleControlChrome=False)
        self.open_both()
        self.switch(True)
        self.wait_until_stopped(self.firefox)
        self.assertTrue(self.chromium.none_stopped())
        self.desktop.set(BrowserModuleControlChrome=True)
        self.wait_until_stopped(self.chromium)
        self.switch(False)
        self.check_nothing_is_stopped()


class BrowsersUnderXfwmTest(BrowserSession):
    window_manager = staticmethod(xfwm4)

    def test_started_from_a_script(self):
        self.start_session()
        self.open_both(from_script)
        self.check_whole_cycle()

    def test_started_from_a_shell_with_job_control(self):
        self.start_session()
        self.open_both(from_job_control_shell)
        self.check_whole_cycle()

    def test_started_by_setsid(self):
        self.start_session()
        self.open_both(by_setsid)
        self.check_whole_cycle()

    def test_started_by_gio(self):
        self.start_session()
        self.open_by_gio()
        self.check_whole_cycle()

    def test_started_by_a_panel(self):
        self.start_session()
        self.open_by_panel()
        self.check_whole_cycle()


class HidingTest(ResidentSession):
    """Three real applications, and a limit of no minutes at all."""

    APPLICATIONS = {"xmessage": ["xmessage", "-title", "xmessage", "Hello"],
                    "xfontsel": ["xfontsel"],
                    "editres": ["editres"]}
    ENTRY = "[Desktop Entry]\nType=Application\nName={0}\nExec={0}\nStartupWMClass={0}\n"

    def prepare(self, desktop):
        self.screen = Screen(desktop)
        folder = desktop.path("home/.local/share/applications")
        os.makedirs(folder)
        for name in self.APPLICATIONS:
            with open(os.path.join(folder, name + ".desktop"), "w", encoding="utf-8") as file:
                file.write(self.ENTRY.format(name))
        desktop.start_openbox()
        for name, command in self.APPLICATIONS.items():
            desktop.spawn(name, command)
            self.screen.window(name)

    def test_everything_behind_is_hidden_and_the_front_stays(self):
        self.start(90, mode=MANUAL, AppNapModuleActivated=True, AppNapModuleTimeInterval=0)
        self.screen.bring_to_front("xfontsel")
        self.desktop.set(QuorvaneActive=True)
        for name in ("xmessage", "editres"):
            wait_until(lambda each=name: self.screen.is_iconic(each), name + " hidden", 90)
        self.assertFalse(self.screen.is_iconic("xfontsel"))
        self.desktop.set(QuorvaneActive=False)
        self.settle()
        self.assertTrue(self.screen.is_iconic("xmessage"))
        self.assertTrue(self.screen.is_iconic("editres"))
