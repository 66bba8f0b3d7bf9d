#pragma once

#include "platform/Log.h"
#include "platform/PowerSources.h"
#include "platform/linux/PowerState.h"
#include "platform/linux/SysfsPowerSupplies.h"
#include "platform/linux/UPowerSource.h"

#include <QDBusConnection>

#include <memory>

namespace quorvane {

class PowerSupplyMonitor;

/// Power sources from UPower while it runs, else from the kernel's power supplies. While UPower is
/// restarted on a machine whose power supplies the kernel does not list, the last state stays.
class LinuxPowerSources final : public PowerSources {
    Q_OBJECT

  public:
    LinuxPowerSources(const QDBusConnection& systemBus, LogSink& log,
                      const QString& sysfsRoot = QStringLiteral("/sys"));
    ~LinuxPowerSources() override;
    LinuxPowerSources(const LinuxPowerSources&) = delete;
    LinuxPowerSources& operator=(const LinuxPowerSources&) = delete;

    [[nodiscard]] std::vector<PowerSource> list() const override;
    [[nodiscard]] double timeRemainingEstimate() const override;
    [[nodiscard]] std::optional<QVariantMap> advancedBatteryInfo() const override;

  private:
    /// What an observer could tell apart.
    struct Figures {
        std::vector<PowerSource> sources;
        double timeRemaining = timeRemainingUnlimited;
        std::size_t batteries = 0;

        [[nodiscard]] bool operator==(const Figures& other) const;
    };

    [[nodiscard]] PowerState state() const;
    [[nodiscard]] Figures figures() const;
    void uPowerChanged();
    void watchSuppliesWhileNeeded();
    void scheduleAnnouncement();
    void announceIfChanged();

    LogSink& log_;
    SysfsPowerSupplies supplies_;
    UPowerSource uPower_;
    PowerState lastFromUPower_;
    std::unique_ptr<PowerSupplyMonitor> monitor_; ///< only while UPower does not tell
    Figures announced_;
    bool announcementIsScheduled_ = false;
};

} // namespace quorvane
