#include "platform/simulated/SimulatedUserNotifications.h"

#include <algorithm>

namespace quorvane {

UserNotification SimulatedUserNotifications::deliver(UserNotification notification) {
    {
        const std::lock_guard lock(mutex_);
        notification.identifier = QString::number(nextIdentifier_++);
        delivered_.append(notification);
        history_.append(notification);
    }
    Q_EMIT shown(notification);
    return notification;
}

void SimulatedUserNotifications::removeDelivered(const UserNotification& notification) {
    const std::lock_guard lock(mutex_);
    delivered_.removeIf([&notification](const UserNotification& each) {
        return each.identifier == notification.identifier;
    });
}

void SimulatedUserNotifications::removeAllDelivered() {
    const std::lock_guard lock(mutex_);
    delivered_.clear();
}

QList<UserNotification> SimulatedUserNotifications::delivered() const {
    const std::lock_guard lock(mutex_);
    return delivered_;
}

QList<UserNotification> SimulatedUserNotifications::history() const {
    const std::lock_guard lock(mutex_);
    return history_;
}

QStringList SimulatedUserNotifications::titles() const {
    QStringList titles;
    for (const UserNotification& each : history()) {
        titles.append(each.title);
    }
    return titles;
}

bool SimulatedUserNotifications::click(const QString& title) {
    const std::optional<UserNotification> notification = take(title);
    if (notification) {
        Q_EMIT activated(*notification);
    }
    return notification.has_value();
}

bool SimulatedUserNotifications::dismiss(const QString& title) {
    return take(title).has_value();
}

std::optional<UserNotification> SimulatedUserNotifications::take(const QString& title) {
    const std::lock_guard lock(mutex_);
    const auto found =
        std::find_if(delivered_.rbegin(), delivered_.rend(),
                     [&title](const UserNotification& each) { return each.title == title; });
    if (found == delivered_.rend()) {
        return std::nullopt;
    }
    UserNotification notification = *found;
    delivered_.erase(std::next(found).base());
    return notification;
}

} // namespace quorvane
