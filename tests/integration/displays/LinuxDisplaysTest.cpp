#include "tests/integration/displays/LinuxDisplaysFixture.h"

#include <QDBusConnectionInterface>
#include <QDir>
#include <gmock/gmock.h>

#include <cerrno>
#include <limits>

namespace quorvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// How brightness is read and set.
class LinuxDisplaysTest : public LinuxDisplaysFixture {};

TEST_F(LinuxDisplaysTest, List_IsInOrderAndIdsStayWithTheirDevices) {
    addPanel("acpi", "firmware", 5, 10);
    const auto both = displays->activeDisplays(16).displays;
    ASSERT_EQ(both.size(), 2U);
    EXPECT_FLOAT_EQ(displays->brightness(both[0]).brightness, 0.5F);
    EXPECT_FLOAT_EQ(displays->brightness(both[1]).brightness, 0.7F);
    EXPECT_THAT(displays->activeDisplays(1).displays, ElementsAre(both[0]));

    QDir(panelFolder("acpi")).removeRecursively();
    EXPECT_THAT(displays->activeDisplays(16).displays, ElementsAre(both[1]));
    EXPECT_EQ(displays->brightness(both[0]).status, ENODEV);
    EXPECT_EQ(displays->setBrightness(both[0], 0.5F), ENODEV);
    addPanel("acpi", "firmware", 5, 10);
    EXPECT_EQ(displays->activeDisplays(16).displays, both);
}

TEST_F(LinuxDisplaysTest, NoDisplay_EmptyListWithoutError) {
    QDir(panelFolder("panel")).removeRecursively();
    EXPECT_EQ(displays->activeDisplays(16).status, 0);
    EXPECT_THAT(displays->activeDisplays(16).displays, IsEmpty());
    EXPECT_EQ(displays->brightness(99).status, ENODEV);
    EXPECT_EQ(displays->setBrightness(99, 0.5F), ENODEV);
}

TEST_F(LinuxDisplaysTest, Set_GoesThroughLogindForTheCallersSession) {
    const auto logind = startLogind();
    dim(0.35F);
    ASSERT_TRUE(rawBecomes(350));
    const QDBusMessage call = logind->calls().constFirst();
    EXPECT_EQ(call.path(), ownSession);
    EXPECT_EQ(call.signature(), QStringLiteral("ssu"));
    EXPECT_EQ(call.arguments().at(0), QStringLiteral("backlight"));
    EXPECT_EQ(call.arguments().at(1), QStringLiteral("panel"));
}

TEST_F(LinuxDisplaysTest, SetOutOfRange_IsCutDown) {
    dim(1.5F);
    EXPECT_TRUE(rawBecomes(1000));
    dim(-3.0F);
    EXPECT_TRUE(rawBecomes(0));
    EXPECT_EQ(displays->setBrightness(panel(), std::numeric_limits<float>::quiet_NaN()), EINVAL);
    EXPECT_TRUE(settles());
    EXPECT_EQ(raw(), 0);
}

TEST_F(LinuxDisplaysTest, WhileSettingIsUnderWay_BrightnessIsTheOneSet) {
    const auto logind = startLogind();
    logind->hold();
    dim(0.1234F);
    EXPECT_EQ(brightness(), 0.1234F);
    ASSERT_TRUE(waitUntil([&] { return !logind->calls().isEmpty(); }));
    EXPECT_EQ(brightness(), 0.1234F);
    EXPECT_EQ(raw(), 700);
    logind->release();
    ASSERT_TRUE(settles());
    EXPECT_EQ(brightness(), 0.123F);
}

TEST_F(LinuxDisplaysTest, SeveralSetsInARow_StayInOrderAndTheLatestSupersedesThoseNotSent) {
    const auto logind = startLogind();
    logind->hold();
    for (const float value : {0.6F, 0.5F, 0.4F, 0.3F}) {
        dim(value);
    }
    EXPECT_EQ(brightness(), 0.3F);
    ASSERT_TRUE(waitUntil([&] { return !logind->calls().isEmpty(); }));
    logind->release();
    ASSERT_TRUE(settles());
    EXPECT_EQ(raw(), 300);
    EXPECT_THAT(asked(*logind), ElementsAre(600, 300));
}

TEST_F(LinuxDisplaysTest, ProgramWithoutSession_TakesTheOneOnTheUsersDisplay) {
    refusal = QStringLiteral("no session");
    const auto logind = startLogind();
    dim(0.35F);
    ASSERT_TRUE(rawBecomes(350));
    EXPECT_EQ(logind->calls().constLast().path(), displayPath.path());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LinuxDisplaysTest, UserWithoutSession_FileIsWritten) {
    refusal = QStringLiteral("no session");
    displayId.clear();
    displayPath.setPath(QStringLiteral("/"));
    const auto logind = startLogind();
    dim(0.35F);
    EXPECT_TRUE(rawBecomes(350));
    EXPECT_EQ(asked(*logind).size(), 1U);
}

TEST_F(LinuxDisplaysTest, NoLogind_FileIsWritten) {
    setRaw(1000);
    dim(0.055F);
    EXPECT_TRUE(rawBecomes(55));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LinuxDisplaysTest, NeitherLogindNorFile_OneLineSaysWhy) {
    forbidWriting("panel", 700);
    dim(0.35F);
    ASSERT_TRUE(settles());
    dim(0.30F);
    ASSERT_TRUE(settles());
    ASSERT_EQ(log.lines().size(), 1);
    for (const char* part : {"panel", "350", "directory", "org.freedesktop.login1", "session"}) {
        EXPECT_TRUE(log.contains(part)) << part;
    }
    EXPECT_FLOAT_EQ(brightness(), 0.7F);
}

TEST_F(LinuxDisplaysTest, NeitherBusNorFile_OneLineSaysWhy) {
    displays = std::make_unique<LinuxDisplays>(QDBusConnection(QStringLiteral("no such bus")),
                                               *journal, log, folder.path());
    forbidWriting("panel", 700);
    dim(0.35F);
    ASSERT_TRUE(settles());
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.contains("there is no system bus"));
}

// Only a logind that refuses is asked for another session: an answer of the bus's is not its word.
TEST_F(LinuxDisplaysTest, LogindComesRightAfterTheBusHasSaidThatThereIsNone_ItIsNotAsked) {
    dim(0.35F);
    // On the same connection and therefore behind the call, which the bus has answered by now.
    ASSERT_FALSE(bus.connection(connectionName).interface()->isServiceRegistered(logindName));
    const auto logind = startLogind();
    EXPECT_TRUE(rawBecomes(350));
    pass();
    EXPECT_TRUE(logind->calls().isEmpty()) << logind->calls().constFirst().member().toStdString();
}

TEST_F(LinuxDisplaysTest, LogindLeavesInTheMiddle_FileIsWritten) {
    auto logind = startLogind();
    logind->hold();
    dim(0.35F);
    ASSERT_TRUE(waitUntil([&] { return !logind->calls().isEmpty(); }));
    logind.reset();
    EXPECT_TRUE(rawBecomes(350));
}

TEST_F(LinuxDisplaysTest, LogindComesLate_WhatCouldNotBeSetIsSetThen) {
    forbidWriting("panel", 700);
    dim(0.35F);
    ASSERT_TRUE(settles());
    EXPECT_EQ(raw(), 700);
    const auto logind = startLogind("actual_brightness");
    EXPECT_TRUE(rawBecomes(350));
}

TEST_F(LinuxDisplaysTest, LogindComesLateAndTheUserWasFaster_TheUsersBrightnessStays) {
    forbidWriting("panel", 700);
    dim(0.35F);
    ASSERT_TRUE(settles());
    setAttribute("panel", "actual_brightness", "500");
    const auto logind = startLogind("actual_brightness");
    pass();
    EXPECT_EQ(raw(), 500);
    EXPECT_THAT(asked(*logind), IsEmpty());
}

TEST_F(LinuxDisplaysTest, WaitForWrites_FinishesThemWithoutAnEventLoop) {
    dim(0.5F);
    dim(0.35F);
    EXPECT_TRUE(displays->waitForWrites(limit));
    EXPECT_EQ(raw(), 350);
}

TEST_F(LinuxDisplaysTest, WaitForWrites_GivesUpOnALogindThatHangs) {
    const auto logind = startLogind();
    dim(0.35F); // the service lives in this thread and cannot answer now
    EXPECT_FALSE(displays->waitForWrites(std::chrono::milliseconds(50)));
}

} // namespace
} // namespace quorvane::test
