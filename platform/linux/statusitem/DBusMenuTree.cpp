#include "platform/linux/statusitem/DBusMenuTree.h"

#include <QByteArray>
#include <QDBusMetaType>

namespace quorvane {

namespace {

// A single underscore would vanish and make the letter behind it the item's key.
QString withoutMnemonics(QString title) {
    return title.replace(QLatin1Char('_'), QLatin1String("__"));
}

} // namespace

// Children are variants on the bus, because a D-Bus type cannot contain itself.
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuLayout& layout) {
    argument.beginStructure();
    argument << layout.id << layout.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const DBusMenuLayout& child : layout.children) {
        argument << QDBusVariant(QVariant::fromValue(child));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuLayout& layout) {
    argument.beginStructure();
    argument >> layout.id >> layout.properties;
    layout.children.clear();
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        layout.children.append(qdbus_cast<DBusMenuLayout>(child.variant()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuProperties& item) {
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuProperties& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuRemovedProperties& item) {
    argument.beginStructure();
    argument << item.id << item.names;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuRemovedProperties& item) {
    argument.beginStructure();
    argument >> item.id >> item.names;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuEvent& event) {
    argument.beginStructure();
    argument << event.id << event.type << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuEvent& event) {
    argument.beginStructure();
    argument >> event.id >> event.type >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

void registerDBusMenuTypes() {
    qDBusRegisterMetaType<DBusMenuLayout>();
    qDBusRegisterMetaType<DBusMenuProperties>();
    qDBusRegisterMetaType<QList<DBusMenuProperties>>();
    qDBusRegisterMetaType<DBusMenuRemovedProperties>();
    qDBusRegisterMetaType<QList<DBusMenuRemovedProperties>>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<QList<DBusMenuEvent>>();
}

QVariantMap dbusMenuProperties(const MenuItem& item) {
    if (item.isSeparatorItem()) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    QVariantMap properties;
    if (!item.title().isEmpty()) {
        properties.insert(QStringLiteral("label"), withoutMnemonics(item.title()));
    }
    if (!item.isEnabled()) {
        properties.insert(QStringLiteral("enabled"), false);
    }
    if (item.state()) {
        properties.insert(QStringLiteral("toggle-type"), QStringLiteral("checkmark"));
        properties.insert(QStringLiteral("toggle-state"), *item.state() ? 1 : 0);
    }
    if (item.submenu() != nullptr) {
        properties.insert(dbusMenuRootProperties());
    }
    return properties;
}

QVariantMap dbusMenuRootProperties() {
    return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
}

QVariant dbusMenuDefault(const QString& name) {
    static const QVariantMap defaults{{QStringLiteral("type"), QStringLiteral("standard")},
                                      {QStringLiteral("label"), QString()},
                                      {QStringLiteral("enabled"), true},
                                      {QStringLiteral("visible"), true},
                                      {QStringLiteral("icon-name"), QString()},
                                      {QStringLiteral("icon-data"), QByteArray()},
                                      {QStringLiteral("toggle-type"), QString()},
                                      {QStringLiteral("toggle-state"), -1},
                                      {QStringLiteral("children-display"), QString()},
                                      {QStringLiteral("disposition"), QStringLiteral("normal")}};
    return defaults.value(name);
}

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
