#include "platform/linux/LinuxOperatingSystem.h"

#include "platform/linux/PowerProfilesNames.h"
#include "platform/linux/TurboSwitchPaths.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <sys/utsname.h>
#include <utility>

namespace quorvane {

namespace {

// Of the bus itself, which answers in far less than a millisecond or has a reason not to.
constexpr int busPatience = 500; // milliseconds

QDBusPendingCall askBusFor(const QDBusConnection& bus, const char* list) {
    return bus.asyncCall(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                                        QStringLiteral("/org/freedesktop/DBus"),
                                                        QStringLiteral("org.freedesktop.DBus"),
                                                        QString::fromLatin1(list)),
                         busPatience);
}

bool namesProfileService(QDBusPendingCall call) {
    call.waitForFinished();
    const QStringList names = call.reply().arguments().value(0).toStringList();
    return std::any_of(
        powerprofiles::places.begin(), powerprofiles::places.end(),
        [&names](const powerprofiles::Place& each) { return names.contains(each.name); });
}

} // namespace

LinuxOperatingSystem::LinuxOperatingSystem(const QDBusConnection& systemBus, QString root)
    : bus_(systemBus), root_(std::move(root)) {}

bool LinuxOperatingSystem::isVersion13OrLater() const {
    return hasTurboSwitch() || hasPowerProfiles();
}

bool LinuxOperatingSystem::hasTurboSwitch() const {
    const QString sysfs = root_ + QStringLiteral("/sys/");
    if (QFileInfo::exists(sysfs + turboswitch::intelNoTurbo) ||
        QFileInfo::exists(sysfs + turboswitch::globalBoost)) {
        return true;
    }
    const QDir policies(sysfs + turboswitch::policyFolder);
    const QStringList names = policies.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return std::any_of(names.begin(), names.end(), [&policies](const QString& name) {
        return name.startsWith(turboswitch::policyPrefix) &&
               policies.exists(name + QLatin1Char('/') + turboswitch::policyBoost);
    });
}

bool LinuxOperatingSystem::hasPowerProfiles() const {
    if (!bus_.isConnected()) {
        return false;
    }
    const QDBusPendingCall owned = askBusFor(bus_, "ListNames");
    const QDBusPendingCall activatable = askBusFor(bus_, "ListActivatableNames");
    return namesProfileService(owned) || namesProfileService(activatable);
}

std::optional<QString> LinuxOperatingSystem::machine() const {
    utsname names{};
    return ::uname(&names) == 0 ? std::optional(QString::fromLatin1(&names.machine[0]))
                                : std::nullopt;
}

} // namespace quorvane
