#include "platform/linux/power/UPowerSource.h"

#include "tests/support/FakeService.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/WaitUntil.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <gtest/gtest.h>

#include <memory>

namespace quorvane::test {
namespace {

constexpr QLatin1String service("org.freedesktop.UPower");
constexpr QLatin1String daemonPath("/org/freedesktop/UPower");
constexpr QLatin1String batteryPath("/org/freedesktop/UPower/devices/battery_BAT0");
constexpr QLatin1String deviceInterface("org.freedesktop.UPower.Device");
constexpr QLatin1String propertiesInterface("org.freedesktop.DBus.Properties");

/// What the real UPower does only in rare moments: odd data, late answers, changes of owner.
class UPowerSourceTest : public testing::Test {
  protected:
    void TearDown() override {
        source.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    std::unique_ptr<FakeService> startUPower() {
        return std::make_unique<FakeService>(
            bus, service, [this](const QDBusMessage& call) { return answer(call); });
    }

    [[nodiscard]] QDBusMessage answer(const QDBusMessage& call) const {
        if (call.member() == QLatin1String("EnumerateDevices")) {
            return call.createReply(
                QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath(QString(batteryPath))}));
        }
        if (call.member() == QLatin1String("GetAll") && !refuses) {
            return call.createReply(call.path() == daemonPath ? daemon : battery);
        }
        return call.createErrorReply(QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"),
                                     QStringLiteral("no such thing"));
    }

    void openSource() {
        source = std::make_unique<UPowerSource>(bus.connection(connectionName));
        QObject::connect(source.get(), &UPowerSource::changed, source.get(), [this] { ++changes; });
    }

    [[nodiscard]] bool becomesReady() const {
        return waitUntil([this] { return source->isReady(); });
    }

    [[nodiscard]] std::optional<double> percentage() const {
        const std::vector<BatteryReading> batteries = source->state().batteries;
        return batteries.size() == 1 ? batteries[0].percentage : std::nullopt;
    }

    static void emitChange(FakeService& uPower, QLatin1String path, QLatin1String interface,
                           const QVariantMap& values, const QStringList& invalidated = {}) {
        uPower.emitSignal(path, propertiesInterface, QStringLiteral("PropertiesChanged"),
                          {QString(interface), values, invalidated});
    }

    static void settle() {
        [[maybe_unused]] const bool never =
            waitUntil([] { return false; }, std::chrono::milliseconds(200));
    }

    const QString connectionName = QStringLiteral("upower-source");
    const QString percentageKey = QStringLiteral("Percentage");
    PrivateBus bus{PrivateBus::Type::System};
    bool refuses = false;
    QVariantMap daemon{{QStringLiteral("OnBattery"), true}};
    QVariantMap battery{{QStringLiteral("Type"), 2U},
                        {QStringLiteral("PowerSupply"), true},
                        {QStringLiteral("IsPresent"), true},
                        {percentageKey, 80.0}};
    std::unique_ptr<UPowerSource> source;
    int changes = 0;
};

TEST_F(UPowerSourceTest, ServiceThatDoesNotAnswerAtTheStart_IsUsedWhenItDoes) {
    const auto uPower = startUPower();
    uPower->hold();
    openSource(); // the service lives in this thread, so it cannot answer in time
    EXPECT_FALSE(source->isReady());
    settle();
    EXPECT_FALSE(source->isReady());
    uPower->release();
    EXPECT_TRUE(becomesReady());
    EXPECT_EQ(percentage(), 80.0);
    EXPECT_EQ(source->state().onBattery, true);
}

TEST_F(UPowerSourceTest, AnswersOfAFormerOwner_AreDropped) {
    openSource();
    auto former = startUPower();
    former->hold();
    ASSERT_TRUE(waitUntil([&] { return former->calls().size() >= 2; }));
    former->giveNameUp();
    settle();

    battery[percentageKey] = 50.0;
    const auto present = startUPower();
    ASSERT_TRUE(becomesReady());
    EXPECT_EQ(percentage(), 50.0);

    battery[percentageKey] = 10.0;
    daemon[QStringLiteral("OnBattery")] = false;
    former->release();
    emitChange(*former, batteryPath, deviceInterface, {{percentageKey, 5.0}});
    settle();
    EXPECT_EQ(percentage(), 50.0);
    EXPECT_EQ(source->state().onBattery, true);
}

TEST_F(UPowerSourceTest, OwnerLeaves_NoLongerReady) {
    openSource();
    auto uPower = startUPower();
    ASSERT_TRUE(becomesReady());
    changes = 0;
    uPower.reset();
    EXPECT_TRUE(waitUntil([this] { return !source->isReady() && changes > 0; }));
    EXPECT_TRUE(source->state().batteries.empty());
}

TEST_F(UPowerSourceTest, OwnerRefusesEverything_NeverReady) {
    openSource();
    refuses = true;
    const auto uPower = startUPower();
    ASSERT_TRUE(waitUntil([&] { return uPower->calls().size() >= 3; }));
    settle();
    EXPECT_FALSE(source->isReady());
}

TEST_F(UPowerSourceTest, ChangeWithValues_IsTakenOver) {
    openSource();
    const auto uPower = startUPower();
    ASSERT_TRUE(becomesReady());
    emitChange(*uPower, batteryPath, deviceInterface, {{percentageKey, 42.0}});
    EXPECT_TRUE(waitUntil([this] { return percentage() == 42.0; }));
    emitChange(*uPower, daemonPath, service, {{QStringLiteral("OnBattery"), false}});
    EXPECT_TRUE(waitUntil([this] { return source->state().onBattery == false; }));
}

TEST_F(UPowerSourceTest, ChangeWithoutValues_IsAskedFor) {
    openSource();
    const auto uPower = startUPower();
    ASSERT_TRUE(becomesReady());
    battery[percentageKey] = 41.0;
    emitChange(*uPower, batteryPath, deviceInterface, {}, {percentageKey});
    EXPECT_TRUE(waitUntil([this] { return percentage() == 41.0; }));
}

TEST_F(UPowerSourceTest, ChangeOfAnotherInterface_IsIgnored) {
    openSource();
    const auto uPower = startUPower();
    ASSERT_TRUE(becomesReady());
    emitChange(*uPower, batteryPath, QLatin1String("org.example.Other"), {{percentageKey, 1.0}});
    settle();
    EXPECT_EQ(percentage(), 80.0);
}

TEST_F(UPowerSourceTest, DeviceThatIsNoneOfTheMachines_DoesNotCount) {
    battery[QStringLiteral("PowerSupply")] = false;
    openSource();
    const auto uPower = startUPower();
    ASSERT_TRUE(becomesReady());
    EXPECT_TRUE(source->state().batteries.empty());
    settle();
    changes = 0;
    emitChange(*uPower, batteryPath, deviceInterface, {{percentageKey, 1.0}});
    settle();
    EXPECT_EQ(changes, 0) << "its changes shall not even arrive";
}

TEST_F(UPowerSourceTest, DeviceRemovedBeforeItAnswered_StaysAway) {
    openSource();
    const auto uPower = startUPower();
    ASSERT_TRUE(becomesReady());
    uPower->hold();
    const auto removed = QVariant::fromValue(QDBusObjectPath(QString(batteryPath)));
    emitChange(*uPower, batteryPath, deviceInterface, {}, {percentageKey});
    uPower->emitSignal(daemonPath, service, QStringLiteral("DeviceRemoved"), {removed});
    EXPECT_TRUE(waitUntil([this] { return source->state().batteries.empty(); }));
    uPower->release();
    settle();
    EXPECT_TRUE(source->state().batteries.empty());

    uPower->emitSignal(daemonPath, service, QStringLiteral("DeviceAdded"), {removed});
    EXPECT_TRUE(waitUntil([this] { return percentage() == 80.0; }));
}

TEST_F(UPowerSourceTest, OddTypes_AreIgnored) {
    battery[percentageKey] = QStringLiteral("eighty");
    battery[QStringLiteral("Energy")] = QVariantList{1, 2};
    openSource();
    const auto uPower = startUPower();
    ASSERT_TRUE(becomesReady());
    EXPECT_FALSE(percentage());
    EXPECT_EQ(source->state().batteries.size(), 1U);

    const QString changed = QStringLiteral("PropertiesChanged");
    uPower->emitSignal(batteryPath, propertiesInterface, changed, {});
    uPower->emitSignal(batteryPath, propertiesInterface, changed, {7, 8, 9});
    uPower->emitSignal(batteryPath, propertiesInterface, changed,
                       {QString(deviceInterface), QStringList{QStringLiteral("x")}, 5.0});
    uPower->emitSignal(daemonPath, service, QStringLiteral("DeviceAdded"), {QStringLiteral("x")});
    uPower->emitSignal(daemonPath, service, QStringLiteral("DeviceRemoved"), {true});
    emitChange(*uPower, batteryPath, deviceInterface, {{percentageKey, 30.0}});
    EXPECT_TRUE(waitUntil([this] { return percentage() == 30.0; }));
}

TEST_F(UPowerSourceTest, WithoutOnBattery_NotReady) {
    daemon = {{QStringLiteral("OnBattery"), QStringLiteral("yes")}};
    openSource();
    const auto uPower = startUPower();
    ASSERT_TRUE(waitUntil([&] { return uPower->calls().size() >= 3; }));
    settle();
    EXPECT_FALSE(source->isReady());
}

TEST_F(UPowerSourceTest, NoServiceAndNoneToStart_NotReady) {
    openSource();
    settle();
    EXPECT_FALSE(source->isReady());
    EXPECT_FALSE(source->state().onBattery);
}

} // namespace
} // namespace quorvane::test
