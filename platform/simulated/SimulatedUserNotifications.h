#pragma once

#include "platform/UserNotifications.h"

#include <QList>

#include <mutex>
#include <optional>

namespace quorvane {

/// The notification list of the laptop's desktop.
class SimulatedUserNotifications final : public UserNotificationCenter {
    Q_OBJECT

  public:
    using UserNotificationCenter::UserNotificationCenter;

    UserNotification deliver(UserNotification notification) override;
    void removeDelivered(const UserNotification& notification) override;
    void removeAllDelivered() override;

    /// What the user sees now, and everything that was ever shown; the newest last.
    [[nodiscard]] QList<UserNotification> delivered() const;
    [[nodiscard]] QList<UserNotification> history() const;

    /// The titles of everything that was ever shown.
    [[nodiscard]] QStringList titles() const;

    /// The user clicks the newest notification with this title or its action button. Returns
    /// whether there was one.
    bool click(const QString& title);

    /// The user clicks its other button, or wipes it away.
    bool dismiss(const QString& title);

  Q_SIGNALS:
    void shown(const quorvane::UserNotification& notification);

  private:
    std::optional<UserNotification> take(const QString& title);

    mutable std::mutex mutex_;
    QList<UserNotification> delivered_;
    QList<UserNotification> history_;
    int nextIdentifier_ = 1;
};

} // namespace quorvane
