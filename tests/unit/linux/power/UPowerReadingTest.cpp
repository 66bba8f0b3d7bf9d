#include "platform/linux/power/UPowerReading.h"

#include <QDBusObjectPath>
#include <gtest/gtest.h>

#include <limits>

namespace quorvane::test {
namespace {

class UPowerReadingTest : public testing::Test {
  protected:
    QVariantMap properties{{QStringLiteral("Type"), 2U},
                           {QStringLiteral("PowerSupply"), true},
                           {QStringLiteral("IsPresent"), true},
                           {QStringLiteral("State"), 2U},
                           {QStringLiteral("Percentage"), 61.5},
                           {QStringLiteral("Energy"), 30.0},
                           {QStringLiteral("EnergyFull"), 50.0},
                           {QStringLiteral("EnergyRate"), 9.0},
                           {QStringLiteral("TimeToEmpty"), qlonglong(12000)},
                           {QStringLiteral("Vendor"), QStringLiteral("ACME")},
                           {QStringLiteral("ChargeCycles"), 120},
                           {QStringLiteral("Technology"), 1U}};

    void set(const char* name, const QVariant& value) {
        properties.insert(QLatin1String(name), value);
    }
};

TEST_F(UPowerReadingTest, WholeReading) {
    const BatteryReading battery = readingFromUPower(properties);
    EXPECT_TRUE(battery.isPresent);
    EXPECT_TRUE(battery.isDischarging);
    EXPECT_FALSE(battery.isCharging);
    EXPECT_EQ(battery.percentage, 61.5);
    EXPECT_EQ(battery.energy, 30.0);
    EXPECT_EQ(battery.energyFull, 50.0);
    EXPECT_EQ(battery.rate, 9.0);
    EXPECT_EQ(battery.timeToEmpty, 12000.0);
    EXPECT_EQ(battery.facts.value(QStringLiteral("vendor")), QStringLiteral("ACME"));
    EXPECT_EQ(battery.facts.value(QStringLiteral("cycles")), 120);
    EXPECT_EQ(battery.facts.value(QStringLiteral("technology")), QStringLiteral("Li-ion"));
}

TEST_F(UPowerReadingTest, ZeroesMeanNotKnown) {
    set("EnergyFull", 0.0);
    set("EnergyRate", 0.0);
    set("TimeToEmpty", qlonglong(0));
    set("ChargeCycles", -1);
    const BatteryReading battery = readingFromUPower(properties);
    EXPECT_FALSE(battery.energyFull);
    EXPECT_FALSE(battery.rate);
    EXPECT_FALSE(battery.timeToEmpty);
    EXPECT_FALSE(battery.facts.contains(QStringLiteral("cycles")));
}

TEST_F(UPowerReadingTest, PropertiesOfOtherTypes_CountAsNotKnown) {
    set("Percentage", QStringLiteral("61"));
    set("Energy", QVariantList{1.0});
    set("TimeToEmpty", QVariant::fromValue(QDBusObjectPath(QStringLiteral("/x"))));
    set("IsPresent", QStringLiteral("no"));
    set("State", true);
    set("Vendor", 5);
    set("Technology", 99U);
    const BatteryReading battery = readingFromUPower(properties);
    EXPECT_FALSE(battery.percentage);
    EXPECT_FALSE(battery.energy);
    EXPECT_FALSE(battery.timeToEmpty);
    EXPECT_TRUE(battery.isPresent);
    EXPECT_FALSE(battery.isDischarging);
    EXPECT_FALSE(battery.facts.contains(QStringLiteral("vendor")));
    EXPECT_FALSE(battery.facts.contains(QStringLiteral("technology")));
}

TEST_F(UPowerReadingTest, NoNumber_IsDropped) {
    set("Percentage", std::numeric_limits<double>::quiet_NaN());
    set("Energy", -std::numeric_limits<double>::infinity());
    const BatteryReading battery = readingFromUPower(properties);
    EXPECT_FALSE(battery.percentage);
    EXPECT_FALSE(battery.energy);
}

TEST_F(UPowerReadingTest, NoPropertyAtAll_NothingKnown) {
    const BatteryReading battery = readingFromUPower({});
    EXPECT_TRUE(battery.isPresent);
    EXPECT_FALSE(battery.percentage);
    EXPECT_FALSE(powersTheMachine({}));
}

TEST_F(UPowerReadingTest, OnlyBatteriesThatSupplyPower_PowerTheMachine) {
    EXPECT_TRUE(powersTheMachine(properties));
    set("PowerSupply", false); // a mouse, a headset, a telephone
    EXPECT_FALSE(powersTheMachine(properties));
    set("PowerSupply", true);
    set("Type", 3U); // a UPS
    EXPECT_FALSE(powersTheMachine(properties));
    set("Type", QStringLiteral("2"));
    EXPECT_FALSE(powersTheMachine(properties));
}

} // namespace
} // namespace quorvane::test
