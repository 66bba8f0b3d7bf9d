#include "platform/linux/processes/LinuxTasks.h"

#include "platform/linux/processes/ChildSignals.h"

#include <QProcess>

#include <utility>

namespace quorvane {

namespace {

// How long a process that is to end may take before something else is done, in milliseconds.
constexpr int patience = 500;

class ProcessTask final : public Task {
  public:
    ProcessTask(QString launchPath, const QStringList& arguments)
        : launchPath_(std::move(launchPath)) {
        process_.setProgram(launchPath_);
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
    QString launchPath_;
    QProcess process_;
};

/// A tool whose answer is known as soon as it is asked.
class AnsweredTask final : public Task {
  public:
    AnsweredTask(QString launchPath, LinuxTasks::StandIn standIn, const QStringList& arguments)
        : launchPath_(std::move(launchPath)), standIn_(std::move(standIn)) {
        for (const QString& each : arguments) {
            arguments_.push_back(each.toStdString());
        }
    }

    [[nodiscard]] QString launchPath() const override { return launchPath_; }

    bool launch() override {
        output_ = QByteArray::fromStdString(standIn_(arguments_));
        return true;
    }

    [[nodiscard]] bool isRunning() override { return false; }

    void terminate() override {}

    QByteArray readOutput() override { return std::exchange(output_, {}); }

  private:
    QString launchPath_;
    LinuxTasks::StandIn standIn_;
    std::vector<std::string> arguments_;
    QByteArray output_;
};

} // namespace

LinuxTasks::LinuxTasks(StandIns standIns) : standIns_(std::move(standIns)) {}

std::unique_ptr<Task> LinuxTasks::task(const QString& launchPath, const QStringList& arguments) {
    if (const auto standIn = standIns_.constFind(launchPath); standIn != standIns_.cend()) {
        return std::make_unique<AnsweredTask>(launchPath, *standIn, arguments);
    }
    return std::make_unique<ProcessTask>(launchPath, arguments);
}

} // namespace quorvane
