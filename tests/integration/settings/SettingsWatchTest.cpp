#include "tests/integration/settings/SettingsTest.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>

namespace quorvane::test {

using namespace std::chrono_literals;

/// Changes made elsewhere, and when they are seen.
class SettingsWatchTest : public SettingsTest {
  protected:
    /// An editor that saves in steps. On a busy machine it may happen to be held up for longer than
    /// editors are waited for, and then proves nothing.
    class SlowEditor {
      public:
        explicit SlowEditor(const QString& path) : out_(path) {
            EXPECT_TRUE(
                out_.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered));
            sinceStep_.start();
        }

        void write(const QByteArray& part) {
            EXPECT_EQ(out_.write(part), part.size());
            longestStep_ = std::max(longestStep_, sinceStep_.restart());
        }

        /// In milliseconds, until the step had been made.
        [[nodiscard]] qint64 longestStep() const { return longestStep_; }

      private:
        QFile out_;
        QElapsedTimer sinceStep_;
        qint64 longestStep_ = 0;
    };

    /// In milliseconds; less than what editors are given by as much as a timer may be early.
    static constexpr qint64 tooSlow = 95;

    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");

    QString valueOf(const QString& key) { return domain().value(key).toString(); }
};

TEST_F(SettingsWatchTest, ChangedByAnotherProgram_IsAnnounced) {
    EXPECT_TRUE(domain().write(a, 1));
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_TRUE(elsewhere().write(b, 2));
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(announced().last(), QStringList{b});
    EXPECT_TRUE(elsewhere().write(a, QVariant()));
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(announced().last(), QStringList{a});
    EXPECT_FALSE(domain().value(a).isValid());
}

TEST_F(SettingsWatchTest, ChangedByHandInPlace_AnnouncesOnlyWhatChanged) {
    writeInPlace("[General]\na=1\nb=2\n");
    domain();
    writeInPlace("[General]\nb=3\na=1\nc=4\n");
    ASSERT_TRUE(waitForAnnouncement());
    const QStringList expected{b, QStringLiteral("c")};
    EXPECT_EQ(announced().last(), expected);
    EXPECT_EQ(valueOf(b), QLatin1String("3"));
}

TEST_F(SettingsWatchTest, ChangedByHandInPlace_AgainAndAgain) {
    domain();
    for (int i = 0; i < 20; ++i) {
        writeInPlace("[General]\na=" + QByteArray::number(i) + "\n");
        ASSERT_TRUE(waitForAnnouncement());
        EXPECT_EQ(valueOf(a).toInt(), i);
    }
    EXPECT_EQ(announced().size(), 20);
}

TEST_F(SettingsWatchTest, ChangedByHandThroughRename_AgainAndAgain) {
    domain();
    for (int i = 0; i < 20; ++i) {
        writeByRename("[General]\na=" + QByteArray::number(i) + "\n");
        ASSERT_TRUE(waitForAnnouncement());
        EXPECT_EQ(valueOf(a).toInt(), i);
    }
    EXPECT_EQ(announced().size(), 20);
}

TEST_F(SettingsWatchTest, ChangedByHandWithABackup_AnnouncesOnlyWhatChanged) {
    writeInPlace("[General]\na=1\nb=2\n");
    domain();
    // As some editors save: the old file becomes the backup, then a new one is written.
    QElapsedTimer sinceRename;
    sinceRename.start();
    ASSERT_TRUE(QFile::rename(file(), file() + QLatin1Char('~')));
    run(20ms);
    SlowEditor editor(file());
    run(20ms);
    editor.write("[General]\na=1\nb=3\n");
    if (sinceRename.elapsed() >= tooSlow) {
        GTEST_SKIP() << "skipped: the machine is too busy";
    }
    ASSERT_TRUE(QFile::remove(file() + QLatin1Char('~')));
    ASSERT_TRUE(waitForAnnouncement());
    run(200ms);
    EXPECT_EQ(announced(), QList<QStringList>{QStringList{b}});
}

TEST_F(SettingsWatchTest, ChangedByHandWithoutALastLineEnd_IsSeen) {
    writeInPlace("[General]\na=1\n");
    domain();
    writeInPlace("[General]\na=2");
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(valueOf(a), QLatin1String("2"));
}

TEST_F(SettingsWatchTest, LineRemovedByHand_IsAnnounced) {
    writeInPlace("[General]\na=1\nb=2\n");
    domain();
    writeInPlace("[General]\nb=2\n");
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(announced().last(), QStringList{a});
    EXPECT_FALSE(domain().value(a).isValid());
}

TEST_F(SettingsWatchTest, EmptiedWhileItIsSaved_ShowsNoDefaults) {
    writeInPlace("[General]\na=1\nb=2\n");
    domain();
    SlowEditor editor(file());
    run(30ms);
    const QString meanwhile = valueOf(a);
    editor.write("[General]\na=1\nb=3\n");
    if (editor.longestStep() >= tooSlow) {
        GTEST_SKIP() << "skipped: the machine is too busy";
    }
    EXPECT_EQ(meanwhile, QLatin1String("1"));
    ASSERT_TRUE(waitForAnnouncement());
    run(200ms);
    EXPECT_EQ(announced(), QList<QStringList>{QStringList{b}});
}

TEST_F(SettingsWatchTest, FilledInSteps_IsNeitherCorruptNorWithoutKeys) {
    writeInPlace("[General]\na=1\nb=20\nc=3\n");
    domain();
    SlowEditor editor(file());
    QStringList meanwhile;
    for (const char* part : {"[Gen", "eral]\na", "=1\n", "b=2", "0\nc=", "4\n"}) {
        run(30ms);
        meanwhile.append(valueOf(b));
        editor.write(part);
    }
    if (editor.longestStep() >= tooSlow) {
        GTEST_SKIP() << "skipped: the machine is too busy";
    }
    EXPECT_EQ(meanwhile.count(QStringLiteral("20")), meanwhile.size());
    ASSERT_TRUE(waitForAnnouncement());
    run(200ms);
    EXPECT_EQ(announced(), QList<QStringList>{QStringList{QStringLiteral("c")}});
    EXPECT_EQ(names(), QStringList{QStringLiteral("test.conf")});
    EXPECT_TRUE(log_.lines.isEmpty());
}

TEST_F(SettingsWatchTest, EmptiedWhileItIsSaved_AndWrittenMeanwhile_LosesNothing) {
    writeInPlace("[General]\na=1\n");
    domain();
    SlowEditor editor(file());
    std::thread steps([&editor] {
        std::this_thread::sleep_for(30ms);
        editor.write("[General]\na=2\n");
    });
    EXPECT_TRUE(domain().write(b, 3));
    steps.join();
    if (editor.longestStep() >= tooSlow) {
        GTEST_SKIP() << "skipped: the machine is too busy";
    }
    EXPECT_EQ(read(), QByteArray("[General]\na=2\nb=3\n"));
}

TEST_F(SettingsWatchTest, FilledInSteps_AndWrittenMeanwhile_LosesNothing) {
    writeInPlace("[General]\na=1\nc=1\n");
    domain();
    SlowEditor editor(file());
    std::thread steps([&editor] {
        for (const char* part : {"[Gen", "eral]\na", "=2\n", "c=3\n"}) {
            std::this_thread::sleep_for(40ms);
            editor.write(part);
        }
    });
    EXPECT_TRUE(domain().write(b, 3));
    steps.join();
    if (editor.longestStep() >= tooSlow) {
        GTEST_SKIP() << "skipped: the machine is too busy";
    }
    EXPECT_EQ(read(), QByteArray("[General]\na=2\nb=3\nc=3\n"));
    EXPECT_TRUE(log_.lines.isEmpty());
}

TEST_F(SettingsWatchTest, EmptiedForGood_IsBelieved) {
    writeInPlace("[General]\na=1\n");
    domain();
    writeInPlace("");
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(announced().last(), QStringList{a});
    EXPECT_TRUE(log_.lines.isEmpty());
}

TEST_F(SettingsWatchTest, Deleted_AnnouncesAllKeys) {
    writeInPlace("[General]\na=1\nb=2\n");
    domain();
    ASSERT_TRUE(QFile::remove(file()));
    ASSERT_TRUE(waitForAnnouncement());
    const QStringList both{a, b};
    EXPECT_EQ(announced().last(), both);
    EXPECT_FALSE(domain().value(a).isValid());
    writeInPlace("[General]\na=1\nb=2\n");
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(announced().last(), both);
}

TEST_F(SettingsWatchTest, FileAndFoldersThatAppearLater_AreSeen) {
    const QString deep = folder() + QLatin1String("/x/y/z");
    LinuxSettings settings(log_, deep);
    QStringList keys;
    SettingsDomain& later = settings.domain(QStringLiteral("test"));
    QObject::connect(&later, &SettingsDomain::changed,
                     [&keys](const QStringList& changed) { keys += changed; });
    for (const char* step : {"", "/x", "/x/y", "/x/y/z"}) {
        QDir().mkdir(folder() + QLatin1String(step));
        run(20ms);
    }
    writeInPlace(deep + QLatin1String("/test.conf"), "[General]\na=1\n");
    EXPECT_TRUE(waitUntil([&keys, this] { return keys == QStringList{a}; }));

    ASSERT_TRUE(QDir(folder()).removeRecursively());
    EXPECT_TRUE(waitUntil([&keys] { return keys.size() == 2; }));
    writeInPlace(deep + QLatin1String("/test.conf"), "[General]\na=1\n");
    EXPECT_TRUE(waitUntil([&keys] { return keys.size() == 3; }));
}

TEST_F(SettingsWatchTest, AllFoldersAtOnce_AreSeen) {
    domain();
    for (int i = 0; i < 50; ++i) {
        writeInPlace("[General]\na=" + QByteArray::number(i) + "\n");
        ASSERT_TRUE(waitForAnnouncement()) << i;
        ASSERT_TRUE(QDir(folder()).removeRecursively());
        ASSERT_TRUE(waitForAnnouncement()) << i;
    }
}

TEST_F(SettingsWatchTest, TargetOfASymbolicLink_IsWatched) {
    const QString target = root() + QLatin1String("/dotfiles/real.conf");
    writeInPlace(target, "[General]\na=1\n");
    QDir().mkpath(folder());
    ASSERT_TRUE(QFile::link(target, file()));
    domain();
    writeInPlace(target, "[General]\na=2\n");
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(valueOf(a), QLatin1String("2"));
    ASSERT_TRUE(QFile::remove(target));
    ASSERT_TRUE(waitForAnnouncement());
    writeInPlace(target, "[General]\na=3\n");
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(valueOf(a), QLatin1String("3"));
}

TEST_F(SettingsWatchTest, SymbolicLinkThatIsPointedElsewhere_IsSeen) {
    const QString first = root() + QLatin1String("/first.conf");
    const QString second = root() + QLatin1String("/second.conf");
    writeInPlace(first, "[General]\na=1\n");
    writeInPlace(second, "[General]\na=2\n");
    QDir().mkpath(folder());
    ASSERT_TRUE(QFile::link(first, file()));
    domain();
    const QString link = folder() + QLatin1String("/link");
    ASSERT_TRUE(QFile::link(second, link));
    ASSERT_EQ(
        std::rename(QFile::encodeName(link).constData(), QFile::encodeName(file()).constData()), 0);
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(valueOf(a), QLatin1String("2"));
    writeInPlace(second, "[General]\na=3\n");
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_EQ(valueOf(a), QLatin1String("3"));
}

TEST_F(SettingsWatchTest, TouchedOnly_AnnouncesNothing) {
    writeInPlace("[General]\na=1\n");
    domain();
    setMode(file(), 0640);
    writeInPlace("[General]\na=1\n; a comment\n");
    run(300ms);
    EXPECT_TRUE(announced().isEmpty());
}

TEST_F(SettingsWatchTest, Value_SeesAFinishedWriteBeforeItIsAnnounced) {
    EXPECT_TRUE(domain().write(a, 1));
    ASSERT_TRUE(waitForAnnouncement());
    EXPECT_TRUE(elsewhere().write(a, 2));
    EXPECT_EQ(valueOf(a), QLatin1String("2"));
    EXPECT_EQ(announced().size(), 1);
    ASSERT_TRUE(waitForAnnouncement());
    run(100ms);
    EXPECT_EQ(announced().size(), 2);
}

TEST_F(SettingsWatchTest, Synchronize_AnnouncesBeforeItReturns) {
    EXPECT_TRUE(domain().write(a, 1));
    EXPECT_TRUE(elsewhere().write(a, 2));
    EXPECT_TRUE(domain().synchronize());
    EXPECT_EQ(announced().size(), 2);
}

TEST_F(SettingsWatchTest, Write_AnnouncesWhatOthersHaveWrittenToo) {
    EXPECT_TRUE(domain().write(a, 1));
    EXPECT_TRUE(elsewhere().write(b, 2));
    EXPECT_TRUE(domain().write(a, 3));
    const QStringList both{a, b};
    EXPECT_EQ(announced().last(), both);
    EXPECT_EQ(read(), QByteArray("[General]\na=3\nb=2\n"));
}

TEST_F(SettingsWatchTest, SameSizeAndTimestampByHand_IsSeen) {
    writeInPlace("[General]\na=0\n");
    domain();
    const timespec past{1'000'000'000, 0};
    const std::array<timespec, 2> times{past, past};
    for (int i = 0; i < 500; ++i) {
        const QByteArray digit = QByteArray::number(i % 10);
        writeInPlace("[General]\na=" + digit + "\n");
        ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(file()).constData(), times.data(), 0), 0);
        ASSERT_EQ(valueOf(a).toLatin1(), digit) << i;
    }
}

// File systems count time in steps of milliseconds or more, so two changes may leave the same
// stamp. The second change to a mapped page leaves the same one every time.
TEST_F(SettingsWatchTest, SameSizeAndTimestampOfALaterChange_IsSeen) {
    for (int i = 0; i < 50; ++i) {
        writeInPlace("[General]\na=5\n");
        QFile mapped(file());
        ASSERT_TRUE(mapped.open(QIODevice::ReadWrite));
        uchar* const bytes = mapped.map(0, mapped.size());
        ASSERT_NE(bytes, nullptr);
        uchar& digit = bytes[mapped.size() - 2];
        for (const char now : {'0', '1', '2'}) {
            digit = static_cast<uchar>(now);
            ASSERT_EQ(valueOf(a), QString(QLatin1Char(now))) << i;
        }
    }
}

TEST_F(SettingsWatchTest, SameSizeAndTimestampByAnotherProgram_LosesNothing) {
    for (int i = 0; i < 500; ++i) {
        const QString digit = QString::number(i % 10);
        ASSERT_TRUE(elsewhere().write(a, digit));
        ASSERT_EQ(valueOf(a), digit);
        ASSERT_TRUE(domain().write(b, digit));
        ASSERT_EQ(elsewhere().value(b), QVariant(digit));
        ASSERT_EQ(elsewhere().value(a), QVariant(digit));
    }
}

} // namespace quorvane::test
