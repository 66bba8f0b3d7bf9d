#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>

namespace quorvane {

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

/// Has to run before one of them is sent.
void registerStatusNotifierTypes();

} // namespace quorvane

Q_DECLARE_METATYPE(quorvane::StatusNotifierPixmap)
Q_DECLARE_METATYPE(quorvane::StatusNotifierToolTip)
