#include "tests/integration/processes/ProcessesFixture.h"

#include <QDir>

namespace quorvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Which processes are stopped and resumed, and in which order.
class LinuxProcessesTest : public ProcessesFixture {};

TEST_F(LinuxProcessesTest, LeaderOfItsGroup_IsStoppedAndResumedWithAllOfIt) {
    const std::int32_t main = idOf(script("sleep 1000 & echo one $!; sleep 1000 & echo two $!;"
                                          "echo ready; wait",
                                          Group::ItsOwn));
    processes->stop(main);
    EXPECT_TRUE(stops(main));
    EXPECT_TRUE(stops(pid("one")));
    EXPECT_TRUE(stops(pid("two")));
    EXPECT_EQ(journalled(), 3U);
    processes->resume(main);
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(runs(pid("one")));
    EXPECT_TRUE(runs(pid("two")));
    EXPECT_EQ(journalled(), 0U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LinuxProcessesTest, StartedByAScriptInTheScriptsGroup_TheScriptRunsOn) {
    const std::int32_t outer =
        idOf(script("bash -c 'sleep 1000 & echo child $!; echo ready; wait' & echo main $!;"
                    "sleep 1000 & echo sibling $!; echo ready; wait",
                    Group::ItsOwn, 2));
    processes->stop(pid("main"));
    EXPECT_TRUE(stops(pid("main")));
    EXPECT_TRUE(stops(pid("child")));
    EXPECT_TRUE(isRunning(pid("sibling")));
    EXPECT_TRUE(isRunning(outer));
    processes->resume(pid("main"));
    EXPECT_TRUE(runs(pid("main")));
    EXPECT_TRUE(runs(pid("child")));
}

TEST_F(LinuxProcessesTest, GroupOfThisProgram_IsNeverStopped) {
    const std::int32_t main = idOf(script("sleep 1000 & echo child $!; echo ready; wait"));
    ASSERT_EQ(ProcessTable::look(main)->group, ::getpgrp());
    processes->stop(main);
    EXPECT_TRUE(stops(main));
    EXPECT_TRUE(stops(pid("child")));
    processes->resume(main);
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(runs(pid("child")));
}

TEST_F(LinuxProcessesTest, SessionOfItsOwn_OrphansInItAreStoppedToo) {
    script("exec setsid bash -c '(sleep 1000 & echo orphan $!); echo main $$; echo ready; wait;"
           "read'");
    ASSERT_TRUE(waitUntil([this] { return ProcessTable::look(pid("orphan"))->parent == 1; }));
    processes->stop(pid("main"));
    EXPECT_TRUE(stops(pid("main")));
    EXPECT_TRUE(stops(pid("orphan")));
    processes->resume(pid("main"));
    EXPECT_TRUE(runs(pid("main")));
    EXPECT_TRUE(runs(pid("orphan")));
}

TEST_F(LinuxProcessesTest, JobOfAShell_TheShellAndItsOtherJobsRunOn) {
    const std::int32_t shell =
        idOf(script("set -m; sleep 1000 & echo other $!;"
                    "bash -c 'sleep 1000 & echo child $!; echo ready; wait' & echo main $!;"
                    "echo ready; wait",
                    Group::OfTheTest, 2));
    ASSERT_EQ(ProcessTable::look(pid("main"))->group, pid("main"));
    processes->stop(pid("main"));
    EXPECT_TRUE(stops(pid("main")));
    EXPECT_TRUE(stops(pid("child")));
    EXPECT_TRUE(isRunning(shell));
    EXPECT_TRUE(isRunning(pid("other")));
    processes->resume(pid("main"));
    EXPECT_TRUE(runs(pid("child")));
}

TEST_F(LinuxProcessesTest, StrangerInItsGroup_RunsOn) {
    script("set -m; bash -c 'echo main $$; echo ready; while :; do sleep 0.1; done' |"
           " bash -c 'echo stranger $$; cat; read' & wait");
    ASSERT_EQ(ProcessTable::look(pid("main"))->group, ProcessTable::look(pid("stranger"))->group);
    processes->stop(pid("main"));
    EXPECT_TRUE(stops(pid("main")));
    EXPECT_TRUE(isRunning(pid("stranger")));
    processes->resume(pid("main"));
    EXPECT_TRUE(runs(pid("main")));
}

TEST_F(LinuxProcessesTest, ChildrenOutsideOfItsGroup_AreStoppedToo) {
    const std::int32_t main = idOf(
        script("setsid bash -c 'echo child $$; echo ready; sleep 1000; :' & wait", Group::ItsOwn));
    ASSERT_NE(ProcessTable::look(pid("child"))->group, main);
    processes->stop(main);
    EXPECT_TRUE(stops(main));
    EXPECT_TRUE(stops(pid("child")));
    processes->resume(main);
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(runs(pid("child")));
}

class ProcessStormTest : public ProcessesFixture, public testing::WithParamInterface<bool> {
  protected:
    [[nodiscard]] static std::vector<Process> family(std::int32_t main) {
        std::vector<Process> found;
        const ProcessTable table = ProcessTable::read();
        for (const auto& [id, process] : table.all()) {
            if (id == main || process.parent == main) {
                found.push_back(process);
            }
        }
        return found;
    }

    [[nodiscard]] static std::size_t runningOnes(std::int32_t main) {
        const std::vector<Process> all = family(main);
        return static_cast<std::size_t>(std::count_if(
            all.begin(), all.end(), [](const Process& each) { return !each.isStopped; }));
    }
};

TEST_P(ProcessStormTest, StartsProcessesWhileItIsStopped_AllStandInTheEnd) {
    const std::int32_t main =
        idOf(scenario({QStringLiteral("storm")}, GetParam() ? Group::ItsOwn : Group::OfTheTest));
    for (int i = 0; i < 4; ++i) {
        ASSERT_TRUE(waitUntil([main] { return family(main).size() > 20; }));
        processes->stop(main);
        EXPECT_EQ(runningOnes(main), 0U);
        EXPECT_GT(family(main).size(), 1U);
        EXPECT_GE(journalled(), family(main).size());
        processes->resume(main);
        EXPECT_TRUE(waitUntil([main] { return runningOnes(main) == family(main).size(); }));
        EXPECT_EQ(journalled(), 0U);
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Groups, ProcessStormTest, testing::Bool(), [](const auto& parameter) {
    return parameter.param ? std::string("InItsOwnGroup") : std::string("InAnothersGroup");
});

TEST_F(LinuxProcessesTest, ProtectedProgram_RunsOnInAStoppedApplicationAndIsRefused) {
    const QString sound = folder.filePath(QStringLiteral("pipewire"));
    ASSERT_TRUE(QFile::copy(QStringLiteral("/bin/sleep"), sound));
    const std::int32_t main = idOf(script(
        qPrintable(QStringLiteral("sleep 1000 & echo child $!; %1 1000 & echo sound $!;"
                                  "until [ \"$(cat /proc/$!/comm)\" = pipewire ]; do :; done;"
                                  "echo ready; wait")
                       .arg(sound)),
        Group::ItsOwn));
    processes->stop(main);
    EXPECT_TRUE(stops(main));
    EXPECT_TRUE(stops(pid("child")));
    EXPECT_TRUE(isRunning(pid("sound")));
    EXPECT_THAT(log.lines(), IsEmpty());

    processes->stop(pid("sound"));
    EXPECT_TRUE(isRunning(pid("sound")));
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("The application with process %1 is not "
                                                        "stopped: pipewire is a sound server")
                                             .arg(pid("sound"))));
    processes->resume(main);
    EXPECT_TRUE(runs(main));
}

TEST_F(LinuxProcessesTest, ItselfItsAncestorsAndWhatIsNoProcess_AreRefused) {
    const std::vector<std::int32_t> refused{-1, 0, 1, static_cast<std::int32_t>(::getpid()),
                                            -::getpid()};
    for (const std::int32_t each : refused) {
        processes->stop(each);
        processes->resume(each);
    }
    EXPECT_THAT(log.lines(), SizeIs(static_cast<int>(refused.size())));
    EXPECT_EQ(journalled(), 0U);
    EXPECT_THAT(guards(), IsEmpty());
}

TEST_F(LinuxProcessesTest, AnotherApplicationStartedFromIt_RunsOn) {
    std::set<std::int32_t> applications;
    openPort([&applications] { return applications; });
    const std::int32_t main = idOf(script("sleep 1000 & echo other $!; sleep 1000 & echo child $!;"
                                          "echo ready; wait",
                                          Group::ItsOwn));
    applications = {main, pid("other")};
    processes->stop(main);
    EXPECT_TRUE(stops(main));
    EXPECT_TRUE(stops(pid("child")));
    EXPECT_TRUE(isRunning(pid("other")));
    processes->resume(main);
    EXPECT_TRUE(runs(main));
}

TEST_F(LinuxProcessesTest, Resumed_ChildrenRunBeforeTheirParents) {
    for (const Group group : {Group::OfTheTest, Group::ItsOwn}) {
        constexpr int depth = 8;
        const QString states = folder.filePath(QString::number(static_cast<int>(group)));
        ASSERT_TRUE(QDir().mkpath(states));
        const std::int32_t main = idOf(
            scenario({QStringLiteral("chain"), QString::number(depth), states}, group, depth + 1));
        processes->stop(main);
        ASSERT_TRUE(stops(main));
        processes->resume(main);
        for (int i = 1; i <= depth; ++i) {
            QFile file(states + QLatin1Char('/') + QString::number(i));
            ASSERT_TRUE(waitUntil([&file] { return file.size() == 1; })) << i;
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            EXPECT_NE(file.readAll(), "T") << i;
        }
    }
}

TEST_F(LinuxProcessesTest, StoppedBySomebodyElse_StaysStopped) {
    const std::int32_t main = idOf(script("sleep 1000 & echo one $!; sleep 1000 & echo two $!;"
                                          "echo ready; wait",
                                          Group::ItsOwn));
    sendTo(pid("one"), SIGSTOP);
    ASSERT_TRUE(stops(pid("one")));
    processes->stop(main);
    EXPECT_TRUE(stops(main));
    EXPECT_TRUE(stops(pid("two")));
    EXPECT_EQ(journalled(), 2U);
    processes->resume(main);
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(runs(pid("two")));
    EXPECT_TRUE(isStopped(pid("one")));
    sendTo(pid("one"), SIGKILL); // nobody else would end it before the next test
}

TEST_F(LinuxProcessesTest, StoppedTwice_OneResumeIsEnough) {
    const std::int32_t main =
        idOf(script("sleep 1000 & echo child $!; echo ready; wait", Group::ItsOwn));
    processes->stop(main);
    processes->stop(main);
    ASSERT_TRUE(stops(pid("child")));
    EXPECT_EQ(journalled(), 2U);
    processes->resume(main);
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(runs(pid("child")));
    EXPECT_EQ(journalled(), 0U);
}

TEST_F(LinuxProcessesTest, StoppedWithTwoApplications_RunsWhenBothAreResumed) {
    const std::int32_t main =
        idOf(script("sleep 1000 & echo child $!; echo ready; wait", Group::ItsOwn));
    processes->stop(pid("child"));
    processes->stop(main);
    ASSERT_TRUE(stops(main));
    processes->resume(main);
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(isStopped(pid("child")));
    processes->resume(pid("child"));
    EXPECT_TRUE(runs(pid("child")));
}

TEST_F(LinuxProcessesTest, MainProcessEndedWhileItWasStopped_TheRestIsResumed) {
    QProcess& main = script("sleep 1000 & echo child $!; echo ready; wait", Group::ItsOwn);
    const std::int32_t id = idOf(main);
    processes->stop(id);
    ASSERT_TRUE(stops(pid("child")));
    killAndCollect(main);
    EXPECT_TRUE(isStopped(pid("child")));
    processes->resume(id);
    EXPECT_TRUE(runs(pid("child")));
    EXPECT_EQ(journalled(), 0U);
}

TEST_F(LinuxProcessesTest, ChildEndedWhileItWasStopped_IsStruckOff) {
    const std::int32_t main =
        idOf(script("sleep 1000 & echo child $!; echo ready; wait; wait; read", Group::ItsOwn));
    processes->stop(main);
    ASSERT_TRUE(stops(pid("child")));
    sendTo(pid("child"), SIGKILL);
    processes->resume(main);
    EXPECT_TRUE(runs(main));
    EXPECT_EQ(journalled(), 0U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LinuxProcessesTest, JournalThatCannotBeWritten_NothingIsStopped) {
    QFile obstacle(folder.filePath(QStringLiteral("quorvane")));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    const std::int32_t main =
        idOf(script("sleep 1000 & echo child $!; echo ready; wait", Group::ItsOwn));
    processes->stop(main);
    EXPECT_TRUE(isRunning(main));
    EXPECT_TRUE(isRunning(pid("child")));
    EXPECT_TRUE(log.lines().contains(
        QStringLiteral("The application with process %1 is not stopped: what would have to be put "
                       "back cannot be written down")
            .arg(main)));
    EXPECT_TRUE(waitUntil([] { return guards().empty(); }));
}

TEST_F(LinuxProcessesTest, GuardThatCannotBeStarted_NothingIsStopped) {
    openPort({}, QStringLiteral("/no/such/program"));
    const std::int32_t main = idOf(script("echo ready; read; sleep 1000", Group::ItsOwn));
    processes->stop(main);
    EXPECT_TRUE(isRunning(main));
    EXPECT_EQ(journalled(), 0U);
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("The application with process %1 is not stopped: nobody "
                                           "would resume it after a crash, the guard cannot be "
                                           "started: No such file or directory")
                                .arg(main)));
}

} // namespace
} // namespace quorvane::test
