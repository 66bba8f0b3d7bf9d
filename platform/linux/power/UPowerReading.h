#pragma once

#include "platform/linux/power/PowerState.h"

#include <QVariantMap>

namespace quorvane {

/// Whether these properties of an org.freedesktop.UPower.Device are those of a battery that powers
/// the machine itself.
[[nodiscard]] bool powersTheMachine(const QVariantMap& properties);

/// The battery in our terms. Properties that are missing or of another type than UPower documents
/// count as not known.
[[nodiscard]] BatteryReading readingFromUPower(const QVariantMap& properties);

} // namespace quorvane
