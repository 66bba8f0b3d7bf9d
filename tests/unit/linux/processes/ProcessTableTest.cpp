#include "tests/unit/FakeProc.h"

#include <gmock/gmock.h>

#include <unistd.h>

namespace quorvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* afterName = " 1 2 3 34816 5 6 7 8 9 10 11 12 13 14 15 16 17 18 123456 20 21";

class ProcessTableTest : public testing::Test {
  protected:
    static std::optional<Process> parsed(const QByteArray& beginning) {
        return processFromStat(beginning + afterName);
    }

    FakeProc proc;
};

TEST_F(ProcessTableTest, Stat_TellsIdsStateTerminalAndStart) {
    const std::optional<Process> process = processFromStat(
        "42 (browser) S 7 40 30 34816 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 123456 4464640 746");
    ASSERT_TRUE(process);
    EXPECT_EQ(process->identity, (ProcessIdentity{42, 123456}));
    EXPECT_EQ(process->parent, 7);
    EXPECT_EQ(process->group, 40);
    EXPECT_EQ(process->session, 30);
    EXPECT_TRUE(process->hasTerminal);
    EXPECT_FALSE(process->isStopped);
    EXPECT_EQ(process->name, "browser");
}

TEST_F(ProcessTableTest, NamesWithBlanksAndBrackets_DoNotShiftTheFields) {
    for (const char* name : {"Web Content", "a) S 1 (b", ") R 1 1 1", "(sd-pam)", "", "("}) {
        const std::optional<Process> process = parsed(QByteArray("42 (") + name + ") S");
        ASSERT_TRUE(process) << name;
        EXPECT_EQ(process->name, name);
        EXPECT_EQ(process->parent, 1) << name;
        EXPECT_EQ(process->identity.startTime, 123456) << name;
    }
}

TEST_F(ProcessTableTest, StoppedBySignalOrByDebugger_IsStopped) {
    EXPECT_TRUE(parsed("42 (a) T")->isStopped);
    EXPECT_TRUE(parsed("42 (a) t")->isStopped);
    EXPECT_FALSE(parsed("42 (a) D")->isStopped);
}

TEST_F(ProcessTableTest, ProcessThatHasEnded_IsNone) {
    EXPECT_FALSE(parsed("42 (a) Z"));
    EXPECT_FALSE(parsed("42 (a) X"));
}

TEST_F(ProcessTableTest, TextThatIsNoStat_IsNone) {
    EXPECT_FALSE(processFromStat(""));
    EXPECT_FALSE(processFromStat("42 (a) S 1 2 3"));
    EXPECT_FALSE(processFromStat(QByteArray("42 a S") + afterName));
    EXPECT_FALSE(parsed("4x2 (a) S"));
    EXPECT_FALSE(processFromStat(QByteArray("42 (a) S x") + afterName));
}

TEST_F(ProcessTableTest, ThisProcess_IsInTheKernelsTable) {
    const ProcessTable table = ProcessTable::read();
    const Process* const self = table.find(::getpid());
    ASSERT_NE(self, nullptr);
    EXPECT_EQ(self->parent, ::getppid());
    EXPECT_EQ(self->group, ::getpgrp());
    EXPECT_EQ(self->session, ::getsid(0));
}

TEST_F(ProcessTableTest, WhatIsNoProcess_IsPassedOver) {
    QDir().mkpath(proc.path() + QStringLiteral("/sys"));
    QDir().mkpath(proc.path() + QStringLiteral("/77")); // ended between listing and reading
    const ProcessTable table = proc.table();
    EXPECT_EQ(table.all().size(), 1U);
    const ProcessTable none = ProcessTable::read(QStringLiteral("/no/such/folder"));
    EXPECT_TRUE(none.all().empty());
}

TEST_F(ProcessTableTest, SameIdOtherStart_IsAnotherProcess) {
    proc.add({.pid = 50});
    const ProcessTable table = proc.table();
    EXPECT_TRUE(table.holds({50, FakeProc::startOf(50)}));
    EXPECT_FALSE(table.holds({50, FakeProc::startOf(50) + 1}));
    EXPECT_FALSE(table.holds({51, FakeProc::startOf(51)}));
}

TEST_F(ProcessTableTest, Ancestors_FromTheNearestOn) {
    proc.add({.pid = 50});
    proc.add({.pid = 60, .parent = 50});
    EXPECT_THAT(proc.table().ancestorsOf(60), ElementsAre(50, 1));
    EXPECT_THAT(proc.table().ancestorsOf(99), IsEmpty());
}

TEST_F(ProcessTableTest, ParentsInACircle_EndSomewhere) {
    proc.add({.pid = 50, .parent = 60});
    proc.add({.pid = 60, .parent = 70});
    proc.add({.pid = 70, .parent = 60});
    EXPECT_THAT(proc.table().ancestorsOf(50), ElementsAre(60, 70));
}

TEST_F(ProcessTableTest, Executable_IsTheFileNameAlsoAfterAnUpdate) {
    proc.add({.pid = 50, .executable = "/opt/x/browser (deleted)"});
    proc.add({.pid = 60, .executable = nullptr});
    const ProcessTable table = proc.table();
    EXPECT_EQ(table.executableOf(1), QStringLiteral("systemd"));
    EXPECT_EQ(table.executableOf(50), QStringLiteral("browser"));
    EXPECT_EQ(table.executableOf(60), QString());
}

TEST_F(ProcessTableTest, UserWithOtherRights_IsNotTheUser) {
    proc.add({.pid = 50, .user = 1000});
    const ProcessTable table = proc.table();
    EXPECT_TRUE(table.belongsTo(50, 1000));
    EXPECT_FALSE(table.belongsTo(50, 100));
    EXPECT_FALSE(table.belongsTo(99, 1000)) << "ended";
    QFile status(proc.path() + QStringLiteral("/50/status"));
    ASSERT_TRUE(status.open(QIODevice::WriteOnly));
    status.write("Name:\ta\nUid:\t1000\t0\t0\t0\n");
    status.close();
    EXPECT_FALSE(table.belongsTo(50, 1000)) << "with root's rights";
}

TEST_F(ProcessTableTest, ApplicationUnit_IsTheInnermostScopeOrService) {
    const QString scope = QStringLiteral("/user.slice/app.slice/app-a-1.scope");
    EXPECT_EQ(applicationUnit("0::/user.slice/app.slice/app-a-1.scope\n"), scope);
    EXPECT_EQ(applicationUnit("0::/user.slice/app.slice/app-a-1.scope/inner\n"), scope);
    EXPECT_EQ(applicationUnit("4:memory:/x\n1:name=systemd:/user.slice/app.slice/app-a-1.scope\n"),
              scope);
    EXPECT_EQ(applicationUnit("0::/app.slice/app-a@1.service\n"),
              QStringLiteral("/app.slice/app-a@1.service"));
    EXPECT_EQ(applicationUnit("0::/app.slice/app-a.slice/vte-spawn-1.scope\n"), QString());
    EXPECT_EQ(applicationUnit("0::/session.slice/panel.service\n"), QString());
    EXPECT_EQ(applicationUnit(""), QString());
}

} // namespace
} // namespace quorvane::test
