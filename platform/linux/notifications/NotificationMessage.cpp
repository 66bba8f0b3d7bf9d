#include "platform/linux/notifications/NotificationMessage.h"

#include "platform/linux/notifications/NotificationText.h"

#include <QStringList>

namespace quorvane {

namespace {

constexpr QLatin1String applicationName("Quorvane");
constexpr QLatin1String iconName("battery-low");
constexpr QLatin1String desktopEntry("com.TarnwickStudios.quorvane");
constexpr uchar normalUrgency = 1;
constexpr int neverExpires = 0;

// In characters: far more than fits on a screen, far less than makes a server slow.
constexpr qsizetype titleLimit = 250;
constexpr qsizetype bodyLimit = 2000;
constexpr qsizetype buttonLimit = 80;

QString body(const UserNotification& notification, const NotificationCapabilities& capabilities) {
    const QString text = notificationText(notification.informativeText, bodyLimit, Lines::Many);
    return capabilities.bodyMarkup ? text.toHtmlEscaped() : text;
}

/// Keys and labels in turn. Without "default" a server closes the notification when its body is
/// clicked, which is right where a click means nothing to us.
QStringList actions(const UserNotification& notification) {
    const QString button =
        notificationText(notification.actionButtonTitle, buttonLimit, Lines::One);
    const QString other = notificationText(notification.otherButtonTitle, buttonLimit, Lines::One);
    QStringList list;
    if (!button.isEmpty() || !other.isEmpty() || !notification.userInfo.isEmpty()) {
        // Some servers know no click on the body and make a button of this label instead; it must
        // not stand beside a button that does the same.
        list << NotificationAction::body
             << (button.isEmpty() ? QString(applicationName) : QString());
    }
    if (!button.isEmpty()) {
        list << NotificationAction::button << button;
    }
    if (!other.isEmpty()) {
        list << NotificationAction::otherButton << other;
    }
    return list;
}

} // namespace

QVariantList notifyArguments(const UserNotification& notification,
                             const NotificationCapabilities& capabilities, uint replacesId) {
    const QVariantMap hints{
        {QStringLiteral("urgency"), QVariant::fromValue(normalUrgency)},
        {QStringLiteral("desktop-entry"), QString(desktopEntry)},
    };
    return {QString(applicationName),
            replacesId,
            QString(iconName),
            notificationText(notification.title, titleLimit, Lines::One),
            body(notification, capabilities),
            capabilities.actions ? actions(notification) : QStringList(),
            hints,
            neverExpires};
}

} // namespace quorvane
