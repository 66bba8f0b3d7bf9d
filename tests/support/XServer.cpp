#include "tests/support/XServer.h"

#include "tests/support/WaitUntil.h"

#include <QFile>
#include <QStandardPaths>

namespace quorvane::test {

XServer::XServer() {
    const QString displayFile = folder_.filePath(QLatin1String("display"));
    // Xvfb takes a free display and writes its number to the descriptor as soon as it listens.
    daemon_.start(QLatin1String("/bin/sh"),
                  {QLatin1String("-c"),
                   QLatin1String("exec Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp "
                                 "-noreset 3>\"$0\""),
                   displayFile},
                  folder_.filePath(QLatin1String("xvfb.log")));

    QByteArray number;
    const bool up = waitUntil([&] {
        QFile file(displayFile);
        number = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return number.endsWith('\n') || !daemon_.isRunning();
    });
    if (up && number.endsWith('\n')) {
        display_ = QLatin1Char(':') + QString::fromLatin1(number.trimmed());
        qputenv("DISPLAY", display_.toLatin1());
        qunsetenv("WAYLAND_DISPLAY");
    }
}

bool XServer::isAvailable() {
    return !QStandardPaths::findExecutable(QLatin1String("Xvfb")).isEmpty();
}

} // namespace quorvane::test
