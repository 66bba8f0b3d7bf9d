#include "apps/demo/Laptop.h"

#include "platform/simulated/SimulatedPlatform.h"

#include <cmath>
#include <utility>

namespace quorvane {

namespace {

constexpr Seconds reportInterval{10.0};
constexpr double full = 100.0; // percent

} // namespace

Laptop::Laptop(SimulatedPlatform& platform)
    : platform_(platform), energy_(full), undimmed_(full), lastLook_(platform.clock().monotonic()) {
    updateReading();
    timer_ = platform_.clock().schedule(reportInterval, Repeats::Yes, [this] { letTimePass(); });
}

Laptop::~Laptop() = default;

void Laptop::unplug() {
    letTimePass();
    pluggedIn_ = false;
    brightnessUnplugged_ = brightness();
    undimmed_ = energy_;
    updateReading();
    platform_.powerSources().announce();
}

void Laptop::plugIn() {
    letTimePass();
    lastDischarge_ = Discharge{platform_.clock().now(), percent(), undimmed_.percent()};
    pluggedIn_ = true;
    updateReading();
    platform_.powerSources().announce();
}

double Laptop::brightness() const {
    return static_cast<double>(platform_.displays().levels().front());
}

void Laptop::letTimePass() {
    const Seconds now = platform_.clock().monotonic();
    const Seconds passed = now - std::exchange(lastLook_, now);
    if (pluggedIn_) {
        energy_.charge(passed);
    } else {
        energy_.discharge(passed, brightness());
        undimmed_.discharge(passed, brightnessUnplugged_);
    }
    updateReading();
    // A power service tells of every whole percent, not of every joule.
    if (std::lround(percent()) != announcedPercent_) {
        announcedPercent_ = std::lround(percent());
        platform_.powerSources().announce();
    }
}

void Laptop::updateReading() {
    SimulatedPowerSources& sources = platform_.powerSources();
    sources.setPercent(percent());
    sources.setEstimate(pluggedIn_ ? timeRemainingUnlimited
                                   : energy_.timeLeft(brightness()).count());
}

} // namespace quorvane
