#include "platform/linux/session/LinuxOpener.h"

#include "platform/Log.h"
#include "platform/linux/processes/ChildSignals.h"

#include <QProcess>

namespace quorvane {

void LinuxOpener::openURL(const QUrl& url) {
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

void LinuxOpener::complain(const QString& address, const QString& reason) {
    log_.write(QStringLiteral("The page \"%1\" cannot be opened: %2").arg(address, reason));
}

} // namespace quorvane
