#include "apps/helper/TaskReport.h"

#include <QList>

#include <algorithm>
#include <tuple>
#include <unistd.h>

namespace quorvane {

namespace {

struct TaskRow {
    QString name;
    std::int32_t pid = 0;
    double processor = 0.0;   // ms/s
    double userPercent = 0.0; // of that
    double wakeUps = 0.0;     // per second
};

// A process may call itself anything, also a title or the rows of others.
QString cellOf(const QByteArray& name) {
    QString cell = QString::fromUtf8(name);
    for (QChar& each : cell) {
        if (!each.isPrint() && !each.isSpace()) {
            each = QLatin1Char('?');
        }
    }
    cell = cell.simplified();
    if (cell.startsWith(QLatin1Char('*'))) {
        cell.prepend(QLatin1Char('?'));
    }
    return cell.isEmpty() ? QStringLiteral("?") : cell;
}

TaskRow taskRow(std::int32_t pid, const TaskUse& before, const TaskUse& after, double seconds) {
    static const double millisecondsInTick = 1000.0 / static_cast<double>(::sysconf(_SC_CLK_TCK));
    const auto user = static_cast<double>(after.userTicks - before.userTicks);
    const auto all = user + static_cast<double>(after.systemTicks - before.systemTicks);
    return {cellOf(after.name), pid, std::max(0.0, all) * millisecondsInTick / seconds,
            all > 0.0 ? std::clamp(user / all, 0.0, 1.0) * 100.0 : 0.0,
            std::max(0.0, static_cast<double>(after.wakeUps - before.wakeUps)) / seconds};
}

QString line(const QString& name, const QString& pid, const QString& processor,
             const QString& userPercent, const QString& wakeUps) {
    return QStringLiteral("%1  %2  %3  %4  %5")
        .arg(name.leftJustified(34), pid.leftJustified(7), processor.leftJustified(9),
             userPercent.leftJustified(6), wakeUps);
}

} // namespace

QStringList taskReport(const TaskUses& before, const TaskUses& after,
                       std::chrono::milliseconds elapsed, const QDateTime& now) {
    const double seconds = std::max(0.001, static_cast<double>(elapsed.count()) / 1000.0);
    QList<TaskRow> rows;
    for (auto task = after.cbegin(); task != after.cend(); ++task) {
        // One that was started meanwhile, also under the id of one that has ended, began with 0.
        const TaskUse former = before.value(task.key());
        const bool isSame = former.startTime == task->startTime;
        rows.append(taskRow(task.key(), isSame ? former : TaskUse(), *task, seconds));
    }
    std::sort(rows.begin(), rows.end(), [](const TaskRow& one, const TaskRow& other) {
        return std::tie(other.processor, other.wakeUps, one.pid) <
               std::tie(one.processor, one.wakeUps, other.pid);
    });
    QStringList lines{
        QStringLiteral("*** Sampled system activity (%1) (%2ms elapsed) ***")
            .arg(now.toString(Qt::ISODate))
            .arg(elapsed.count()),
        QString(),
        QStringLiteral("*** Running tasks ***"),
        QString(),
        line(QStringLiteral("Name"), QStringLiteral("ID"), QStringLiteral("CPU ms/s"),
             QStringLiteral("User%"), QStringLiteral("Wakeups")),
    };
    for (const TaskRow& row : rows) {
        lines +=
            line(row.name, QString::number(row.pid), QString::number(row.processor, 'f', 2),
                 QString::number(row.userPercent, 'f', 2), QString::number(row.wakeUps, 'f', 2));
    }
    return lines;
}

} // namespace quorvane
