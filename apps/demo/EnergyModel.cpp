#include "apps/demo/EnergyModel.h"

#include <algorithm>

namespace quorvane {

namespace {

double hours(Seconds duration) {
    return std::chrono::duration<double, std::ratio<3600>>(duration).count();
}

} // namespace

EnergyModel::EnergyModel(double percent) : wattHours_(batteryWattHours * percent / 100.0) {}

double EnergyModel::watts(double brightness) {
    return boardWatts + screenWatts * brightness;
}

void EnergyModel::discharge(Seconds duration, double brightness) {
    wattHours_ = std::max(wattHours_ - watts(brightness) * hours(duration), 0.0);
}

void EnergyModel::charge(Seconds duration) {
    wattHours_ = std::min(wattHours_ + chargingWatts * hours(duration), batteryWattHours);
}

double EnergyModel::percent() const {
    return wattHours_ / batteryWattHours * 100.0;
}

Seconds EnergyModel::timeLeft(double brightness) const {
    return std::chrono::duration<double, std::ratio<3600>>(wattHours_ / watts(brightness));
}

} // namespace quorvane
