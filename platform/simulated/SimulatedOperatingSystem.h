#pragma once

#include "platform/OperatingSystem.h"

namespace quorvane {

/// An operating system of the test's or the demo's choice: at first one without switches of its
/// own, on an Intel processor.
class SimulatedOperatingSystem final : public OperatingSystem {
  public:
    [[nodiscard]] bool isVersion13OrLater() const override { return version13OrLater; }

    [[nodiscard]] std::optional<QString> machine() const override { return machineName; }

    bool version13OrLater = false;
    std::optional<QString> machineName = QStringLiteral("x86_64");
};

} // namespace quorvane
