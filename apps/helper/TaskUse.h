#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <cstdint>

namespace quorvane {

/// What one process has used since it was started.
struct TaskUse {
    QByteArray name;
    qint64 startTime = 0;   ///< clock ticks from the machine's start
    qint64 userTicks = 0;   ///< of the processor, in the program's own code
    qint64 systemTicks = 0; ///< of the processor, in the kernel for it
    qint64 wakeUps = 0;     ///< how often one of its threads has gone to sleep and been woken
    int threads = 1;
};

using TaskUses = QHash<std::int32_t, TaskUse>;

/// The voluntary switches in the text of a /proc/PID/task/TID/status.
[[nodiscard]] qint64 wakeUpsFromStatus(const QByteArray& status);

/// Every process now, by its id. Reads a file for each process and each thread; of machines with
/// more than `threadLimit` threads only the first threads of some processes are counted. Any
/// thread.
[[nodiscard]] TaskUses readTaskUses(const QString& processes, int threadLimit = 16384);

} // namespace quorvane
