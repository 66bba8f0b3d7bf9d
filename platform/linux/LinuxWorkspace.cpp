#include "platform/linux/LinuxWorkspace.h"

#include "platform/Log.h"
#include "platform/linux/ChildSignals.h"
#include "platform/linux/RunningCopies.h"

#include <QProcess>

#include <utility>

namespace quorvane {

LinuxWorkspace::LinuxWorkspace(const RunningCopies* copies, QString ownIdentifier, LogSink& log)
    : copies_(copies), ownIdentifier_(std::move(ownIdentifier)), log_(log) {}

std::vector<RunningApplication> LinuxWorkspace::runningApplications() const {
    return {};
}

std::optional<RunningApplication> LinuxWorkspace::frontmostApplication() const {
    return std::nullopt;
}

void LinuxWorkspace::hide(const RunningApplication& /*application*/) {}

void LinuxWorkspace::terminate(const RunningApplication& /*application*/) {}

int LinuxWorkspace::runningCopies(const QString& bundleIdentifier) const {
    return copies_ == nullptr ? 0 : copies_->count(bundleIdentifier, ownIdentifier_);
}

void LinuxWorkspace::openURL(const QUrl& url) {
    const QString address = url.toString(QUrl::FullyEncoded);
    if (!url.isValid() || url.isRelative()) {
        complain(address, QStringLiteral("it is no address"));
        return;
    }
    auto* const process = new QProcess(&processes_);
    process->setChildProcessModifier(releaseSignals);
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    QObject::connect(process, &QProcess::errorOccurred, process,
                     [this, process, address] { complain(address, process->errorString()); });
    // In a session of its own: what it starts, a browser at times, must not end with this program.
    process->start(QStringLiteral("setsid"),
                   {QStringLiteral("--fork"), QStringLiteral("xdg-open"), address});
}

void LinuxWorkspace::complain(const QString& address, const QString& reason) {
    log_.write(QStringLiteral("The page \"%1\" cannot be opened: %2").arg(address, reason));
}

} // namespace quorvane
