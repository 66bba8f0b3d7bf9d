#include "tests/support/XServer.h"

#include "tests/support/WaitUntil.h"

#include <QCoreApplication>
#include <QFile>
#include <QStandardPaths>

namespace quorvane::test {

namespace {

/// Tests that run at the same time take the lowest free number, and would take this one while the
/// server that has it is restarted.
QString displayOfThisProcess() {
    constexpr qint64 first = 1000;
    constexpr qint64 count = 50000; // the highest that there is lies just below 60,000
    return QStringLiteral(":%1").arg(first + QCoreApplication::applicationPid() % count);
}

} // namespace

XServer::XServer() {
    if (start(displayOfThisProcess())) {
        qputenv("DISPLAY", display_.toLatin1());
        qunsetenv("WAYLAND_DISPLAY");
    }
}

bool XServer::restart() {
    return start(display_);
}

bool XServer::start(const QString& display) {
    const QString displayFile = folder_.filePath(QLatin1String("display"));
    QFile::remove(displayFile);
    // Xvfb writes the number to the descriptor as soon as it listens.
    daemon_.start(QLatin1String("/bin/sh"),
                  {QLatin1String("-c"),
                   QLatin1String("exec Xvfb $1 -displayfd 3 -screen 0 1280x800x24 -nolisten tcp "
                                 "-noreset 3>\"$0\""),
                   displayFile, display},
                  folder_.filePath(QLatin1String("xvfb.log")));

    QByteArray number;
    const bool up = waitUntil([&] {
        QFile file(displayFile);
        number = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return number.endsWith('\n') || !daemon_.isRunning();
    });
    if (!up || !number.endsWith('\n')) {
        return false;
    }
    display_ = QLatin1Char(':') + QString::fromLatin1(number.trimmed());
    return true;
}

bool XServer::isAvailable() {
    return !QStandardPaths::findExecutable(QLatin1String("Xvfb")).isEmpty();
}

} // namespace quorvane::test
