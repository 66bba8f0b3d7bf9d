#include "platform/linux/power/SysfsPowerSupplies.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

namespace quorvane::test {
namespace {

class SysfsPowerSuppliesTest : public testing::Test {
  protected:
    using Attributes = std::initializer_list<std::pair<const char*, const char*>>;

    void add(const char* name, const Attributes& attributes) const {
        const QString supply =
            sysfs.filePath(QStringLiteral("class/power_supply/") + QLatin1String(name));
        QDir().mkpath(supply);
        for (const auto& [attribute, value] : attributes) {
            QFile file(supply + QLatin1Char('/') + QLatin1String(attribute));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(value);
            file.write("\n");
        }
    }

    void addBattery(const char* status) const {
        add("BAT0", {{"type", "Battery"},
                     {"status", status},
                     {"capacity", "80"},
                     {"energy_now", "40000000"},
                     {"energy_full", "50000000"},
                     {"power_now", "10000000"}});
    }

    [[nodiscard]] PowerState read() const { return SysfsPowerSupplies(sysfs.path()).read(); }

    QTemporaryDir sysfs;
};

TEST_F(SysfsPowerSuppliesTest, NoSupplyAtAll_NothingKnown) {
    EXPECT_FALSE(read().onBattery);
    EXPECT_TRUE(read().batteries.empty());
}

TEST_F(SysfsPowerSuppliesTest, MainsOnline_ExternalPowerAlsoWhileTheBatteryDrains) {
    add("AC", {{"type", "Mains"}, {"online", "1"}});
    addBattery("Discharging");
    EXPECT_EQ(read().onBattery, false);
}

TEST_F(SysfsPowerSuppliesTest, MainsOffline_OnBatteryAlsoBeforeItIsReportedToDrain) {
    add("AC", {{"type", "Mains"}, {"online", "0"}});
    addBattery("Full");
    EXPECT_EQ(read().onBattery, true);
}

TEST_F(SysfsPowerSuppliesTest, UsbOnline_ExternalPower) {
    add("AC", {{"type", "Mains"}, {"online", "0"}});
    add("ucsi", {{"type", "USB"}, {"online", "1"}});
    addBattery("Charging");
    EXPECT_EQ(read().onBattery, false);
}

TEST_F(SysfsPowerSuppliesTest, UsbOnlineWhileTheBatteryDrains_FeedsATelephone) {
    add("ucsi", {{"type", "USB_C"}, {"online", "1"}});
    addBattery("Discharging");
    EXPECT_EQ(read().onBattery, true);
}

TEST_F(SysfsPowerSuppliesTest, ChargerThatIsNotReported_ABatteryThatChargesTells) {
    add("AC", {{"type", "Mains"}, {"online", "0"}});
    addBattery("Charging");
    EXPECT_EQ(read().onBattery, false);
}

TEST_F(SysfsPowerSuppliesTest, SuppliesOfDevices_NeverCount) {
    add("stylus", {{"type", "Battery"}, {"scope", "Device"}, {"capacity", "5"}});
    add("pad", {{"type", "Mains"}, {"scope", "Device"}, {"online", "1"}});
    addBattery("Discharging");
    const PowerState state = read();
    EXPECT_EQ(state.onBattery, true);
    EXPECT_EQ(state.batteries.size(), 1U);
}

TEST_F(SysfsPowerSuppliesTest, UninterruptibleSupply_IsNoBatteryOfTheMachine) {
    add("ups", {{"type", "UPS"}, {"capacity", "5"}, {"status", "Discharging"}});
    EXPECT_TRUE(read().batteries.empty());
}

TEST_F(SysfsPowerSuppliesTest, OnlyABattery_DrainingTells) {
    addBattery("Discharging");
    EXPECT_EQ(read().onBattery, true);
    addBattery("Full");
    EXPECT_EQ(read().onBattery, false);
}

TEST_F(SysfsPowerSuppliesTest, TimeToEmpty_IsEnergyByRateWhileDraining) {
    addBattery("Discharging");
    EXPECT_EQ(read().batteries.at(0).timeToEmpty, 4.0 * 3600.0);
    addBattery("Charging");
    EXPECT_FALSE(read().batteries.at(0).timeToEmpty);
}

TEST_F(SysfsPowerSuppliesTest, TimeToEmptyOfTheDriver_IsTaken) {
    addBattery("Discharging");
    add("BAT0", {{"time_to_empty_now", "4711"}});
    EXPECT_EQ(read().batteries.at(0).timeToEmpty, 4711.0);
}

TEST_F(SysfsPowerSuppliesTest, ChargesAndNegativeCurrent_BecomeEnergies) {
    add("BAT0", {{"type", "Battery"},
                 {"status", "Discharging"},
                 {"charge_now", "2000000"},
                 {"charge_full", "4000000"},
                 {"current_now", "-1000000"},
                 {"voltage_min_design", "10000000"},
                 {"voltage_now", "12000000"}});
    const BatteryReading battery = read().batteries.at(0);
    EXPECT_DOUBLE_EQ(battery.energy.value_or(0.0), 20.0);
    EXPECT_DOUBLE_EQ(battery.energyFull.value_or(0.0), 40.0);
    EXPECT_DOUBLE_EQ(battery.rate.value_or(0.0), 10.0);
    EXPECT_DOUBLE_EQ(battery.timeToEmpty.value_or(0.0), 7200.0);
}

TEST_F(SysfsPowerSuppliesTest, EmptyBay_IsNotPresentAndDrainsNothing) {
    add("BAT1", {{"type", "Battery"}, {"present", "0"}, {"status", "Discharging"}});
    const PowerState state = read();
    EXPECT_FALSE(state.batteries.at(0).isPresent);
    EXPECT_EQ(state.onBattery, false);
}

TEST_F(SysfsPowerSuppliesTest, Nonsense_IsDroppedOrCutDown) {
    add("AC", {{"type", "Mains"}, {"online", "perhaps"}});
    add("BAT0", {{"type", "Battery"},
                 {"present", ""},
                 {"status", ""},
                 {"capacity", "140"},
                 {"energy_now", "-5"},
                 {"energy_full", "0"},
                 {"power_now", "99999999999999999999999"}});
    add("odd", {{"scope", "System"}});
    const PowerState state = read();
    EXPECT_EQ(state.onBattery, true);
    ASSERT_EQ(state.batteries.size(), 1U);
    EXPECT_EQ(state.batteries[0].percentage, 100.0);
    EXPECT_FALSE(state.batteries[0].energy);
    EXPECT_FALSE(state.batteries[0].energyFull);
    EXPECT_FALSE(state.batteries[0].rate);
}

TEST_F(SysfsPowerSuppliesTest, AttributeThatCannotBeRead_CountsAsNotKnown) {
    addBattery("Discharging");
    const QString capacity = sysfs.filePath(QStringLiteral("class/power_supply/BAT0/capacity"));
    ASSERT_TRUE(QFile::remove(capacity));
    QDir().mkpath(capacity);
    EXPECT_FALSE(read().batteries.at(0).percentage);
    EXPECT_EQ(read().batteries.at(0).energy, 40.0);
}

TEST_F(SysfsPowerSuppliesTest, Facts) {
    addBattery("Full");
    add("BAT0", {{"manufacturer", "ACME"},
                 {"model_name", "Cell"},
                 {"serial_number", "0042"},
                 {"cycle_count", "120"},
                 {"energy_full_design", "57000000"},
                 {"voltage_now", "12000000"}});
    const QVariantMap facts = read().batteries.at(0).facts;
    EXPECT_EQ(facts.value(QStringLiteral("vendor")), QStringLiteral("ACME"));
    EXPECT_EQ(facts.value(QStringLiteral("model")), QStringLiteral("Cell"));
    EXPECT_EQ(facts.value(QStringLiteral("serial")), QStringLiteral("0042"));
    EXPECT_EQ(facts.value(QStringLiteral("cycles")), 120);
    EXPECT_DOUBLE_EQ(facts.value(QStringLiteral("energyFullDesign")).toDouble(), 57.0);
    EXPECT_DOUBLE_EQ(facts.value(QStringLiteral("voltage")).toDouble(), 12.0);
    EXPECT_FALSE(facts.contains(QStringLiteral("technology")));
}

TEST_F(SysfsPowerSuppliesTest, Batteries_StandInTheOrderOfTheirNames) {
    add("BAT1", {{"type", "Battery"}, {"capacity", "10"}});
    add("BAT0", {{"type", "Battery"}, {"capacity", "20"}});
    const PowerState state = read();
    ASSERT_EQ(state.batteries.size(), 2U);
    EXPECT_EQ(state.batteries[0].percentage, 20.0);
}

} // namespace
} // namespace quorvane::test
