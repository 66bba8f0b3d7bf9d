#include "platform/linux/NotificationServer.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMetaObject>
#include <QStringList>

#include <limits>
#include <utility>

namespace quorvane {

namespace {

constexpr QLatin1String serverName("org.freedesktop.Notifications");
constexpr QLatin1String serverPath("/org/freedesktop/Notifications");
constexpr QLatin1String serverInterface("org.freedesktop.Notifications");
constexpr int noTimeout = std::numeric_limits<int>::max(); // as D-Bus has it

QDBusMessage serverCall(const QString& owner, QLatin1String method) {
    return QDBusMessage::createMethodCall(owner, serverPath, serverInterface, method);
}

QDBusMessage busCall(QLatin1String method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"), method);
}

} // namespace

NotificationServer::NotificationServer(const QDBusConnection& bus,
                                       std::chrono::milliseconds patience)
    : bus_(bus), watcher_(serverName, bus, QDBusServiceWatcher::WatchForOwnerChange),
      timeout_(static_cast<int>(patience.count())) {
    connect(
        &watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString&, const QString&, const QString& newOwner) { changeOwner(newOwner); });
}

void NotificationServer::find() {
    if (state_ == State::Absent) {
        lookUpOwner();
    } else if (state_ == State::Present) {
        askCapabilities();
    }
}

void NotificationServer::changeOwner(const QString& newOwner) {
    const QString oldOwner = std::exchange(owner_, newOwner);
    state_ = newOwner.isEmpty() ? State::Absent : State::Present;
    if (!oldOwner.isEmpty()) {
        stopListening(oldOwner);
        Q_EMIT lost();
    }
    if (!newOwner.isEmpty()) {
        Q_EMIT appeared();
    }
}

// Nobody announces a server that was running before this object watched for one.
void NotificationServer::lookUpOwner() {
    state_ = State::Searching;
    QDBusMessage message = busCall(QLatin1String("GetNameOwner"));
    message << QString(serverName);
    call(message, timeout_, [this](const QDBusPendingReply<QString>& reply) {
        if (state_ != State::Searching) {
            return; // a server has appeared meanwhile
        }
        if (reply.isError()) {
            start();
        } else {
            changeOwner(reply.value());
        }
    });
}

// Only when there is none: the bus does not know a server that runs without being installed as a
// service. One that it starts is announced like any other.
void NotificationServer::start() {
    QDBusMessage message = busCall(QLatin1String("StartServiceByName"));
    message << QString(serverName) << 0U;
    call(message, timeout_, [this](const QDBusPendingReply<uint>& reply) {
        if (state_ == State::Searching && reply.isError()) {
            state_ = State::Absent;
            Q_EMIT unreachable(reply.error().name());
        }
    });
}

void NotificationServer::askCapabilities() {
    state_ = State::Asking;
    call(serverCall(owner_, QLatin1String("GetCapabilities")), timeout_,
         [this, asked = owner_](const QDBusPendingReply<QStringList>& reply) {
             if (state_ != State::Asking || asked != owner_) {
                 return;
             }
             const QStringList names = reply.isError() ? QStringList() : reply.value();
             capabilities_ = {names.contains(QLatin1String("actions")),
                              names.contains(QLatin1String("body-markup"))};
             listen(owner_);
             state_ = State::Ready;
             Q_EMIT ready();
         });
}

// A match on the unique name: neither other programs that imitate a server nor, as long as nothing
// was ever shown, the notifications of other programs wake this one.
void NotificationServer::listen(const QString& owner) {
    bus_.connect(owner, serverPath, serverInterface, QStringLiteral("ActionInvoked"), this,
                 SLOT(receiveActionInvoked(uint, QString)));
    bus_.connect(owner, serverPath, serverInterface, QStringLiteral("NotificationClosed"), this,
                 SLOT(receiveNotificationClosed(uint, uint)));
}

void NotificationServer::stopListening(const QString& owner) {
    bus_.disconnect(owner, serverPath, serverInterface, QStringLiteral("ActionInvoked"), this,
                    SLOT(receiveActionInvoked(uint, QString)));
    bus_.disconnect(owner, serverPath, serverInterface, QStringLiteral("NotificationClosed"), this,
                    SLOT(receiveNotificationClosed(uint, uint)));
}

void NotificationServer::notify(const UserNotification& notification, uint replacesId,
                                std::function<void(const Answer&)> answered) {
    QDBusMessage message = serverCall(owner_, QLatin1String("Notify"));
    message.setArguments(notifyArguments(notification, capabilities_, replacesId));
    call(message, noTimeout,
         [answered = std::move(answered)](const QDBusPendingReply<uint>& reply) {
             answered(reply.isError() ? Answer{0, reply.error().name()}
                                      : Answer{reply.value(), QString()});
         });
}

// The answer tells nothing, but that it came tells that the message went out.
void NotificationServer::close(const QString& owner, uint id) {
    QDBusMessage message = serverCall(owner, QLatin1String("CloseNotification"));
    message << id;
    call(message, timeout_, [](const QDBusPendingCall&) {});
}

void NotificationServer::call(const QDBusMessage& message, int timeout, ReplyHandler handler) {
    ++outstandingCalls_;
    const auto finish = [this, handler = std::move(handler)](const QDBusPendingCall& call) {
        handler(call);
        --outstandingCalls_;
    };
    const QDBusPendingCall pending = bus_.asyncCall(message, timeout);
    if (pending.isFinished()) {
        // Without a bus there is nothing that a watcher would ever hear of.
        QMetaObject::invokeMethod(
            this, [finish, pending] { finish(pending); }, Qt::QueuedConnection);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(pending, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [finish](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                finish(*finished);
            });
}

} // namespace quorvane
