#pragma once

#include "apps/demo/EnergyModel.h"

#include <QDateTime>

#include <memory>
#include <optional>

namespace quorvane {

class SimulatedPlatform;

/// How a time on battery ended.
struct Discharge {
    QDateTime end;
    double percent = 0.0;

    /// What `percent` would have been, had the screen kept the brightness that it had when the
    /// laptop was unplugged.
    double percentUndimmed = 0.0;
};

/// Plays the hardware: drains and charges the battery of the simulated platform as time passes and
/// announces what a real one would announce. Starts plugged in, with a full battery and a bright
/// screen. Main thread only.
class Laptop {
  public:
    explicit Laptop(SimulatedPlatform& platform);
    ~Laptop();

    Laptop(const Laptop&) = delete;
    Laptop& operator=(const Laptop&) = delete;

    void unplug();
    void plugIn();

    [[nodiscard]] bool isPluggedIn() const { return pluggedIn_; }

    /// Of the built-in screen, 0.0 to 1.0.
    [[nodiscard]] double brightness() const;

    [[nodiscard]] double watts() const { return EnergyModel::watts(brightness()); }

    /// 0 to 100.
    [[nodiscard]] double percent() const { return energy_.percent(); }

    /// Nothing until the laptop is plugged in for the first time after it was unplugged.
    [[nodiscard]] const std::optional<Discharge>& lastDischarge() const { return lastDischarge_; }

  private:
    void letTimePass();
    void updateReading();

    SimulatedPlatform& platform_;
    EnergyModel energy_;
    EnergyModel undimmed_;
    double brightnessUnplugged_ = 1.0;
    bool pluggedIn_ = true;
    std::optional<Discharge> lastDischarge_;
    long announcedPercent_ = 100;
    Seconds lastLook_;
    std::unique_ptr<Timer> timer_;
};

} // namespace quorvane
