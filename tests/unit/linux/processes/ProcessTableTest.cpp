#include "tests/unit/linux/processes/FakeProc.h"

#include <gmock/gmock.h>

#include <unistd.h>

namespace quorvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ProcessTableTest : public testing::Test {
  protected:
    FakeProc proc;
};

TEST_F(ProcessTableTest, Process_IsWhatItsStatTells) {
    proc.add({.pid = 50,
              .parent = 7,
              .group = 40,
              .session = 30,
              .name = "Web Content",
              .terminal = 34816,
              .state = 't'});
    const std::optional<Process> process = ProcessTable::look(50, proc.path());
    ASSERT_TRUE(process);
    EXPECT_EQ(process->identity, (ProcessIdentity{50, FakeProc::startOf(50)}));
    EXPECT_EQ(process->parent, 7);
    EXPECT_EQ(process->group, 40);
    EXPECT_EQ(process->session, 30);
    EXPECT_TRUE(process->hasTerminal);
    EXPECT_TRUE(process->isStopped);
    EXPECT_EQ(process->name, "Web Content");
    proc.add({.pid = 60});
    EXPECT_FALSE(proc.table().find(60)->hasTerminal);
    EXPECT_FALSE(proc.table().find(60)->isStopped);
}

TEST_F(ProcessTableTest, ProcessThatHasEnded_IsNone) {
    proc.add({.pid = 50, .state = 'Z'});
    EXPECT_EQ(proc.table().find(50), nullptr);
    EXPECT_FALSE(ProcessTable::look(50, proc.path()));
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

TEST_F(ProcessTableTest, ApplicationUnit_IsThatOfTheProcessesControlGroup) {
    proc.add({.pid = 50, .unit = "/user.slice/app.slice/app-a-1.scope/inner"});
    EXPECT_EQ(proc.table().applicationUnitOf(50), "/user.slice/app.slice/app-a-1.scope");
    EXPECT_EQ(proc.table().applicationUnitOf(1), "");
    EXPECT_EQ(proc.table().applicationUnitOf(99), "");
}

} // namespace
} // namespace quorvane::test
