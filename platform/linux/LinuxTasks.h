#pragma once

#include "platform/Tasks.h"

namespace quorvane {

/// Child processes through QProcess.
class LinuxTasks final : public Tasks {
  public:
    [[nodiscard]] std::unique_ptr<Task> task(const QString& launchPath,
                                             const QStringList& arguments) override;
};

} // namespace quorvane
