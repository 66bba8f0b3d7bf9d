#pragma once

#include "platform/Log.h"
#include "platform/PowerSources.h"
#include "platform/linux/power/PowerState.h"
#include "platform/linux/power/SysfsPowerSupplies.h"
#include "platform/linux/power/UPowerSource.h"

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

    [[nodiscard]] PowerReading reading() const override;
    [[nodiscard]] std::optional<QVariantMap> advancedBatteryInfo() const override;

  private:
    /// What is announced when it changes. A battery that comes or goes is news also where the
    /// reading is the same with it.
    struct Figures {
        PowerReading reading;
        std::size_t batteries = 0;

        bool operator==(const Figures&) const = default;
    };

    [[nodiscard]] PowerState state() const;
    [[nodiscard]] Figures figures() const;
    void uPowerChanged();
    void takeUPowersState();
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
