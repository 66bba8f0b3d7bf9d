#pragma once

#include "platform/Tasks.h"

#include <QHash>

#include <functional>
#include <string>
#include <vector>

namespace quorvane {

/// Child processes through QProcess; for some tools no process at all.
class LinuxTasks final : public Tasks {
  public:
    /// Answers for a tool that this system does not have: what it writes to standard output, from
    /// the same arguments. Runs within `launch`, on its thread, so it must not wait for anything:
    /// the task has ended when `launch` returns, and whoever waits for it does not wait.
    using StandIn = std::function<std::string(const std::vector<std::string>& arguments)>;

    /// By the path of the tool.
    using StandIns = QHash<QString, StandIn>;

    explicit LinuxTasks(StandIns standIns = {});

    [[nodiscard]] std::unique_ptr<Task> task(const QString& launchPath,
                                             const QStringList& arguments) override;

  private:
    StandIns standIns_;
};

} // namespace quorvane
