#pragma once

#include "platform/PowerSources.h"

#include <QVariantMap>

#include <optional>
#include <vector>

namespace quorvane {

/// What one battery that powers the machine tells of itself. What is not known is missing.
struct BatteryReading {
    bool isPresent = true; ///< false for an empty bay
    bool isCharging = false;
    bool isDischarging = false;
    std::optional<double> percentage;  ///< 0 to 100
    std::optional<double> energy;      ///< Wh, 0 to `energyFull`
    std::optional<double> energyFull;  ///< Wh, above 0
    std::optional<double> rate;        ///< W, above 0, whichever way the current flows
    std::optional<double> timeToEmpty; ///< seconds, above 0
    QVariantMap facts;                 ///< see `advancedBatteryInfo`
};

/// What is known of the machine's power at one moment, whoever told it.
struct PowerState {
    std::optional<bool> onBattery; ///< nothing while not known
    std::vector<BatteryReading> batteries;
};

/// The reading with every figure inside its range: what is not finite or below its range is
/// dropped, what is above it is cut down to it. Drivers and services do report 140 % and NaN.
[[nodiscard]] BatteryReading checked(BatteryReading reading);

/// All batteries as one source: energies are summed up where every battery tells them, else the
/// percentages count alike. A single battery is given by its percentage, so that the figure is the
/// one that the desktop shows. Empty when there is no battery, or none that tells its charge; a
/// source that is not present when all bays are empty.
[[nodiscard]] std::vector<PowerSource> combinedSources(const PowerState& state);

/// Seconds left, or one of the two special values of platform/PowerSources.h.
[[nodiscard]] double combinedTimeRemaining(const PowerState& state);

/// The facts of the first battery that is there, by these names where they are known: vendor,
/// model, serial, technology (texts); energy, energyFull, energyFullDesign (Wh), energyRate (W),
/// voltage (V), cycles.
[[nodiscard]] std::optional<QVariantMap> firstBatteryFacts(const PowerState& state);

/// Seconds that `energy` Wh last at `rate` W. Nothing when the answer is beyond ten days: a rate
/// that small is one that has not settled yet.
[[nodiscard]] std::optional<double> secondsUntilEmpty(double energy, double rate);

} // namespace quorvane
