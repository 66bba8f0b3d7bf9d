#include "platform/linux/windows/WindowProcess.h"

#include "platform/linux/processes/ChildSignals.h"

#include <csignal>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

constexpr int endLimitMilliseconds = 500;

} // namespace

WindowProcess::WindowProcess(QString program, QObject* parent)
    : QObject(parent), program_(std::move(program)) {
    connect(&process_, &QProcess::finished, this, &WindowProcess::finished);
    connect(&process_, &QProcess::errorOccurred, this, &WindowProcess::failed);
    // A window of a program that has crashed would ask for something that nobody does any more.
    process_.setChildProcessModifier([parent = ::getpid()] {
        endWithParent(parent, SIGTERM);
        releaseSignals();
    });
}

WindowProcess::~WindowProcess() {
    process_.disconnect(this);
    if (isRunning()) {
        process_.terminate();
        process_.waitForFinished(endLimitMilliseconds); // what is left then is killed
    }
}

void WindowProcess::start(const QStringList& arguments, const QByteArray& input) {
    process_.start(program_, arguments);
    process_.write(input);
    process_.closeWriteChannel();
}

void WindowProcess::finished(int exitCode, QProcess::ExitStatus status) {
    const QByteArray output = process_.readAllStandardOutput();
    if (status == QProcess::CrashExit) {
        Q_EMIT ended(output, QStringLiteral("the program %1 has crashed").arg(program_));
    } else {
        Q_EMIT ended(output, exitCode == 0 ? QString() : lastWords());
    }
}

void WindowProcess::failed(QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) {
        Q_EMIT ended({}, QStringLiteral("the program %1 cannot be started (%2)")
                             .arg(program_, process_.errorString()));
    }
}

QString WindowProcess::lastWords() {
    constexpr qsizetype longest = 500;
    const QString words = QString::fromUtf8(process_.readAllStandardError().left(longest));
    const QString line = words.trimmed().section(QLatin1Char('\n'), -1);
    return line.isEmpty() ? QStringLiteral("the program %1 has failed").arg(program_) : line;
}

} // namespace quorvane
