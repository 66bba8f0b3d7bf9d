#include "platform/linux/displays/LinuxDisplays.h"
#include "tests/support/FakeLaptop.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <memory>

namespace quorvane::test {
namespace {

/// The port over the real logind on a fake laptop.
class LogindDisplaysTest : public testing::Test {
  protected:
    void SetUp() override {
        for (const QString& reason : {FakeLaptop::whyNot(), FakeLaptop::whyNoLogind()}) {
            if (!reason.isEmpty()) {
                GTEST_SKIP() << "skipped: " << reason.toStdString();
            }
        }
        laptop = std::make_unique<FakeLaptop>(bus);
        ASSERT_TRUE(laptop->isUp());
        journal = std::make_unique<PuttingBackJournal>(
            bus.folder() + QStringLiteral("/quorvane/putting-back.journal"), log);
    }

    void TearDown() override {
        displays.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    /// Returns false where the machine does not let a test enter a session.
    [[nodiscard]] bool enterSession() {
        const QString session = laptop->openSession();
        EXPECT_FALSE(session.isEmpty());
        return laptop->enterSession(session);
    }

    void openDisplays(const QString& sysfs) {
        displays =
            std::make_unique<LinuxDisplays>(bus.connection(connectionName), *journal, log, sysfs);
    }

    /// The laptop's sysfs as seen by somebody who may not write the brightness. The tests may be
    /// run by root, whom no permission hinders.
    [[nodiscard]] QString sysfsWithoutRights() const {
        const QString device = QStringLiteral("/class/backlight/intel_backlight/");
        QString view = bus.folder() + QStringLiteral("/view");
        QDir().mkpath(view + device + QStringLiteral("brightness"));
        const auto link = [&](const char* from, const char* to) {
            EXPECT_TRUE(QFile::link(laptop->sysfs() + device + QLatin1String(to),
                                    view + device + QLatin1String(from)));
        };
        link("actual_brightness", "brightness");
        link("max_brightness", "max_brightness");
        link("type", "type");
        return view;
    }

    void dim(float value) const {
        const Displays::List list = displays->activeDisplays(16);
        ASSERT_EQ(list.displays.size(), 1U);
        ASSERT_EQ(displays->setBrightness(list.displays[0], value), 0);
    }

    [[nodiscard]] int raw() const {
        return laptop->run(QStringLiteral("get intel_backlight brightness")).toInt();
    }

    [[nodiscard]] bool rawBecomes(int value) const {
        return waitUntil([&] { return raw() == value; });
    }

    [[nodiscard]] bool hasEntries() const {
        return !journal->entries().value_or(PuttingBackJournal::Entries()).empty();
    }

    const QString connectionName = QStringLiteral("logind-displays");
    PrivateBus bus{PrivateBus::Type::System};
    RecordingLog log;
    std::unique_ptr<FakeLaptop> laptop;
    std::unique_ptr<PuttingBackJournal> journal;
    std::unique_ptr<LinuxDisplays> displays;
};

TEST_F(LogindDisplaysTest, DimAndPutBack_ThroughLogindOfTheOwnSession) {
    ASSERT_TRUE(laptop->startLogind());
    if (!enterSession()) {
        GTEST_SKIP() << "skipped: no cgroup2 to enter a session with";
    }
    openDisplays(sysfsWithoutRights());
    dim(0.35F);
    EXPECT_TRUE(rawBecomes(350));
    EXPECT_TRUE(hasEntries());
    displays->putBack();
    EXPECT_TRUE(rawBecomes(700));
    EXPECT_TRUE(waitUntil([this] { return !hasEntries(); }));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LogindDisplaysTest, LogindStoppedAndStartedAgain_WhatCouldNotBeSetIsSetThen) {
    ASSERT_TRUE(laptop->startLogind());
    if (!enterSession()) {
        GTEST_SKIP() << "skipped: no cgroup2 to enter a session with";
    }
    openDisplays(sysfsWithoutRights());
    dim(0.35F);
    ASSERT_TRUE(rawBecomes(350));

    laptop->logind().stop();
    dim(0.45F);
    ASSERT_TRUE(displays->waitForWrites(std::chrono::seconds(10)));
    EXPECT_EQ(raw(), 350);
    EXPECT_EQ(log.lines().size(), 1);

    ASSERT_TRUE(laptop->startLogind());
    EXPECT_TRUE(rawBecomes(450));
    dim(0.55F);
    EXPECT_TRUE(rawBecomes(550));
    displays->putBack();
    EXPECT_TRUE(rawBecomes(700));
    EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(LogindDisplaysTest, LogindKilled_FileIsWritten) {
    ASSERT_TRUE(laptop->startLogind());
    openDisplays(laptop->sysfs());
    laptop->logind().kill();
    dim(0.35F);
    EXPECT_TRUE(rawBecomes(350));
}

TEST_F(LogindDisplaysTest, NoSession_FileIsWritten) {
    ASSERT_TRUE(laptop->startLogind());
    openDisplays(laptop->sysfs());
    dim(0.35F);
    EXPECT_TRUE(rawBecomes(350));
    EXPECT_TRUE(log.lines().isEmpty());
}

} // namespace
} // namespace quorvane::test
