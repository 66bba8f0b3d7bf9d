#pragma once

#include "platform/OperatingSystem.h"

#include <QDBusConnection>

namespace quorvane {

/// The kernel's switches for the processor's turbo, and the power-profiles service.
class LinuxOperatingSystem final : public OperatingSystem {
  public:
    /// `root` is where the kernel's /sys lies, without a trailing slash.
    explicit LinuxOperatingSystem(const QDBusConnection& systemBus, QString root = {});

    /// Whether there is a turbo switch, or else a power-profiles service that runs or can be
    /// started. The service is asked for only without a switch, for at most half a second.
    [[nodiscard]] bool isVersion13OrLater() const override;

    [[nodiscard]] std::optional<QString> machine() const override;

  private:
    [[nodiscard]] bool hasTurboSwitch() const;
    [[nodiscard]] bool hasPowerProfiles() const;

    QDBusConnection bus_;
    QString root_;
};

} // namespace quorvane
