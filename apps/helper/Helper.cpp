#include "apps/helper/Helper.h"

#include "apps/helper/CpufreqBoost.h"
#include "apps/helper/IntelPstateTurbo.h"
#include "apps/helper/PlatformProfile.h"
#include "apps/helper/PolicyBoost.h"
#include "apps/helper/PowerProfilesHold.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

namespace {

PowerSwitch::Wording turboWording() {
    return {QStringLiteral("Turbo is off"), QStringLiteral("Turbo is as it was found"),
            QStringLiteral("Turbo stays off for another program"),
            QStringLiteral("This machine has no turbo switch")};
}

PowerSwitch::Wording lowPowerWording() {
    return {QStringLiteral("Low power mode is on"),
            QStringLiteral("Low power mode is as it was found"),
            QStringLiteral("Low power mode stays on for another program"),
            QStringLiteral("This machine has no low power mode")};
}

} // namespace

Helper::Helper(const QDBusConnection& bus, const Options& options, LogSink& log)
    : bus_(bus), log_(log), attributes_(options.paths.sysfs),
      journal_(options.paths.journal(), log), turbo_(turboWording(), turboDrivers()),
      lowPower_(lowPowerWording(), lowPowerDrivers()),
      configuration_(options.paths.runTimeConfiguration, options.users), holders_(bus),
      extensions_(ExtensionBundles(options.paths.extensions),
                  LoadedList(options.paths.loadedList()), turbo_, configuration_, holders_, log),
      sampler_(options.paths.processes), authority_(bus),
      commands_(extensions_, lowPower_, holders_, sampler_), object_(bus, authority_, commands_) {
    connect(&holders_, &Holders::abandoned, this, [this](const QString& thing) {
        commands_.abandon(thing);
        considerLeaving();
    });
    connect(&object_, &HelperObject::becameIdle, this, &Helper::considerLeaving);
    // Without the bus nobody can give up what he holds.
    bus_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                 QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SIGNAL(left()));
    idle_.setSingleShot(true);
    idle_.setTimerType(Qt::CoarseTimer);
    idle_.setInterval(options.idleLimit);
    connect(&idle_, &QTimer::timeout, this, &Helper::leave);
}

Helper::~Helper() = default;

template <class D>
void Helper::addAttributeDriver(PowerSwitch::Drivers& drivers) {
    auto driver = std::make_unique<D>(attributes_, journal_, log_);
    attributeDrivers_.append(driver.get());
    drivers.push_back(std::move(driver));
}

// The processor's own driver before the general switch, and that before its parts: a machine may
// show more than one of them, and they act on each other.
PowerSwitch::Drivers Helper::turboDrivers() {
    PowerSwitch::Drivers drivers;
    addAttributeDriver<IntelPstateTurbo>(drivers);
    addAttributeDriver<CpufreqBoost>(drivers);
    addAttributeDriver<PolicyBoost>(drivers);
    return drivers;
}

// The service before the firmware: it is what the user's own switch goes through.
PowerSwitch::Drivers Helper::lowPowerDrivers() {
    PowerSwitch::Drivers drivers;
    drivers.push_back(std::make_unique<PowerProfilesHold>(bus_));
    addAttributeDriver<PlatformProfile>(drivers);
    return drivers;
}

void Helper::putBackLeftovers() {
    for (AttributeDriver* const each : attributeDrivers_) {
        each->putBackLeftovers();
    }
    extensions_.forgetAll();
}

void Helper::putEverythingBack() {
    turbo_.releaseAll();
    lowPower_.releaseAll();
    extensions_.forgetAll();
}

bool Helper::serve() {
    if (!object_.isExported() || !bus_.registerService(helpernames::label)) {
        log_.write(QStringLiteral("The name %1 cannot be had on the system bus: %2")
                       .arg(helpernames::label, bus_.lastError().message()));
        return false;
    }
    idle_.start();
    return true;
}

void Helper::considerLeaving() {
    if (object_.isBusy() || !holders_.isEmpty()) {
        idle_.stop();
    } else {
        idle_.start();
    }
}

// With the name given up first, a call that comes now starts another helper. One that has come
// before and still waits is refused in words that have it sent again.
void Helper::leave() {
    if (object_.isBusy() || !holders_.isEmpty()) {
        return;
    }
    object_.leave();
    bus_.unregisterService(helpernames::label);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    // Asked of the bus behind those answers: once it replies, they are sent.
    [[maybe_unused]] const bool isFlushed =
        bus_.interface()->isServiceRegistered(helpernames::label).isValid();
    Q_EMIT left();
}

std::optional<QString> prepareRuntimeFolder(const QString& path) {
    constexpr mode_t forAllToRead = 0755;
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), forAllToRead) == 0) {
        return ::chmod(name.constData(), forAllToRead) == 0 // whatever the umask was
                   ? std::nullopt
                   : std::optional(qt_error_string(errno));
    }

    struct stat status {};

    if (::lstat(name.constData(), &status) != 0) {
        return qt_error_string(errno);
    }
    const bool isOwn = S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
                       (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    return isOwn ? std::nullopt : std::optional(QStringLiteral("it is not the helper's own"));
}

} // namespace quorvane
