#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>

namespace quorvane {

/// What the kernel says of a process in /proc/PID/stat, "PID (NAME) STATE PPID ...": whoever wants
/// one of its fields takes it from here.
struct ProcessStat {
    std::int32_t pid = 0;
    QByteArray name; ///< cut by the kernel after 15 bytes; may hold blanks and brackets
    char state = 0;
    std::int32_t parent = 0;
    std::int32_t group = 0;    ///< 0 when it was made outside of this PID namespace
    std::int32_t session = 0;  ///< the id of the process that leads it
    std::int32_t terminal = 0; ///< a device's number; 0: none
    qint64 userTicks = 0;      ///< of the processor, in the program's own code
    qint64 systemTicks = 0;    ///< of the processor, in the kernel for it
    int threads = 1;
    qint64 startTime = 0; ///< clock ticks from the machine's start to the process's

    /// Nothing when the text is none of that kind.
    [[nodiscard]] static std::optional<ProcessStat> parse(const QByteArray& text);

    /// A process as it is now; nothing when there is none. Any thread.
    [[nodiscard]] static std::optional<ProcessStat>
    read(qint64 pid, const QString& procFolder = QStringLiteral("/proc"));

    /// It only waits for its parent to collect it.
    [[nodiscard]] bool hasEnded() const { return state == 'Z' || state == 'X'; }

    /// By a signal or by a debugger.
    [[nodiscard]] bool isStopped() const { return state == 'T' || state == 't'; }
};

} // namespace quorvane
