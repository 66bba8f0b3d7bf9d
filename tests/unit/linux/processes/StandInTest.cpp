#include "core/SharedInstances.h"
#include "core/TaskTimeout.h"
#include "platform/linux/helperclient/ExtensionLister.h"
#include "platform/linux/processes/LinuxTasks.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>
#include <sys/resource.h>
#include <sys/wait.h>

namespace quorvane::test {

namespace {

const QString tool = QStringLiteral("/no/such/folder/lister");
const QByteArray line = "    1    0 0  0  0  com.TarnwickStudios.cputune (1.0)\n";

/// A tool that stands for one which this system does not have, on a laptop whose clock tells of
/// every wait.
class StandInTest : public testing::Test {
  protected:
    void SetUp() override {
        auto laptop = std::make_unique<SimulatedPlatform>();
        clock_ = &laptop->clock();
        SharedInstances::reset(std::move(laptop));
        QFile file(path_);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(line);
    }

    void TearDown() override { SharedInstances::reset(nullptr); }

    /// Page faults of all children that have ended: no child can run without any.
    static long workOfChildren() {
        rusage usage{};
        EXPECT_EQ(::getrusage(RUSAGE_CHILDREN, &usage), 0);
        return usage.ru_minflt;
    }

    static bool hasChild() {
        siginfo_t info{};
        return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
    }

    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("loaded"));
    SimulatedClock* clock_ = nullptr;
    LinuxTasks tasks_{
        {{tool, [this](const std::vector<std::string>& arguments) {
              return answerOfLister(QFile::encodeName(path_).constData(), arguments).output;
          }}}};
};

} // namespace

TEST_F(StandInTest, Answer_NeedsNoChildAndNobodyWaitsForIt) {
    const long before = workOfChildren();
    const Seconds beginning = clock_->monotonic();
    const auto task = tasks_.task(tool, {QStringLiteral("-l"), QStringLiteral("-b"),
                                         QStringLiteral("com.TarnwickStudios.cputune")});
    ASSERT_TRUE(task->launch());
    EXPECT_TRUE(runUntilTimeout(task.get(), Seconds(15)));
    EXPECT_EQ(task->readOutput(), line);
    EXPECT_EQ(clock_->monotonic(), beginning);
    EXPECT_EQ(workOfChildren(), before);
    EXPECT_FALSE(hasChild());
}

TEST_F(StandInTest, OtherTools_AreChildrenAsEver) {
    const long before = workOfChildren();
    const auto task = tasks_.task(QStringLiteral("/bin/sh"),
                                  {QStringLiteral("-c"), QStringLiteral("echo $0 $PPID")});
    ASSERT_TRUE(task->launch());
    EXPECT_TRUE(hasChild());
    while (task->isRunning()) {
    }
    EXPECT_EQ(task->readOutput(), "/bin/sh " + QByteArray::number(::getpid()) + "\n");
    EXPECT_GT(workOfChildren(), before) << "what the other test would have seen";
    EXPECT_FALSE(tasks_.task(QStringLiteral("/no/such/folder/other"), {})->launch());
}

TEST_F(StandInTest, Task_NamesTheToolThatItStandsForAndAnswersEachOnce) {
    const auto task = tasks_.task(tool, {QStringLiteral("-l")});
    EXPECT_EQ(task->launchPath(), tool);
    EXPECT_EQ(task->readOutput(), "") << "before it is launched";
    ASSERT_TRUE(task->launch());
    EXPECT_FALSE(task->isRunning());
    task->terminate();
    EXPECT_EQ(task->readOutput(), line);
    EXPECT_EQ(task->readOutput(), "") << "as from a pipe";
}

} // namespace quorvane::test
