"""The bars of real desktops, which show status items: what a user sees there, and clicks."""

import os
import re
import shutil
import signal
import struct
import subprocess
import time

import host_settings
from desktop import PATIENCE, wait_until
from menu import layout

XFCONFD = "/usr/lib/x86_64-linux-gnu/xfce4/xfconf/xfconfd"
INDICATORS = "/usr/libexec/ayatana-indicator-application/ayatana-indicator-application-service"
WATCHER = "org.kde.StatusNotifierWatcher"
SEPARATOR = 0.15  # its height in lines of a menu
NOBODY = 65534


class Place:
    """A rectangle on the screen, in pixels."""

    def __init__(self, x, y, width, height):
        self.x, self.y, self.width, self.height = x, y, width, height

    @property
    def middle(self):
        return self.x + self.width // 2, self.y + self.height // 2

    def __eq__(self, other):
        return other is not None and vars(self) == vars(other)

    def __repr__(self):
        return f"{self.width}x{self.height}+{self.x}+{self.y}"


class Host:
    """What all bars have in common. The screen belongs to the desktop's X server."""

    SCREEN = "1280x800+0+0"
    BAR = "1280x30+0+0"     # along the upper edge
    BELOW = "1280x770+0+30"
    needs = ()      # programs that have to be installed
    processes = ()  # names of the desktop's processes, in the order of their start

    def __init__(self, desktop):
        self.desktop = desktop
        self.empty = None  # a picture of the bar without the item

    @classmethod
    def missing(cls):
        """The first program that is not installed, or None."""
        return next((program for program in cls.needs if not os.path.exists(program)), None)

    # --- start and end

    def start(self):
        """Starts the bar. If no item is there yet, remembers what the bar looks like without."""
        self.prepare()
        self.launch()
        self.wait_for_host()
        wait_until(self.is_drawn, "the bar on the screen")
        if self.empty is None and not self.items():
            self.empty = self.still_picture("empty", rest=1.0)
        return self

    def stop(self):
        self.finish(signal.SIGTERM)

    def kill(self):
        """As a crash."""
        self.finish(signal.SIGKILL)

    def finish(self, how):
        for name in reversed(self.processes):
            process = self.desktop.processes.get(name)
            if process is None:
                continue
            self.signal_group(process, how)
            self.desktop.end(name, how)
            self.signal_group(process, signal.SIGKILL)  # what it has started and left
        wait_until(lambda: not self.desktop.has_owner("session", WATCHER), "the bar is gone")

    @staticmethod
    def signal_group(process, how):
        try:
            os.killpg(process.pid, how)
        except ProcessLookupError:
            pass

    def spawn(self, name, command, **extra):
        return self.desktop.spawn(name, command, dict(NO_AT_BRIDGE="1", **extra),
                                  start_new_session=True)

    def prepare(self):
        """What has to be there before the bar."""

    def launch(self):
        raise NotImplementedError

    # --- what the bar knows

    def watcher_property(self, name):
        return self.desktop.buses["session"].property(WATCHER, "/StatusNotifierWatcher", WATCHER,
                                                      name)

    def wait_for_host(self):
        wait_until(lambda: self.watcher_property("IsStatusNotifierHostRegistered"),
                   "a bar that takes items")

    def items(self):
        """The items that have registered."""
        return self.watcher_property("RegisteredStatusNotifierItems") or []

    # --- what the user sees

    def picture(self, name):
        path = self.desktop.path(name + ".xwd")
        shutil.copyfile(self.desktop.framebuffer, path)
        return path

    @staticmethod
    def rows_of_pixels(path, region):
        """The bytes of the region, which is as wide as the screen."""
        top, height = int(region.split("+")[2]), int(region.partition("x")[2].partition("+")[0])
        with open(path, "rb") as file:
            header = struct.unpack(">25I", file.read(100))
            size, bytes_per_line, colours = header[0], header[12], header[19]
            file.seek(size + 12 * colours + top * bytes_per_line)
            return file.read(height * bytes_per_line)

    def is_drawn(self):
        """Whether the bar, where it is empty, looks different from what is below it."""
        picture = self.picture("drawn")
        bar, below = (self.rows_of_pixels(picture, f"1280x1+0+{y}")[4 * 100:4 * 101]
                      for y in (15, 400))
        return bar != below

    def difference(self, before, now, region):
        """The smallest place in the region that holds every pixel that differs, or None."""
        if self.rows_of_pixels(before, region) == self.rows_of_pixels(now, region):
            return None
        box = subprocess.run(
            ["convert", "xwd:" + before, "xwd:" + now, "-crop", region, "+repage", "-compose", "difference",
             "-composite", "-colorspace", "gray", "-threshold", "6%", "-format", "%@ %[fx:maxima]",
             "info:"], env=self.desktop.env, check=True, capture_output=True, text=True,
            timeout=PATIENCE).stdout
        width, height, x, y, most = (float(n) for n in
                                     re.match(r"(\d+)x(\d+)\+(\d+)\+(\d+) (\S+)", box).groups())
        left, top = map(int, region.split("+")[1:])
        if not most:
            return None
        if not width:  # what is the same everywhere has no box: all of the region differs
            return Place(left, top, *map(int, region.partition("+")[0].split("x")))
        return Place(int(x) + left, int(y) + top, int(width), int(height))

    def still_picture(self, name, rest=0.3):
        """A picture of the screen when nothing has changed for a moment, in seconds."""
        pictures = [self.picture(name + "-0")]

        def is_still():
            time.sleep(rest)
            pictures.append(self.picture(f"{name}-{len(pictures) % 2}"))
            return self.difference(pictures[-2], pictures[-1], self.SCREEN) is None
        wait_until(is_still, "a screen that stays as it is")
        return pictures[-1]

    def icon_place(self):
        """Where the item is, with its text; None where it does not show."""
        assert self.empty, "the bar was never seen without the item"
        return self.difference(self.empty, self.still_picture("bar"), self.BAR)

    def wait_for_no_icon(self):
        wait_until(lambda: self.icon_place() is None, "the bar without the item")

    def wait_for_icon(self):
        whole = int(self.BAR.partition("x")[0])

        def shows():
            place = self.difference(self.empty, self.picture("waiting"), self.BAR)
            return place and place.width < whole  # else the bar is not drawn yet
        wait_until(shows, "the item in the bar")
        return self.icon_place()

    # --- what the user does

    def xdotool(self, *arguments):
        subprocess.run(["xdotool", *map(str, arguments)], env=self.desktop.env, check=True,
                       timeout=PATIENCE)

    def open_menu(self):
        """Clicks the item and waits for its menu. Returns where the menu is."""
        place = self.wait_for_icon()
        before = self.still_picture("closed")
        self.xdotool("mousemove", *place.middle, "sleep", 0.2, "click", 1)
        wait_until(lambda: self.difference(before, self.picture("opening"), self.BELOW), "a menu")
        return self.difference(before, self.still_picture("open"), self.BELOW)

    def close_menu(self):
        """Clicks beside it."""
        self.xdotool("mousemove", 100, 700, "sleep", 0.2, "click", 1)
        self.still_picture("closed")

    def choose(self, menu, title):
        """Clicks a line of the open menu."""
        rows = self.rows()
        heights = [SEPARATOR if row is None else 1 for row in rows]
        index = rows.index(title)
        middle = (sum(heights[:index]) + 0.5) / sum(heights)
        self.xdotool("mousemove", menu.middle[0], menu.y + round(menu.height * middle),
                     "sleep", 0.3, "click", 1)

    def rows(self):
        """The titles of the menu's lines; None for a separator."""
        name = self.items()[0].partition("/")[0]
        labels = [properties.get("label") for _, properties, _ in layout(self.desktop, name, 1)]
        return [label and label.replace("__", "_") for label in labels]

    def press(self, *keys):
        for key in keys:
            self.xdotool("key", key, "sleep", 0.2)


class Panel(Host):
    """xfce4-panel with plugins that show items."""

    plugins = ()

    def prepare(self):
        desktop = self.desktop
        if "xfconfd" in desktop.processes:
            return
        folder = desktop.path("home/.config/xfce4/xfconf/xfce-perchannel-xml")
        os.makedirs(folder)
        with open(os.path.join(folder, "xfce4-panel.xml"), "w", encoding="utf-8") as file:
            file.write(host_settings.panel(self.plugins))
        desktop.spawn("xfconfd", [XFCONFD])
        wait_until(lambda: desktop.has_owner("session", "org.xfce.Xfconf"), "xfconfd")
        desktop.start_openbox()

    def launch_panel(self):
        self.spawn("panel", ["xfce4-panel", "--disable-wm-check", "--sm-client-disable"])


class XfcePanel(Panel):
    """Shows the icon, without the text."""

    needs = ("/usr/bin/xfce4-panel", "/usr/bin/openbox", "/usr/bin/xdotool", XFCONFD)
    plugins = ("separator", "systray")
    processes = ("panel",)

    def launch(self):
        self.launch_panel()


class AyatanaIndicator(Panel):
    """Shows the icon with the text beside it."""

    needs = XfcePanel.needs + (
        INDICATORS, "/usr/lib/x86_64-linux-gnu/xfce4/panel/plugins/libindicator-plugin.so")
    plugins = ("separator", "indicator")
    processes = ("indicators", "panel")

    def launch(self):
        self.spawn("indicators", [INDICATORS])
        self.launch_panel()


class Waybar(Host):
    """waybar's tray in sway, whose only screen is a window of the X server: so it has a pointer.
    Shows the icon, without the text."""

    needs = ("/usr/bin/sway", "/usr/bin/waybar", "/usr/bin/xdotool", "/usr/bin/setpriv")
    processes = ("waybar",)

    def prepare(self):
        if "sway" in self.desktop.processes:
            return
        self.folder = self.desktop.path("wayland")
        os.mkdir(self.folder, mode=0o700)
        for name, text in (("sway", host_settings.SWAY), ("waybar", host_settings.WAYBAR),
                           ("style.css", host_settings.WAYBAR_STYLE)):
            with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
                file.write(text)
        self.user = []
        if os.getuid() == 0:  # sway refuses to run as root
            for name in ("", "sway", "waybar", "style.css"):
                os.chown(os.path.join(self.folder, name), NOBODY, NOBODY)
            os.chmod(self.desktop.folder, 0o711)
            self.user = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
        self.environment = dict(HOME=self.folder, XDG_RUNTIME_DIR=self.folder,
                                XDG_CONFIG_HOME=self.folder, WLR_BACKENDS="x11",
                                WLR_X11_OUTPUTS="1", WLR_RENDERER="pixman")
        self.spawn("sway", [*self.user, "sway", "-c", os.path.join(self.folder, "sway")],
                   **self.environment)
        display = wait_until(self.wayland_display, "sway")
        self.environment["WAYLAND_DISPLAY"] = display

    def wayland_display(self):
        return next((name for name in os.listdir(self.folder)
                     if re.fullmatch(r"wayland-\d+", name)), None)

    def launch(self):
        self.spawn("waybar", [*self.user, "waybar", "-c", os.path.join(self.folder, "waybar"),
                              "-s", os.path.join(self.folder, "style.css")], **self.environment)
