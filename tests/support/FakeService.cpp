#include "tests/support/FakeService.h"

#include <QDBusError>
#include <QUuid>
#include <gtest/gtest.h>

#include <utility>

namespace quorvane::test {

FakeService::FakeService(const PrivateBus& bus, const QString& name, Answers answers)
    : connectionName_(QUuid::createUuid().toString()), connection_(bus.connection(connectionName_)),
      name_(name), answers_(std::move(answers)) {
    EXPECT_TRUE(
        connection_.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath));
    EXPECT_TRUE(connection_.registerService(name_))
        << connection_.lastError().message().toStdString();
}

FakeService::~FakeService() {
    connection_.unregisterService(name_);
    connection_.unregisterObject(QStringLiteral("/"), QDBusConnection::UnregisterTree);
    QDBusConnection::disconnectFromBus(connectionName_);
}

void FakeService::release() {
    holds_ = false;
    for (const QDBusMessage& call : std::exchange(held_, {})) {
        connection_.send(answers_(call));
    }
}

void FakeService::giveNameUp() {
    connection_.unregisterService(name_);
}

void FakeService::emitSignal(const QString& path, const QString& interface, const QString& name,
                             const QVariantList& arguments) {
    QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
    signal.setArguments(arguments);
    connection_.send(signal);
}

QString FakeService::introspect(const QString& /*path*/) const {
    return {};
}

bool FakeService::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    calls_.append(message);
    message.setDelayedReply(true);
    if (holds_) {
        held_.append(message);
    } else {
        connection.send(answers_(message));
    }
    return true;
}

} // namespace quorvane::test
