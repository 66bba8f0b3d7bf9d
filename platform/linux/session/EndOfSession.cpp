#include "platform/linux/session/EndOfSession.h"

namespace quorvane {

EndOfSession::EndOfSession(const QDBusConnection& sessionBus) {
    connect(&signals_, &TerminationSignals::received, this, &EndOfSession::ended);
    QDBusConnection(sessionBus)
        .connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                 QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SLOT(busDisconnected()));
}

} // namespace quorvane
