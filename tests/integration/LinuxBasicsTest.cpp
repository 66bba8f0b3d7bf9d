#include "helper/HelperToolProtocol.h"
#include "platform/linux/AbsentHelper.h"
#include "platform/linux/LinuxBundle.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxFiles.h"
#include "platform/linux/LinuxTasks.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
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

class AbsentHelperTest : public testing::Test {};

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
    EXPECT_FALSE(files_.writeAtomically(path("no/such/file"), "data"));
    EXPECT_FALSE(QFile::exists(path("no")));
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
}

TEST_F(LinuxBundleTest, FolderThatIsNoBundle_HasNoIdentifier) {
    EXPECT_TRUE(LinuxBundle(path("nothing")).identifier().isEmpty());
    ASSERT_TRUE(files_.createFolder(path("Contents")));
    ASSERT_TRUE(files_.writeAtomically(path("Contents/Info.plist"), "nonsense"));
    EXPECT_TRUE(LinuxBundle(path("Contents")).identifier().isEmpty());
}

TEST_F(AbsentHelperTest, Commands_FailOnceOffTheMainThread) {
    AbsentHelper helper;
    EXPECT_FALSE(helper.isInstalled(QStringLiteral("helper")));
    EXPECT_TRUE(helper.install(QStringLiteral("helper")).has_value());
    EXPECT_TRUE(helper.remove(QStringLiteral("helper")).has_value());
    const auto connection = helper.connectTo(QStringLiteral("helper"));
    std::atomic<int> errors = 0;
    std::atomic<bool> invalidated = false;
    const auto mainThread = std::this_thread::get_id();
    connection->setInvalidationHandler([&invalidated] { invalidated = true; });
    const auto proxy = connection->remoteObjectProxy([&](const QString&) {
        EXPECT_NE(std::this_thread::get_id(), mainThread);
        ++errors;
    });
    proxy->getVersion([](const QString&) { FAIL() << "nobody could have answered"; });
    EXPECT_TRUE(waitUntil([&errors] { return errors == 1; }));
    connection->invalidate();
    EXPECT_TRUE(waitUntil([&invalidated] { return invalidated.load(); }));
}

} // namespace quorvane::test
