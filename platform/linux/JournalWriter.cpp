#include "platform/linux/JournalWriter.h"

#include <QFile>
#include <QList>

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
    // "PID (NAME) STATE PPID ..."; the name may hold blanks and brackets. Counted from the state,
    // which is field 3 of proc(5), the start time is number 19.
    constexpr qsizetype startTimeIndex = 22 - 3;
    const qsizetype nameEnd = stat.lastIndexOf(") ");
    if (nameEnd < 0) {
        return std::nullopt;
    }
    const QList<QByteArray> fields = stat.mid(nameEnd + 2).split(' ');
    const QByteArray& state = fields.constFirst();
    if (fields.size() <= startTimeIndex || state == "Z" || state == "X") {
        return std::nullopt;
    }
    bool isNumber = false;
    const qint64 startTime = fields.at(startTimeIndex).toLongLong(&isNumber);
    return isNumber ? std::optional(startTime) : std::nullopt;
}

} // namespace quorvane
