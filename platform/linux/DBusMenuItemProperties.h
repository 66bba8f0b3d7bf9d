#pragma once

#include "platform/MenuItem.h"

#include <QString>
#include <QVariantMap>

namespace quorvane {

/// What com.canonical.dbusmenu tells of a menu item. A property that has its default value is not
/// there.
[[nodiscard]] QVariantMap dbusMenuProperties(const MenuItem& item);

/// The same of the root, which is no item.
[[nodiscard]] QVariantMap dbusMenuRootProperties();

/// The default value of a property, invalid for a name that the protocol does not know.
[[nodiscard]] QVariant dbusMenuDefault(const QString& name);

} // namespace quorvane
