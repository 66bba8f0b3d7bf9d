#include "platform/linux/windows/LinuxWindow.h"

#include "platform/Log.h"

#include <utility>

namespace quorvane {

LinuxWindow::LinuxWindow(QString program, QString layoutFile, LogSink& log)
    : program_(std::move(program)), layoutFile_(std::move(layoutFile)), log_(log) {}

void LinuxWindow::makeKeyAndOrderFront() {
    if (process_) {
        return;
    }
    process_ = std::make_unique<WindowProcess>(program_);
    connect(process_.get(), &WindowProcess::ended, this,
            [this](const QByteArray&, const QString& error) { ended(error); });
    QMetaObject::invokeMethod(
        process_.get(), [this] { open(); }, Qt::QueuedConnection);
}

void LinuxWindow::open() {
    QStringList arguments{QStringLiteral("window"), layoutFile_, QStringLiteral("--level"),
                          QString::number(level_)};
    if ((behavior_ & canJoinAllSpaces) != 0) {
        arguments.append(QStringLiteral("--all-desktops"));
    }
    if (isCentered_) {
        arguments.append(QStringLiteral("--center"));
    }
    process_->start(arguments);
}

void LinuxWindow::ended(const QString& error) {
    process_.release()->deleteLater(); // it is the one that emits right now
    if (!error.isEmpty()) {
        log_.write(QStringLiteral("The window of %1 was not shown to its end: %2")
                       .arg(layoutFile_, error));
    }
    Q_EMIT willClose();
}

} // namespace quorvane
