#include "modules/TurboModule.h"

#include "helperclient/HelperTool.h"
#include "platform/Bundle.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/OperatingSystem.h"
#include "platform/Platform.h"
#include "platform/SleepEvents.h"
#include "plist/PropertyList.h"

#include <algorithm>
#include <compare>

namespace quorvane {

namespace {

const QString configurationFile = QStringLiteral("/tmp/CPUTuneTurboBoostRT.conf");
const QString extensionType = QStringLiteral("kext");

QString textOrNull(const std::optional<QString>& text) {
    return text.value_or(QStringLiteral("(null)"));
}

QString lastPathComponent(const std::optional<QString>& path) {
    return path ? path->section(QLatin1Char('/'), -1) : textOrNull(path);
}

/// Nobody but the helper's root reads it, and that is a service that may not open what the user
/// keeps private.
QString errorOfConfiguring(const char* turbo) {
    return platform()
        .files()
        .writeAtomically(configurationFile, turbo, Files::Readers::Everybody)
        .error;
}

bool isDigit(QChar character) {
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

/// Takes the number at the beginning of the text off it, without leading zeros.
QStringView takeNumber(QStringView& text) {
    const auto* const end = std::find_if_not(text.begin(), text.end(), isDigit);
    const QStringView all(text.begin(), end);
    text = QStringView(end, text.end());
    return {
        std::find_if(all.begin(), all.end(), [](QChar each) { return each != QLatin1Char('0'); }),
        all.end()};
}

/// By characters, but with numbers in them as numbers, however long.
std::strong_ordering compareVersions(QStringView left, QStringView right) {
    while (!left.isEmpty() && !right.isEmpty()) {
        if (isDigit(left.front()) && isDigit(right.front())) {
            const QStringView leftNumber = takeNumber(left);
            const QStringView rightNumber = takeNumber(right);
            if (leftNumber.size() != rightNumber.size()) {
                return leftNumber.size() <=> rightNumber.size();
            }
            if (const int order = leftNumber.compare(rightNumber); order != 0) {
                return order <=> 0;
            }
        } else if (left.front() != right.front()) {
            return left.front().unicode() <=> right.front().unicode();
        } else {
            left = left.mid(1);
            right = right.mid(1);
        }
    }
    return left.size() <=> right.size();
}

} // namespace

void TurboModule::init() {
    QuorvaneModule::init();
    isVentura_ = platform().operatingSystem().isVersion13OrLater();
    if (isVentura_) {
        log(QStringLiteral("Is Ventura"));
    } else {
        log(QStringLiteral("Is NOT Ventura"));
        if (kextRunning()) {
            loadKext();
        }
    }
    if (isVentura_) {
        running() ? disableTurboBoost() : enableTurboBoost();
    }
    fileNotifications();
}

QString TurboModule::label() const {
    return QStringLiteral("Slowing Down Processor");
}

QString TurboModule::imageName() const {
    return QStringLiteral("icon-turbo");
}

bool TurboModule::activate() {
    return disableTurboBoost();
}

bool TurboModule::deactivate() {
    return enableTurboBoost();
}

void TurboModule::fileNotifications() {
    const SleepEvents& sleepEvents = platform().sleepEvents();
    connect(&sleepEvents, &SleepEvents::willSleep, this, &TurboModule::receiveSleepNote);
    connect(&sleepEvents, &SleepEvents::didWake, this, &TurboModule::receiveWakeNote);
}

void TurboModule::receiveSleepNote() {
    log(QStringLiteral("Going to Sleep: Disable CPU module"));
    enableTurboBoost();
}

void TurboModule::receiveWakeNote() {
    if (running()) {
        log(QStringLiteral("Wake from Sleep: Re-enable CPU module"));
        disableTurboBoost();
    } else {
        log(QStringLiteral("Wake from Sleep: CPU module still disabled"));
    }
}

bool TurboModule::isIntelProcessor() {
    return platform().operatingSystem().machine() == QStringLiteral("x86_64");
}

std::optional<QString> TurboModule::kextPath() {
    return platform().bundle().pathForResource(QStringLiteral("CPUTune"), extensionType);
}

std::optional<QString> TurboModule::kextPathVentura() {
    return platform().bundle().pathForResource(QStringLiteral("DisableTurboBoost.64bits"),
                                               extensionType);
}

std::optional<QString> TurboModule::kextVersion() {
    const std::optional<QByteArray> info = platform().bundle().resource(
        QStringLiteral("CPUTune.kext/Contents/Info"), QStringLiteral("plist"));
    const PropertyListResult list = info ? readPropertyList(*info) : PropertyListResult();
    const QVariant version =
        list.value ? list.value->toMap().value(QStringLiteral("CFBundleVersion")) : QVariant();
    return version.metaType() == QMetaType::fromType<QString>() ? std::optional(version.toString())
                                                                : std::nullopt;
}

std::optional<QString> TurboModule::runningKextVersion() {
    QString list = runCommand(QStringLiteral("/usr/sbin/kextstat"),
                              {QStringLiteral("-l"), QStringLiteral("-b"),
                               QStringLiteral("com.TarnwickStudios.cputune")});
    const QStringList pieces =
        list.replace(QLatin1Char(')'), QLatin1Char('(')).split(QLatin1Char('('));
    return pieces.size() >= 2 ? std::optional(pieces.at(1)) : std::nullopt;
}

bool TurboModule::kextRunning() {
    return runningKextVersion().has_value();
}

bool TurboModule::kextNeedsUpdate() {
    const std::optional<QString> available = kextVersion();
    const std::optional<QString> running = runningKextVersion();
    log(QStringLiteral("Checked kext version: (Available: %1, Running: %2)")
            .arg(textOrNull(available), textOrNull(running)));
    return available && running && std::is_gt(compareVersions(*available, *running));
}

void TurboModule::executeInHelper(const std::function<void(HelperToolProtocol& proxy)>& block) {
    HelperTool::helperTool().safeExecuteBlock(block);
}

void TurboModule::load(HelperToolProtocol& proxy, const Path& path) {
    proxy.loadModuleNamed(
        path.value_or(QString()), [name = lastPathComponent(path)](const QString& reply) {
            log(QStringLiteral("Attempted loading kext [%1]: %2").arg(name, reply));
        });
}

void TurboModule::unload(HelperToolProtocol& proxy, const Path& path) {
    proxy.unloadModuleNamed(
        path.value_or(QString()), [name = lastPathComponent(path)](const QString& reply) {
            log(QStringLiteral("Attempted unloading kext [%1]: %2").arg(name, reply));
        });
}

void TurboModule::loadKext() {
    const Path path = kextPath();
    if (!kextRunning()) {
        log(QStringLiteral("Installing Kext (CPUTune)..."));
        executeInHelper([&path](HelperToolProtocol& proxy) { load(proxy, path); });
    } else if (kextNeedsUpdate()) {
        log(QStringLiteral("Upgrading Kext..."));
        executeInHelper([&path](HelperToolProtocol& proxy) {
            unload(proxy, path);
            load(proxy, path);
        });
    }
}

void TurboModule::unloadKext() {
    log(QStringLiteral("Unloading Kext..."));
    executeInHelper([](HelperToolProtocol& proxy) { unload(proxy, kextPath()); });
}

bool TurboModule::disableTurboBoost() {
    if (!isVentura_) {
        loadKext();
        if (const QString error = errorOfConfiguring("0"); !error.isEmpty()) {
            log(QStringLiteral("Error disabling Turbo Boost: %1").arg(error));
        }
    } else if (isIntelProcessor()) {
        const Path path = kextPathVentura();
        log(QStringLiteral("Installing Kext (DisableTurboBoost)..."));
        executeInHelper([&path](HelperToolProtocol& proxy) { load(proxy, path); });
    } else {
        executeInHelper([](HelperToolProtocol& proxy) {
            proxy.enableLowPowerMode([](const QString& reply) {
                log(QStringLiteral("Attempted disable macOS low power mode: %1").arg(reply));
            });
        });
    }
    return true;
}

bool TurboModule::enableTurboBoost() {
    if (!isVentura_) {
        if (const QString error = errorOfConfiguring("1"); !error.isEmpty()) {
            log(QStringLiteral("Error enabling Turbo Boost: %1").arg(error));
        }
    } else if (isIntelProcessor()) {
        log(QStringLiteral("Unloading Kext..."));
        const Path path = kextPathVentura();
        executeInHelper([&path](HelperToolProtocol& proxy) { unload(proxy, path); });
    } else {
        executeInHelper([](HelperToolProtocol& proxy) {
            proxy.disableLowPowerMode([](const QString& reply) {
                // The same words as for switching it on: logs are searched for them.
                log(QStringLiteral("Attempted disable macOS low power mode: %1").arg(reply));
            });
        });
    }
    return true;
}

} // namespace quorvane
