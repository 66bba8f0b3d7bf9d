#include "platform/linux/LinuxWorkspace.h"

#include "platform/Log.h"
#include "platform/linux/RunningCopies.h"

#include <QProcess>

#include <utility>

namespace quorvane {

LinuxWorkspace::LinuxWorkspace(const RunningCopies* copies, QString ownIdentifier, LogSink& log)
    : copies_(copies), ownIdentifier_(std::move(ownIdentifier)), log_(log) {}

std::optional<std::int32_t>
LinuxWorkspace::processIdentifierOf(const QString& /*bundleIdentifier*/) const {
    return std::nullopt;
}

int LinuxWorkspace::runningApplicationsWithBundleIdentifier(const QString& bundleIdentifier) const {
    return copies_ == nullptr ? 0 : copies_->count(bundleIdentifier, ownIdentifier_);
}

void LinuxWorkspace::openURL(const QUrl& url) {
    const QString address = url.toString(QUrl::FullyEncoded);
    if (!url.isValid() || url.isRelative() ||
        !QProcess::startDetached(QStringLiteral("xdg-open"), {address})) {
        log_.write(QStringLiteral("The page \"%1\" cannot be opened here; is xdg-utils installed?")
                       .arg(address));
    }
}

} // namespace quorvane
