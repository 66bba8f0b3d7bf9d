#include "tests/support/FakeNotificationServer.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QUuid>

#include <utility>

namespace quorvane::test {

namespace {

constexpr QLatin1String busName("org.freedesktop.Notifications");
constexpr QLatin1String objectPath("/org/freedesktop/Notifications");
constexpr QLatin1String interfaceName("org.freedesktop.Notifications");

} // namespace

FakeNotificationServer::FakeNotificationServer(const PrivateBus& bus, QStringList capabilities)
    : connectionName_(QUuid::createUuid().toString()), connection_(bus.connection(connectionName_)),
      capabilities_(std::move(capabilities)) {
    connection_.registerVirtualObject(objectPath, this);
}

FakeNotificationServer::~FakeNotificationServer() {
    connection_.unregisterObject(objectPath);
    // The bus is left when the last copy of the connection goes.
    QDBusConnection::disconnectFromBus(connectionName_);
}

QStringList FakeNotificationServer::everything() {
    return {QStringLiteral("actions"), QStringLiteral("body"), QStringLiteral("body-markup"),
            QStringLiteral("persistence")};
}

bool FakeNotificationServer::takeName() {
    return connection_.interface()->registerService(
               busName, QDBusConnectionInterface::ReplaceExistingService,
               QDBusConnectionInterface::AllowReplacement) ==
           QDBusConnectionInterface::ServiceRegistered;
}

void FakeNotificationServer::releaseName() {
    connection_.interface()->unregisterService(busName);
}

void FakeNotificationServer::answerHeld() {
    capabilityReplies_ = Replies::AtOnce;
    notifyReplies_ = Replies::AtOnce;
    for (const QDBusMessage& answer : std::exchange(held_, {})) {
        connection_.send(answer);
    }
}

void FakeNotificationServer::invokeAction(uint id, const QString& key, const QString& destination) {
    sendSignal(QStringLiteral("ActionInvoked"), {id, key}, destination);
}

void FakeNotificationServer::sendClosed(uint id, const QString& destination) {
    constexpr uint dismissedByTheUser = 2;
    sendSignal(QStringLiteral("NotificationClosed"), {id, dismissedByTheUser}, destination);
}

void FakeNotificationServer::sendSignal(const QString& name, const QVariantList& arguments,
                                        const QString& destination) {
    QDBusMessage message =
        destination.isEmpty()
            ? QDBusMessage::createSignal(objectPath, interfaceName, name)
            : QDBusMessage::createTargetedSignal(destination, objectPath, interfaceName, name);
    message.setArguments(arguments);
    connection_.send(message);
}

void FakeNotificationServer::flush() {
    connection_.call(QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
}

QString FakeNotificationServer::introspect(const QString& /*path*/) const {
    return {};
}

bool FakeNotificationServer::handleMessage(const QDBusMessage& message,
                                           const QDBusConnection& /*connection*/) {
    if (message.interface() != interfaceName) {
        return false;
    }
    if (message.member() == QLatin1String("GetCapabilities")) {
        ++capabilityRequests_;
        reply(message, message.createReply(capabilities_), capabilityReplies_);
        return true;
    }
    if (message.member() == QLatin1String("Notify")) {
        reply(message, remember(message), notifyReplies_);
        return true;
    }
    if (message.member() == QLatin1String("CloseNotification")) {
        closeRequests_.push_back(message.arguments().value(0).toUInt());
        connection_.send(message.createReply());
        return true;
    }
    return false;
}

void FakeNotificationServer::reply(const QDBusMessage& message, const QDBusMessage& answer,
                                   Replies replies) {
    switch (replies) {
    case Replies::AtOnce:
        connection_.send(answer);
        break;
    case Replies::Held:
        held_.push_back(answer);
        break;
    case Replies::Errors:
        connection_.send(message.createErrorReply(QDBusError::Failed, QStringLiteral("No.")));
        break;
    }
}

QDBusMessage FakeNotificationServer::remember(const QDBusMessage& notify) {
    const QVariantList arguments = notify.arguments();
    Request request;
    request.signature = notify.signature();
    request.applicationName = arguments.value(0).toString();
    request.replacesId = arguments.value(1).toUInt();
    request.icon = arguments.value(2).toString();
    request.summary = arguments.value(3).toString();
    request.body = arguments.value(4).toString();
    request.actions = arguments.value(5).toStringList();
    request.hints = qdbus_cast<QVariantMap>(arguments.value(6));
    request.expireTimeout = arguments.value(7).toInt();
    request.id = request.replacesId != 0 ? request.replacesId : nextId_++;
    requests_.push_back(request);
    return notify.createReply(request.id);
}

} // namespace quorvane::test
