#pragma once

#include "platform/PowerSources.h"

namespace quorvane {

/// The power of the laptop. Starts with one battery of 80 of 100 on external power.
class SimulatedPowerSources final : public PowerSources {
    Q_OBJECT

  public:
    using PowerSources::PowerSources;

    [[nodiscard]] std::vector<PowerSource> list() const override { return sources_; }

    [[nodiscard]] double timeRemainingEstimate() const override { return estimate_; }

    [[nodiscard]] std::optional<QVariantMap> advancedBatteryInfo() const override {
        return advancedInfo_;
    }

    /// The next reading; nobody is told of it.
    void setSources(std::vector<PowerSource> sources) { sources_ = std::move(sources); }

    void setPercent(double percent) { sources_ = {{true, percent, 100.0}}; }

    void setEstimate(double seconds) { estimate_ = seconds; }

    void setAdvancedInfo(std::optional<QVariantMap> info) { advancedInfo_ = std::move(info); }

    /// Tells that the reading has changed.
    void announce() { Q_EMIT changed(); }

    /// The next reading, and tells of it.
    void discharge(double percent, double estimate = 3600.0);
    void charge(double percent);

  private:
    std::vector<PowerSource> sources_{{true, 80.0, 100.0}};
    double estimate_ = timeRemainingUnlimited;
    std::optional<QVariantMap> advancedInfo_;
};

} // namespace quorvane
