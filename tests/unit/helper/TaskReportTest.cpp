#include "apps/helper/TaskReport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <unistd.h>

namespace quorvane::test {
namespace {

using std::chrono::milliseconds;

TaskUse use(const char* name, qint64 user, qint64 system, qint64 wakeUps, qint64 start = 7) {
    return {name, start, user, system, wakeUps, 1};
}

/// Cells by the rules of whoever reads the report: two blanks or more between them.
QStringList cells(const QString& line) {
    QStringList all;
    for (const QString& each : line.split(QStringLiteral("  "))) {
        if (!each.trimmed().isEmpty()) {
            all += each.trimmed();
        }
    }
    return all;
}

QStringList rowOf(const TaskUses& before, const TaskUses& after) {
    return cells(taskReport(before, after, milliseconds(1000), QDateTime::currentDateTime()).at(5));
}

TEST(TaskReportTest, Layout_IsATitleOfTheSectionThenTheColumnsThenARowForEach) {
    const TaskUses after{{12, use("mail", 5, 5, 31)}, {13, use("idle", 0, 0, 0)}};
    const QStringList lines =
        taskReport(TaskUses(), after, milliseconds(1003), QDateTime::fromSecsSinceEpoch(0));
    ASSERT_EQ(lines.size(), 7);
    EXPECT_TRUE(lines.at(0).startsWith(QLatin1String("*** Sampled system activity (")));
    EXPECT_TRUE(lines.at(0).endsWith(QLatin1String(" (1003ms elapsed) ***")));
    EXPECT_EQ(lines.at(2), QStringLiteral("*** Running tasks ***"));
    EXPECT_EQ(cells(lines.at(4)),
              QStringList({QStringLiteral("Name"), QStringLiteral("ID"), QStringLiteral("CPU ms/s"),
                           QStringLiteral("User%"), QStringLiteral("Wakeups")}));
    EXPECT_EQ(cells(lines.at(5)).size(), 5);
    EXPECT_EQ(cells(lines.at(6)).size(), 5);
}

TEST(TaskReportTest, Figures_AreTheDifferencesInASecond) {
    const double tick = 1000.0 / static_cast<double>(::sysconf(_SC_CLK_TCK));
    const TaskUses before{{12, use("mail", 100, 50, 1000)}};
    const TaskUses after{{12, use("mail", 130, 60, 1062)}};
    const QStringList row =
        cells(taskReport(before, after, milliseconds(2000), QDateTime::currentDateTime()).at(5));
    EXPECT_EQ(row.at(0), QStringLiteral("mail"));
    EXPECT_EQ(row.at(1), QStringLiteral("12"));
    EXPECT_DOUBLE_EQ(row.at(2).toDouble(), 40 * tick / 2.0);
    EXPECT_DOUBLE_EQ(row.at(3).toDouble(), 75.0);
    EXPECT_DOUBLE_EQ(row.at(4).toDouble(), 31.0);
}

TEST(TaskReportTest, IdThatALaterProcessHas_CountsFromItsStart) {
    const TaskUses before{{12, use("old", 900, 0, 900, 7)}};
    const TaskUses after{{12, use("new", 0, 0, 3, 8)}};
    EXPECT_EQ(rowOf(before, after).at(4), QStringLiteral("3.00"));
}

TEST(TaskReportTest, BusiestProcess_ComesFirst) {
    const TaskUses after{{1, use("calm", 1, 0, 9)}, {2, use("busy", 90, 0, 0)}};
    EXPECT_EQ(rowOf(TaskUses(), after).at(0), QStringLiteral("busy"));
}

TEST(TaskReportTest, NamesOfEveryKind_StayOneCell) {
    const std::pair<const char*, const char*> names[] = {
        {"two  blanks", "two blanks"},
        {"*** Title ***", "?*** Title ***"},
        {"line\nend", "line end"},
        {"\x1b[31mred", "?[31mred"},
        {"", "?"},
        {"   ", "?"},
        {"\xff\xfe", "\xef\xbf\xbd\xef\xbf\xbd"},
        {"Web Content", "Web Content"},
    };
    for (const auto& [name, shown] : names) {
        const QStringList row = rowOf(TaskUses(), {{12, use(name, 1, 0, 0)}});
        ASSERT_EQ(row.size(), 5) << shown;
        EXPECT_EQ(row.at(0).toStdString(), QString::fromUtf8(shown).toStdString());
    }
}

/// A folder like /proc.
class TaskUseTest : public testing::Test {
  protected:
    void put(const QString& path, const QByteArray& text) const {
        const QString place = folder.filePath(path);
        QDir().mkpath(QFileInfo(place).path());
        QFile file(place);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    void putProcess(int pid, int threads) const {
        const QString place = QString::number(pid);
        put(place + QStringLiteral("/stat"), QByteArray::number(pid) +
                                                 " (p) S 1 1 1 0 -1 0 0 0 0 0 1 2 0 0 20 0 " +
                                                 QByteArray::number(threads) + " 0 99 1 1\n");
        put(place + QStringLiteral("/status"), status(5));
        for (int thread = 0; thread < threads; ++thread) {
            put(QStringLiteral("%1/task/%2/status").arg(place).arg(pid + thread), status(5));
        }
    }

    static QByteArray status(int wakeUps) {
        return "Name:\tp\nvoluntary_ctxt_switches:\t" + QByteArray::number(wakeUps) +
               "\nnonvoluntary_ctxt_switches:\t77\n";
    }

    QTemporaryDir folder;
};

TEST_F(TaskUseTest, WakeUps_AreThoseOfAllThreads) {
    putProcess(10, 1);
    putProcess(20, 4);
    put(QStringLiteral("self/stat"), "no process");
    const TaskUses uses = readTaskUses(folder.path());
    ASSERT_EQ(uses.size(), 2);
    EXPECT_EQ(uses.value(10).wakeUps, 5);
    EXPECT_EQ(uses.value(20).wakeUps, 20);
}

TEST_F(TaskUseTest, Figures_AreThoseOfTheKernelsLine) {
    putProcess(10, 1);
    put(QStringLiteral("10/stat"),
        "10 (a) b (c) S 1 811 811 0 -1 4194304 1 2 3 4 21 34 55 89 20 0 1 0 5811 4464640 746\n");
    const TaskUse use = readTaskUses(folder.path()).value(10);
    EXPECT_EQ(use.name, "a) b (c");
    EXPECT_EQ(use.userTicks, 21);
    EXPECT_EQ(use.systemTicks, 34);
    EXPECT_EQ(use.startTime, 5811);
}

TEST_F(TaskUseTest, MoreThreadsThanTheLimit_CountTheFirstOnly) {
    putProcess(20, 9);
    EXPECT_EQ(readTaskUses(folder.path(), 8).value(20).wakeUps, 5);
    EXPECT_EQ(readTaskUses(folder.path(), 9).value(20).wakeUps, 45);
}

TEST_F(TaskUseTest, ProcessThatHasEndedMeanwhile_IsLeftOut) {
    QDir().mkpath(folder.filePath(QStringLiteral("30")));
    EXPECT_TRUE(readTaskUses(folder.path()).isEmpty());
}

} // namespace
} // namespace quorvane::test
