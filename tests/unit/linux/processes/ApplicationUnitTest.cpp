#include "platform/linux/processes/ApplicationUnit.h"

#include <gmock/gmock.h>

#include <ostream>

using testing::IsEmpty;

namespace quorvane::test {
namespace {

QList<QByteArray> idsOf(const char* unit) {
    return ApplicationUnit(unit).possibleIds();
}

TEST(ApplicationUnitTest, Names_AreReadAsLaunchersWriteThem) {
    EXPECT_EQ(idsOf("app-firefox-1234.scope").value(0), "firefox");
    EXPECT_EQ(idsOf("app-gnome-org.gnome.Maps-1234.scope").value(0), "org.gnome.Maps");
    EXPECT_EQ(idsOf("app-gnome-google\\x2dchrome-99.scope").value(0), "google-chrome");
    EXPECT_EQ(idsOf("app-org.chromium.Chromium-4711.scope").value(0), "org.chromium.Chromium");
    EXPECT_EQ(idsOf("app-flatpak-org.mozilla.firefox-7.scope").value(0), "org.mozilla.firefox");
    EXPECT_EQ(idsOf("app-org.kde.falkon@0af1.service").value(0), "org.kde.falkon");
    EXPECT_EQ(idsOf("app-gnome-org.gnome.Maps@1.service").value(0), "org.gnome.Maps");
    EXPECT_EQ(idsOf("app-steam@autostart.service").value(0), "steam");
    EXPECT_EQ(idsOf("app-org.example.App.service").value(0), "org.example.App");
    EXPECT_EQ(idsOf("snap.firefox.firefox-1c2d3e4f-0000-1111-2222-333344445555.scope").value(0),
              "firefox_firefox");
}

TEST(ApplicationUnitTest, HyphensThatAreNotEscaped_LeaveSeveralPossibilities) {
    EXPECT_TRUE(idsOf("app-gnome-microsoft-edge-1.scope").contains("microsoft-edge"));
    EXPECT_TRUE(idsOf("app-microsoft-edge-1.scope").contains("microsoft-edge"));
    EXPECT_TRUE(idsOf("app-microsoft-edge.service").contains("microsoft-edge"));
}

TEST(ApplicationUnitTest, WhatIsNoApplication_HasNoId) {
    for (const char* unit :
         {"", "app-", "app-.scope", "app.slice", "app-foo.slice", "dbus.service", "session-2.scope",
          "vte-spawn-1.scope", "snap.x.scope", "snap..-.scope", "app-@.service", "-.scope"}) {
        EXPECT_THAT(idsOf(unit), IsEmpty()) << unit;
    }
}

/// One kind of unit that processes of a session are in.
struct Kind {
    const char* called;
    const char* controlGroup; ///< of a process in it, on its hierarchy
    const char* unit;         ///< the last folder of the application's; empty: none
    const char* id;           ///< the likeliest
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.called;
}

constexpr const char* userManager = "/user.slice/user-1000.slice/user@1000.service";

class ApplicationUnitKindTest : public testing::TestWithParam<Kind> {};

TEST_P(ApplicationUnitKindTest, MembersAndId_AreReadByOneRule) {
    const QByteArray path = QByteArray(userManager) + GetParam().controlGroup;
    const QByteArray unit = GetParam().unit;
    const QByteArray down = path.left(path.indexOf(unit) + unit.size());
    for (const QByteArray& text :
         {"0::" + path + "\n", "9:pids:/app-pids-1.scope\n1:name=systemd:" + path + "\n0::/\n"}) {
        const ApplicationUnit found = ApplicationUnit::ofControlGroups(text);
        EXPECT_EQ(found.controlGroup(), unit.isEmpty() ? QByteArray() : down) << text.constData();
        EXPECT_EQ(found.possibleIds().value(0), GetParam().id) << text.constData();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ApplicationUnitKindTest,
    testing::Values(
        Kind{"Scope", "/app.slice/app-gnome-org.gnome.Maps-1234.scope",
             "app-gnome-org.gnome.Maps-1234.scope", "org.gnome.Maps"},
        Kind{"Service", "/app.slice/app-org.kde.falkon@0af1.service",
             "app-org.kde.falkon@0af1.service", "org.kde.falkon"},
        Kind{"ServiceInTheSliceOfItsTemplate",
             "/app.slice/app-org.kde.falkon.slice/app-org.kde.falkon@0af1.service",
             "app-org.kde.falkon@0af1.service", "org.kde.falkon"},
        Kind{"FolderOfItsOwnInAUnit", "/app.slice/app-steam-7.scope/game", "app-steam-7.scope",
             "steam"},
        Kind{"Snap", "/app.slice/snap.firefox.firefox-1c2d3e4f-0000-1111-2222-333344445555.scope",
             "snap.firefox.firefox-1c2d3e4f-0000-1111-2222-333344445555.scope", "firefox_firefox"},
        Kind{"SnapsHook",
             "/app.slice/snap.x.hook.configure-1c2d3e4f-0000-1111-2222-333344445555.scope", "", ""},
        Kind{"SnapsService", "/app.slice/snap.x.daemon.service", "", ""},
        Kind{"Flatpak", "/app.slice/app-flatpak-org.mozilla.firefox-7.scope",
             "app-flatpak-org.mozilla.firefox-7.scope", "org.mozilla.firefox"},
        Kind{"Terminal", "/app.slice/app-org.kde.konsole-12.scope", "app-org.kde.konsole-12.scope",
             "org.kde.konsole"},
        Kind{"TabOfATerminalInItsSlice",
             "/app.slice/app-org.gnome.Terminal.slice/vte-spawn-9f3d.scope", "", ""},
        Kind{"TabOfATerminalInItsUnit", "/app.slice/app-org.kde.konsole-12.scope/tab(99).scope",
             "app-org.kde.konsole-12.scope", "org.kde.konsole"},
        Kind{"ServiceOfTheSession", "/session.slice/panel.service", "", ""},
        Kind{"None", "", "", ""}),
    [](const auto& tested) { return tested.param.called; });

TEST(ApplicationUnitTest, SessionScopeAndNoControlGroup_AreNone) {
    for (const char* text : {"0::/user.slice/user-1000.slice/session-2.scope\n", "0::/\n",
                             "0::/init.scope\n", "0::\n", "nonsense", ":::", ""}) {
        EXPECT_EQ(ApplicationUnit::ofControlGroups(text).controlGroup(), "") << text;
        EXPECT_THAT(ApplicationUnit::ofControlGroups(text).possibleIds(), IsEmpty()) << text;
    }
}

TEST(ApplicationUnitTest, HierarchyOfAController_TellsNothing) {
    EXPECT_EQ(ApplicationUnit::ofControlGroups("4:memory:/app-firefox-1.scope\n0::/init.scope\n")
                  .controlGroup(),
              "");
}

TEST(ApplicationUnitTest, InnermostUnit_Counts) {
    EXPECT_EQ(ApplicationUnit("/app-outer-1.scope/app-inner-2.scope").controlGroup(),
              "/app-outer-1.scope/app-inner-2.scope");
}

TEST(ApplicationUnitTest, SnapsAndOthers_AreNotMadeByTheDesktop) {
    EXPECT_TRUE(ApplicationUnit::isMadeByDesktop("app-firefox-1.scope"));
    EXPECT_TRUE(ApplicationUnit::isMadeByDesktop("app-firefox@1.service"));
    EXPECT_FALSE(ApplicationUnit::isMadeByDesktop(
        "snap.firefox.firefox-1c2d3e4f-0000-1111-2222-333344445555.scope"));
    EXPECT_FALSE(ApplicationUnit::isMadeByDesktop("app-firefox.slice"));
    EXPECT_FALSE(ApplicationUnit::isMadeByDesktop("dbus.service"));
}

} // namespace
} // namespace quorvane::test
