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
};

/// What powers the machine. Only batteries that run the machine itself are listed, never those of
/// a mouse, a headset or a UPS; several batteries of one machine appear as one source. Main thread
/// only; the reading operations answer from what is known and do not wait for a service.
class PowerSources : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    [[nodiscard]] virtual std::vector<PowerSource> list() const = 0;

    /// Seconds until the battery is empty; `timeRemainingUnknown` while there is no estimate;
    /// `timeRemainingUnlimited` exactly when the machine is on external power, and while nothing is
    /// known of its power at all.
    [[nodiscard]] virtual double timeRemainingEstimate() const = 0;

    /// Further facts about the first battery by name, or nothing when they cannot be had.
    [[nodiscard]] virtual std::optional<QVariantMap> advancedBatteryInfo() const = 0;

  Q_SIGNALS:
    /// Some reading may have changed.
    void changed();
};

} // namespace quorvane
