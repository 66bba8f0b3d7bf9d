#pragma once

#include "platform/Menu.h"
#include "platform/MenuItem.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <vector>

namespace quorvane {

/// An item of com.canonical.dbusmenu with its children.
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayout> children;
};

struct DBusMenuProperties {
    int id = 0;
    QVariantMap properties;
};

/// Properties that have their default values again.
struct DBusMenuRemovedProperties {
    int id = 0;
    QStringList names;
};

/// What a user has done to an item.
struct DBusMenuEvent {
    int id = 0;
    QString type;
    QDBusVariant data;
    uint timestamp = 0; ///< the display server's
};

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuProperties& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuRemovedProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuRemovedProperties& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuEvent& event);

/// Has to run before one of the structures above is sent.
void registerDBusMenuTypes();

/// What com.canonical.dbusmenu tells of a menu item. A property that has its default value is not
/// there.
[[nodiscard]] QVariantMap dbusMenuProperties(const MenuItem& item);

/// The same of the root, which is no item.
[[nodiscard]] QVariantMap dbusMenuRootProperties();

/// The default value of a property, invalid for a name that the protocol does not know.
[[nodiscard]] QVariant dbusMenuDefault(const QString& name);

/// The numbers of a menu's items, which stay the same as long as the menu: 0 is the menu itself,
/// the items follow in their order, each before its submenu. Main thread only.
class DBusMenuTree {
  public:
    static constexpr int rootId = 0;

    /// A root without items.
    DBusMenuTree();

    /// `menu` has to live as long as this.
    explicit DBusMenuTree(Menu& menu);

    [[nodiscard]] bool contains(int id) const;

    [[nodiscard]] QList<int> ids() const;

    /// Null for the root. As for all that follows, `id` has to be there.
    [[nodiscard]] MenuItem* item(int id) const { return entry(id).item; }

    /// Null for an item without a submenu, and for an empty tree's root.
    [[nodiscard]] Menu* menu(int id) const { return entry(id).menu; }

    [[nodiscard]] QVariantMap properties(int id) const;

    /// `depth` is the number of levels below `id`; all of them if it is negative. Without `names`
    /// it has all properties.
    [[nodiscard]] DBusMenuLayout layout(int id, int depth, const QStringList& names) const;

  private:
    struct Entry {
        MenuItem* item = nullptr;
        Menu* menu = nullptr;
        QList<int> children;
    };

    [[nodiscard]] const Entry& entry(int id) const {
        return entries_.at(static_cast<std::size_t>(id));
    }

    int add(MenuItem* item, Menu* menu);

    std::vector<Entry> entries_;
};

/// Those of `properties` whose names are among `names`; all of them if there are no names.
[[nodiscard]] QVariantMap onlyNamed(const QVariantMap& properties, const QStringList& names);

} // namespace quorvane

Q_DECLARE_METATYPE(quorvane::DBusMenuLayout)
Q_DECLARE_METATYPE(quorvane::DBusMenuProperties)
Q_DECLARE_METATYPE(quorvane::DBusMenuRemovedProperties)
Q_DECLARE_METATYPE(quorvane::DBusMenuEvent)
