#pragma once

#include <cstdint>

namespace quorvane {

class SimulatedPlatform;

namespace test {

/// Days of a laptop's life, minute by minute: it begins each day full and plugged in, is unplugged
/// for five hours and, after it has been charged again, for four hours more. The battery drains by
/// 15 percent an hour and is charged by 30. Each whole percent is announced, as is the plug.
class LaptopDays {
  public:
    static constexpr std::int64_t minutesOfADay = 1440;

    explicit LaptopDays(SimulatedPlatform& platform);

    void passMinute();

    /// Which of its minutes it has come to.
    [[nodiscard]] std::int64_t minute() const { return minute_; }

    /// How many times the power sources have announced a reading.
    [[nodiscard]] std::int64_t announcements() const { return announcements_; }

  private:
    [[nodiscard]] bool isUnplugged() const;

    SimulatedPlatform& platform_;
    std::int64_t minute_ = 0;
    std::int64_t announcements_ = 0;
    double percent_ = 100.0;
    bool wasUnplugged_ = false;
    std::int64_t announcedPercent_ = 100;
};

} // namespace test
} // namespace quorvane
