#include "platform/linux/DBusMenuTree.h"

#include "platform/linux/DBusMenuItemProperties.h"

namespace quorvane {

DBusMenuTree::DBusMenuTree() : entries_(1) {}

DBusMenuTree::DBusMenuTree(Menu& menu) {
    add(nullptr, &menu);
}

int DBusMenuTree::add(MenuItem* item, Menu* menu) {
    const std::size_t id = entries_.size();
    entries_.push_back({item, menu, {}});
    if (menu != nullptr) {
        for (const auto& child : menu->items()) {
            const int childId = add(child.get(), child->submenu());
            entries_[id].children.append(childId);
        }
    }
    return static_cast<int>(id);
}

bool DBusMenuTree::contains(int id) const {
    return id >= 0 && static_cast<std::size_t>(id) < entries_.size();
}

QList<int> DBusMenuTree::ids() const {
    QList<int> all;
    for (std::size_t id = 0; id < entries_.size(); ++id) {
        all.append(static_cast<int>(id));
    }
    return all;
}

QVariantMap DBusMenuTree::properties(int id) const {
    return id == rootId ? dbusMenuRootProperties() : dbusMenuProperties(*item(id));
}

DBusMenuLayout DBusMenuTree::layout(int id, int depth, const QStringList& names) const {
    DBusMenuLayout layout{id, onlyNamed(properties(id), names), {}};
    if (depth != 0) {
        for (const int child : entry(id).children) {
            layout.children.append(this->layout(child, depth < 0 ? depth : depth - 1, names));
        }
    }
    return layout;
}

QVariantMap onlyNamed(const QVariantMap& properties, const QStringList& names) {
    if (names.isEmpty()) {
        return properties;
    }
    QVariantMap named;
    for (const QString& name : names) {
        if (properties.contains(name)) {
            named.insert(name, properties.value(name));
        }
    }
    return named;
}

} // namespace quorvane
