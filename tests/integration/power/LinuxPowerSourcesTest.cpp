#include "platform/linux/power/LinuxPowerSources.h"

#include "tests/support/FakeLaptop.h"
#include "tests/support/OpenCounter.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/WaitUntil.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QSaveFile>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace quorvane::test {
namespace {

/// The port over the real upowerd on a fake laptop, and over the laptop alone.
class LinuxPowerSourcesTest : public testing::Test {
  protected:
    struct Announced {
        double level;
        double timeRemaining;
    };

    void SetUp() override {
        if (const QString reason = FakeLaptop::whyNot(); !reason.isEmpty()) {
            GTEST_SKIP() << "skipped: " << reason.toStdString();
        }
        ASSERT_TRUE(bus.isRunning());
        laptop = std::make_unique<FakeLaptop>(bus);
        ASSERT_TRUE(laptop->isUp());
        laptop->join();
    }

    void TearDown() override {
        port.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    void openPort(const QString& sysfs) {
        port = std::make_unique<LinuxPowerSources>(bus.connection(connectionName), log, sysfs);
        QObject::connect(port.get(), &PowerSources::changed, port.get(),
                         [this](const PowerReading& reading) {
                             announced.push_back({levelOf(reading), reading.timeRemaining});
                         });
    }

    void openPort() { openPort(laptop->sysfs()); }

    void startUPowerAndOpenPort() {
        ASSERT_TRUE(laptop->startUPower());
        openPort();
    }

    /// -1 when there is no source, -2 when it is not present.
    [[nodiscard]] static double levelOf(const PowerReading& reading) {
        const std::vector<PowerSource>& sources = reading.sources;
        if (sources.empty()) {
            return -1.0;
        }
        EXPECT_EQ(sources.size(), 1U);
        return sources[0].isPresent.value_or(true)
                   ? sources[0].currentCapacity / sources[0].maxCapacity
                   : -2.0;
    }

    [[nodiscard]] double level() const { return levelOf(port->reading()); }

    [[nodiscard]] double timeRemaining() const { return port->reading().timeRemaining; }

    [[nodiscard]] bool levelBecomes(double expected) const {
        return waitUntil([&] { return std::abs(level() - expected) < 0.0001; });
    }

    [[nodiscard]] bool timeBecomes(double expected) const {
        return waitUntil([&] { return timeRemaining() == expected; });
    }

    [[nodiscard]] bool isOnBattery() const { return timeRemaining() != timeRemainingUnlimited; }

    [[nodiscard]] bool becomesOnBattery() const {
        return waitUntil([this] { return isOnBattery(); });
    }

    /// Lets the bus start UPower. Returns whether the bus has noticed.
    [[nodiscard]] bool makeUPowerActivatable() const {
        const QString name = QStringLiteral("org.freedesktop.UPower");
        QSaveFile file(bus.serviceFolder() + QStringLiteral("/%1.service").arg(name));
        file.open(QIODevice::WriteOnly);
        file.write("[D-BUS Service]\nName=org.freedesktop.UPower\nUser=root\nExec=" +
                   laptop->uPowerCommand().toUtf8() + '\n');
        file.commit();
        const bool isNoticed = waitUntil([this, &name] {
            const auto names =
                bus.connection(connectionName).interface()->activatableServiceNames();
            return names.value().contains(name);
        });
        settle(); // a bus that reads its folder anew loses sight of what it is just starting
        return isNoticed;
    }

    /// Long enough for every message that is already on its way.
    static void settle() {
        [[maybe_unused]] const bool never =
            waitUntil([] { return false; }, std::chrono::milliseconds(300));
    }

    const QString connectionName = QStringLiteral("power-sources");
    PrivateBus bus{PrivateBus::Type::System};
    RecordingLog log;
    std::unique_ptr<FakeLaptop> laptop;
    std::unique_ptr<LinuxPowerSources> port;
    std::vector<Announced> announced;
};

TEST_F(LinuxPowerSourcesTest, UPowerRuns_FirstReadingsAreThereWithoutAnEventLoop) {
    startUPowerAndOpenPort();
    EXPECT_DOUBLE_EQ(level(), 0.8);
    EXPECT_EQ(timeRemaining(), timeRemainingUnlimited);
    EXPECT_EQ(port->advancedBatteryInfo()->value(QStringLiteral("vendor")), QStringLiteral("ACME"));
    settle();
    EXPECT_TRUE(announced.empty());
}

TEST_F(LinuxPowerSourcesTest, Unplugged_EstimateIsUPowersTimeToEmpty) {
    startUPowerAndOpenPort();
    laptop->run(QStringLiteral("unplug 10"));
    EXPECT_TRUE(timeBecomes(4.0 * 3600.0));
    ASSERT_FALSE(announced.empty());
    EXPECT_EQ(announced.back().timeRemaining, 4.0 * 3600.0);
}

TEST_F(LinuxPowerSourcesTest, PluggedIn_TimeIsUnlimited) {
    laptop->run(QStringLiteral("unplug 10"));
    startUPowerAndOpenPort();
    ASSERT_TRUE(isOnBattery());
    laptop->run(QStringLiteral("plug"));
    EXPECT_TRUE(timeBecomes(timeRemainingUnlimited));
    EXPECT_TRUE(waitUntil([this] {
        return !announced.empty() && announced.back().timeRemaining == timeRemainingUnlimited;
    }));
}

TEST_F(LinuxPowerSourcesTest, Discharge_EveryStepIsAnnouncedWithItsFigures) {
    laptop->run(QStringLiteral("unplug 10"));
    startUPowerAndOpenPort();
    for (int percent = 79; percent >= 70; --percent) {
        announced.clear();
        laptop->run(QStringLiteral("charge %1 10").arg(percent));
        ASSERT_TRUE(levelBecomes(percent / 100.0));
        ASSERT_TRUE(waitUntil([&] {
            return !announced.empty() &&
                   std::abs(announced.back().timeRemaining - percent / 100.0 * 50.0 * 360.0) < 1.0;
        }));
        EXPECT_DOUBLE_EQ(announced.back().level, percent / 100.0);
    }
}

TEST_F(LinuxPowerSourcesTest, NoAnnouncement_RepeatsTheOneBefore) {
    startUPowerAndOpenPort();
    laptop->run(QStringLiteral("unplug 10"));
    laptop->run(QStringLiteral("charge 60 12"));
    laptop->run(QStringLiteral("plug"));
    ASSERT_TRUE(timeBecomes(timeRemainingUnlimited));
    settle();
    ASSERT_FALSE(announced.empty());
    for (std::size_t i = 1; i < announced.size(); ++i) {
        EXPECT_FALSE(announced[i].level == announced[i - 1].level &&
                     announced[i].timeRemaining == announced[i - 1].timeRemaining);
    }
}

TEST_F(LinuxPowerSourcesTest, ChangeOfNoInterest_IsNotAnnounced) {
    startUPowerAndOpenPort();
    laptop->run(QStringLiteral("set BAT0 voltage_now 11900000"));
    laptop->run(QStringLiteral("announce BAT0 change"));
    EXPECT_TRUE(waitUntil([this] {
        return port->advancedBatteryInfo()->value(QStringLiteral("voltage")).toDouble() == 11.9;
    }));
    settle();
    EXPECT_TRUE(announced.empty());
}

TEST_F(LinuxPowerSourcesTest, SecondBattery_BothAreOneSource) {
    startUPowerAndOpenPort();
    laptop->run(QStringLiteral("add-battery BAT1 50"));
    EXPECT_TRUE(levelBecomes(0.65));
    laptop->run(QStringLiteral("unplug 10"));
    EXPECT_TRUE(timeBecomes(65.0 / 20.0 * 3600.0));
    laptop->run(QStringLiteral("remove BAT1"));
    EXPECT_TRUE(levelBecomes(0.8));
}

TEST_F(LinuxPowerSourcesTest, BatteryOfAMouse_NeverCounts) {
    laptop->run(QStringLiteral("add-mouse first 10"));
    startUPowerAndOpenPort();
    EXPECT_DOUBLE_EQ(level(), 0.8);
    laptop->run(QStringLiteral("add-mouse second 5"));
    laptop->run(QStringLiteral("charge 70"));
    ASSERT_TRUE(levelBecomes(0.7));
    settle();
    EXPECT_EQ(announced.size(), 1U) << "the mouse itself is no news";
    EXPECT_EQ(timeRemaining(), timeRemainingUnlimited);
}

TEST_F(LinuxPowerSourcesTest, BatteryTakenOut_NoSource) {
    startUPowerAndOpenPort();
    laptop->run(QStringLiteral("remove BAT0"));
    EXPECT_TRUE(levelBecomes(-1.0));
    EXPECT_FALSE(port->advancedBatteryInfo());
}

TEST_F(LinuxPowerSourcesTest, BayIsEmpty_SourceIsNotPresent) {
    laptop->run(QStringLiteral("set BAT0 present 0"));
    startUPowerAndOpenPort();
    EXPECT_EQ(level(), -2.0);
}

TEST_F(LinuxPowerSourcesTest, UPowerStoppedAndStartedAgain_FiguresGoOn) {
    startUPowerAndOpenPort();
    laptop->uPower().stop();
    ASSERT_TRUE(
        waitUntil([this] { return !bus.hasOwner(QStringLiteral("org.freedesktop.UPower")); }));
    laptop->run(QStringLiteral("charge 60"));
    EXPECT_TRUE(levelBecomes(0.6)) << "read without UPower";
    laptop->run(QStringLiteral("unplug 10"));
    EXPECT_TRUE(timeBecomes(3.0 * 3600.0));

    ASSERT_TRUE(laptop->startUPower());
    laptop->run(QStringLiteral("charge 50 10"));
    EXPECT_TRUE(timeBecomes(2.5 * 3600.0));
    EXPECT_DOUBLE_EQ(level(), 0.5);
}

TEST_F(LinuxPowerSourcesTest, UPowerKilled_KernelsAnnouncementsAreHeardAtOnce) {
    startUPowerAndOpenPort();
    laptop->uPower().kill();
    settle();
    announced.clear();
    laptop->run(QStringLiteral("unplug 10"));
    EXPECT_TRUE(waitUntil(
        [this] { return !announced.empty() && announced.back().timeRemaining == 4.0 * 3600.0; }));
}

TEST_F(LinuxPowerSourcesTest, UPowerKilledWhereTheKernelListsNoBattery_LastStateStays) {
    laptop->run(QStringLiteral("unplug 10"));
    ASSERT_TRUE(laptop->startUPower());
    openPort(bus.folder());
    ASSERT_TRUE(timeBecomes(4.0 * 3600.0));
    laptop->uPower().kill();
    settle();
    EXPECT_DOUBLE_EQ(level(), 0.8);
    EXPECT_EQ(timeRemaining(), 4.0 * 3600.0);
    EXPECT_TRUE(announced.empty());

    laptop->run(QStringLiteral("charge 60 10"));
    ASSERT_TRUE(laptop->startUPower());
    EXPECT_TRUE(levelBecomes(0.6));
}

TEST_F(LinuxPowerSourcesTest, UPowerStartsLate_IsUsedFromThenOn) {
    openPort(bus.folder());
    EXPECT_EQ(level(), -1.0);
    EXPECT_EQ(timeRemaining(), timeRemainingUnlimited);
    ASSERT_TRUE(laptop->startUPower());
    EXPECT_TRUE(levelBecomes(0.8));
    EXPECT_TRUE(waitUntil([this] { return !announced.empty(); }));
}

TEST_F(LinuxPowerSourcesTest, UPowerCanBeStarted_IsAskedForAndMissedByNobody) {
    ASSERT_TRUE(makeUPowerActivatable());
    openPort();
    EXPECT_DOUBLE_EQ(level(), 0.8);
    EXPECT_TRUE(
        waitUntil([this] { return bus.hasOwner(QStringLiteral("org.freedesktop.UPower")); }));
    laptop->run(QStringLiteral("charge 42"));
    EXPECT_TRUE(levelBecomes(0.42));
}

TEST_F(LinuxPowerSourcesTest, NoUPower_KernelsAnnouncementsAreEnough) {
    openPort();
    EXPECT_DOUBLE_EQ(level(), 0.8);
    EXPECT_EQ(timeRemaining(), timeRemainingUnlimited);
    laptop->run(QStringLiteral("unplug 10"));
    EXPECT_TRUE(waitUntil(
        [this] { return !announced.empty() && announced.back().timeRemaining == 4.0 * 3600.0; }));
    laptop->run(QStringLiteral("plug"));
    EXPECT_TRUE(
        waitUntil([this] { return announced.back().timeRemaining == timeRemainingUnlimited; }));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LinuxPowerSourcesTest, NoUPower_OneLookAtTheSuppliesForTheStartAndForEachAnnouncement) {
    // Read once whenever the battery is looked at, and written by nobody.
    OpenCounter looks(laptop->sysfs() + QStringLiteral("/class/power_supply/BAT0/type"));
    openPort();
    settle();
    EXPECT_EQ(looks.take(), 1);

    for (int percent = 79; percent > 76; --percent) {
        const std::size_t expected = announced.size() + 1;
        laptop->run(QStringLiteral("set BAT0 capacity %1").arg(percent));
        laptop->run(QStringLiteral("announce BAT0 change"));
        ASSERT_TRUE(waitUntil([&] { return announced.size() == expected; }));
        settle();
        EXPECT_DOUBLE_EQ(announced.back().level, percent / 100.0);
        EXPECT_EQ(looks.take(), 1);
    }
}

TEST_F(LinuxPowerSourcesTest, NoUPower_AReadingIsOneLookAtTheSupplies) {
    openPort();
    settle();
    OpenCounter looks(laptop->sysfs() + QStringLiteral("/class/power_supply/BAT0/type"));
    const PowerReading reading = port->reading();
    EXPECT_DOUBLE_EQ(levelOf(reading), 0.8);
    EXPECT_EQ(reading.timeRemaining, timeRemainingUnlimited);
    EXPECT_EQ(looks.take(), 1);
}

TEST_F(LinuxPowerSourcesTest, NoUPowerAndNoAnnouncement_EveryReadingIsFresh) {
    openPort();
    laptop->run(QStringLiteral("set BAT0 capacity 33"));
    EXPECT_DOUBLE_EQ(level(), 0.33);
    laptop->run(QStringLiteral("set AC online 0"));
    EXPECT_EQ(timeRemaining(), timeRemainingUnknown);
}

TEST_F(LinuxPowerSourcesTest, NoUPower_SecondBatteryAndMouse) {
    openPort();
    laptop->run(QStringLiteral("add-mouse mouse 5"));
    laptop->run(QStringLiteral("add-battery BAT1 50"));
    EXPECT_TRUE(levelBecomes(0.65));
    laptop->run(QStringLiteral("unplug 10"));
    EXPECT_TRUE(timeBecomes(65.0 / 20.0 * 3600.0));
}

TEST_F(LinuxPowerSourcesTest, NoUPower_FeedingATelephoneIsNoExternalPower) {
    laptop->run(QStringLiteral("unplug 10"));
    openPort();
    laptop->run(QStringLiteral("add-charger ucsi USB 1"));
    settle();
    EXPECT_TRUE(isOnBattery());
    laptop->run(QStringLiteral("set BAT0 status Charging"));
    EXPECT_EQ(timeRemaining(), timeRemainingUnlimited);
}

TEST_F(LinuxPowerSourcesTest, NoBusAtAll_KernelIsRead) {
    port = std::make_unique<LinuxPowerSources>(QDBusConnection(QStringLiteral("no such bus")), log,
                                               laptop->sysfs());
    EXPECT_DOUBLE_EQ(level(), 0.8);
    laptop->run(QStringLiteral("unplug 10"));
    EXPECT_TRUE(becomesOnBattery());
}

TEST_F(LinuxPowerSourcesTest, NeitherUPowerNorSupplies_NothingKnown) {
    openPort(bus.folder());
    EXPECT_EQ(level(), -1.0);
    EXPECT_EQ(timeRemaining(), timeRemainingUnlimited);
    EXPECT_FALSE(port->advancedBatteryInfo());
}

} // namespace
} // namespace quorvane::test
