#pragma once

#include "apps/helper/AttributeDriver.h"

namespace quorvane {

/// Turbo of each frequency domain by itself, where the driver has no switch for all of them. "0"
/// means no turbo.
class PolicyBoost final : public AttributeDriver {
  public:
    using AttributeDriver::AttributeDriver;

    [[nodiscard]] QString name() const override;

  protected:
    [[nodiscard]] QList<AttributeValue> slowing() const override;
    [[nodiscard]] bool accepts(const AttributeValue& pair) const override;
};

} // namespace quorvane
