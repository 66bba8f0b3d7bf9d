#pragma once

#include "apps/helper/Outcome.h"

#include <QString>

namespace quorvane {

/// One way of making the machine slower. A machine has some of them; `probe` tells which. Main
/// thread only.
class Driver {
  public:
    Driver() = default;
    virtual ~Driver() = default;
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    /// As its users know it, for example "intel_pstate/no_turbo".
    [[nodiscard]] virtual QString name() const = 0;

    /// Whether this machine has it now. Changes nothing.
    [[nodiscard]] virtual bool probe() const = 0;

    /// Slows the machine, having recorded what was found. Failing, it leaves everything as it was.
    virtual void engage(const Reported& reported) = 0;

    /// Puts back what was found; what somebody else has changed meanwhile is left alone.
    virtual void release(const Reported& reported) = 0;
};

} // namespace quorvane
