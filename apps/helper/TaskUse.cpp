#include "apps/helper/TaskUse.h"

#include "platform/linux/common/BoundedFile.h"
#include "platform/linux/common/ProcessStat.h"

#include <QDir>

#include <utility>

namespace quorvane {

namespace {

constexpr qsizetype procLimit = 8192; // bytes of one file

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

TaskUse useOf(ProcessStat stat) {
    return {std::move(stat.name), stat.startTime, stat.userTicks, stat.systemTicks, 0,
            stat.threads};
}

} // namespace

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
        std::optional<ProcessStat> stat = ProcessStat::read(id.toLongLong(), processes);
        if (!stat) {
            continue; // it has ended
        }
        TaskUse use = useOf(*std::move(stat));
        const bool countsAll = use.threads > 1 && use.threads <= threadsLeft;
        use.wakeUps = countsAll ? wakeUpsOfThreads(process)
                                : wakeUpsFromStatus(textOf(process + QStringLiteral("/status")));
        threadsLeft -= countsAll ? use.threads : 1;
        uses.insert(id.toInt(), use);
    }
    return uses;
}

} // namespace quorvane
