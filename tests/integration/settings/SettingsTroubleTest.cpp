#include "platform/linux/common/FileLock.h"
#include "tests/integration/settings/SettingsTest.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>

#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::test {

/// Files that cannot be parsed, read or written.
class SettingsTroubleTest : public SettingsTest {
  protected:
    struct Ended {
        int code = -1;
        QString log;
    };

    /// Stores the value in a program that is subject to file modes, which root is not. Nothing when
    /// there is no such program.
    [[nodiscard]] std::optional<Ended> setAsOrdinaryUser(const QString& value) const;

    [[nodiscard]] QString lockFile() const { return folder() + QLatin1String("/.test.conf.lock"); }

    const QString a = QStringLiteral("a");
};

std::optional<SettingsTroubleTest::Ended>
SettingsTroubleTest::setAsOrdinaryUser(const QString& value) const {
    QString program = QStringLiteral(QUORVANE_SETTINGS_HAMMER);
    QStringList arguments{QStringLiteral("set"), folder(), a, value};
    if (::geteuid() == 0) {
        // The build folder may be closed to others.
        const QString copy = root() + QLatin1String("/hammer");
        QFile::copy(program, copy);
        setMode(copy, 0755);
        setMode(root(), 0755);
        program = QStandardPaths::findExecutable(QStringLiteral("setpriv"));
        if (program.isEmpty()) {
            return std::nullopt;
        }
        arguments = QStringList{QStringLiteral("--reuid=65534"), QStringLiteral("--regid=65534"),
                                QStringLiteral("--clear-groups"), copy} +
                    arguments;
    }
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished()) {
        return std::nullopt;
    }
    return Ended{process.exitCode(), QString::fromUtf8(process.readAllStandardError())};
}

TEST_F(SettingsTroubleTest, EmptyFile_IsFine) {
    writeInPlace("");
    EXPECT_FALSE(domain().value(a).isValid());
    EXPECT_TRUE(domain().write(a, 1));
    EXPECT_EQ(read(), QByteArray("[General]\na=1\n"));
    EXPECT_TRUE(log_.lines.isEmpty());
}

struct UnparsableFile {
    const char* kind;
    QByteArray bytes;
};

const UnparsableFile unparsableFiles[] = {
    {"LineWithoutValue", "[General]\na=1\nno setting at all\n"},
    {"OpenSection", "[General\na=1\n"},
    {"ZerosAtTheEnd", QByteArray("[General]\na=1\n") + QByteArray(64, '\0')},
    {"Zeros", QByteArray(4096, '\0')},
    {"NotUtf8", "[General]\na=\xff\xfe\n"},
    {"Program", QByteArray("\x7f"
                           "ELF\x02\x01\x01\0\0\0",
                           10)},
};

class UnparsableSettingsTest : public SettingsTroubleTest,
                               public testing::WithParamInterface<UnparsableFile> {};

TEST_P(UnparsableSettingsTest, IsKeptAsideAndReportedOnce) {
    writeInPlace(GetParam().bytes);
    EXPECT_FALSE(domain().value(a).isValid());
    EXPECT_TRUE(domain().write(a, 1));
    EXPECT_EQ(read(file() + QLatin1String(".corrupt")), GetParam().bytes);
    EXPECT_EQ(read(), QByteArray("[General]\na=1\n"));
    EXPECT_EQ(log_.lines,
              QStringList{QStringLiteral("Settings file %1 cannot be parsed: it was kept as "
                                         "%1.corrupt, and default settings are used")
                              .arg(file())});
}

INSTANTIATE_TEST_SUITE_P(Kinds, UnparsableSettingsTest, testing::ValuesIn(unparsableFiles),
                         [](const auto& file) { return std::string(file.param.kind); });

TEST_F(SettingsTroubleTest, EarlierCorruptFiles_AreKeptToo) {
    writeInPlace(file() + QLatin1String(".corrupt"), "first");
    writeInPlace(file() + QLatin1String(".corrupt.1"), "second");
    writeInPlace("third");
    EXPECT_FALSE(domain().value(a).isValid());
    EXPECT_EQ(read(file() + QLatin1String(".corrupt")), QByteArray("first"));
    EXPECT_EQ(read(file() + QLatin1String(".corrupt.1")), QByteArray("second"));
    EXPECT_EQ(read(file() + QLatin1String(".corrupt.2")), QByteArray("third"));
}

TEST_F(SettingsTroubleTest, CorruptTargetOfASymbolicLink_IsKeptBesideTheTarget) {
    const QString target = root() + QLatin1String("/dotfiles/real.conf");
    writeInPlace(target, "garbage");
    QDir().mkpath(folder());
    ASSERT_TRUE(QFile::link(target, file()));
    EXPECT_TRUE(domain().write(a, 1));
    EXPECT_EQ(read(target + QLatin1String(".corrupt")), QByteArray("garbage"));
    EXPECT_EQ(read(target), QByteArray("[General]\na=1\n"));
}

TEST_F(SettingsTroubleTest, CorruptedWhileRunning_IsKeptAsideAndItsKeysAreGone) {
    EXPECT_TRUE(domain().write(a, 1));
    ASSERT_TRUE(waitForAnnouncement());
    writeInPlace("garbage");
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(announced().last(), QStringList{a});
    EXPECT_FALSE(domain().value(a).isValid());
    EXPECT_EQ(read(file() + QLatin1String(".corrupt")), QByteArray("garbage"));
    EXPECT_FALSE(QFile::exists(file()));
    EXPECT_EQ(log_.lines.size(), 1);
}

TEST_F(SettingsTroubleTest, CorruptedRightBeforeAWrite_IsKeptAside) {
    EXPECT_TRUE(domain().write(a, 1));
    writeInPlace("garbage");
    EXPECT_TRUE(domain().write(QStringLiteral("b"), 2));
    EXPECT_EQ(read(file() + QLatin1String(".corrupt")), QByteArray("garbage"));
    EXPECT_EQ(read(), QByteArray("[General]\nb=2\n"));
}

TEST_F(SettingsTroubleTest, CorruptFileInAProtectedFolder_StaysAndNothingIsWritten) {
    writeInPlace("garbage");
    writeInPlace(lockFile(), "");
    setMode(lockFile(), 0666);
    setMode(folder(), 0555);
    const auto ended = setAsOrdinaryUser(QStringLiteral("1"));
    setMode(folder(), 0755);
    if (!ended) {
        GTEST_SKIP() << "skipped: no setpriv";
    }
    EXPECT_EQ(ended->code, 1);
    EXPECT_TRUE(ended->log.contains(file())) << qPrintable(ended->log);
    EXPECT_EQ(read(), QByteArray("garbage"));
}

TEST_F(SettingsTroubleTest, FolderInPlaceOfTheFile_IsReportedAndLeftAlone) {
    QDir().mkpath(file() + QLatin1String("/inside"));
    EXPECT_FALSE(domain().value(a).isValid());
    ASSERT_EQ(log_.lines.size(), 1);
    EXPECT_TRUE(log_.lines[0].contains(file()));
    EXPECT_TRUE(log_.lines[0].contains(QLatin1String("a folder has its name")));
    EXPECT_FALSE(domain().write(a, 1));
    EXPECT_FALSE(domain().synchronize());
    EXPECT_TRUE(QFile::exists(file() + QLatin1String("/inside")));
    ASSERT_EQ(log_.lines.size(), 2);
    EXPECT_TRUE(log_.lines[1].contains(file()));
    EXPECT_TRUE(announced().isEmpty());
}

TEST_F(SettingsTroubleTest, FolderInPlaceOfTheFile_WorksOnceItIsMovedAway) {
    QDir().mkpath(file());
    EXPECT_FALSE(domain().write(a, 1));
    ASSERT_TRUE(QDir().rmdir(file()));
    EXPECT_TRUE(domain().write(a, 1));
    EXPECT_EQ(read(), QByteArray("[General]\na=1\n"));
}

TEST_F(SettingsTroubleTest, NamedPipeInPlaceOfTheFile_IsReportedAndNotWaitedFor) {
    QDir().mkpath(folder());
    ASSERT_EQ(::mkfifo(QFile::encodeName(file()).constData(), 0600), 0);
    EXPECT_FALSE(domain().write(a, 1));
    EXPECT_EQ(log_.lines.size(), 2);
}

TEST_F(SettingsTroubleTest, LinkThatPointsAtItself_IsReportedAndLeftAlone) {
    QDir().mkpath(folder());
    ASSERT_TRUE(QFile::link(file(), file()));
    EXPECT_FALSE(domain().write(a, 1));
    EXPECT_EQ(log_.lines.size(), 2);
}

TEST_F(SettingsTroubleTest, FileThatMayNotBeRead_IsNeverOverwritten) {
    writeInPlace("[General]\nb=1\n");
    setMode(file(), 0222);
    setMode(folder(), 0777);
    const auto ended = setAsOrdinaryUser(QStringLiteral("1"));
    if (!ended) {
        GTEST_SKIP() << "skipped: no setpriv";
    }
    EXPECT_EQ(ended->code, 1);
    EXPECT_EQ(ended->log.count(file()), 2) << qPrintable(ended->log);
    EXPECT_EQ(ended->log.count(QLatin1String("ermission denied")), 2) << qPrintable(ended->log);
    setMode(file(), 0600);
    EXPECT_EQ(read(), QByteArray("[General]\nb=1\n"));
}

TEST_F(SettingsTroubleTest, WriteProtectedFile_IsNotReplaced) {
    writeInPlace("[General]\na=0\n");
    setMode(file(), 0444);
    setMode(folder(), 0777);
    const auto ended = setAsOrdinaryUser(QStringLiteral("1"));
    if (!ended) {
        GTEST_SKIP() << "skipped: no setpriv";
    }
    EXPECT_EQ(ended->code, 1);
    EXPECT_TRUE(ended->log.contains(file())) << qPrintable(ended->log);
    EXPECT_EQ(read(), QByteArray("[General]\na=0\n"));
}

TEST_F(SettingsTroubleTest, UnreadableWhileRunning_KeepsTheKnownSettings) {
    EXPECT_TRUE(domain().write(a, 1));
    ASSERT_TRUE(waitForAnnouncement());
    const QString away = root() + QLatin1String("/away");
    ASSERT_TRUE(QFile::rename(file(), away));
    QDir().mkpath(file());
    EXPECT_FALSE(domain().synchronize());
    EXPECT_EQ(domain().value(a), QVariant(QStringLiteral("1")));
    ASSERT_TRUE(QDir().rmdir(file()));
    ASSERT_TRUE(QFile::rename(away, file()));
    EXPECT_TRUE(domain().synchronize());
    EXPECT_EQ(domain().value(a), QVariant(QStringLiteral("1")));
    EXPECT_EQ(announced().size(), 1);
    EXPECT_EQ(log_.lines.size(), 1);
}

TEST_F(SettingsTroubleTest, FolderThatCannotBeMade_IsReported) {
    writeInPlace(folder(), "a file");
    EXPECT_FALSE(domain().write(a, 1));
    ASSERT_EQ(log_.lines.size(), 1);
    EXPECT_TRUE(log_.lines[0].contains(file()));
    EXPECT_EQ(read(folder()), QByteArray("a file"));
}

TEST_F(SettingsTroubleTest, LockFileThatCannotBeOpened_IsReported) {
    QDir().mkpath(lockFile());
    EXPECT_FALSE(domain().write(a, 1));
    ASSERT_EQ(log_.lines.size(), 1);
    EXPECT_TRUE(log_.lines[0].contains(lockFile()));
    EXPECT_FALSE(QFile::exists(file()));
}

TEST_F(SettingsTroubleTest, LockThatIsNeverReleased_IsGivenUp) {
    EXPECT_TRUE(domain().write(a, 1));
    {
        const FileLock held(lockFile(), std::chrono::seconds(1));
        ASSERT_TRUE(held.isHeld());
        EXPECT_FALSE(domain().write(a, 2));
    }
    EXPECT_EQ(domain().value(a), QVariant(QStringLiteral("1")));
    ASSERT_EQ(log_.lines.size(), 1);
    EXPECT_TRUE(log_.lines[0].contains(lockFile()));
    EXPECT_TRUE(domain().write(a, 3));
}

TEST_F(SettingsTroubleTest, CorruptFileWhileTheLockIsHeld_IsKeptAsideLater) {
    writeInPlace("garbage");
    {
        const FileLock held(lockFile(), std::chrono::seconds(1));
        ASSERT_TRUE(held.isHeld());
        for (int i = 0; i < 100; ++i) {
            EXPECT_FALSE(domain().value(a).isValid());
        }
        EXPECT_EQ(log_.lines.size(), 1);
        EXPECT_EQ(read(), QByteArray("garbage"));
    }
    EXPECT_TRUE(domain().synchronize());
    EXPECT_EQ(read(file() + QLatin1String(".corrupt")), QByteArray("garbage"));
    EXPECT_EQ(log_.lines.size(), 2);
}

TEST_F(SettingsTroubleTest, TextThatCannotBeWrittenAsUtf8_IsRefused) {
    EXPECT_FALSE(domain().write(a, QString(QChar(0xD800))));
    ASSERT_EQ(log_.lines.size(), 1);
    EXPECT_TRUE(log_.lines[0].contains(file()));
}

TEST_F(SettingsTroubleTest, EmptyKey_IsRefused) {
    EXPECT_FALSE(domain().write(QString(), 1));
    EXPECT_EQ(log_.lines.size(), 1);
}

TEST_F(SettingsTroubleTest, LeftoversOfKilledWriters_AreRemovedByTheNextWrite) {
    for (const char* name :
         {".test.conf.tmp-aB3xYz", ".test.conf.tmp-aB3xYz.lock", ".test.conf.tmp-aB3xYz.q1W2e3"}) {
        writeInPlace(folder() + QLatin1Char('/') + QLatin1String(name), "left");
    }
    const QStringList others{
        QStringLiteral(".other.conf.tmp-aB3xYz"), QStringLiteral(".test.conf.tmp-"),
        QStringLiteral(".test.conf.tmp-aB3xYz.old"), QStringLiteral("test.conf.tmp-aB3xYz")};
    for (const QString& name : others) {
        writeInPlace(folder() + QLatin1Char('/') + name, "not ours");
    }
    EXPECT_TRUE(domain().write(a, 1));
    QStringList expected = others;
    expected << QStringLiteral(".test.conf.lock") << QStringLiteral("test.conf");
    expected.sort();
    QStringList found = names();
    found.sort();
    EXPECT_EQ(found, expected);
}

} // namespace quorvane::test
