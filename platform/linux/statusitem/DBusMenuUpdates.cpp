#include "platform/linux/statusitem/DBusMenuUpdates.h"

#include <utility>

namespace quorvane {

namespace {

QVariantMap changedOf(const QVariantMap& before, const QVariantMap& now) {
    QVariantMap changed;
    for (auto property = now.constBegin(); property != now.constEnd(); ++property) {
        if (before.value(property.key()) != property.value()) {
            changed.insert(property.key(), property.value());
        }
    }
    return changed;
}

QStringList removedOf(const QVariantMap& before, const QVariantMap& now) {
    QStringList removed;
    for (auto property = before.constBegin(); property != before.constEnd(); ++property) {
        if (!now.contains(property.key())) {
            removed.append(property.key());
        }
    }
    return removed;
}

} // namespace

DBusMenuUpdates::DBusMenuUpdates(const DBusMenuTree& tree) {
    for (const int id : tree.ids()) {
        told_.push_back(tree.properties(id));
    }
}

DBusMenuUpdates::Difference DBusMenuUpdates::take(const DBusMenuTree& tree) {
    Difference difference;
    for (const int id : tree.ids()) {
        const QVariantMap now = tree.properties(id);
        const QVariantMap before = std::exchange(told_.at(static_cast<std::size_t>(id)), now);
        if (const QVariantMap changed = changedOf(before, now); !changed.isEmpty()) {
            difference.updated.append({id, changed});
        }
        if (const QStringList removed = removedOf(before, now); !removed.isEmpty()) {
            difference.removed.append({id, removed});
        }
    }
    return difference;
}

} // namespace quorvane
