#pragma once

#include "platform/Tasks.h"

#include <QHash>

namespace quorvane {

/// Child processes through QProcess.
class LinuxTasks final : public Tasks {
  public:
    /// By the path of a tool that this system does not have, the program that does its work here
    /// and takes the same arguments. It has to end by itself at once: launching waits for that,
    /// because whoever waits for a task looks only every second.
    using StandIns = QHash<QString, QString>;

    explicit LinuxTasks(StandIns standIns = {});

    [[nodiscard]] std::unique_ptr<Task> task(const QString& launchPath,
                                             const QStringList& arguments) override;

  private:
    StandIns standIns_;
};

} // namespace quorvane
