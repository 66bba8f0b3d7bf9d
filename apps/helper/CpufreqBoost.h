#pragma once

#include "apps/helper/AttributeDriver.h"

namespace quorvane {

/// Turbo of all processors at once, through acpi-cpufreq, amd_pstate and the like. "0" in its
/// attribute means no turbo.
class CpufreqBoost final : public AttributeDriver {
  public:
    using AttributeDriver::AttributeDriver;

    [[nodiscard]] QString name() const override;

  protected:
    [[nodiscard]] QList<AttributeValue> slowing() const override;
    [[nodiscard]] bool accepts(const AttributeValue& pair) const override;
};

} // namespace quorvane
