#pragma once

#include "platform/Menu.h"
#include "platform/linux/common/ExportedObject.h"
#include "platform/linux/statusitem/DBusMenuTree.h"
#include "platform/linux/statusitem/DBusMenuUpdates.h"

#include <QDBusConnection>
#include <QLatin1String>
#include <QList>
#include <QSet>
#include <QString>

namespace quorvane {

inline constexpr QLatin1String dbusMenuInterface("com.canonical.dbusmenu");

/// A menu as the hosts of a desktop's bar read and click it. They hear of a changed title or check
/// mark once in a turn of the main loop, and of a new layout only when the menu is another one.
/// Main thread only.
class DBusMenu final : public ExportedObject {
  public:
    /// Empty at first.
    DBusMenu(const QDBusConnection& bus, const QString& path, const QString& iconThemePath);

    /// `menu` has to live as long as this object.
    void setMenu(Menu& menu);

  private:
    void addProperties(const QString& iconThemePath);
    void addReadingMethods();
    void addEventMethods();

    [[nodiscard]] QDBusMessage getLayout(const QDBusMessage& call) const;
    [[nodiscard]] QDBusMessage getGroupProperties(const QDBusMessage& call) const;
    [[nodiscard]] QDBusMessage getProperty(const QDBusMessage& call) const;
    QDBusMessage receiveEvent(const QDBusMessage& call);
    QDBusMessage receiveEvents(const QDBusMessage& call);
    QDBusMessage aboutToShow(const QDBusMessage& call);
    QDBusMessage aboutToShowGroup(const QDBusMessage& call);

    void handle(int id, const QString& eventType);
    void click(int id);
    void open(int id);
    void announceLater();
    void announce();

    DBusMenuTree tree_;
    DBusMenuUpdates updates_;
    uint revision_ = 1;
    QSet<int> clicked_;    ///< items whose actions will run
    int aboutToShow_ = -1; ///< the menu that is known to open, before its event says so
    bool willAnnounce_ = false;
};

} // namespace quorvane
