#pragma once

#include <QVariantMap>

#include <vector>

namespace quorvane {

/// The values that settings have until the user changes them, in the groups and the order in which
/// they are registered at every start. Keys without a registered value read as false, 0 or nothing.
[[nodiscard]] std::vector<QVariantMap> registeredDefaults();

} // namespace quorvane
