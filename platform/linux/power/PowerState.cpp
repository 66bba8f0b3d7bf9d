#include "platform/linux/power/PowerState.h"

#include <algorithm>
#include <cmath>

namespace quorvane {

namespace {

constexpr double wholePercent = 100.0;

using Batteries = std::vector<const BatteryReading*>;

Batteries presentBatteries(const PowerState& state) {
    Batteries present;
    for (const BatteryReading& battery : state.batteries) {
        if (battery.isPresent) {
            present.push_back(&battery);
        }
    }
    return present;
}

std::optional<double> notBelowZero(std::optional<double> figure) {
    return figure && std::isfinite(*figure) && *figure >= 0.0 ? figure : std::nullopt;
}

std::optional<double> aboveZero(std::optional<double> figure) {
    return figure && std::isfinite(*figure) && *figure > 0.0 ? figure : std::nullopt;
}

std::optional<double> percentageOf(const BatteryReading& battery) {
    if (battery.percentage) {
        return battery.percentage;
    }
    if (battery.energy && battery.energyFull) {
        return *battery.energy / *battery.energyFull * wholePercent;
    }
    return std::nullopt;
}

bool allTellEnergy(const Batteries& batteries) {
    return std::all_of(batteries.begin(), batteries.end(), [](const BatteryReading* battery) {
        return battery->energy && battery->energyFull;
    });
}

std::vector<PowerSource> sumOfEnergies(const Batteries& batteries) {
    PowerSource sum{true, 0.0, 0.0};
    for (const BatteryReading* battery : batteries) {
        sum.currentCapacity += *battery->energy;
        sum.maxCapacity += *battery->energyFull;
    }
    return {sum};
}

std::vector<PowerSource> meanOfPercentages(const Batteries& batteries) {
    PowerSource sum{true, 0.0, 0.0};
    for (const BatteryReading* battery : batteries) {
        if (const std::optional<double> percentage = percentageOf(*battery)) {
            sum.currentCapacity += *percentage;
            sum.maxCapacity += wholePercent;
        }
    }
    return sum.maxCapacity > 0.0 ? std::vector{sum} : std::vector<PowerSource>();
}

} // namespace

BatteryReading checked(BatteryReading reading) {
    reading.percentage = notBelowZero(reading.percentage);
    if (reading.percentage) {
        reading.percentage = std::min(*reading.percentage, wholePercent);
    }
    reading.energyFull = aboveZero(reading.energyFull);
    reading.energy = notBelowZero(reading.energy);
    if (reading.energy && reading.energyFull) {
        reading.energy = std::min(*reading.energy, *reading.energyFull);
    }
    reading.rate = aboveZero(reading.rate);
    reading.timeToEmpty = aboveZero(reading.timeToEmpty);
    return reading;
}

std::vector<PowerSource> combinedSources(const PowerState& state) {
    if (state.batteries.empty()) {
        return {};
    }
    const Batteries present = presentBatteries(state);
    if (present.empty()) {
        return {PowerSource{false, 0.0, wholePercent}};
    }
    return present.size() > 1 && allTellEnergy(present) ? sumOfEnergies(present)
                                                        : meanOfPercentages(present);
}

double combinedTimeRemaining(const PowerState& state) {
    if (!state.onBattery.value_or(false)) {
        return timeRemainingUnlimited;
    }
    const Batteries present = presentBatteries(state);
    if (present.size() == 1) {
        return present.front()->timeToEmpty.value_or(timeRemainingUnknown);
    }
    double energy = 0.0;
    double rate = 0.0;
    for (const BatteryReading* battery : present) {
        if (!battery->energy) {
            return timeRemainingUnknown;
        }
        energy += *battery->energy;
        rate += battery->isCharging ? 0.0 : battery->rate.value_or(0.0);
    }
    return secondsUntilEmpty(energy, rate).value_or(timeRemainingUnknown);
}

std::optional<QVariantMap> firstBatteryFacts(const PowerState& state) {
    const Batteries present = presentBatteries(state);
    return present.empty() ? std::nullopt : std::optional(present.front()->facts);
}

std::optional<double> secondsUntilEmpty(double energy, double rate) {
    constexpr double secondsPerHour = 3600.0;
    constexpr double longest = 240.0 * secondsPerHour;
    const double seconds = rate > 0.0 ? energy / rate * secondsPerHour : 0.0;
    return seconds > 0.0 && seconds <= longest ? std::optional(seconds) : std::nullopt;
}

} // namespace quorvane
