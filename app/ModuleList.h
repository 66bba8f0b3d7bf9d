#pragma once

#include "mode/QuorvaneModule.h"

namespace quorvane {

/// All modules, in the order in which the mode switches them.
[[nodiscard]] ModuleList makeModules();

} // namespace quorvane
