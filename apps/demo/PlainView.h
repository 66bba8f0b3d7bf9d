#pragma once

#include "apps/demo/Charset.h"
#include "apps/demo/DayPlan.h"

#include <cstdio>

namespace quorvane {

/// Runs the day as fast as it goes and writes a line an event, and the closing words. Returns the
/// exit status: 1, with a message, when the output could not be written.
[[nodiscard]] int showPlainDay(const DayPlan& plan, Charset charset, std::FILE* output);

} // namespace quorvane
