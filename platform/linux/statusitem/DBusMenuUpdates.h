#pragma once

#include "platform/linux/statusitem/DBusMenuTree.h"

#include <QList>
#include <QVariantMap>

#include <vector>

namespace quorvane {

/// What the hosts believe the properties of a menu's items to be. Main thread only.
class DBusMenuUpdates {
  public:
    struct Difference {
        QList<DBusMenuProperties> updated;
        QList<DBusMenuRemovedProperties> removed;

        [[nodiscard]] bool isEmpty() const { return updated.isEmpty() && removed.isEmpty(); }
    };

    /// As `tree` is now.
    explicit DBusMenuUpdates(const DBusMenuTree& tree);

    /// What has to be told to bring the hosts up to `tree`, which has the same items as before.
    /// From then on it counts as told.
    [[nodiscard]] Difference take(const DBusMenuTree& tree);

  private:
    std::vector<QVariantMap> told_; ///< by the item's number
};

} // namespace quorvane
