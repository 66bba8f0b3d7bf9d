#include "tests/integration/processes/ProcessesFixture.h"
#include "tests/support/PrivateBus.h"

#include <QDir>

namespace quorvane::test {
namespace {

using testing::IsEmpty;

/// Nothing stays stopped, however the program that has stopped it ends.
class ProcessesPuttingBackTest : public ProcessesFixture {
  protected:
    std::int32_t startApplication() {
        return idOf(script("sleep 1000 & echo child $!; echo ready; wait", Group::ItsOwn));
    }

    void journalOf(const JournalWriter& writer, const StoppedProcess& process) const {
        ASSERT_TRUE(journal->update([&](PuttingBackJournal::Entries& entries) {
            entries.push_back(processEntry(process, writer));
        }));
    }

    static ProcessIdentity identityOf(std::int32_t process) {
        return ProcessTable::look(process).value_or(Process()).identity;
    }

    /// What it was started as can be read a moment after its start.
    static bool oneGuardStands() {
        return waitUntil([] { return guards().size() == 1; });
    }

    static constexpr JournalWriter dead{1LL << 40, 5};
};

TEST_F(ProcessesPuttingBackTest, Own_IsResumed) {
    const std::int32_t main = startApplication();
    processes->stop(main);
    ASSERT_TRUE(stops(pid("child")));
    processes->putBack();
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(runs(pid("child")));
    EXPECT_EQ(journalled(), 0U);
}

TEST_F(ProcessesPuttingBackTest, ProgramKilled_GuardResumesEverything) {
    const std::int32_t main = startApplication();
    QProcess& resident = startResident(main);
    ASSERT_TRUE(stops(main));
    ASSERT_TRUE(stops(pid("child")));
    ASSERT_TRUE(oneGuardStands());
    killAndCollect(resident);
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(runs(pid("child")));
    EXPECT_TRUE(waitUntil([this] { return journalled() == 0; }));
    EXPECT_TRUE(waitUntil([] { return guards().empty(); }));
}

TEST_F(ProcessesPuttingBackTest, ProgramKilledAgainAndAgain_NothingStaysStopped) {
    const std::int32_t main = startApplication();
    for (int i = 0; i < 20; ++i) {
        QProcess& resident = startResident(main);
        ASSERT_TRUE(stops(main)) << i;
        killAndCollect(resident);
        ASSERT_TRUE(runs(main)) << i;
        ASSERT_TRUE(runs(pid("child"))) << i;
        ASSERT_TRUE(waitUntil([this] { return journalled() == 0; })) << i;
    }
}

TEST_F(ProcessesPuttingBackTest, GuardAskedToEnd_StandsOn) {
    const std::int32_t main = startApplication();
    QProcess& resident = startResident(main);
    ASSERT_TRUE(stops(main));
    ASSERT_TRUE(oneGuardStands());
    const std::int32_t guard = guards().front();
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        sendTo(guard, signal);
    }
    killAndCollect(resident);
    EXPECT_TRUE(runs(main));
}

TEST_F(ProcessesPuttingBackTest, ProgramAndGuardKilled_RestorePutsBackWithoutDisplayBusAndBattery) {
    const std::int32_t main = startApplication();
    QProcess& resident = startResident(main);
    ASSERT_TRUE(stops(main));
    ASSERT_TRUE(oneGuardStands());
    sendTo(guards().front(), SIGKILL);
    ASSERT_TRUE(waitUntil([] { return guards().empty(); }));
    killAndCollect(resident);
    ASSERT_TRUE(isStopped(main));
    ASSERT_TRUE(isStopped(pid("child")));

    QProcess restore;
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder.path());
    environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), QStringLiteral("unix:path=/no"));
    restore.setProcessEnvironment(environment);
    restore.start(QStringLiteral(QUORVANE_PROGRAM), {QStringLiteral("--restore")});
    ASSERT_TRUE(restore.waitForFinished());
    EXPECT_EQ(restore.exitCode(), 0);
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(runs(pid("child")));
    EXPECT_EQ(journalled(), 0U);
}

TEST_F(ProcessesPuttingBackTest, GuardKilled_TheNextStopPostsAnother) {
    const std::int32_t main = startApplication();
    processes->stop(main);
    ASSERT_TRUE(oneGuardStands());
    const std::int32_t first = guards().front();
    sendTo(first, SIGKILL);
    ASSERT_TRUE(waitUntil([first] { return !ProcessTable::look(first); }));
    processes->stop(main);
    ASSERT_TRUE(oneGuardStands());
    processes->resume(main);
    EXPECT_TRUE(waitUntil([] { return guards().empty(); }));
}

TEST_F(ProcessesPuttingBackTest, GuardHoldsNothingOfTheProgramAndStandsAlone) {
    const std::int32_t main = startApplication();
    processes->stop(main);
    ASSERT_TRUE(oneGuardStands());
    const std::int32_t guard = guards().front();
    const QString descriptors = QStringLiteral("/proc/%1/fd").arg(guard);
    EXPECT_TRUE(waitUntil([&] { // it closes what it has inherited first of all
        return QDir(descriptors).entryList(QDir::System | QDir::Files) ==
               QStringList({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")});
    })) << qPrintable(QDir(descriptors).entryList(QDir::System | QDir::Files).join(u' '));
    const std::optional<Process> process = ProcessTable::look(guard);
    ASSERT_TRUE(process);
    EXPECT_NE(process->session, ::getsid(0));
    EXPECT_EQ(process->parent, 1);

    processes->stop(guard);
    EXPECT_TRUE(isRunning(guard));
    processes->resume(main);
    EXPECT_TRUE(waitUntil([] { return guards().empty(); }));
}

TEST_F(ProcessesPuttingBackTest, SecondApplicationStopped_OneGuardStandsUntilBothAreResumed) {
    const std::int32_t one = idOf(script("echo ready; read; sleep 1000", Group::ItsOwn));
    const std::int32_t two = idOf(script("echo ready; read; sleep 1000", Group::ItsOwn));
    processes->stop(one);
    processes->stop(two);
    ASSERT_TRUE(stops(one));
    ASSERT_TRUE(stops(two));
    EXPECT_TRUE(oneGuardStands());
    processes->resume(one);
    EXPECT_TRUE(runs(one));
    EXPECT_TRUE(isStopped(two));
    EXPECT_TRUE(oneGuardStands());
    processes->resume(two);
    EXPECT_TRUE(waitUntil([] { return guards().empty(); }));
    EXPECT_TRUE(runs(two));
}

TEST_F(ProcessesPuttingBackTest, RunThatLives_IsLeftAlone) {
    const std::int32_t main = startApplication();
    QProcess& resident = startResident(main);
    ASSERT_TRUE(stops(main));
    processes->putBack();
    EXPECT_TRUE(isStopped(main));
    EXPECT_EQ(journalled(), 2U);
    killAndCollect(resident);
    EXPECT_TRUE(runs(main));
}

TEST_F(ProcessesPuttingBackTest, LeftByADeadRun_IsResumed) {
    const std::int32_t main = startApplication();
    journalOf(dead, {identityOf(main), main, false});
    sendTo(main, SIGSTOP);
    ASSERT_TRUE(stops(main));
    processes->putBack();
    EXPECT_TRUE(runs(main));
    EXPECT_EQ(journalled(), 0U);
}

TEST_F(ProcessesPuttingBackTest, LeftByADeadRun_IsResumedByTheNextStartOfTheProgram) {
    const PrivateBus bus(PrivateBus::Type::Session);
    ASSERT_TRUE(bus.isRunning());
    const std::int32_t main = startApplication();
    journalOf(dead, {identityOf(main), main, true});
    sendTo(main, SIGSTOP);
    ASSERT_TRUE(stops(main));
    qputenv("HOME", folder.path().toUtf8());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no");
    QProcess resident;
    resident.start(QStringLiteral(QUORVANE_PROGRAM), {});
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(waitUntil([this] { return journalled() == 0; }));
    resident.terminate();
    EXPECT_TRUE(resident.waitForFinished());
}

TEST_F(ProcessesPuttingBackTest, DiedBeforeItWroteDownWhatTheGroupGot_TheGroupIsResumed) {
    const std::int32_t main = startApplication();
    journalOf(dead, {identityOf(main), main, true});
    sendTo(main, SIGSTOP);
    sendTo(pid("child"), SIGSTOP);
    ASSERT_TRUE(stops(main));
    ASSERT_TRUE(stops(pid("child")));
    processes->putBack();
    EXPECT_TRUE(runs(main));
    EXPECT_TRUE(runs(pid("child")));
}

TEST_F(ProcessesPuttingBackTest, AnotherProcessHasGotTheId_ItIsNotResumed) {
    const std::int32_t main = startApplication();
    sendTo(main, SIGSTOP);
    sendTo(pid("child"), SIGSTOP);
    ASSERT_TRUE(stops(main));
    ASSERT_TRUE(stops(pid("child")));
    ProcessIdentity former = identityOf(main);
    --former.startTime;
    journalOf(dead, {former, main, true});
    processes->putBack();
    EXPECT_TRUE(isStopped(main));
    EXPECT_TRUE(isStopped(pid("child")));
    EXPECT_EQ(journalled(), 0U);
}

TEST_F(ProcessesPuttingBackTest, EntriesOfOtherKinds_Stay) {
    ASSERT_TRUE(journal->update([](PuttingBackJournal::Entries& entries) {
        entries.push_back({QStringLiteral("display"), QStringLiteral("panel"), 7, 3, dead});
    }));
    processes->putBack();
    EXPECT_EQ(journalled(), 1U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ProcessesPuttingBackTest, EntryThatNamesNoProcess_IsReportedAndStruckOff) {
    ASSERT_TRUE(journal->update([](PuttingBackJournal::Entries& entries) {
        entries.push_back({QStringLiteral("process"), QStringLiteral("-1"), 7, 3, dead});
    }));
    processes->putBack();
    EXPECT_EQ(journalled(), 0U);
    EXPECT_TRUE(log.contains("A journal entry tells no process to resume and is struck off: "));
}

} // namespace
} // namespace quorvane::test
