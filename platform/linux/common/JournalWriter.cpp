#include "platform/linux/JournalWriter.h"

#include "platform/linux/ProcessTable.h"

#include <QFile>

#include <unistd.h>

namespace quorvane {

namespace {

std::optional<qint64> startTimeOf(qint64 pid) {
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    return stat.open(QIODevice::ReadOnly) ? startTimeFromStat(stat.readAll()) : std::nullopt;
}

} // namespace

JournalWriter JournalWriter::self() {
    const qint64 pid = ::getpid();
    return {pid, startTimeOf(pid).value_or(0)};
}

bool JournalWriter::isAlive() const {
    return startTimeOf(pid) == startTime;
}

std::optional<qint64> startTimeFromStat(const QByteArray& stat) {
    const std::optional<Process> process = processFromStat(stat);
    return process ? std::optional(process->identity.startTime) : std::nullopt;
}

} // namespace quorvane
