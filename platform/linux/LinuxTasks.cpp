#include "platform/linux/LinuxTasks.h"

#include "platform/linux/ChildSignals.h"

#include <QProcess>

#include <algorithm>

namespace quorvane {

namespace {

// How long a process that was asked to end may take before it is killed, in milliseconds.
constexpr int patience = 500;

bool isNegativeNumber(const QString& argument) {
    return argument.size() > 1 && argument.at(0) == QLatin1Char('-') &&
           std::all_of(argument.begin() + 1, argument.end(),
                       [](QChar each) { return each.isDigit(); });
}

/// A process group is named to kill by a negative number. The kill of procps 4.0.2, which Debian 12
/// has, takes such a number for an option, reads its first digit as the target, and makes
/// "-STOP -17002" a signal to every process there is. Behind "--" no kill does that.
QStringList unmistakable(const QString& launchPath, QStringList arguments) {
    if (!launchPath.endsWith(QLatin1String("/kill")) || arguments.size() < 2 ||
        arguments.contains(QLatin1String("--"))) {
        return arguments;
    }
    // The first argument is the signal, which may be a number too.
    const auto target = std::find_if(arguments.begin() + 1, arguments.end(), isNegativeNumber);
    if (target != arguments.end()) {
        arguments.insert(target, QStringLiteral("--"));
    }
    return arguments;
}

class ProcessTask final : public Task {
  public:
    ProcessTask(const QString& launchPath, const QStringList& arguments) {
        process_.setProgram(launchPath);
        process_.setArguments(unmistakable(launchPath, arguments));
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
