#include "apps/demo/EnergyModel.h"

#include <gtest/gtest.h>

namespace quorvane::test {

constexpr Seconds oneHour = std::chrono::hours(1);

class DemoEnergyModelTest : public testing::Test {};

TEST_F(DemoEnergyModelTest, Power_GrowsWithBrightness) {
    EXPECT_DOUBLE_EQ(EnergyModel::watts(0.0), 6.0);
    EXPECT_DOUBLE_EQ(EnergyModel::watts(0.5), 8.5);
    EXPECT_DOUBLE_EQ(EnergyModel::watts(1.0), 11.0);
}

TEST_F(DemoEnergyModelTest, Discharge_TakesPowerTimesTime) {
    EnergyModel model(100.0);

    model.discharge(oneHour, 1.0);

    EXPECT_NEAR(model.percent(), 100.0 * (60.0 - 11.0) / 60.0, 1e-9);
}

TEST_F(DemoEnergyModelTest, Battery_IsNeverEmptierThanEmptyNorFullerThanFull) {
    EnergyModel model(50.0);

    model.discharge(oneHour * 100, 1.0);
    EXPECT_EQ(model.percent(), 0.0);
    EXPECT_EQ(model.timeLeft(1.0).count(), 0.0);
    model.charge(oneHour * 100);
    EXPECT_EQ(model.percent(), 100.0);
}

TEST_F(DemoEnergyModelTest, TimeLeft_IsWhatTheDischargeTakes) {
    EnergyModel model(80.0);

    model.discharge(model.timeLeft(0.5), 0.5);

    EXPECT_NEAR(model.percent(), 0.0, 1e-9);
}

} // namespace quorvane::test
