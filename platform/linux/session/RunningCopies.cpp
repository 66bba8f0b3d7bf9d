#include "platform/linux/session/RunningCopies.h"

#include "platform/linux/session/QuitService.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QThread>

namespace quorvane {

namespace {

constexpr int quitLimitMilliseconds = 30000;
constexpr unsigned long pauseMilliseconds = 20;

} // namespace

RunningCopies::RunningCopies(const QDBusConnection& sessionBus) : bus_(sessionBus) {}

QStringList RunningCopies::names() {
    return {QStringLiteral("com.TarnwickStudios.quorvane"),
            QStringLiteral("com.tarnwick.quorvane-setapp")};
}

QStringList RunningCopies::running() const {
    QStringList owned;
    for (const QString& name : names()) {
        if (bus_.interface()->isServiceRegistered(name)) {
            owned.append(name);
        }
    }
    return owned;
}

bool RunningCopies::claim() {
    const bool isFree =
        running().isEmpty() && take(QStringLiteral("com.TarnwickStudios.quorvane.claim"));
    claim_ = isFree ? Claim::Won : Claim::Lost;
    return isFree;
}

int RunningCopies::count(const QString& bundleIdentifier, const QString& ownIdentifier) const {
    const bool isOwn = bundleIdentifier == ownIdentifier;
    if (isOwn && claim_ == Claim::Won) {
        return 1; // the name, once it is taken, is this program's
    }
    const QStringList owned = running();
    if (!isOwn || claim_ == Claim::NotTried) {
        return owned.contains(bundleIdentifier) ? 1 : 0;
    }
    // Whoever has the claim without a name is about to take one. Seen in one look: between two it
    // could be taken, and neither would count it.
    return owned.contains(bundleIdentifier) || owned.isEmpty() ? 2 : 1;
}

bool RunningCopies::announce(const QString& bundleIdentifier) {
    return take(bundleIdentifier);
}

bool RunningCopies::take(const QString& name) {
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus_.interface()->registerService(name);
    return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

bool RunningCopies::quitAll() {
    for (const QString& name : running()) {
        bus_.call(QDBusMessage::createMethodCall(
            name, QuitService::path(), QuitService::interfaceName(), QStringLiteral("Quit")));
    }
    const QDeadlineTimer deadline(quitLimitMilliseconds);
    while (!running().isEmpty() && !deadline.hasExpired()) {
        QThread::msleep(pauseMilliseconds);
    }
    return running().isEmpty();
}

} // namespace quorvane
