#pragma once

#include "apps/helper/AttributeDriver.h"

namespace quorvane {

/// Turbo through the intel_pstate driver. "1" in its attribute means no turbo.
class IntelPstateTurbo final : public AttributeDriver {
  public:
    using AttributeDriver::AttributeDriver;

    [[nodiscard]] QString name() const override;

  protected:
    [[nodiscard]] QList<AttributeValue> slowing() const override;
    [[nodiscard]] bool accepts(const AttributeValue& pair) const override;
};

} // namespace quorvane
