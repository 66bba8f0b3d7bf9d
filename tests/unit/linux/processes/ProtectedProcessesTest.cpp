#include "platform/linux/processes/ProtectedProcesses.h"

#include "tests/unit/linux/processes/FakeProc.h"

#include <gtest/gtest.h>

namespace quorvane::test {
namespace {

class ProtectedProcessesTest : public testing::Test {
  protected:
    [[nodiscard]] QString reason(const FakeProcess& process) const {
        proc.add(process);
        const ProcessTable table = proc.table();
        return ProtectedProcesses(table, 900, 1000).reason(process.pid, process.pid);
    }

    FakeProc proc;
};

TEST_F(ProtectedProcessesTest, ProgramsOfEveryDesktop_HaveARole) {
    for (const char* name : {"quorvane",
                             "quorvane-window",
                             "com.TarnwickStudios.quorvane.helper",
                             "Xorg",
                             "Xwayland",
                             "Xvfb",
                             "gnome-shell",
                             "kwin_wayland",
                             "kwin_x11",
                             "sway",
                             "xfwm4",
                             "openbox",
                             "plasmashell",
                             "xfce4-panel",
                             "waybar",
                             "dbus-daemon",
                             "dbus-broker-launch",
                             "systemd",
                             "pipewire",
                             "pipewire-pulse",
                             "wireplumber",
                             "pulseaudio",
                             "xdg-desktop-portal",
                             "xdg-desktop-portal-gtk",
                             "polkitd",
                             "xfce-polkit",
                             "xdg-document-portal",
                             "konsole",
                             "xterm",
                             "gnome-terminal-server",
                             "gnome-session-binary"}) {
        EXPECT_NE(roleOfProgram(QLatin1String(name)), QString()) << name;
    }
}

TEST_F(ProtectedProcessesTest, Applications_HaveNoRole) {
    for (const char* name : {"firefox", "chrome", "chromium", "Web Content", "WebKitWebProces",
                             "thunderbird", "Xournal", "stellarium", "sleep", "i3status", "python3",
                             "bash", "system-config", "kwrite", "screenshot", ""}) {
        EXPECT_EQ(roleOfProgram(QLatin1String(name)), QString()) << name;
    }
}

TEST_F(ProtectedProcessesTest, NameCutByTheKernel_IsRecognised) {
    EXPECT_EQ(roleOfProgram(QStringLiteral("gnome-terminal-")), QStringLiteral("a terminal"));
    EXPECT_EQ(roleOfProgram(QStringLiteral("dbus-run-sessio")), QStringLiteral("a message bus"));
    EXPECT_EQ(roleOfProgram(QStringLiteral("xdg-desktop-por")), QStringLiteral("a desktop portal"));
    EXPECT_EQ(roleOfProgram(QStringLiteral("dbus-run")), QString()) << "not cut, another program";
}

TEST_F(ProtectedProcessesTest, ExecutableThatCannotBeRead_TheProcessesNameCounts) {
    EXPECT_EQ(reason({.pid = 50, .executable = nullptr, .name = "gnome-keyring-d"}),
              QStringLiteral("gnome-keyring-d is a keeper of keys"));
    EXPECT_EQ(reason({.pid = 51, .executable = nullptr}), QString());
}

TEST_F(ProtectedProcessesTest, WindowManagerThatIsAScript_IsToldByItsName) {
    EXPECT_EQ(reason({.pid = 50, .executable = "/usr/bin/python3.11", .name = "qtile"}),
              QStringLiteral("qtile is a window manager"));
}

TEST_F(ProtectedProcessesTest, ProgramReplacedByAnUpdate_IsStillProtected) {
    EXPECT_EQ(reason({.pid = 50, .executable = "/usr/bin/Xwayland (deleted)"}),
              QStringLiteral("Xwayland is a display server"));
}

TEST_F(ProtectedProcessesTest, OrdinaryApplication_MayBeStopped) {
    EXPECT_EQ(reason({.pid = 50}), QString());
}

} // namespace
} // namespace quorvane::test
