#include "platform/linux/LogindBrightness.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace quorvane {

namespace {

constexpr QLatin1String service("org.freedesktop.login1");
constexpr QLatin1String ownSession("/org/freedesktop/login1/session/auto");
constexpr QLatin1String ownUser("/org/freedesktop/login1/user/self");

QDBusMessage method(const QString& path, const QString& interface, const QString& name,
                    const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, name);
    message.setArguments(arguments);
    // A logind that has to be started first knows of no session.
    message.setAutoStartService(false);
    return message;
}

QDBusMessage setBrightness(const QString& session, const QString& device, int raw) {
    return method(session, QStringLiteral("org.freedesktop.login1.Session"),
                  QStringLiteral("SetBrightness"),
                  {QStringLiteral("backlight"), device, static_cast<quint32>(raw)});
}

QString errorOf(const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::ReplyMessage) {
        return {};
    }
    return reply.errorMessage().isEmpty() ? reply.errorName() : reply.errorMessage();
}

/// Whether it was logind that answered, not the bus on behalf of one that is not there.
bool isFromLogind(const QDBusMessage& reply) {
    switch (QDBusError(reply).type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::NoReply:
    case QDBusError::NoServer:
    case QDBusError::Disconnected:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return false;
    default:
        return true;
    }
}

/// The path in the value of User.Display, which is of the type (so); empty when there is none.
QString displaySession(const QDBusMessage& reply) {
    const QVariant value = reply.arguments().value(0).value<QDBusVariant>().variant();
    const auto argument = value.value<QDBusArgument>();
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
    : bus_(systemBus), watcher_(service, systemBus, QDBusServiceWatcher::WatchForRegistration) {
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &LogindBrightness::appeared);
}

void LogindBrightness::set(const QString& device, int raw, const Done& done) {
    call(setBrightness(ownSession, device, raw),
         [this, device, raw, done](const QDBusMessage& reply) {
             const QString error = errorOf(reply);
             if (error.isEmpty() || !isFromLogind(reply)) {
                 done(error);
             } else {
                 askForOtherSession(device, raw, error, done);
             }
         });
}

/// A service of the user belongs to no session, and a remote session has no display. The session
/// that shows on the user's display may set it all the same.
void LogindBrightness::askForOtherSession(const QString& device, int raw, const QString& error,
                                          const Done& done) {
    const QDBusMessage query =
        method(ownUser, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
               {QStringLiteral("org.freedesktop.login1.User"), QStringLiteral("Display")});
    call(query, [this, device, raw, error, done](const QDBusMessage& reply) {
        const QString session = displaySession(reply);
        if (session.isEmpty()) {
            done(error);
            return;
        }
        call(setBrightness(session, device, raw),
             [done](const QDBusMessage& answer) { done(errorOf(answer)); });
    });
}

void LogindBrightness::call(const QDBusMessage& message, const Handler& handler) {
    if (!bus_.isConnected()) { // nothing would ever be heard of the call
        const auto fail = [handler] {
            handler(QDBusMessage::createError(QDBusError::Disconnected,
                                              QStringLiteral("there is no system bus")));
        };
        QMetaObject::invokeMethod(this, fail, Qt::QueuedConnection);
        return;
    }
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    openCalls_.append(watcher);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, handler] {
        openCalls_.removeOne(watcher);
        watcher->deleteLater();
        handler(watcher->reply());
    });
}

void LogindBrightness::deliverAnswers() {
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    const QList<QDBusPendingCallWatcher*> calls = openCalls_; // answering may open further ones
    for (QDBusPendingCallWatcher* const watcher : calls) {
        if (watcher->isFinished()) {
            watcher->waitForFinished();
        }
    }
}

} // namespace quorvane
