#include "ui/StatusIcon.h"

#include "tests/support/QtPrinters.h"

#include <gtest/gtest.h>

#include <map>

namespace quorvane::test {

namespace {

constexpr double onBattery = 3600.0;
constexpr double onExternalPower = -2.0;

StatusIcon::State gauge(std::int64_t percent, bool modeIsOn = false, double estimate = onBattery) {
    return {modeIsOn, percent, static_cast<std::int64_t>(estimate), estimate, 0, true};
}

StatusIcon::State text(std::int32_t displayMode, std::int64_t percent, std::int64_t seconds) {
    return {false, percent, seconds, static_cast<double>(seconds), displayMode, false};
}

QString imageOf(const StatusIcon::State& state) {
    return StatusIcon(state).imageName;
}

QString textOf(const StatusIcon::State& state) {
    return StatusIcon(state).title.text;
}

} // namespace

TEST(StatusIconTest, BatteryNotShown_TheModesIconWhateverTheBatteryDoes) {
    for (const double estimate : {onBattery, onExternalPower, -1.0}) {
        for (const std::int64_t percent : {0, 50, 100}) {
            StatusIcon::State state = gauge(percent, true, estimate);
            state.showsBattery = false;
            EXPECT_EQ(imageOf(state), QStringLiteral("icon-infinity-on"));
            state.modeIsOn = false;
            EXPECT_EQ(imageOf(state), QStringLiteral("icon-infinity-off"));
        }
    }
}

TEST(StatusIconTest, OnBattery_EachStepBeginsAboveTheOneBelow) {
    const std::map<std::int64_t, int> lowestOfStep{
        {91, 100}, {81, 90}, {71, 80}, {51, 60}, {41, 50}, {31, 40}, {21, 30}, {11, 20}, {1, 10}};
    int expected = 0;
    for (std::int64_t percent = 1; percent <= 100; ++percent) {
        if (const auto step = lowestOfStep.find(percent); step != lowestOfStep.end()) {
            expected = step->second;
        }
        EXPECT_EQ(imageOf(gauge(percent, true)), QStringLiteral("battery-on-%1").arg(expected));
        EXPECT_EQ(imageOf(gauge(percent)), QStringLiteral("battery-off-%1").arg(expected));
    }
}

TEST(StatusIconTest, OnBatteryAt70_TheGaugeOf60_At71_TheOneOf80) {
    EXPECT_EQ(imageOf(gauge(70, true)), QStringLiteral("battery-on-60"));
    EXPECT_EQ(imageOf(gauge(70)), QStringLiteral("battery-off-60"));
    EXPECT_EQ(imageOf(gauge(71, true)), QStringLiteral("battery-on-80"));
    EXPECT_EQ(imageOf(gauge(100, true)), QStringLiteral("battery-on-100"));
}

TEST(StatusIconTest, NothingLeft_TheModesIcon) {
    EXPECT_EQ(imageOf(gauge(0, true)), QStringLiteral("icon-infinity-on"));
    EXPECT_EQ(imageOf(gauge(-5)), QStringLiteral("icon-infinity-off"));
}

TEST(StatusIconTest, MoreThanFull_TheFullGauge) {
    EXPECT_EQ(imageOf(gauge(104)), QStringLiteral("battery-off-100"));
    EXPECT_EQ(imageOf(gauge(104, false, onExternalPower)), QStringLiteral("battery-charging"));
}

TEST(StatusIconTest, PluggedIn_ChargedAtExactly100ElseChargingInBothModes) {
    for (const bool modeIsOn : {false, true}) {
        EXPECT_EQ(imageOf(gauge(100, modeIsOn, onExternalPower)),
                  QStringLiteral("battery-charged"));
        EXPECT_EQ(imageOf(gauge(99, modeIsOn, onExternalPower)),
                  QStringLiteral("battery-charging"));
        EXPECT_EQ(imageOf(gauge(0, modeIsOn, onExternalPower)), QStringLiteral("battery-charging"));
    }
}

TEST(StatusIconTest, UnknownEstimate_CountsAsOnBattery) {
    EXPECT_EQ(imageOf(gauge(55, false, -1.0)), QStringLiteral("battery-off-60"));
}

TEST(StatusIconTest, PercentMode_NumberSignAndOneSpaceLeftOfTheIcon) {
    const StatusIcon icon(text(1, 100, 3600));
    EXPECT_EQ(icon.title.text, QStringLiteral("100% "));
    EXPECT_EQ(icon.title, (AttributedString{QStringLiteral("100% "), 12.0, {}, 0}));
    EXPECT_EQ(icon.imagePosition, ImagePosition::Right);
    EXPECT_EQ(textOf(text(1, 85, -2)), QStringLiteral("85% "));
}

TEST(StatusIconTest, TimeMode_HoursAndTwoDigitMinutesAfterAThinSpace) {
    EXPECT_EQ(textOf(text(2, 50, 7500)), QStringLiteral("\u20092:05"));
    EXPECT_EQ(textOf(text(2, 50, 36000)), QStringLiteral("\u200910:00"));
    EXPECT_EQ(textOf(text(2, 50, 5400)), QStringLiteral("\u20091:30"));
    EXPECT_EQ(textOf(text(2, 50, 59)), QStringLiteral("\u20090:00"));
    EXPECT_EQ(textOf(text(2, 50, 0)), QStringLiteral("\u20090:00"));
    EXPECT_EQ(StatusIcon(text(2, 50, 0)).title.fontSize, 12.0);
    EXPECT_EQ(StatusIcon(text(2, 50, 0)).imagePosition, ImagePosition::Left);
}

TEST(StatusIconTest, TimeModeWithUnknownEstimate_ThinSpaceAndEllipsis) {
    EXPECT_EQ(textOf(text(2, 50, -1)), QStringLiteral("\u2009\u2026"));
}

TEST(StatusIconTest, TimeModeOnExternalPower_NoText) {
    EXPECT_EQ(StatusIcon(text(2, 50, -2)).title, AttributedString{});
    EXPECT_EQ(StatusIcon(text(2, 50, -2)).imagePosition, ImagePosition::Left);
}

TEST(StatusIconTest, AnyOtherDisplayMode_NoTextAndTheIconOnTheRight) {
    for (const std::int32_t mode : {0, 3, 99, -1, std::numeric_limits<std::int32_t>::min()}) {
        const StatusIcon icon(text(mode, 50, 3600));
        EXPECT_EQ(icon.title, AttributedString{}) << mode;
        EXPECT_EQ(icon.imagePosition, ImagePosition::Right) << mode;
    }
}

} // namespace quorvane::test
