#pragma once

#include "platform/linux/processes/ProcessFiles.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <map>
#include <optional>
#include <tuple>
#include <vector>

namespace quorvane {

/// Tells one process from every other, also from a later one that has got its id.
struct ProcessIdentity {
    std::int32_t pid = 0;
    qint64 startTime = 0; ///< clock ticks from the machine's start to the process's

    [[nodiscard]] bool operator==(const ProcessIdentity&) const = default;

    [[nodiscard]] bool operator<(const ProcessIdentity& other) const {
        return std::tie(pid, startTime) < std::tie(other.pid, other.startTime);
    }
};

/// What the kernel says of one process in /proc/PID/stat.
struct Process {
    ProcessIdentity identity;
    std::int32_t parent = 0;
    std::int32_t group = 0;   ///< 0 when it was made outside of this PID namespace
    std::int32_t session = 0; ///< the id of the process that leads it
    bool hasTerminal = false;
    bool isStopped = false; ///< by a signal or by a debugger
    QByteArray name;        ///< cut by the kernel after 15 bytes

    [[nodiscard]] std::int32_t pid() const { return identity.pid; }

    [[nodiscard]] bool leadsSession() const { return session == identity.pid; }

    [[nodiscard]] bool operator==(const Process&) const = default;
};

/// One look at all processes. What is told of a single one beyond `Process` is read when it is
/// asked for; a process that has ended by then has nothing to tell.
class ProcessTable {
  public:
    [[nodiscard]] static ProcessTable read(const QString& procFolder = QStringLiteral("/proc"));

    /// One process as it is now.
    [[nodiscard]] static std::optional<Process>
    look(std::int32_t pid, const QString& procFolder = QStringLiteral("/proc"));

    [[nodiscard]] const Process* find(std::int32_t pid) const;

    [[nodiscard]] bool holds(const ProcessIdentity& identity) const;

    /// By id.
    [[nodiscard]] const std::map<std::int32_t, Process>& all() const& { return processes_; }

    void all() && = delete; // a loop over a table that is gone

    /// Its parent, the parent's parent and so on.
    [[nodiscard]] std::vector<std::int32_t> ancestorsOf(std::int32_t pid) const;

    /// The path of the program that it runs. Empty when that is not ours to know.
    [[nodiscard]] QString programOf(std::int32_t pid) const;

    /// The program's file name.
    [[nodiscard]] QString executableOf(std::int32_t pid) const;

    /// The control group of the `ApplicationUnit` that it is in. Empty when it is in none.
    [[nodiscard]] QByteArray applicationUnitOf(std::int32_t pid) const;

    /// Whether it runs for this user and with this user's rights.
    [[nodiscard]] bool belongsTo(std::int32_t pid, std::uint32_t user) const;

    /// Whether it was started as the shell of a login, which the first argument's "-" tells.
    [[nodiscard]] bool isLoginShell(std::int32_t pid) const;

  private:
    [[nodiscard]] ProcessFiles filesOf(std::int32_t pid) const {
        return ProcessFiles(pid, procFolder_);
    }

    QString procFolder_;
    std::map<std::int32_t, Process> processes_;
};

} // namespace quorvane
