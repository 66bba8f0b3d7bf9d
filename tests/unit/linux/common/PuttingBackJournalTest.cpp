#include "platform/linux/common/PuttingBackJournal.h"

#include "tests/support/RecordingLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace quorvane::test {
namespace {

class PuttingBackJournalTest : public testing::Test {
  protected:
    [[nodiscard]] QString path() const {
        return folder.filePath(QStringLiteral("quorvane/putting-back.journal"));
    }

    [[nodiscard]] QByteArray text(const QString& ofFile) const {
        QFile file(ofFile);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void write(const QByteArray& contents) const {
        QDir().mkpath(QFileInfo(path()).path());
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }

    static JournalEntry entry(const char* key, const JournalWriter& writer) {
        return {QStringLiteral("display"), QLatin1String(key), 700, QJsonArray{350}, writer};
    }

    bool add(PuttingBackJournal& to, const char* key) const {
        return to.update([&](PuttingBackJournal::Entries& entries) {
            entries.push_back(entry(key, to.self()));
        });
    }

    QTemporaryDir folder;
    RecordingLog log;
    PuttingBackJournal journal{path(), log};
    const JournalWriter dead{1LL << 40, 5};
};

TEST_F(PuttingBackJournalTest, Line_IsOneJsonObject) {
    const JournalEntry display = entry("intel_backlight", {811, 20410});
    const QByteArray line = journalLine(display);
    EXPECT_EQ(line.toStdString(), R"({"found":700,"key":"intel_backlight","kind":"display",)"
                                  R"("pid":811,"set":[350],"start":20410})");
    EXPECT_EQ(journalEntry(line), display);
}

TEST_F(PuttingBackJournalTest, Line_HoldsOtherKindsToo) {
    const JournalEntry radio{QStringLiteral("radio"), QStringLiteral("wlan0"), true, false, {7, 8}};
    EXPECT_EQ(journalEntry(journalLine(radio)), radio);
    const JournalEntry named{QStringLiteral("process"),
                             QStringLiteral("12:34"),
                             QStringLiteral("running\n\"q\" é"),
                             QStringLiteral("stopped"),
                             {7, 8}};
    EXPECT_FALSE(journalLine(named).contains('\n'));
    EXPECT_EQ(journalEntry(journalLine(named)), named);
}

TEST_F(PuttingBackJournalTest, LineWithFurtherMembers_IsRead) {
    EXPECT_TRUE(
        journalEntry(R"({"kind":"display","key":"k","found":1,"set":2,"pid":3,"start":4,"x":5})"));
}

TEST_F(PuttingBackJournalTest, OtherLines_AreNoEntries) {
    EXPECT_FALSE(journalEntry(""));
    EXPECT_FALSE(journalEntry("{"));
    EXPECT_FALSE(journalEntry("[1]"));
    EXPECT_FALSE(journalEntry("{}"));
    EXPECT_FALSE(journalEntry(R"({"kind":"display","key":"k","found":1,"pid":3,"start":4})"));
    EXPECT_FALSE(journalEntry(R"({"kind":"display","key":"k","found":1,"set":2,"start":4})"));
    EXPECT_FALSE(journalEntry(R"({"kind":9,"key":"k","found":1,"set":2,"pid":3,"start":4})"));
}

TEST_F(PuttingBackJournalTest, NoFile_NoEntriesAndNothingIsCreated) {
    EXPECT_EQ(journal.entries(), PuttingBackJournal::Entries());
    EXPECT_FALSE(QFile::exists(QFileInfo(path()).path()));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(PuttingBackJournalTest, Update_IsSeenByAnotherReader) {
    ASSERT_TRUE(add(journal, "panel"));
    PuttingBackJournal other(path(), log);
    EXPECT_EQ(other.entries(), PuttingBackJournal::Entries{entry("panel", journal.self())});
}

TEST_F(PuttingBackJournalTest, FolderAndFile_AreTheOwnersOnly) {
    ASSERT_TRUE(add(journal, "panel"));
    constexpr auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                            QFileDevice::ExeGroup | QFileDevice::ReadOther |
                            QFileDevice::WriteOther | QFileDevice::ExeOther;
    EXPECT_FALSE(QFile::permissions(QFileInfo(path()).path()) & others);
    EXPECT_FALSE(QFile::permissions(path()) & others);
}

TEST_F(PuttingBackJournalTest, LastEntryStruckOff_LeavesNoFile) {
    ASSERT_TRUE(add(journal, "panel"));
    ASSERT_TRUE(journal.update([](PuttingBackJournal::Entries& entries) { entries.clear(); }));
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(PuttingBackJournalTest, EntriesOfOthersAndOtherKinds_StayThroughAnUpdate) {
    const JournalEntry radio{QStringLiteral("radio"), QStringLiteral("wlan0"), true, false, dead};
    write(journalLine(radio) + '\n');
    ASSERT_TRUE(add(journal, "panel"));
    EXPECT_EQ(journal.entries(),
              (PuttingBackJournal::Entries{radio, entry("panel", journal.self())}));
}

TEST_F(PuttingBackJournalTest, MayAlter_OwnEntriesAndThoseOfTheDead) {
    EXPECT_TRUE(journal.mayAlter(entry("panel", journal.self())));
    EXPECT_TRUE(journal.mayAlter(entry("panel", dead)));
    const PuttingBackJournal other(path(), log, dead);
    EXPECT_FALSE(other.mayAlter(entry("panel", JournalWriter::self())));
}

TEST_F(PuttingBackJournalTest, UnreadableLines_AreReportedOnceAndMovedAside) {
    const QByteArray good = journalLine(entry("panel", dead));
    write("{\"broken\n" + good + "\n\nrubbish\n");
    ASSERT_EQ(journal.entries(), PuttingBackJournal::Entries{entry("panel", dead)});
    EXPECT_TRUE(log.contains("line 1, 4"));
    EXPECT_EQ(text(path()), good + '\n');
    EXPECT_EQ(text(path() + QStringLiteral(".unreadable")), "{\"broken\nrubbish\n");

    const auto reported = log.lines().size();
    EXPECT_TRUE(journal.entries());
    EXPECT_EQ(log.lines().size(), reported);
}

TEST_F(PuttingBackJournalTest, UnreadableLinesOfLaterTimes_JoinTheEarlierOnes) {
    write("one\n");
    ASSERT_TRUE(journal.entries());
    write("two\n");
    ASSERT_TRUE(journal.entries());
    EXPECT_EQ(text(path() + QStringLiteral(".unreadable")), "one\ntwo\n");
}

TEST_F(PuttingBackJournalTest, UnreadableLinesThatCannotBeMoved_StayAndNothingIsWritten) {
    write("rubbish\n");
    QDir().mkpath(path() + QStringLiteral(".unreadable"));
    EXPECT_FALSE(journal.entries());
    EXPECT_FALSE(add(journal, "panel"));
    EXPECT_EQ(text(path()), "rubbish\n");
}

TEST_F(PuttingBackJournalTest, FileThatCannotBeRead_IsNotOverwritten) {
    QDir().mkpath(path());
    EXPECT_FALSE(journal.entries());
    EXPECT_FALSE(add(journal, "panel"));
    EXPECT_TRUE(QFileInfo(path()).isDir());
    EXPECT_EQ(log.lines().size(), 1) << "the same reason is told once";
}

TEST_F(PuttingBackJournalTest, FolderThatCannotBeMade_FailsUntilItCan) {
    QFile obstacle(QFileInfo(path()).path());
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();
    EXPECT_FALSE(add(journal, "panel"));
    EXPECT_FALSE(add(journal, "panel"));
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.contains("putting-back.journal"));

    ASSERT_TRUE(obstacle.remove());
    EXPECT_TRUE(add(journal, "panel"));
}

TEST_F(PuttingBackJournalTest, NoRunTimeFolder_Fails) {
    PuttingBackJournal homeless(QString(), log);
    EXPECT_EQ(homeless.entries(), PuttingBackJournal::Entries());
    EXPECT_FALSE(add(homeless, "panel"));
    EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(PuttingBackJournalTest, LockedByAnother_FailsAndLeavesTheFile) {
    ASSERT_TRUE(add(journal, "panel"));
    const int descriptor = ::open(QFile::encodeName(path() + QStringLiteral(".lock")).constData(),
                                  O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(descriptor, LOCK_EX), 0);
    EXPECT_FALSE(add(journal, "second"));
    ::close(descriptor);
    EXPECT_EQ(journal.entries().value_or(PuttingBackJournal::Entries()).size(), 1U);
    EXPECT_TRUE(add(journal, "second"));
}

TEST_F(PuttingBackJournalTest, DefaultPath_LiesInTheSessionsRunTimeFolder) {
    const QByteArray former = qgetenv("XDG_RUNTIME_DIR");
    QFile::setPermissions(folder.path(),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
    EXPECT_EQ(PuttingBackJournal::defaultPath(), path());
    if (former.isNull()) {
        qunsetenv("XDG_RUNTIME_DIR");
    } else {
        qputenv("XDG_RUNTIME_DIR", former);
    }
}

} // namespace
} // namespace quorvane::test
