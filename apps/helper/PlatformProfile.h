#pragma once

#include "apps/helper/AttributeDriver.h"

namespace quorvane {

/// The operating profile of the firmware: fans, power limits, frequencies.
class PlatformProfile final : public AttributeDriver {
  public:
    using AttributeDriver::AttributeDriver;

    [[nodiscard]] QString name() const override;

  protected:
    [[nodiscard]] QList<AttributeValue> slowing() const override;
    [[nodiscard]] bool accepts(const AttributeValue& pair) const override;
};

} // namespace quorvane
