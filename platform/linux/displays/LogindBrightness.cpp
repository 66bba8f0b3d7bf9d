#include "platform/linux/displays/LogindBrightness.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusObjectPath>

namespace quorvane {

namespace {

constexpr QLatin1String service("org.freedesktop.login1");
constexpr QLatin1String ownSession("/org/freedesktop/login1/session/auto");
constexpr QLatin1String ownUser("/org/freedesktop/login1/user/self");

// A logind that has to be started first knows of no session.
BusCall question(const QString& path, const QString& interface, const QString& method,
                 const QVariantList& arguments) {
    return {.service = service,
            .path = path,
            .interface = interface,
            .method = method,
            .arguments = arguments,
            .limit = BusCall::usualLimit,
            .autostart = BusCall::Autostart::No};
}

BusCall setBrightness(const QString& session, const QString& device, int raw) {
    return question(session, QStringLiteral("org.freedesktop.login1.Session"),
                    QStringLiteral("SetBrightness"),
                    {QStringLiteral("backlight"), device, static_cast<quint32>(raw)});
}

QString errorOf(const BusAnswer& answer) {
    return answer.errorName() == QDBusError::errorString(QDBusError::Disconnected)
               ? QStringLiteral("there is no system bus")
               : answer.errorText();
}

/// The path in the value of User.Display, which is of the type (so); empty when there is none.
QString displaySession(const BusAnswer& answer) {
    const auto argument = answer.property().value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(so)")) {
        return {};
    }
    QString id;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> id >> path;
    argument.endStructure();
    return id.isEmpty() ? QString() : path.path();
}

} // namespace

LogindBrightness::LogindBrightness(const QDBusConnection& systemBus)
    : calls_(systemBus), watcher_(service, systemBus, QDBusServiceWatcher::WatchForRegistration) {
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &LogindBrightness::appeared);
}

void LogindBrightness::set(const QString& device, int raw, const Done& done) {
    calls_.ask(setBrightness(ownSession, device, raw),
               [this, device, raw, done](const BusAnswer& answer) {
                   if (answer.kind() == BusAnswer::Kind::Refused) {
                       askForOtherSession(device, raw, errorOf(answer), done);
                   } else {
                       done(errorOf(answer));
                   }
               });
}

/// A service of the user belongs to no session, and a remote session has no display. The session
/// that shows on the user's display may set it all the same.
void LogindBrightness::askForOtherSession(const QString& device, int raw, const QString& error,
                                          const Done& done) {
    const BusCall query =
        question(ownUser, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                 {QStringLiteral("org.freedesktop.login1.User"), QStringLiteral("Display")});
    calls_.ask(query, [this, device, raw, error, done](const BusAnswer& display) {
        const QString session = displaySession(display);
        if (session.isEmpty()) {
            done(error);
            return;
        }
        calls_.ask(setBrightness(session, device, raw),
                   [done](const BusAnswer& answer) { done(errorOf(answer)); });
    });
}

} // namespace quorvane
