#include "platform/linux/common/JournalWriter.h"

#include "platform/linux/common/ProcessStat.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::test {
namespace {

class JournalWriterTest : public testing::Test {};

TEST_F(JournalWriterTest, ThisProcess_IsAlive) {
    const JournalWriter self = JournalWriter::self();
    EXPECT_GT(self.pid, 0);
    EXPECT_GT(self.startTime, 0);
    EXPECT_TRUE(self.isAlive());
}

TEST_F(JournalWriterTest, SameIdOtherStart_IsDead) {
    JournalWriter former = JournalWriter::self();
    --former.startTime;
    EXPECT_FALSE(former.isAlive());
}

TEST_F(JournalWriterTest, IdThatNobodyHas_IsDead) {
    EXPECT_FALSE((JournalWriter{0, 0}).isAlive());
    EXPECT_FALSE((JournalWriter{-1, 0}).isAlive());
    EXPECT_FALSE((JournalWriter{1LL << 40, 5}).isAlive());
}

TEST_F(JournalWriterTest, ProcessThatOnlyWaitsForItsParent_IsDead) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::_exit(0);
    }
    siginfo_t ended{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0);
    const std::optional<ProcessStat> stat = ProcessStat::read(child);
    ASSERT_TRUE(stat);
    EXPECT_FALSE((JournalWriter{child, stat->startTime}).isAlive());
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
}

} // namespace
} // namespace quorvane::test
