#pragma once

#include "apps/demo/DemoOptions.h"
#include "apps/demo/TerminalTraits.h"

namespace quorvane {

/// Shows the day as a moving picture on the terminal, about 40 seconds long, and leaves its summary
/// there. Returns the exit status: 128 and the signal's number when a signal has ended it.
[[nodiscard]] int showMovingDay(const DemoOptions& options, const TerminalTraits& traits);

} // namespace quorvane
