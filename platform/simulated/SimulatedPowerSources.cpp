#include "platform/simulated/SimulatedPowerSources.h"

namespace quorvane {

void SimulatedPowerSources::discharge(double percent, double estimate) {
    setPercent(percent);
    setEstimate(estimate);
    announce();
}

void SimulatedPowerSources::charge(double percent) {
    discharge(percent, timeRemainingUnlimited);
}

} // namespace quorvane
