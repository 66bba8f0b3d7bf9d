#include "platform/linux/common/JournalWriter.h"

#include "platform/linux/common/ProcessStat.h"

#include <unistd.h>

namespace quorvane {

namespace {

/// Nothing when the process has ended.
std::optional<qint64> startTimeOf(qint64 pid) {
    const std::optional<ProcessStat> stat = ProcessStat::read(pid);
    return stat && !stat->hasEnded() ? std::optional(stat->startTime) : std::nullopt;
}

} // namespace

JournalWriter JournalWriter::self() {
    const qint64 pid = ::getpid();
    return {pid, startTimeOf(pid).value_or(0)};
}

bool JournalWriter::isAlive() const {
    return startTimeOf(pid) == startTime;
}

} // namespace quorvane
