#include "platform/linux/basics/LinuxBundle.h"
#include "platform/linux/basics/LinuxClock.h"
#include "platform/linux/basics/LinuxFiles.h"
#include "platform/linux/helperclient/LinuxAuthorization.h"
#include "platform/linux/processes/LinuxTasks.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <sys/stat.h>
#include <thread>

namespace quorvane::test {

namespace {

QStringList shell(const char* script) {
    return {QStringLiteral("-c"), QString::fromLatin1(script)};
}

class LinuxTasksTest : public testing::Test {
  protected:
    [[nodiscard]] std::unique_ptr<Task> launched(const char* script) {
        auto task = tasks_.task(QStringLiteral("/bin/sh"), shell(script));
        EXPECT_TRUE(task->launch());
        return task;
    }

    static bool ends(Task& task) {
        return waitUntil([&task] { return !task.isRunning(); });
    }

    LinuxTasks tasks_;
};

class LinuxFilesTest : public testing::Test {
  protected:
    [[nodiscard]] QString path(const char* name) const {
        return folder_.filePath(QString::fromLatin1(name));
    }

    QTemporaryDir folder_;
    LinuxFiles files_;
};

class LinuxClockTest : public testing::Test {
  protected:
    LinuxClock clock_;
};

class LinuxBundleTest : public LinuxFilesTest {};

class LinuxAuthorizationTest : public LinuxFilesTest {
  protected:
    /// Stands for pkexec: writes down how it was started, one argument a line.
    [[nodiscard]] QString recorder() {
        QString script = path("pkexec");
        QFile file(script);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n"
                   "{ printf '%s\\n' \"$@\"; grep SigBlk /proc/self/status; "
                   "readlink /proc/$$/fd/0 /proc/$$/fd/2; "
                   "} >" +
                   QFile::encodeName(path("new")) + "\nmv " + QFile::encodeName(path("new")) + " " +
                   QFile::encodeName(path("record")) + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        return script;
    }

    [[nodiscard]] QStringList recorded() const {
        const QByteArray text = files_.read(path("record")).data.value_or(QByteArray());
        return QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
};

} // namespace

TEST_F(LinuxTasksTest, Output_IsReadWhenTheTaskHasEnded) {
    const auto task = launched("echo one; echo two");
    ASSERT_TRUE(ends(*task));
    EXPECT_EQ(task->readOutput(), "one\ntwo\n");
    EXPECT_EQ(task->launchPath(), QStringLiteral("/bin/sh"));
}

TEST_F(LinuxTasksTest, MoreOutputThanAPipeHolds_DoesNotHoldTheTaskUp) {
    const auto task = launched("head -c 1000000 /dev/zero");
    ASSERT_TRUE(ends(*task));
    EXPECT_EQ(task->readOutput().size(), 1000000);
}

TEST_F(LinuxTasksTest, ProgramThatDoesNotExist_DoesNotLaunch) {
    const auto task = tasks_.task(QStringLiteral("/no/such/program"), {});
    EXPECT_FALSE(task->launch());
    EXPECT_FALSE(task->isRunning());
    EXPECT_TRUE(task->readOutput().isEmpty());
}

TEST_F(LinuxTasksTest, TaskThatIgnoresTheRequestToEnd_IsEndedAllTheSame) {
    const auto task = launched("trap '' TERM; echo ready; while :; do sleep 1; done");
    ASSERT_TRUE(
        waitUntil([&task] { return task->isRunning() && task->readOutput().contains("ready"); }));
    task->terminate();
    EXPECT_FALSE(task->isRunning());
}

TEST_F(LinuxTasksTest, SignalsThatThisProgramHolds_EndItsTasks) {
    sigset_t held{};
    sigemptyset(&held);
    sigaddset(&held, SIGTERM);
    sigset_t before{};
    pthread_sigmask(SIG_BLOCK, &held, &before);
    const auto task = launched("grep SigBlk /proc/self/status");
    EXPECT_TRUE(ends(*task));
    EXPECT_EQ(task->readOutput(), "SigBlk:\t0000000000000000\n");
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(LinuxTasksTest, ForgottenTask_EndsWithItsObject) {
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("pid"));
    {
        const auto task = launched(qPrintable(
            QStringLiteral("echo $$ > %1.new; mv %1.new %1; exec sleep 1000").arg(file)));
        ASSERT_TRUE(waitUntil([&file] { return QFile::exists(file); }));
    }
    QFile pidFile(file);
    ASSERT_TRUE(pidFile.open(QIODevice::ReadOnly));
    const QString pid = QString::fromLatin1(pidFile.readAll().trimmed());
    EXPECT_FALSE(QFile::exists(QStringLiteral("/proc/%1").arg(pid)));
}

TEST_F(LinuxFilesTest, WrittenAndRead_IsTheSame) {
    ASSERT_TRUE(files_.writeAtomically(path("a"), "data"));
    const Files::Contents contents = files_.read(path("a"));
    EXPECT_EQ(contents.data, QByteArray("data"));
    EXPECT_TRUE(contents.exists);
}

TEST_F(LinuxFilesTest, MissingFile_IsToldFromOneThatCannotBeRead) {
    EXPECT_FALSE(files_.read(path("missing")).exists);
    ASSERT_TRUE(files_.createFolder(path("folder")));
    const Files::Contents contents = files_.read(path("folder"));
    EXPECT_TRUE(contents.exists);
    EXPECT_FALSE(contents.data.has_value());
    EXPECT_TRUE(contents.error.startsWith(path("folder")));
}

TEST_F(LinuxFilesTest, FolderThatDoesNotExist_IsNotWrittenInto) {
    for (const auto readers : {Files::Readers::AsUsual, Files::Readers::Everybody}) {
        const Files::Written written =
            files_.writeAtomically(path("no/such/file"), "data", readers);
        EXPECT_FALSE(written);
        EXPECT_TRUE(written.error.startsWith(path("no/such/file: ")))
            << written.error.toStdString();
        EXPECT_GT(written.error.size(), path("no/such/file: ").size());
    }
    EXPECT_FALSE(QFile::exists(path("no")));
}

TEST_F(LinuxFilesTest, FileForEverybody_CanBeReadByOthersWhateverTheUmask) {
    const mode_t before = ::umask(0077);
    EXPECT_TRUE(files_.writeAtomically(path("private"), "0"));
    for (const char* const text : {"0", "1"}) {
        EXPECT_TRUE(files_.writeAtomically(path("open"), text, Files::Readers::Everybody));
        EXPECT_EQ(files_.read(path("open")).data, QByteArray(text));
    }
    ::umask(before);
    const QFile::Permissions others = QFile::ReadGroup | QFile::ReadOther;
    EXPECT_EQ(QFile::permissions(path("open")) & others, others);
    EXPECT_EQ(QFile::permissions(path("open")) & (QFile::WriteGroup | QFile::WriteOther), 0);
    EXPECT_EQ(QFile::permissions(path("private")) & others, 0);
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files).size(), 2) << "something was left behind";
}

TEST_F(LinuxFilesTest, FileForEverybody_TakesThePlaceOfALinkAndNotOfWhatItLeadsTo) {
    ASSERT_TRUE(files_.writeAtomically(path("precious"), "mine"));
    ASSERT_TRUE(QFile::link(path("precious"), path("open")));
    ASSERT_TRUE(files_.writeAtomically(path("open"), "0", Files::Readers::Everybody));
    EXPECT_EQ(files_.read(path("precious")).data, QByteArray("mine"));
    EXPECT_FALSE(QFileInfo(path("open")).isSymLink());
    EXPECT_EQ(files_.read(path("open")).data, QByteArray("0"));
}

TEST_F(LinuxFilesTest, FileForEverybody_InThePlaceOfAFolder_FailsAndLeavesNothing) {
    ASSERT_TRUE(files_.createFolder(path("open/inner")));
    EXPECT_FALSE(files_.writeAtomically(path("open"), "0", Files::Readers::Everybody));
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files).size(), 0);
}

TEST_F(LinuxFilesTest, CreateFolder_MakesThoseAboveAndCountsAnExistingOne) {
    EXPECT_TRUE(files_.createFolder(path("a/b/c")));
    EXPECT_TRUE(files_.createFolder(path("a/b/c")));
    ASSERT_TRUE(files_.writeAtomically(path("file"), {}));
    EXPECT_FALSE(files_.createFolder(path("file/below")));
}

TEST_F(LinuxFilesTest, KeptAside_LosesNothingEvenTheSecondTime) {
    ASSERT_TRUE(files_.writeAtomically(path("a"), "first"));
    EXPECT_EQ(files_.keepAside(path("a")), path("a.corrupt"));
    ASSERT_TRUE(files_.writeAtomically(path("a"), "second"));
    EXPECT_EQ(files_.keepAside(path("a")), path("a.corrupt.1"));
    EXPECT_EQ(files_.read(path("a.corrupt")).data, QByteArray("first"));
    EXPECT_EQ(files_.read(path("a.corrupt.1")).data, QByteArray("second"));
    EXPECT_EQ(files_.keepAside(path("a")), std::nullopt);
}

TEST_F(LinuxClockTest, Timer_FiresOnTheLoopAndStopsWithItsHandle) {
    int firings = 0;
    auto timer = clock_.schedule(Seconds(0.001), Repeats::Yes, [&firings] { ++firings; });
    ASSERT_TRUE(waitUntil([&firings] { return firings >= 3; }));
    timer.reset();
    const int seen = firings;
    std::atomic<bool> later = false;
    const auto after = clock_.schedule(Seconds(0.02), Repeats::No, [&later] { later = true; });
    ASSERT_TRUE(waitUntil([&later] { return later.load(); }));
    EXPECT_EQ(firings, seen);
}

TEST_F(LinuxClockTest, TimerDroppedByItsOwnBlock_IsHarmless) {
    std::unique_ptr<Timer> timer;
    bool fired = false;
    timer = clock_.schedule(Seconds(0.001), Repeats::Yes, [&] {
        fired = true;
        timer.reset();
    });
    EXPECT_TRUE(waitUntil([&fired] { return fired; }));
}

TEST_F(LinuxClockTest, Wait_TellsWhetherTheSemaphoreWasTaken) {
    QSemaphore semaphore;
    EXPECT_FALSE(clock_.wait(semaphore, Seconds(0.01)));
    std::thread other([&semaphore] { semaphore.release(); });
    EXPECT_TRUE(clock_.wait(semaphore, Seconds(10)));
    other.join();
}

TEST_F(LinuxClockTest, MonotonicTime_DoesNotGoBack) {
    const Seconds before = clock_.monotonic();
    clock_.sleep(Seconds(0.001));
    EXPECT_GT(clock_.monotonic(), before);
    EXPECT_EQ(clock_.now().timeSpec(), Qt::UTC);
}

TEST_F(LinuxBundleTest, IdentifierAndResources_ComeFromTheFolder) {
    ASSERT_TRUE(files_.createFolder(path("Contents/Resources")));
    ASSERT_TRUE(files_.writeAtomically(path("Contents/Info.plist"),
                                       "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                                       "<string>com.example.app</string></dict></plist>"));
    ASSERT_TRUE(files_.writeAtomically(path("Contents/Resources/list.plist"), "x"));
    const LinuxBundle bundle(path("Contents"));
    EXPECT_EQ(bundle.identifier(), QStringLiteral("com.example.app"));
    EXPECT_EQ(bundle.resource(QStringLiteral("list"), QStringLiteral("plist")), QByteArray("x"));
    EXPECT_EQ(bundle.resource(QStringLiteral("other"), QStringLiteral("plist")), std::nullopt);
    EXPECT_EQ(bundle.pathForResource(QStringLiteral("list"), QStringLiteral("plist")),
              path("Contents/Resources/list.plist"));
    EXPECT_EQ(bundle.pathForResource(QStringLiteral("other"), QStringLiteral("plist")),
              std::nullopt);
    ASSERT_TRUE(files_.createFolder(path("Contents/Resources/Folder.kext")));
    EXPECT_EQ(bundle.pathForResource(QStringLiteral("Folder"), QStringLiteral("kext")),
              path("Contents/Resources/Folder.kext"));
}

TEST_F(LinuxBundleTest, FolderThatIsNoBundle_HasNoIdentifier) {
    EXPECT_TRUE(LinuxBundle(path("nothing")).identifier().isEmpty());
    ASSERT_TRUE(files_.createFolder(path("Contents")));
    ASSERT_TRUE(files_.writeAtomically(path("Contents/Info.plist"), "nonsense"));
    EXPECT_TRUE(LinuxBundle(path("Contents")).identifier().isEmpty());
}

TEST_F(LinuxAuthorizationTest, Reference_HasAFormOfThirtyTwoBytesAndNoRightIsMissing) {
    LinuxAuthorization authorization;
    const auto ref = authorization.create();
    ASSERT_NE(ref, nullptr);
    EXPECT_EQ(authorization.externalForm(*ref).value_or(QByteArray()).size(), 32);
    EXPECT_EQ(authorization.right(QStringLiteral("any")), Authorization::RightStatus::Exists);
}

TEST_F(LinuxAuthorizationTest, Tool_IsStartedWithItsArgumentsAsTheyAre) {
    sigset_t held{};
    sigemptyset(&held);
    sigaddset(&held, SIGTERM);
    sigset_t before{};
    pthread_sigmask(SIG_BLOCK, &held, &before);
    LinuxAuthorization authorization(recorder());
    const auto ref = authorization.create();
    EXPECT_EQ(authorization.executeWithPrivileges(
                  *ref, QStringLiteral("/usr/sbin/chown"),
                  {QStringLiteral("-R"), QStringLiteral("a path; with $(everything)")}),
              0);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_TRUE(waitUntil([this] { return !recorded().isEmpty(); }));
    const QStringList lines = recorded();
    ASSERT_GE(lines.size(), 6);
    EXPECT_EQ(lines.mid(0, 4), (QStringList{QStringLiteral("--disable-internal-agent"),
                                            QStringLiteral("/usr/sbin/chown"), QStringLiteral("-R"),
                                            QStringLiteral("a path; with $(everything)")}));
    EXPECT_EQ(lines.at(4), QStringLiteral("SigBlk:\t0000000000000000"));
    EXPECT_EQ(lines.mid(5),
              (QStringList{QStringLiteral("/dev/null"), QStringLiteral("/dev/null")}));
}

TEST_F(LinuxAuthorizationTest, ToolsParent_LivesAsLongAsTheTool) {
    QFile script(path("pkexec"));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\necho $PPID >" + QFile::encodeName(path("new")) + "\nmv " +
                 QFile::encodeName(path("new")) + " " + QFile::encodeName(path("record")) +
                 "\nwhile test ! -e " + QFile::encodeName(path("end")) + "; do sleep 0.01; done\n");
    script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    script.close();
    LinuxAuthorization authorization(path("pkexec"));
    EXPECT_EQ(authorization.executeWithPrivileges(*authorization.create(),
                                                  QStringLiteral("/bin/true"), {}),
              0);
    ASSERT_TRUE(waitUntil([this] { return !recorded().isEmpty(); }));
    const QString parent = recorded().constFirst();
    EXPECT_NE(parent, QStringLiteral("1"));
    const QString name = QStringLiteral("/proc/%1/comm").arg(parent);
    EXPECT_EQ(files_.read(name).data, QByteArray("setsid\n"));
    ASSERT_TRUE(files_.writeAtomically(path("end"), {}));
    EXPECT_TRUE(waitUntil([&name] { return !QFile::exists(name); }));
}

TEST_F(LinuxAuthorizationTest, WithoutPolkit_NothingIsStarted) {
    LinuxAuthorization authorization(path("missing"));
    const auto ref = authorization.create();
    EXPECT_EQ(authorization.executeWithPrivileges(*ref, QStringLiteral("/bin/true"), {}), -60031);
}

} // namespace quorvane::test
