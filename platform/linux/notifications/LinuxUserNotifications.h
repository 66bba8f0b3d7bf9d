#pragma once

#include "platform/Log.h"
#include "platform/UserNotifications.h"
#include "platform/linux/notifications/DeliveredNotifications.h"
#include "platform/linux/notifications/NotificationServer.h"

#include <QDBusConnection>
#include <QString>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace quorvane {

/// How long the notification centre waits for others. Only tests need other values.
struct NotificationTiming {
    /// For a server's answer, before the log tells that there is none.
    std::chrono::milliseconds patience = std::chrono::seconds(25);
    /// For the click that closed a notification, when the closing is announced first. Both come
    /// at once; the seconds are for a machine that is busy.
    std::chrono::milliseconds lateAction = std::chrono::seconds(5);
};

/// Notifications through the desktop's notification server. What the user has not acted on stays
/// in the list, and is shown again by every new server. Lives on the main thread.
class LinuxUserNotifications final : public UserNotificationCenter {
    Q_OBJECT

  public:
    /// `log` outlives this object and hears, once an outage, that no server answers.
    LinuxUserNotifications(const QDBusConnection& sessionBus, LogSink& log,
                           const NotificationTiming& timing = {});

    UserNotification deliver(UserNotification notification) override;
    void removeDelivered(const UserNotification& notification) override;
    void removeAllDelivered() override;

    /// Runs the event loop until every server has answered everything that it was asked, at most
    /// for `limit`. To be called before the program ends, or what was asked for last is lost with
    /// it. Returns whether all was answered. Main thread only.
    bool waitForPending(std::chrono::milliseconds limit);

  private:
    /// What happened to a notification whose number is not known yet.
    struct EarlySignal {
        uint id = 0;
        std::optional<QString> action; ///< nothing when it was closed
    };

    template <class Operation>
    void onMainThread(Operation operation);

    void showWaiting();
    void show(DeliveredNotification& entry);
    void finishShowing(std::uint64_t attempt, const QString& owner,
                       const NotificationServer::Answer& answer);
    void takeOffScreen(const DeliveredNotification& entry);
    void serverLost();
    void actionInvoked(uint id, const QString& key);
    void closed(uint id);
    void keepEarlySignal(EarlySignal signal);
    void replayEarlySignals(uint id);
    void reportOutage(const QString& reason);

    LogSink& log_;
    NotificationServer server_;
    DeliveredNotifications delivered_;
    QTimer overdue_; ///< runs while an answer to Notify is awaited
    std::vector<EarlySignal> early_;
    std::uint64_t attempts_ = 0;
    bool outageReported_ = false;
    bool mayTryAgain_ = false; ///< when a server leaves without having shown something
};

} // namespace quorvane
