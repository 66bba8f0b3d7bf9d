#include "tests/unit/simulated/LaptopDays.h"

#include "platform/simulated/SimulatedPlatform.h"

#include <algorithm>
#include <cmath>

namespace quorvane::test {

namespace {

constexpr double percentAMinuteDown = 0.25;
constexpr double percentAMinuteUp = 0.5;
constexpr double secondsAPercent = 60.0 / percentAMinuteDown;

} // namespace

LaptopDays::LaptopDays(SimulatedPlatform& platform) : platform_(platform) {
    platform_.powerSources().setPercent(percent_);
}

bool LaptopDays::isUnplugged() const {
    const std::int64_t hour = minute_ % minutesOfADay / 60;
    return (hour >= 1 && hour < 6) || (hour >= 10 && hour < 14);
}

void LaptopDays::passMinute() {
    platform_.clock().advance(Seconds(60));
    ++minute_;
    const bool unplugged = isUnplugged();
    percent_ =
        std::clamp(percent_ + (unplugged ? -percentAMinuteDown : percentAMinuteUp), 0.0, 100.0);
    const std::int64_t percent = std::llround(percent_);
    if (percent == announcedPercent_ && unplugged == wasUnplugged_) {
        return;
    }
    announcedPercent_ = percent;
    wasUnplugged_ = unplugged;
    ++announcements_;
    if (unplugged) {
        platform_.powerSources().discharge(percent_, percent_ * secondsAPercent);
    } else {
        platform_.powerSources().charge(percent_);
    }
}

} // namespace quorvane::test
