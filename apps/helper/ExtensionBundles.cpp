#include "apps/helper/ExtensionBundles.h"

#include "platform/linux/common/BoundedFile.h"
#include "plist/PropertyList.h"

#include <QFile>
#include <QVariantMap>

#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

constexpr qsizetype infoLimit = 65536; // bytes

// Neither a link nor anything that somebody else could have written.
bool isOwnersAlone(const QString& path) {
    struct stat status {};

    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && !S_ISLNK(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

} // namespace

const QString ExtensionBundles::cpuTune = QStringLiteral("CPUTune.kext");
const QString ExtensionBundles::disableTurboBoost = QStringLiteral("DisableTurboBoost.64bits.kext");

ExtensionBundles::ExtensionBundles(QString folder) : folder_(std::move(folder)) {}

std::optional<QString> ExtensionBundles::meant(const QString& path) {
    QStringView rest(path);
    while (rest.endsWith(QLatin1Char('/'))) {
        rest.chop(1);
    }
    const QStringView last = rest.mid(rest.lastIndexOf(QLatin1Char('/')) + 1);
    for (const QString& name : {cpuTune, disableTurboBoost}) {
        if (last == name) {
            return name;
        }
    }
    return std::nullopt;
}

std::optional<Extension> ExtensionBundles::find(const QString& name) const {
    QString place = folder_;
    bool isTrusted = isOwnersAlone(place);
    for (const QString& step : {name, QStringLiteral("Contents"), QStringLiteral("Info.plist")}) {
        place += QLatin1Char('/') + step;
        isTrusted = isTrusted && isOwnersAlone(place);
    }
    const std::optional<QByteArray> info = isTrusted ? readBounded(place, infoLimit) : std::nullopt;
    const PropertyListResult list = info ? readPropertyList(*info) : PropertyListResult{};
    const QVariantMap entries = list.value ? list.value->toMap() : QVariantMap();
    Extension extension{name, entries.value(QStringLiteral("CFBundleIdentifier")).toString(),
                        entries.value(QStringLiteral("CFBundleVersion")).toString()};
    const bool isComplete = !extension.identifier.isEmpty() && !extension.version.isEmpty();
    return isComplete ? std::optional(std::move(extension)) : std::nullopt;
}

} // namespace quorvane
