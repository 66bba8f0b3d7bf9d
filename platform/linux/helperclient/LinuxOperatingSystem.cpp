#include "platform/linux/helperclient/LinuxOperatingSystem.h"

#include "platform/linux/common/BusCalls.h"
#include "platform/linux/common/PowerProfilesNames.h"
#include "platform/linux/common/TurboSwitchPaths.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <sys/utsname.h>
#include <utility>

namespace quorvane {

namespace {

// Of the bus itself, which answers in far less than a millisecond or has a reason not to.
constexpr std::chrono::milliseconds busPatience{500};

bool namesProfileService(const QStringList& names) {
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
    bool isThere = false;
    BusCalls calls(bus_);
    for (const char* const list : {"ListNames", "ListActivatableNames"}) {
        calls.ask(BusCall::toBus(QLatin1String(list), {}, busPatience),
                  [&isThere](const BusAnswer& names) {
                      isThere = isThere || namesProfileService(names.value().toStringList());
                  });
    }
    calls.waitForAnswers();
    return isThere;
}

std::optional<QString> LinuxOperatingSystem::machine() const {
    utsname names{};
    return ::uname(&names) == 0 ? std::optional(QString::fromLatin1(&names.machine[0]))
                                : std::nullopt;
}

} // namespace quorvane
