#include "tests/support/PrivateBus.h"

#include "tests/support/WaitUntil.h"

#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>

namespace quorvane::test {

namespace {

// Everybody may own and call everything: the services' own policies are not under test here.
constexpr auto configuration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>%1</type>
  <listen>%2</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%3</servicedir>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="method_call"/>
    <allow receive_type="method_return"/>
    <allow receive_type="error"/>
    <allow receive_type="signal"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateBus::PrivateBus(Type type) {
    const bool session = type == Type::Session;
    const QString socket = folder_.filePath(QLatin1String("bus"));
    address_ = QLatin1String("unix:path=") + socket;
    QDir().mkpath(serviceFolder());

    const QString configurationFile = folder_.filePath(QLatin1String("bus.conf"));
    QFile file(configurationFile);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QString::fromLatin1(configuration)
                       .arg(session ? QLatin1String("session") : QLatin1String("system"), address_,
                            serviceFolder())
                       .toUtf8());
        file.close();
    }
    qputenv(session ? "DBUS_SESSION_BUS_ADDRESS" : "DBUS_SYSTEM_BUS_ADDRESS", address_.toUtf8());
    daemon_.start(QLatin1String("dbus-daemon"),
                  {QLatin1String("--nofork"), QLatin1String("--nopidfile"),
                   QLatin1String("--config-file=") + configurationFile},
                  folder_.filePath(QLatin1String("bus.log")));
    // The socket exists a moment before anybody listens on it.
    [[maybe_unused]] const bool up = waitUntil([this, &socket] {
        return QFile::exists(socket) && hasOwner(QStringLiteral("org.freedesktop.DBus"));
    });
}

QDBusConnection PrivateBus::connection(const QString& name) const {
    return QDBusConnection::connectToBus(address_, name);
}

bool PrivateBus::hasOwner(const QString& busName) const {
    const QString name = QLatin1String("owner-query-") + busName;
    bool owned = false;
    {
        const QDBusConnection bus = connection(name);
        owned = bus.isConnected() && bus.interface()->isServiceRegistered(busName);
    }
    QDBusConnection::disconnectFromBus(name);
    return owned;
}

} // namespace quorvane::test
