#include "platform/linux/session/QuitService.h"

namespace quorvane {

QuitService::QuitService(const QDBusConnection& sessionBus) {
    QDBusConnection(sessionBus)
        .registerObject(path(), this, QDBusConnection::ExportScriptableSlots);
}

QString QuitService::path() {
    return QStringLiteral("/com/TarnwickStudios/quorvane");
}

QString QuitService::interfaceName() {
    return QStringLiteral("com.TarnwickStudios.quorvane");
}

} // namespace quorvane
