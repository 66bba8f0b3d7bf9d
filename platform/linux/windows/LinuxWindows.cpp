#include "platform/linux/windows/LinuxWindows.h"

#include "platform/Log.h"
#include "platform/linux/windows/LinuxWindow.h"
#include "platform/linux/windows/WindowProcess.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace quorvane {

namespace {

QByteArray description(const Alert& alert) {
    return QJsonDocument(
               QJsonObject{{QStringLiteral("messageText"), alert.messageText},
                           {QStringLiteral("informativeText"), alert.informativeText},
                           {QStringLiteral("buttons"), QJsonArray::fromStringList(alert.buttons)},
                           {QStringLiteral("safeButton"), alert.safeButton}})
        .toJson(QJsonDocument::Compact);
}

/// The button that the output names, or the safe one.
int buttonIn(const QByteArray& output, const Alert& alert) {
    bool isNumber = false;
    const int button = output.trimmed().toInt(&isNumber);
    return isNumber && button >= 0 && button < alert.buttons.size() ? button : alert.safeButton;
}

} // namespace

LinuxWindows::LinuxWindows(const QString& contentsFolder, LogSink& log)
    : program_(contentsFolder + QStringLiteral("/Linux/quorvane-window")),
      resources_(contentsFolder + QStringLiteral("/Resources")), log_(log) {}

LinuxWindows::~LinuxWindows() = default;

std::unique_ptr<Window> LinuxWindows::loadNibNamed(const QString& name) {
    const QString file = QStringLiteral("%1/%2.ui").arg(resources_, name);
    if (!QFileInfo(file).isReadable()) {
        log_.write(QStringLiteral("The window layout %1 cannot be read").arg(file));
        return nullptr;
    }
    return std::make_unique<LinuxWindow>(program_, file, log_);
}

void LinuxWindows::runModal(const Alert& alert, std::function<void(int button)> answered) {
    auto* const process = new WindowProcess(program_, &processes_);
    const auto ended = [this, process, alert, answered = std::move(answered)](
                           const QByteArray& output, const QString& error) {
        process->deleteLater();
        if (!error.isEmpty()) {
            log_.write(QStringLiteral("The message \"%1\" could not be shown: %2")
                           .arg(alert.messageText, error));
        }
        answered(error.isEmpty() ? buttonIn(output, alert) : alert.safeButton);
    };
    QObject::connect(process, &WindowProcess::ended, process, ended);
    QMetaObject::invokeMethod(
        process,
        [process, alert] { process->start({QStringLiteral("alert")}, description(alert)); },
        Qt::QueuedConnection);
}

void LinuxWindows::setString(const QString& text) {
    clipboard_ = std::make_unique<WindowProcess>(program_);
    clipboard_->start({QStringLiteral("copy")}, text.toUtf8());
}

} // namespace quorvane
