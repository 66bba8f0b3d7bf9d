#pragma once

#include "platform/linux/processes/ProcessTable.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <set>

namespace quorvane {

/// What a program is that the session cannot do without, for the log, or nothing. `name` is a file
/// name, or a process's name as the kernel keeps it, cut after 15 bytes.
[[nodiscard]] QString roleOfProgram(const QString& name);

/// The processes that are never stopped, whoever asks for it: a desktop in which one of them stands
/// still can often not even be used to resume it.
class ProtectedProcesses {
  public:
    /// `self` is Quorvane's process and `user` who it runs for. The table has to outlive this.
    ProtectedProcesses(const ProcessTable& table, std::int32_t self, std::uint32_t user);

    /// Why the process is never stopped, as the end of a sentence; empty when it may be.
    /// `application` is the main process of the application that it would be stopped with.
    [[nodiscard]] QString reason(std::int32_t pid, std::int32_t application) const;

  private:
    const ProcessTable& table_;
    std::int32_t self_;
    std::uint32_t user_;
    std::set<std::int32_t> ancestors_;
};

} // namespace quorvane
