#include "apps/helper/TaskUse.h"

#include "platform/linux/BoundedFile.h"
#include "platform/linux/ProcessTable.h"

#include <QDir>
#include <QList>

namespace quorvane {

namespace {

constexpr qsizetype procLimit = 8192; // bytes of one file

// Counted from the state.
enum StatField { UserTicks = 11, SystemTicks = 12, Threads = 17, StartTime = 19 };

QByteArray textOf(const QString& path) {
    return readBounded(path, procLimit).value_or(QByteArray());
}

QStringList numbersIn(const QString& folder) {
    QStringList names = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::NoSort);
    names.removeIf([](const QString& name) { return !name.at(0).isDigit(); });
    return names;
}

qint64 wakeUpsOfThreads(const QString& process) {
    qint64 all = 0;
    const QString tasks = process + QStringLiteral("/task");
    for (const QString& thread : numbersIn(tasks)) {
        all += wakeUpsFromStatus(
            textOf(tasks + QLatin1Char('/') + thread + QStringLiteral("/status")));
    }
    return all;
}

} // namespace

std::optional<TaskUse> taskUseFromStat(const QByteArray& stat) {
    const std::optional<StatPieces> pieces = statPieces(stat);
    if (!pieces) {
        return std::nullopt;
    }
    const QList<QByteArray>& fields = pieces->fields;
    TaskUse use;
    use.name = pieces->name;
    use.userTicks = fields.at(UserTicks).toLongLong();
    use.systemTicks = fields.at(SystemTicks).toLongLong();
    use.threads = fields.at(Threads).toInt();
    use.startTime = fields.at(StartTime).toLongLong();
    return use;
}

qint64 wakeUpsFromStatus(const QByteArray& status) {
    constexpr QByteArrayView label("\nvoluntary_ctxt_switches:");
    const qsizetype place = status.indexOf(label);
    if (place < 0) {
        return 0;
    }
    const qsizetype start = place + label.size();
    return status.mid(start, status.indexOf('\n', start) - start).trimmed().toLongLong();
}

TaskUses readTaskUses(const QString& processes, int threadLimit) {
    TaskUses uses;
    int threadsLeft = threadLimit;
    for (const QString& id : numbersIn(processes)) {
        const QString process = processes + QLatin1Char('/') + id;
        std::optional<TaskUse> use = taskUseFromStat(textOf(process + QStringLiteral("/stat")));
        if (!use) {
            continue; // it has ended
        }
        const bool countsAll = use->threads > 1 && use->threads <= threadsLeft;
        use->wakeUps = countsAll ? wakeUpsOfThreads(process)
                                 : wakeUpsFromStatus(textOf(process + QStringLiteral("/status")));
        threadsLeft -= countsAll ? use->threads : 1;
        uses.insert(id.toInt(), *std::move(use));
    }
    return uses;
}

} // namespace quorvane
