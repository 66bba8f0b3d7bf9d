#include "platform/linux/helperclient/LinuxAuthorization.h"

#include "platform/linux/processes/ChildSignals.h"

#include <QFileInfo>
#include <QProcess>

#include <utility>

namespace quorvane {

LinuxAuthorization::LinuxAuthorization(QString pkexec) : pkexec_(std::move(pkexec)) {}

std::unique_ptr<AuthorizationRef> LinuxAuthorization::create() {
    return std::make_unique<AuthorizationRef>();
}

std::optional<QByteArray> LinuxAuthorization::externalForm(const AuthorizationRef& /*ref*/) {
    return QByteArray(externalFormLength, '\0');
}

Authorization::RightStatus LinuxAuthorization::right(const QString& /*name*/) {
    return RightStatus::Exists;
}

bool LinuxAuthorization::setRight(const AuthorizationRef& /*ref*/, const QString& /*name*/,
                                  const QString& /*rule*/, const QString& /*description*/,
                                  const QString& /*table*/) {
    return false;
}

int LinuxAuthorization::executeWithPrivileges(const AuthorizationRef& /*ref*/, const QString& tool,
                                              const QStringList& arguments) {
    if (!QFileInfo(pkexec_).isExecutable()) {
        return toolExecuteFailure;
    }
    // pkexec acts for its parent and refuses to act for one that has ended, so something of the
    // user's session has to wait for it.
    QProcess process;
    process.setProgram(QStringLiteral("/usr/bin/setsid"));
    process.setArguments(QStringList{QStringLiteral("--fork"), QStringLiteral("--wait"), pkexec_,
                                     QStringLiteral("--disable-internal-agent"), tool} +
                         arguments);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier(releaseSignals);
    return process.startDetached() ? 0 : toolExecuteFailure;
}

} // namespace quorvane
