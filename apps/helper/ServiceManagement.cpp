#include "apps/helper/ServiceManagement.h"

#include "platform/linux/common/BusCalls.h"
#include "platform/linux/common/HelperNames.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDeadlineTimer>
#include <QThread>

#include <chrono>
#include <csignal>

namespace quorvane {

namespace {

constexpr std::chrono::seconds endLimit{10};
constexpr unsigned long lookInterval = 20; // milliseconds

BusCall managerCall(const QString& method, const QVariantList& arguments = {}) {
    return {.service = QStringLiteral("org.freedesktop.systemd1"),
            .path = QStringLiteral("/org/freedesktop/systemd1"),
            .interface = QStringLiteral("org.freedesktop.systemd1.Manager"),
            .method = method,
            .arguments = arguments,
            .limit = BusCall::usualLimit};
}

} // namespace

ServiceManagement::ServiceManagement(const QDBusConnection& bus) : bus_(bus) {}

void ServiceManagement::reload() const {
    if (bus_.isConnected()) {
        BusCalls::askAndWait(bus_, managerCall(QStringLiteral("Reload")));
        BusCalls::askAndWait(
            bus_, BusCall::toBus(QStringLiteral("ReloadConfig"), {}, BusCall::usualLimit));
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
    const BusAnswer answer = BusCalls::askAndWait(
        bus_, managerCall(QStringLiteral("StopUnit"), {unit, QStringLiteral("replace")}));
    // Without a service manager the bus itself has started it.
    if (!answer.isReply() && process > 1) {
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
