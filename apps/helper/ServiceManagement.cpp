#include "apps/helper/ServiceManagement.h"

#include "platform/linux/HelperNames.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDeadlineTimer>
#include <QThread>

#include <chrono>
#include <csignal>

namespace quorvane {

namespace {

constexpr std::chrono::seconds endLimit{10};
constexpr unsigned long lookInterval = 20; // milliseconds

QDBusMessage managerCall(const char* method, const QVariantList& arguments = {}) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.systemd1"), QStringLiteral("/org/freedesktop/systemd1"),
        QStringLiteral("org.freedesktop.systemd1.Manager"), QLatin1String(method));
    call.setArguments(arguments);
    return call;
}

QDBusMessage busCall(const char* method) {
    return QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QLatin1String(method));
}

} // namespace

ServiceManagement::ServiceManagement(const QDBusConnection& bus) : bus_(bus) {}

void ServiceManagement::reload() const {
    if (bus_.isConnected()) {
        bus_.call(managerCall("Reload"));
        bus_.call(busCall("ReloadConfig"));
    }
}

bool ServiceManagement::isServed() const {
    return bus_.interface()->isServiceRegistered(helpernames::label).value();
}

std::optional<QString> ServiceManagement::stop() const {
    if (!bus_.isConnected() || !isServed()) {
        return std::nullopt;
    }
    const uint process = bus_.interface()->servicePid(helpernames::label).value();
    const QString unit = helpernames::label + QStringLiteral(".service");
    const QDBusMessage reply =
        bus_.call(managerCall("StopUnit", {unit, QStringLiteral("replace")}));
    // Without a service manager the bus itself has started it.
    if (reply.type() == QDBusMessage::ErrorMessage && process > 1) {
        ::kill(static_cast<pid_t>(process), SIGTERM);
    }
    const QDeadlineTimer deadline(endLimit);
    while (isServed() && !deadline.hasExpired()) {
        QThread::msleep(lookInterval);
    }
    return isServed() ? std::optional(QStringLiteral("the running helper does not end"))
                      : std::nullopt;
}

} // namespace quorvane
