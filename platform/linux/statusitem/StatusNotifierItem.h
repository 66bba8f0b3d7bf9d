#pragma once

#include "platform/linux/common/ExportedObject.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QLatin1String>
#include <QList>
#include <QMetaType>
#include <QString>

namespace quorvane {

inline constexpr QLatin1String statusNotifierInterface("org.kde.StatusNotifierItem");

/// A picture as org.kde.StatusNotifierItem carries it: ARGB32 in network byte order.
struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};

struct StatusNotifierToolTip {
    QString iconName;
    QList<StatusNotifierPixmap> pixmaps;
    QString title;
    QString text; ///< a subset of HTML
};

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip);

/// Has to run before one of the structures above is sent.
void registerStatusNotifierTypes();

/// The icon and its text as the hosts of a desktop's bar read them. However often the values are
/// set within one turn of the main loop, the hosts are told once, and only of what has changed.
/// Main thread only.
class StatusNotifierItem final : public ExportedObject {
  public:
    /// `iconThemePath` is the folder in which hosts look for the icons.
    StatusNotifierItem(const QDBusConnection& bus, QString iconThemePath);

    /// Where hosts look for an item, and this item's menu.
    [[nodiscard]] static QString path() { return QStringLiteral("/StatusNotifierItem"); }

    [[nodiscard]] static QString menuPath() { return QStringLiteral("/MenuBar"); }

    /// Empty for no icon.
    void setIconName(const QString& name);

    /// The text beside the icon. It is in the tooltip too, for hosts that show only an icon.
    void setLabel(const QString& label);

    /// The menu is another one than before.
    void announceMenu();

  private:
    void addMethods();
    void addConstantProperties();
    void addChangingProperties();
    void announceLater();
    void announce();

    QString iconThemePath_;
    QString iconName_;
    QString label_;
    QString announcedIconName_;
    QString announcedLabel_;
    bool willAnnounce_ = false;
};

} // namespace quorvane

Q_DECLARE_METATYPE(quorvane::StatusNotifierPixmap)
Q_DECLARE_METATYPE(quorvane::StatusNotifierToolTip)
