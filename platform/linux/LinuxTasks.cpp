#include "platform/linux/LinuxTasks.h"

#include "platform/linux/ChildSignals.h"

#include <QProcess>

namespace quorvane {

namespace {

// How long a process that was asked to end may take before it is killed, in milliseconds.
constexpr int patience = 500;

class ProcessTask final : public Task {
  public:
    ProcessTask(const QString& launchPath, const QStringList& arguments) {
        process_.setProgram(launchPath);
        process_.setArguments(arguments);
        process_.setStandardInputFile(QProcess::nullDevice());
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.setChildProcessModifier(releaseSignals);
    }

    // QProcess would wait half a minute for a child that does not end.
    ~ProcessTask() override { terminate(); }

    ProcessTask(const ProcessTask&) = delete;
    ProcessTask& operator=(const ProcessTask&) = delete;

    [[nodiscard]] QString launchPath() const override { return process_.program(); }

    bool launch() override {
        process_.start(QIODevice::ReadOnly);
        return process_.waitForStarted();
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
    QProcess process_;
};

} // namespace

std::unique_ptr<Task> LinuxTasks::task(const QString& launchPath, const QStringList& arguments) {
    return std::make_unique<ProcessTask>(launchPath, arguments);
}

} // namespace quorvane
