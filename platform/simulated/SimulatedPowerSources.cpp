#include "platform/simulated/SimulatedPowerSources.h"

namespace quorvane {

void SimulatedPowerSources::announce() {
    const PowerReading told = reading_; // a listener may set the next one
    Q_EMIT changed(told);
}

void SimulatedPowerSources::discharge(double percent, double estimate) {
    setPercent(percent);
    setEstimate(estimate);
    announce();
}

void SimulatedPowerSources::charge(double percent) {
    discharge(percent, timeRemainingUnlimited);
}

} // namespace quorvane
