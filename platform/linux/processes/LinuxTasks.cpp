#include "platform/linux/LinuxTasks.h"

#include "platform/linux/ChildSignals.h"

#include <QProcess>

#include <utility>

namespace quorvane {

namespace {

// How long a process that is to end may take before something else is done, in milliseconds.
constexpr int patience = 500;

class ProcessTask final : public Task {
  public:
    /// `standIn` is the program that is really run, or empty.
    ProcessTask(QString launchPath, const QString& standIn, const QStringList& arguments)
        : launchPath_(std::move(launchPath)), isStandIn_(!standIn.isEmpty()) {
        process_.setProgram(isStandIn_ ? standIn : launchPath_);
        process_.setArguments(arguments);
        process_.setStandardInputFile(QProcess::nullDevice());
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.setChildProcessModifier(releaseSignals);
    }

    // QProcess would wait half a minute for a child that does not end.
    ~ProcessTask() override { terminate(); }

    ProcessTask(const ProcessTask&) = delete;
    ProcessTask& operator=(const ProcessTask&) = delete;

    [[nodiscard]] QString launchPath() const override { return launchPath_; }

    bool launch() override {
        process_.start(QIODevice::ReadOnly);
        if (!process_.waitForStarted()) {
            return false;
        }
        if (isStandIn_) {
            process_.waitForFinished(patience);
        }
        return true;
    }

    // Nobody runs an event loop for it while its owner waits: QProcess has to be asked to look.
    [[nodiscard]] bool isRunning() override {
        return process_.state() != QProcess::NotRunning && !process_.waitForFinished(0) &&
               process_.state() != QProcess::NotRunning;
    }

    void terminate() override {
        if (process_.state() == QProcess::NotRunning) {
            return;
        }
        process_.terminate();
        if (!process_.waitForFinished(patience)) {
            process_.kill();
            process_.waitForFinished(patience);
        }
    }

    QByteArray readOutput() override { return process_.readAllStandardOutput(); }

  private:
    QString launchPath_;
    bool isStandIn_;
    QProcess process_;
};

} // namespace

LinuxTasks::LinuxTasks(StandIns standIns) : standIns_(std::move(standIns)) {}

std::unique_ptr<Task> LinuxTasks::task(const QString& launchPath, const QStringList& arguments) {
    return std::make_unique<ProcessTask>(launchPath, standIns_.value(launchPath), arguments);
}

} // namespace quorvane
