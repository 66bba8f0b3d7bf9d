#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariantMap>

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

/// Has to run before one of them is sent.
void registerDBusMenuTypes();

} // namespace quorvane

Q_DECLARE_METATYPE(quorvane::DBusMenuLayout)
Q_DECLARE_METATYPE(quorvane::DBusMenuProperties)
Q_DECLARE_METATYPE(quorvane::DBusMenuRemovedProperties)
Q_DECLARE_METATYPE(quorvane::DBusMenuEvent)
