#pragma once

#include "platform/linux/power/PowerState.h"

#include <QString>

namespace quorvane {

/// The kernel's own list of power supplies, for machines on which no power service runs.
class SysfsPowerSupplies {
  public:
    /// `sysfsRoot` is where sysfs is mounted.
    explicit SysfsPowerSupplies(const QString& sysfsRoot);

    /// Reads every supply anew. Takes as long as the firmware needs, usually a few milliseconds.
    /// Any thread.
    [[nodiscard]] PowerState read() const;

  private:
    QString folder_;
};

} // namespace quorvane
