#pragma once

#include "platform/Menu.h"
#include "platform/linux/DBusMenuTypes.h"

#include <QList>
#include <QStringList>
#include <QVariantMap>

#include <vector>

namespace quorvane {

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
