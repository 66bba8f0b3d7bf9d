#pragma once

#include "platform/linux/common/BusCalls.h"
#include "platform/linux/notifications/NotificationMessage.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>

namespace quorvane {

/// Whichever program owns org.freedesktop.Notifications on the session bus at the moment. Every
/// call goes to one particular owner by its unique name, so that no answer and no signal of one
/// server is ever taken for another's. Nothing here blocks. Main thread only.
class NotificationServer final : public QObject {
    Q_OBJECT

  public:
    struct Answer {
        uint id = 0;   ///< the server's number for the notification
        QString error; ///< the D-Bus error's name, or empty when the notification is shown
    };

    /// A server that takes longer than `patience` to tell what it can do is taken to be able to do
    /// nothing special.
    NotificationServer(const QDBusConnection& bus, std::chrono::milliseconds patience);

    /// Looks for a server, has the bus start one if there is none, and asks it what it can do.
    /// `ready` or `unreachable` tells the outcome.
    void find();

    /// Whether notifications can be sent.
    [[nodiscard]] bool isReady() const { return state_ == State::Ready; }

    /// The unique name of the current server, or empty.
    [[nodiscard]] QString owner() const { return owner_; }

    /// Shows a notification; only while ready. `answered` runs once, whenever the server answers
    /// or leaves, never before this returns. However late, an answer is worth having: it carries
    /// the number that the notification can be removed by.
    void notify(const UserNotification& notification, uint replacesId,
                std::function<void(const Answer&)> answered);

    /// Takes a notification that `owner` has shown off the screen.
    void close(const QString& owner, uint id);

    /// Whether every call has been answered.
    [[nodiscard]] bool isIdle() const { return calls_.open() == 0; }

  Q_SIGNALS:
    /// There is a (new) server. Nothing is known about it before the next `find`.
    void appeared();
    void ready();
    void unreachable(const QString& error);
    /// The server is gone or no longer in charge; whatever it was told is void. There may already
    /// be another one, which is announced next.
    void lost();

    void actionInvoked(uint id, const QString& key);
    void closed(uint id);

  private:
    enum class State { Absent, Searching, Present, Asking, Ready };

    Q_SLOT void receiveActionInvoked(uint id, const QString& key) { Q_EMIT actionInvoked(id, key); }

    Q_SLOT void receiveNotificationClosed(uint id, uint /*reason*/) { Q_EMIT closed(id); }

    void changeOwner(const QString& newOwner);
    void lookUpOwner();
    void start();
    void askCapabilities();
    void listen(const QString& owner);
    void stopListening(const QString& owner);

    QDBusConnection bus_;
    BusCalls calls_;
    QDBusServiceWatcher watcher_;
    std::chrono::milliseconds patience_;
    State state_ = State::Absent;
    QString owner_;
    NotificationCapabilities capabilities_;
};

} // namespace quorvane
