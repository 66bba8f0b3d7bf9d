#include "ui/DebugInformation.h"

#include "helperclient/HelperTool.h"
#include "platform/Bundle.h"
#include "platform/DeviceInformation.h"
#include "platform/Platform.h"

#include <array>
#include <optional>

namespace quorvane {

namespace {

QString orNull(const QString& text) {
    return text.isEmpty() ? QStringLiteral("(null)") : text;
}

QString helperVersion() {
    const std::optional<double> version = HelperTool::helperTool().versionNumber();
    return version ? QString::number(*version, 'g', 15) : QString();
}

} // namespace

QString debugInformation() {
    const Bundle& bundle = platform().bundle();
    const QVariantMap info = bundle.infoDictionary();
    const DeviceInformation* const known = platform().deviceInformation();
    const DeviceInformation device = known != nullptr ? *known : DeviceInformation{};
    const bool hasHelper = HelperTool::helperTool().isHelperToolInstalled();
    const std::array lines{
        QStringLiteral("Bundle ID: ") + bundle.identifier(),
        QStringLiteral("Quorvane version: %1 (r%2)")
            .arg(info.value(QStringLiteral("CFBundleShortVersionString")).toString(),
                 info.value(QStringLiteral("CFBundleVersion")).toString()),
        QStringLiteral("Helper Tool installed: ") +
            (hasHelper ? QStringLiteral("YES") : QStringLiteral("NO")),
        QStringLiteral("Helper Tool version: ") + orNull(helperVersion()),
        // The other edition never runs this code.
        QStringLiteral("Setapp version: NO"),
        QStringLiteral("Device: ") + orNull(device.rawSystemInfoString),
        QStringLiteral("OS: %1.%2.%3")
            .arg(device.osVersion.major)
            .arg(device.osVersion.minor)
            .arg(device.osVersion.patch),
        QStringLiteral("RAM: %1 GB").arg(device.physicalMemory, 0, 'f', 3),
        QStringLiteral("CPU: %1 GHz (%2 cores)")
            .arg(device.cpuFrequency, 0, 'f', 3)
            .arg(device.cpuCores),
    };
    return QStringList(lines.begin(), lines.end()).join(QLatin1Char('\n'));
}

} // namespace quorvane
