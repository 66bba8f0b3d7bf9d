#include "platform/linux/power/PowerState.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quorvane::test {
namespace {

class PowerStateTest : public testing::Test {
  protected:
    static BatteryReading battery(double percentage, double energy, double energyFull) {
        BatteryReading reading;
        reading.percentage = percentage;
        reading.energy = energy;
        reading.energyFull = energyFull;
        return reading;
    }

    static double level(const PowerSource& source) {
        return source.currentCapacity / source.maxCapacity;
    }

    static constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    static constexpr double infinity = std::numeric_limits<double>::infinity();
};

TEST_F(PowerStateTest, NoBattery_NoSource) {
    EXPECT_TRUE(combinedSources({}).empty());
}

TEST_F(PowerStateTest, OneBattery_GivesItsPercentageAndNotItsEnergy) {
    const auto sources = combinedSources({true, {battery(80.0, 39.0, 50.0)}});
    ASSERT_EQ(sources.size(), 1U);
    EXPECT_EQ(sources[0].currentCapacity, 80.0);
    EXPECT_EQ(sources[0].maxCapacity, 100.0);
    EXPECT_EQ(sources[0].isPresent, true);
}

TEST_F(PowerStateTest, OneBatteryWithoutPercentage_GivesItsEnergy) {
    BatteryReading reading = battery(0.0, 20.0, 50.0);
    reading.percentage.reset();
    EXPECT_DOUBLE_EQ(level(combinedSources({true, {reading}}).at(0)), 0.4);
}

TEST_F(PowerStateTest, TwoBatteriesOfDifferentSize_SumOfTheirEnergies) {
    const auto sources =
        combinedSources({true, {battery(80.0, 40.0, 50.0), battery(10.0, 2.0, 20.0)}});
    ASSERT_EQ(sources.size(), 1U);
    EXPECT_DOUBLE_EQ(sources[0].currentCapacity, 42.0);
    EXPECT_DOUBLE_EQ(sources[0].maxCapacity, 70.0);
}

TEST_F(PowerStateTest, TwoBatteriesOneWithoutEnergy_MeanOfTheirPercentages) {
    BatteryReading bare;
    bare.percentage = 20.0;
    const auto sources = combinedSources({true, {battery(80.0, 40.0, 50.0), bare}});
    ASSERT_EQ(sources.size(), 1U);
    EXPECT_DOUBLE_EQ(level(sources[0]), 0.5);
}

TEST_F(PowerStateTest, EmptyBayBesideABattery_DoesNotCount) {
    BatteryReading bay;
    bay.isPresent = false;
    bay.percentage = 0.0;
    const auto sources = combinedSources({true, {bay, battery(80.0, 40.0, 50.0)}});
    ASSERT_EQ(sources.size(), 1U);
    EXPECT_EQ(sources[0].currentCapacity, 80.0);
}

TEST_F(PowerStateTest, OnlyEmptyBays_OneSourceThatIsNotPresent) {
    BatteryReading bay;
    bay.isPresent = false;
    const auto sources = combinedSources({true, {bay, bay}});
    ASSERT_EQ(sources.size(), 1U);
    EXPECT_EQ(sources[0].isPresent, false);
    EXPECT_GT(sources[0].maxCapacity, 0.0);
}

TEST_F(PowerStateTest, BatteryThatTellsNoCharge_NoSource) {
    EXPECT_TRUE(combinedSources({true, {BatteryReading()}}).empty());
}

TEST_F(PowerStateTest, ExternalPower_TimeIsUnlimitedWhateverTheBatterySays) {
    BatteryReading reading = battery(80.0, 40.0, 50.0);
    reading.timeToEmpty = 3600.0;
    EXPECT_EQ(combinedTimeRemaining({false, {reading}}), timeRemainingUnlimited);
}

TEST_F(PowerStateTest, NothingKnown_TimeIsUnlimited) {
    EXPECT_EQ(combinedTimeRemaining({}), timeRemainingUnlimited);
}

TEST_F(PowerStateTest, OnBatteryWithoutEstimate_TimeIsUnknown) {
    EXPECT_EQ(combinedTimeRemaining({true, {battery(80.0, 40.0, 50.0)}}), timeRemainingUnknown);
    EXPECT_EQ(combinedTimeRemaining({true, {}}), timeRemainingUnknown);
}

TEST_F(PowerStateTest, OneBattery_ItsOwnEstimate) {
    BatteryReading reading = battery(80.0, 40.0, 50.0);
    reading.rate = 10.0;
    reading.timeToEmpty = 5000.0;
    EXPECT_EQ(combinedTimeRemaining({true, {reading}}), 5000.0);
}

TEST_F(PowerStateTest, TwoBatteriesOneAfterTheOther_AllEnergyAtTheRateOfTheOneThatDrains) {
    BatteryReading first = battery(80.0, 40.0, 50.0);
    first.rate = 10.0;
    first.timeToEmpty = 14400.0;
    const BatteryReading waiting = battery(50.0, 20.0, 40.0);
    EXPECT_DOUBLE_EQ(combinedTimeRemaining({true, {first, waiting}}), 6.0 * 3600.0);
}

TEST_F(PowerStateTest, TwoBatteriesOneCharging_ItsRateIsNoDrain) {
    BatteryReading drains = battery(80.0, 40.0, 50.0);
    drains.rate = 10.0;
    BatteryReading charges = battery(50.0, 20.0, 40.0);
    charges.isCharging = true;
    charges.rate = 5.0;
    EXPECT_DOUBLE_EQ(combinedTimeRemaining({true, {drains, charges}}), 6.0 * 3600.0);
}

TEST_F(PowerStateTest, TwoBatteriesOneWithoutEnergy_TimeIsUnknown) {
    BatteryReading drains = battery(80.0, 40.0, 50.0);
    drains.rate = 10.0;
    BatteryReading bare;
    bare.percentage = 50.0;
    EXPECT_EQ(combinedTimeRemaining({true, {drains, bare}}), timeRemainingUnknown);
}

TEST_F(PowerStateTest, RateThatHasNotSettled_NoEstimate) {
    EXPECT_FALSE(secondsUntilEmpty(50.0, 0.0));
    EXPECT_FALSE(secondsUntilEmpty(50.0, 0.001));
    EXPECT_FALSE(secondsUntilEmpty(50.0, -1.0));
    EXPECT_EQ(secondsUntilEmpty(50.0, 10.0), 18000.0);
}

TEST_F(PowerStateTest, ImpossibleFigures_AreDroppedOrCutDown) {
    BatteryReading reading = checked(battery(140.0, 60.0, 50.0));
    EXPECT_EQ(reading.percentage, 100.0);
    EXPECT_EQ(reading.energy, 50.0);

    reading = checked(battery(nan, infinity, 0.0));
    EXPECT_FALSE(reading.percentage);
    EXPECT_FALSE(reading.energy);
    EXPECT_FALSE(reading.energyFull);

    reading = battery(-3.0, -1.0, -50.0);
    reading.rate = -infinity;
    reading.timeToEmpty = 0.0;
    reading = checked(reading);
    EXPECT_FALSE(reading.percentage);
    EXPECT_FALSE(reading.energy);
    EXPECT_FALSE(reading.energyFull);
    EXPECT_FALSE(reading.rate);
    EXPECT_FALSE(reading.timeToEmpty);
}

TEST_F(PowerStateTest, Facts_AreThoseOfTheFirstBatteryThatIsThere) {
    BatteryReading bay;
    bay.isPresent = false;
    bay.facts = {{QStringLiteral("model"), QStringLiteral("bay")}};
    BatteryReading reading;
    reading.facts = {{QStringLiteral("model"), QStringLiteral("cell")}};
    EXPECT_EQ(firstBatteryFacts({true, {bay, reading}}), reading.facts);
    EXPECT_EQ(firstBatteryFacts({true, {bay}}), std::nullopt);
    EXPECT_EQ(firstBatteryFacts({}), std::nullopt);
}

} // namespace
} // namespace quorvane::test
