#pragma once

#include "platform/Clock.h"

namespace quorvane {

/// The energy of the simulated laptop: a battery that everything inside drains evenly. The board
/// takes a constant power and the screen one in proportion to its brightness, which is about how
/// the backlight of a flat panel behaves; that share is what dimming saves. Charging is constant
/// too: the taper near the end that real cells need is left out.
class EnergyModel {
  public:
    static constexpr double batteryWattHours = 60.0;
    static constexpr double boardWatts = 6.0;
    static constexpr double screenWatts = 5.0; ///< at full brightness
    static constexpr double chargingWatts = 30.0;

    /// `percent` of a full battery, 0 to 100.
    explicit EnergyModel(double percent);

    /// What the laptop takes at this brightness, 0.0 to 1.0.
    [[nodiscard]] static double watts(double brightness);

    void discharge(Seconds duration, double brightness);
    void charge(Seconds duration);

    /// 0 to 100.
    [[nodiscard]] double percent() const;

    /// Until the battery is empty, were nothing to change.
    [[nodiscard]] Seconds timeLeft(double brightness) const;

  private:
    double wattHours_;
};

} // namespace quorvane
