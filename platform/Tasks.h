#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

namespace quorvane {

/// One child process. Used by one thread at a time.
class Task {
  public:
    virtual ~Task() = default;

    [[nodiscard]] virtual QString launchPath() const = 0;

    /// Starts it. Returns false when it could not be started; it then does not run.
    virtual bool launch() = 0;

    [[nodiscard]] virtual bool isRunning() = 0;

    /// Asks the process to end and gives it up: afterwards it does not run.
    virtual void terminate() = 0;

    /// Standard output so far, or all of it once the task has ended.
    virtual QByteArray readOutput() = 0;
};

/// Starts programs by absolute path and argument list, never through a shell.
class Tasks {
  public:
    virtual ~Tasks() = default;

    [[nodiscard]] virtual std::unique_ptr<Task> task(const QString& launchPath,
                                                     const QStringList& arguments) = 0;
};

} // namespace quorvane
