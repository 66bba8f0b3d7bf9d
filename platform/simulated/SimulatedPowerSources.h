#pragma once

#include "platform/PowerSources.h"

namespace quorvane {

/// The power of the laptop. Starts with one battery of 80 of 100 on external power.
class SimulatedPowerSources final : public PowerSources {
    Q_OBJECT

  public:
    using PowerSources::PowerSources;

    [[nodiscard]] PowerReading reading() const override {
        ++readings_;
        return reading_;
    }

    [[nodiscard]] std::optional<QVariantMap> advancedBatteryInfo() const override {
        return advancedInfo_;
    }

    /// The next reading; nobody is told of it.
    void setSources(std::vector<PowerSource> sources) { reading_.sources = std::move(sources); }

    void setPercent(double percent) { reading_.sources = {{true, percent, 100.0}}; }

    void setEstimate(double seconds) { reading_.timeRemaining = seconds; }

    void setAdvancedInfo(std::optional<QVariantMap> info) { advancedInfo_ = std::move(info); }

    /// Tells the reading to all who listen.
    void announce();

    /// The next reading, and tells of it.
    void discharge(double percent, double estimate = 3600.0);
    void charge(double percent);

    /// How many times somebody has asked for the reading.
    [[nodiscard]] int readings() const { return readings_; }

  private:
    PowerReading reading_{{{true, 80.0, 100.0}}, timeRemainingUnlimited};
    mutable int readings_ = 0;
    std::optional<QVariantMap> advancedInfo_;
};

} // namespace quorvane
