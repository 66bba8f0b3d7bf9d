#include "platform/linux/common/BusCall.h"

#include <algorithm>
#include <limits>

namespace quorvane {

BusCall BusCall::toBus(const QString& method, const QVariantList& arguments,
                       std::chrono::milliseconds limit) {
    return {QStringLiteral("org.freedesktop.DBus"),
            QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"),
            method,
            arguments,
            limit};
}

QDBusMessage BusCall::message() const {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(autostart == Autostart::Yes);
    return message;
}

int BusCall::timeout() const {
    // Zero and below would stand for the library's own limit.
    constexpr std::chrono::milliseconds::rep least = 1;
    constexpr std::chrono::milliseconds::rep most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(limit.count(), least, most));
}

} // namespace quorvane
