#include "platform/linux/notifications/NotificationServer.h"

#include <QStringList>

#include <utility>

namespace quorvane {

namespace {

constexpr QLatin1String serverName("org.freedesktop.Notifications");
constexpr QLatin1String serverPath("/org/freedesktop/Notifications");
constexpr QLatin1String serverInterface("org.freedesktop.Notifications");

BusCall serverCall(const QString& owner, const QString& method, const QVariantList& arguments,
                   std::chrono::milliseconds limit) {
    return {.service = owner,
            .path = serverPath,
            .interface = serverInterface,
            .method = method,
            .arguments = arguments,
            .limit = limit};
}

} // namespace

NotificationServer::NotificationServer(const QDBusConnection& bus,
                                       std::chrono::milliseconds patience)
    : bus_(bus), calls_(bus), watcher_(serverName, bus, QDBusServiceWatcher::WatchForOwnerChange),
      patience_(patience) {
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
    calls_.ask(BusCall::toBus(QStringLiteral("GetNameOwner"), {QString(serverName)}, patience_),
               [this](const BusAnswer& owner) {
                   if (state_ != State::Searching) {
                       return; // a server has appeared meanwhile
                   }
                   if (owner.isReply()) {
                       changeOwner(owner.value().toString());
                   } else {
                       start();
                   }
               });
}

// Only when there is none: the bus does not know a server that runs without being installed as a
// service. One that it starts is announced like any other.
void NotificationServer::start() {
    calls_.ask(
        BusCall::toBus(QStringLiteral("StartServiceByName"), {QString(serverName), 0U}, patience_),
        [this](const BusAnswer& started) {
            if (state_ == State::Searching && !started.isReply()) {
                state_ = State::Absent;
                Q_EMIT unreachable(started.errorName());
            }
        });
}

void NotificationServer::askCapabilities() {
    state_ = State::Asking;
    calls_.ask(serverCall(owner_, QStringLiteral("GetCapabilities"), {}, patience_),
               [this, asked = owner_](const BusAnswer& answer) {
                   if (state_ != State::Asking || asked != owner_) {
                       return;
                   }
                   const QStringList names = answer.value().toStringList();
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
    calls_.ask(serverCall(owner_, QStringLiteral("Notify"),
                          notifyArguments(notification, capabilities_, replacesId),
                          BusCall::noLimit),
               [answered = std::move(answered)](const BusAnswer& answer) {
                   const Result<QVariant> id = answer.valueOf(QLatin1String("u"));
                   answered(id ? Answer{id->toUInt(), {}} : Answer{0, id.error()});
               });
}

// The answer tells nothing, but that it came tells that the message went out.
void NotificationServer::close(const QString& owner, uint id) {
    calls_.ask(serverCall(owner, QStringLiteral("CloseNotification"), {id}, patience_),
               [](const BusAnswer&) {});
}

} // namespace quorvane
