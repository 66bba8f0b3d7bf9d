#include "battery/Battery.h"

#include "core/EventCenter.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <gmock/gmock.h>

#include <limits>

namespace quorvane::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class BatteryTest : public SimulatedLaptopTest {
  protected:
    BatteryTest() {
        QObject::connect(&EventCenter::defaultCenter(), &EventCenter::posted,
                         &EventCenter::defaultCenter(),
                         [this](const QString& name, const QObject* sender) {
                             events_.push_back(name.toStdString());
                             sender_ = sender;
                         });
    }

    // Lets the battery monitor start with this reading.
    Battery& startAt(double percent, double estimate) {
        laptop().powerSources().setPercent(percent);
        laptop().powerSources().setEstimate(estimate);
        return Battery::battery();
    }

    std::vector<std::string> takeEvents() { return std::exchange(events_, {}); }

    [[nodiscard]] const QObject* sender() const { return sender_; }

  private:
    std::vector<std::string> events_;
    const QObject* sender_ = nullptr;
};

constexpr double onBattery = 3600.0;

} // namespace

TEST_F(BatteryTest, FirstReading_FillsPropertiesAndPostsNothing) {
    const Battery& battery = startAt(73, onBattery);
    EXPECT_EQ(battery.batteryPercent(), 73);
    EXPECT_EQ(battery.batteryPercentNumber(), QVariant(73));
    EXPECT_EQ(battery.batteryTimeRemaining(), onBattery);
    EXPECT_EQ(battery.batteryTimeRemainingNumber(), QVariant(onBattery));
    EXPECT_FALSE(battery.batteryCharging());
    EXPECT_FALSE(battery.lastIncreaseDecrease().isValid());
    EXPECT_THAT(takeEvents(), IsEmpty());
    EXPECT_TRUE(battery.dataPoints().isEmpty());
}

TEST_F(BatteryTest, SameReadingTwice_EachAppendsASampleAndPostsOnlyLogChanged) {
    const Battery& battery = startAt(73, onBattery);
    laptop().powerSources().announce();
    EXPECT_THAT(takeEvents(), ElementsAre("BatteryLogChanged"));
    laptop().clock().advance(Seconds(120));
    EXPECT_THAT(takeEvents(), ElementsAre("BatteryLogChanged"));
    EXPECT_EQ(battery.dataPoints(), (QList<int>{73, 73}));
    EXPECT_EQ(battery.dataTimes().size(), 2);
}

TEST_F(BatteryTest, AnnouncedReading_IsTakenWithoutAskingForOne) {
    const Battery& battery = startAt(73, onBattery);
    EXPECT_EQ(laptop().powerSources().readings(), 1);
    laptop().powerSources().discharge(72, 1800);
    EXPECT_EQ(battery.batteryPercent(), 72);
    EXPECT_EQ(battery.batteryTimeRemaining(), 1800);
    EXPECT_EQ(laptop().powerSources().readings(), 1);
}

TEST_F(BatteryTest, TimedReading_AsksOnceForAll) {
    const Battery& battery = startAt(73, onBattery);
    laptop().powerSources().setPercent(72);
    laptop().powerSources().setEstimate(1800);
    laptop().clock().advance(Seconds(120));
    EXPECT_EQ(battery.batteryPercent(), 72);
    EXPECT_EQ(battery.batteryTimeRemaining(), 1800);
    EXPECT_EQ(laptop().powerSources().readings(), 2);
}

TEST_F(BatteryTest, PluggingInWhileThePercentageRises_PostsIncreasedThenBeganChargingThenLog) {
    const Battery& battery = startAt(50, onBattery);
    laptop().powerSources().charge(51);
    EXPECT_THAT(takeEvents(),
                ElementsAre("BatteryLevelIncreased", "BatteryBeganCharging", "BatteryLogChanged"));
    EXPECT_EQ(sender(), &battery);
}

TEST_F(BatteryTest, UnpluggingAtALowerReading_PostsDecreasedThenStoppedChargingThenLog) {
    startAt(50, timeRemainingUnlimited);
    laptop().powerSources().discharge(49);
    EXPECT_THAT(takeEvents(), ElementsAre("BatteryLevelDecreased", "BatteryStoppedCharging",
                                          "BatteryLogChanged"));
}

TEST_F(BatteryTest, PercentDropOnExternalPower_PostsOnlyLogChanged) {
    startAt(80, timeRemainingUnlimited);
    laptop().powerSources().charge(79);
    EXPECT_THAT(takeEvents(), ElementsAre("BatteryLogChanged"));
}

TEST_F(BatteryTest, PercentRiseOnBattery_PostsOnlyLogChanged) {
    startAt(50, onBattery);
    laptop().powerSources().discharge(51);
    EXPECT_THAT(takeEvents(), ElementsAre("BatteryLogChanged"));
}

TEST_F(BatteryTest, UnknownEstimate_CountsAsOnBattery) {
    const Battery& battery = startAt(50, timeRemainingUnknown);
    EXPECT_FALSE(battery.batteryCharging());
    laptop().powerSources().charge(50);
    EXPECT_TRUE(battery.batteryCharging());
    EXPECT_THAT(takeEvents(), ElementsAre("BatteryBeganCharging", "BatteryLogChanged"));
}

TEST_F(BatteryTest, NotANumberEstimate_CountsAsOnBattery) {
    const Battery& battery = startAt(50, timeRemainingUnlimited);
    laptop().powerSources().discharge(50, std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(battery.batteryCharging());
    EXPECT_THAT(takeEvents(), ElementsAre("BatteryStoppedCharging", "BatteryLogChanged"));
}

TEST_F(BatteryTest, CapacityThirtySevenOfSeventyFour_IsHalfAndRed) {
    laptop().powerSources().setSources({{true, 37.0, 74.0}});
    const Battery& battery = Battery::battery();
    EXPECT_EQ(Battery::getBatteryLevel(), 0.5);
    EXPECT_EQ(battery.batteryPercent(), 50);
    EXPECT_EQ(battery.batteryPercentColor(), (BatteryColor{0.6, 0.0, 0.0, 1.0}));
}

TEST_F(BatteryTest, FiftyOnePercent_IsGreen) {
    const Battery& battery = startAt(51, onBattery);
    EXPECT_EQ(battery.batteryPercentColor(), (BatteryColor{0.0, 0.6, 0.0, 1.0}));
}

TEST_F(BatteryTest, HalfAPercent_RoundsAwayFromZero) {
    laptop().powerSources().setSources({{true, 37.5, 100.0}});
    EXPECT_EQ(Battery::getBatteryPercent(), 38);
}

TEST_F(BatteryTest, FirstPresentSource_GivesTheLevel) {
    laptop().powerSources().setSources(
        {{false, 10.0, 100.0}, {std::nullopt, 20.0, 100.0}, {true, 30.0, 100.0}});
    EXPECT_EQ(Battery::getBatteryPercent(), 20);
}

TEST_F(BatteryTest, NoPresentSource_GivesZero) {
    laptop().powerSources().setSources({});
    EXPECT_EQ(Battery::getBatteryLevel(), 0.0);
    laptop().powerSources().setSources({{false, 10.0, 100.0}});
    EXPECT_EQ(Battery::getBatteryLevel(), 0.0);
}

TEST_F(BatteryTest, SourceWithoutCapacity_GivesZeroPercent) {
    laptop().powerSources().setSources({{true, 0.0, 0.0}});
    EXPECT_EQ(Battery::getBatteryPercent(), 0);
}

TEST_F(BatteryTest, PercentageEqualToThreshold_IsBeneath) {
    registerDefaults();
    EXPECT_TRUE(startAt(70, onBattery).beneathQuorvaneThreshhold());
}

TEST_F(BatteryTest, PercentageAboveThreshold_IsNotBeneath) {
    registerDefaults();
    EXPECT_FALSE(startAt(71, onBattery).beneathQuorvaneThreshhold());
}

TEST_F(BatteryTest, ExternalPower_IsNeverBeneathThreshold) {
    registerDefaults();
    EXPECT_FALSE(startAt(5, timeRemainingUnlimited).beneathQuorvaneThreshhold());
}

TEST_F(BatteryTest, MissingThreshold_ReadsAsZero) {
    EXPECT_FALSE(startAt(1, onBattery).beneathQuorvaneThreshhold());
    laptop().powerSources().discharge(0);
    EXPECT_TRUE(Battery::battery().beneathQuorvaneThreshhold());
}

TEST_F(BatteryTest, LastIncreaseDecrease_IsTheTimeOfTheLastChangedReading) {
    const Battery& battery = startAt(50, onBattery);
    laptop().clock().advance(Seconds(100));
    laptop().powerSources().discharge(49);
    const QDateTime change = laptop().clock().now();
    EXPECT_EQ(battery.lastIncreaseDecrease(), change);
    laptop().clock().advance(Seconds(240));
    EXPECT_EQ(battery.lastIncreaseDecrease(), change);
}

TEST_F(BatteryTest, FirstTimedReading_ComesAfterTwoMinutes) {
    startAt(50, onBattery);
    laptop().clock().advance(Seconds(119));
    EXPECT_THAT(takeEvents(), IsEmpty());
    laptop().clock().advance(Seconds(1));
    EXPECT_THAT(takeEvents(), ElementsAre("BatteryLogChanged"));
}

TEST_F(BatteryTest, EveryPoll_AnnouncesBoxedValuesEvenWhenUnchanged) {
    Battery& battery = startAt(50, onBattery);
    std::vector<ObservableObject::Change> changes;
    for (const char* key : {"batteryPercentNumber", "batteryTimeRemainingNumber"}) {
        battery.observe(
            QString::fromLatin1(key), &battery,
            [&changes](const ObservableObject::Change& change) { changes.push_back(change); });
    }
    battery.pollBattery();
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(changes[0].oldValue, QVariant(50));
    EXPECT_EQ(changes[0].newValue, QVariant(50));
    laptop().powerSources().discharge(49, 1800);
    ASSERT_EQ(changes.size(), 4U);
    EXPECT_EQ(changes[2].oldValue, QVariant(50));
    EXPECT_EQ(changes[2].newValue, QVariant(49));
    EXPECT_EQ(changes[3].newValue, QVariant(1800.0));
}

TEST_F(BatteryTest, AdvancedInfo_IsThePlatformsOrNothing) {
    EXPECT_FALSE(Battery::getAdvancedBatteryInfo().has_value());
    laptop().powerSources().setAdvancedInfo(QVariantMap{{QStringLiteral("Cycles"), 120}});
    EXPECT_EQ(Battery::getAdvancedBatteryInfo()->value(QStringLiteral("Cycles")), QVariant(120));
}

} // namespace quorvane::test
