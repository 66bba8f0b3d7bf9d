#include "mode/QuorvaneModule.h"

#include "core/QuorvanePrefs.h"
#include "core/TaskTimeout.h"
#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "platform/Processes.h"
#include "platform/Tasks.h"
#include "platform/Workspace.h"

namespace quorvane {

namespace {

constexpr Seconds commandLimit{15.0};

const QString& enabledKey() {
    static const QString key = QStringLiteral("enabled");
    return key;
}

} // namespace

void QuorvaneModule::init() {
    running_ = false;
    QuorvanePrefs::bindKey(enabledKey(), *this, enabledSetting());
    observe(enabledKey(), this, [this](const Change& change) { observeValue(change); });
}

void QuorvaneModule::observeValue(const Change& change) {
    if (change.key == enabledKey()) {
        updateRunning(modeIsOn_);
    }
}

void QuorvaneModule::toggleEnabled() {
    setEnabled(!enabled());
}

QString QuorvaneModule::label() const {
    return QStringLiteral("Untitled");
}

QString QuorvaneModule::imageName() const {
    return {};
}

QString QuorvaneModule::identifier() const {
    const QString name = QString::fromLatin1(metaObject()->className());
    return name.mid(name.lastIndexOf(u':') + 1);
}

QString QuorvaneModule::enabledSetting() const {
    return identifier() + QStringLiteral("Activated");
}

bool QuorvaneModule::activate() {
    return true;
}

bool QuorvaneModule::deactivate() {
    return true;
}

void QuorvaneModule::updateRunning(bool modeIsOn) {
    modeIsOn_ = modeIsOn;
    const bool due = modeIsOn && enabled();
    if (due == running_) {
        return;
    }
    if (due ? activate() : deactivate()) {
        running_ = due;
    } else {
        log(QString(due ? QStringLiteral("Failed to start %1")
                        : QStringLiteral("Failed to stop %1"))
                .arg(identifier()));
    }
}

QString QuorvaneModule::runCommand(const QString& launchPath, const QStringList& arguments) {
    const std::unique_ptr<Task> task = platform().tasks().task(launchPath, arguments);
    task->launch();
    runUntilTimeout(task.get(), commandLimit);
    return QString::fromUtf8(task->readOutput());
}

bool QuorvaneModule::setAppPausedWithPID(bool paused, std::int32_t pid) {
    // As a group, 1 would mean every process there is and 0 our own.
    if (pid <= 1) {
        log(QStringLiteral("No application has the process id %1; nothing is paused or resumed.")
                .arg(pid));
        return true;
    }
    queueOnMain(this, [this, paused, pid] {
        Processes& processes = platform().processes();
        if (paused) {
            processes.stop(pid);
        } else {
            processes.resume(pid);
        }
        log(QStringLiteral("Finished with kill command"));
    });
    return true;
}

bool QuorvaneModule::setAppPausedWithIdentifier(bool paused, const QString& identifier) {
    const auto running = platform().workspace().runningApplicationsWithBundleIdentifier(identifier);
    return !running.empty() && setAppPausedWithPID(paused, running.front().processIdentifier);
}

void QuorvaneModule::recieveNotification(const UserNotification& /*notification*/) {}

void QuorvaneModule::setEnabled(bool enabled) {
    setObserved(enabled_, enabled, enabledKey());
}

} // namespace quorvane
