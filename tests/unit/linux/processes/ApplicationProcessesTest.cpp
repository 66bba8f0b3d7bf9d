#include "platform/linux/processes/ApplicationProcesses.h"

#include "tests/unit/linux/processes/FakeProc.h"

#include <gmock/gmock.h>

namespace quorvane::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr std::int32_t residentPid = 900;
constexpr std::int32_t browser = 100;
constexpr std::uint32_t user = 1000;
constexpr const char* browsersUnit = "/user.slice/app.slice/app-browser-100.scope";
constexpr const char* terminalsUnit = "/user.slice/app.slice/app-terminal-50.scope";

/// What an application consists of in a folder like /proc that each test fills.
class ApplicationProcessesTest : public testing::Test {
  protected:
    ApplicationProcessesTest() {
        proc.add({.pid = 800, .executable = "/usr/bin/some-launcher", .name = "some-launcher"});
        proc.add({.pid = residentPid,
                  .parent = 800,
                  .executable = "/opt/Quorvane.app/Contents/Linux/resident",
                  .name = "resident"});
    }

    /// The main process, started by the panel in the panel's group, unless told otherwise.
    void addBrowser(std::int32_t group = 1, const char* unit = "/user.slice/session.scope") {
        proc.add({.pid = browser, .group = group, .unit = unit});
        proc.add({.pid = 101, .parent = browser, .group = group, .unit = unit});
        proc.add({.pid = 102, .parent = 101, .group = group, .unit = unit});
    }

    struct Outcome {
        std::vector<std::int32_t> own;
        bool hasGroup = false;
        QString refusal;
    };

    [[nodiscard]] Outcome look(std::int32_t main = browser,
                               const std::set<std::int32_t>& others = {}) const {
        const ProcessTable table = proc.table();
        const ProtectedProcesses protectedOnes(table, residentPid, user);
        const ApplicationProcesses application(table, main, protectedOnes, others);
        Outcome outcome{{}, application.hasGroupOfItsOwn(), application.refusal()};
        for (const Process& each : application.parentsFirst()) {
            outcome.own.push_back(each.pid());
        }
        return outcome;
    }

    FakeProc proc;
};

TEST_F(ApplicationProcessesTest, MainProcessAndAllDescendants_AreItsOwn) {
    addBrowser();
    proc.add({.pid = 200});
    EXPECT_THAT(look().own, ElementsAre(browser, 101, 102));
}

TEST_F(ApplicationProcessesTest, ParentWithTheHigherId_ComesFirst) {
    proc.add({.pid = browser});
    proc.add({.pid = 101, .parent = 300});
    proc.add({.pid = 300, .parent = browser});
    EXPECT_THAT(look().own, ElementsAre(browser, 300, 101));
}

TEST_F(ApplicationProcessesTest, GroupThatItLeads_IsItsOwn) {
    addBrowser(browser);
    EXPECT_TRUE(look().hasGroup);
}

TEST_F(ApplicationProcessesTest, GroupWithAStranger_IsNotItsOwn) {
    addBrowser(browser);
    proc.add({.pid = 200, .group = browser});
    const Outcome outcome = look();
    EXPECT_FALSE(outcome.hasGroup);
    EXPECT_THAT(outcome.own, ElementsAre(browser, 101, 102));
}

TEST_F(ApplicationProcessesTest, GroupOfTheOneThatStartedIt_IsNotItsOwn) {
    proc.add({.pid = 90, .group = 90, .executable = "/usr/bin/script", .name = "script"});
    proc.add({.pid = browser, .parent = 90, .group = 90});
    const Outcome outcome = look();
    EXPECT_FALSE(outcome.hasGroup);
    EXPECT_THAT(outcome.own, ElementsAre(browser));
}

TEST_F(ApplicationProcessesTest, GroupWithAProtectedDescendant_IsNotItsOwn) {
    addBrowser(browser);
    proc.add({.pid = 103,
              .parent = browser,
              .group = browser,
              .executable = "/usr/bin/pipewire",
              .name = "pipewire"});
    EXPECT_FALSE(look().hasGroup);
}

TEST_F(ApplicationProcessesTest, DescendantsOutsideOfTheGroup_AreItsOwnToo) {
    addBrowser(browser);
    proc.add({.pid = 103, .parent = browser, .group = 103, .session = 103});
    const Outcome outcome = look();
    EXPECT_TRUE(outcome.hasGroup);
    EXPECT_THAT(outcome.own, UnorderedElementsAre(browser, 101, 102, 103));
}

TEST_F(ApplicationProcessesTest, OrphanInASessionThatItLeads_IsItsOwn) {
    proc.add({.pid = browser, .group = browser, .session = browser});
    proc.add({.pid = 103, .parent = 1, .group = browser, .session = browser});
    const Outcome outcome = look();
    EXPECT_THAT(outcome.own, UnorderedElementsAre(browser, 103));
    EXPECT_TRUE(outcome.hasGroup);
}

TEST_F(ApplicationProcessesTest, OrphanInTheSessionOfAShellInIt_IsNotItsOwn) {
    proc.add({.pid = browser});
    proc.add({.pid = 103, .parent = browser, .group = 103, .session = 103, .terminal = 34816});
    proc.add({.pid = 104, .parent = 1, .group = 104, .session = 103, .terminal = 34816});
    EXPECT_THAT(look().own, ElementsAre(browser));
}

TEST_F(ApplicationProcessesTest, MembersOfItsUnit_AreItsOwnAlsoWithoutAParentInIt) {
    addBrowser(1, browsersUnit);
    proc.add({.pid = 60, .unit = browsersUnit});
    proc.add({.pid = 200});
    EXPECT_THAT(look().own, UnorderedElementsAre(browser, 101, 102, 60));
}

TEST_F(ApplicationProcessesTest, MembersOfASnapsUnit_AreItsOwnAlsoWithoutAParentInIt) {
    const char* const snap =
        "/user.slice/app.slice/snap.firefox.firefox-1c2d3e4f-0000-1111-2222-333344445555.scope";
    addBrowser(1, snap);
    proc.add({.pid = 60, .unit = snap});
    proc.add({.pid = 200});
    EXPECT_THAT(look().own, UnorderedElementsAre(browser, 101, 102, 60));
}

TEST_F(ApplicationProcessesTest, SnapThatItHasStarted_IsNotItsOwn) {
    addBrowser();
    proc.add({.pid = 103,
              .parent = 101,
              .executable = "/snap/mail/1/mail",
              .name = "mail",
              .unit = "/user.slice/app.slice/"
                      "snap.mail.mail-1c2d3e4f-0000-1111-2222-333344445555.scope"});
    EXPECT_THAT(look().own, ElementsAre(browser, 101, 102));
}

TEST_F(ApplicationProcessesTest, DescendantInAnotherApplicationsUnit_IsNotItsOwnNorIsWhatItStarts) {
    addBrowser();
    proc.add({.pid = 103,
              .parent = 101,
              .executable = "/usr/bin/mail",
              .name = "mail",
              .unit = "/user.slice/app.slice/app-mail-103.scope"});
    proc.add({.pid = 104, .parent = 103});
    EXPECT_THAT(look().own, ElementsAre(browser, 101, 102));
}

// Some browsers ask for a unit of their own when some of their processes have been started already.
TEST_F(ApplicationProcessesTest, MovedOnIntoAUnitOfItsOwn_OwnsWhatItHasLeftInTheFormerOne) {
    const char* const launched = "/user.slice/app.slice/app-launcher-browser-90.scope";
    proc.add({.pid = browser, .unit = browsersUnit});
    proc.add({.pid = 101, .parent = browser, .unit = launched});
    proc.add({.pid = 102, .parent = 101, .unit = launched});
    proc.add({.pid = 103, .parent = browser, .unit = browsersUnit});
    EXPECT_THAT(look().own, ElementsAre(browser, 101, 103, 102));
}

TEST_F(ApplicationProcessesTest, MovedOnAndItsProcessesHideTheirProgram_OwnsThoseOfItsName) {
    const char* const launched = "/user.slice/app.slice/app-launcher-browser-90.scope";
    proc.add({.pid = browser, .unit = browsersUnit});
    proc.add({.pid = 101, .parent = browser, .executable = nullptr, .unit = launched});
    proc.add(
        {.pid = 102, .parent = browser, .executable = nullptr, .name = "mail", .unit = launched});
    EXPECT_THAT(look().own, ElementsAre(browser, 101));
}

TEST_F(ApplicationProcessesTest, StartedInATerminal_IsNotTheWholeUnitOfTheTerminal) {
    proc.add(
        {.pid = 50, .executable = "/usr/bin/konsole", .name = "konsole", .unit = terminalsUnit});
    proc.add({.pid = 51, .parent = 50, .session = 51, .unit = terminalsUnit, .terminal = 34816});
    proc.add({.pid = 52, .parent = 51, .unit = terminalsUnit});
    proc.add({.pid = browser, .parent = 51, .group = browser, .unit = terminalsUnit});
    proc.add({.pid = 101, .parent = browser, .group = browser, .unit = terminalsUnit});
    const Outcome outcome = look();
    EXPECT_THAT(outcome.own, ElementsAre(browser, 101));
    EXPECT_TRUE(outcome.hasGroup);
}

TEST_F(ApplicationProcessesTest, TerminalWithAnUnknownName_IsToldByItsShell) {
    proc.add({.pid = 50, .unit = terminalsUnit});
    proc.add({.pid = 51, .parent = 50, .session = 51, .unit = terminalsUnit, .terminal = 34816});
    proc.add({.pid = browser, .parent = 51, .unit = terminalsUnit});
    EXPECT_THAT(look().own, ElementsAre(browser));
}

TEST_F(ApplicationProcessesTest, AnotherApplicationStartedFromIt_IsLeftOutWithWhatItStarts) {
    addBrowser();
    EXPECT_THAT(look(browser, {browser, 101}).own, ElementsAre(browser));
}

TEST_F(ApplicationProcessesTest, StartedFromAnotherApplicationInItsUnit_IsNotTheWholeUnit) {
    proc.add({.pid = 50, .unit = browsersUnit});
    addBrowser(1, browsersUnit);
    proc.add({.pid = browser, .parent = 50, .unit = browsersUnit});
    EXPECT_THAT(look(101, {50, 101}).own, ElementsAre(101, 102));
}

TEST_F(ApplicationProcessesTest, ProtectedDescendant_IsLeftOutWithWhatItStarts) {
    addBrowser();
    proc.add({.pid = 103,
              .parent = browser,
              .executable = "/usr/libexec/xdg-desktop-portal",
              .name = "xdg-desktop-por"});
    proc.add({.pid = 104, .parent = 103});
    EXPECT_THAT(look().own, ElementsAre(browser, 101, 102));
}

TEST_F(ApplicationProcessesTest, ShellOfATerminalInIt_IsLeftOut) {
    addBrowser();
    proc.add({.pid = 103, .parent = browser, .session = 103, .terminal = 34816});
    proc.add({.pid = 104, .parent = 103, .session = 103, .terminal = 34816});
    EXPECT_THAT(look().own, ElementsAre(browser, 101, 102));
}

TEST_F(ApplicationProcessesTest, MainProcessThatLeadsTheSessionOfATerminal_IsAnApplication) {
    proc.add({.pid = browser, .group = browser, .session = browser, .terminal = 34816});
    const Outcome outcome = look();
    EXPECT_THAT(outcome.own, ElementsAre(browser));
    EXPECT_TRUE(outcome.hasGroup);
}

TEST_F(ApplicationProcessesTest, WhatEverybodyNeeds_IsRefusedWithTheReason) {
    proc.add({.pid = 103, .executable = "/usr/bin/dbus-daemon", .name = "dbus-daemon"});
    proc.add({.pid = 104, .user = 1001});
    proc.add({.pid = 105, .firstArgument = "-bash"});
    const auto refusal = [this](std::int32_t pid) {
        const Outcome outcome = look(pid);
        EXPECT_THAT(outcome.own, IsEmpty()) << pid;
        EXPECT_FALSE(outcome.hasGroup) << pid;
        return outcome.refusal;
    };
    EXPECT_EQ(refusal(-1), QStringLiteral("it is no process of an application"));
    EXPECT_EQ(refusal(0), QStringLiteral("it is no process of an application"));
    EXPECT_EQ(refusal(1), QStringLiteral("it is no process of an application"));
    EXPECT_EQ(refusal(residentPid), QStringLiteral("it is Quorvane itself"));
    EXPECT_EQ(refusal(800), QStringLiteral("Quorvane was started from it"));
    EXPECT_EQ(refusal(99), QStringLiteral("there is no such process"));
    EXPECT_EQ(refusal(103), QStringLiteral("dbus-daemon is a message bus"));
    EXPECT_EQ(refusal(104), QStringLiteral("it belongs to another user"));
    EXPECT_EQ(refusal(105), QStringLiteral("it is a login's shell"));
}

TEST_F(ApplicationProcessesTest, QuorvaneStartedFromTheApplication_IsNeverAmongIt) {
    proc.add({.pid = browser, .unit = browsersUnit});
    proc.add({.pid = 101, .parent = browser, .unit = browsersUnit});
    proc.add({.pid = residentPid, .parent = 101, .unit = browsersUnit});
    proc.add({.pid = 102, .parent = residentPid, .unit = browsersUnit});
    EXPECT_EQ(look().refusal, QStringLiteral("Quorvane was started from it"));
    EXPECT_THAT(look(102).own, ElementsAre(102));
}

} // namespace
} // namespace quorvane::test
