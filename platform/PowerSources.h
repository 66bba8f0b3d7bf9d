#pragma once

#include <QObject>
#include <QVariantMap>

#include <optional>
#include <vector>

namespace quorvane {

/// Time-remaining estimates that are no number of seconds.
inline constexpr double timeRemainingUnknown = -1.0;
inline constexpr double timeRemainingUnlimited = -2.0; ///< on external power

/// One power source. The two capacities share a unit (percent, Wh or mAh); only their ratio
/// counts.
struct PowerSource {
    std::optional<bool> isPresent; ///< missing counts as present
    double currentCapacity = 0.0;
    double maxCapacity = 0.0; ///< above 0

    bool operator==(const PowerSource&) const = default;
};

/// What powers the machine at one moment.
struct PowerReading {
    /// Only batteries that run the machine itself, never those of a mouse, a headset or a UPS;
    /// several batteries of one machine are one source.
    std::vector<PowerSource> sources;

    /// Seconds until the battery is empty; `timeRemainingUnknown` while there is no estimate;
    /// `timeRemainingUnlimited` exactly when the machine is on external power, and while nothing is
    /// known of its power at all.
    double timeRemaining = timeRemainingUnlimited;

    bool operator==(const PowerReading&) const = default;
};

/// Tells what powers the machine. A reading travels with its announcement, so whoever hears of a
/// change has no need to ask. Main thread only; nothing here waits for a service.
class PowerSources : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// The reading of this moment, for the start and for a look now and then at a machine that
    /// announces nothing. May take some milliseconds, where the firmware has to be asked.
    [[nodiscard]] virtual PowerReading reading() const = 0;

    /// Further facts about the first battery by name, or nothing when they cannot be had. As costly
    /// as a reading.
    [[nodiscard]] virtual std::optional<QVariantMap> advancedBatteryInfo() const = 0;

  Q_SIGNALS:
    /// Something has changed, and this is the reading now. It may equal the one before.
    void changed(const quorvane::PowerReading& reading);
};

} // namespace quorvane
