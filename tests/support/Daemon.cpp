#include "tests/support/Daemon.h"

#include "platform/linux/processes/ChildSignals.h"

#include <QProcessEnvironment>

#include <csignal>
#include <unistd.h>

namespace quorvane::test {

Daemon::~Daemon() {
    stop();
}

bool Daemon::start(const QString& program, const QStringList& arguments, const QString& logFile,
                   const QStringList& environment) {
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const QString& entry : environment) {
        variables.insert(entry.section(QLatin1Char('='), 0, 0), entry.section(QLatin1Char('='), 1));
    }
    process_.setProcessEnvironment(variables);
    process_.setStandardInputFile(QProcess::nullDevice());
    process_.setStandardOutputFile(logFile, QIODevice::Append);
    process_.setStandardErrorFile(logFile, QIODevice::Append);
    // A test that is killed must not leave its services running.
    process_.setChildProcessModifier([parent = ::getpid()] { endWithParent(parent, SIGKILL); });
    process_.start(program, arguments);
    return process_.waitForStarted(5000);
}

void Daemon::stop() {
    if (process_.state() == QProcess::NotRunning) {
        return;
    }
    process_.terminate();
    if (!process_.waitForFinished(2000)) {
        kill();
    }
}

void Daemon::kill() {
    process_.kill();
    process_.waitForFinished(5000);
}

} // namespace quorvane::test
