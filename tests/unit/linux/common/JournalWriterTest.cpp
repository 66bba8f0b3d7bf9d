#include "platform/linux/JournalWriter.h"

#include <gtest/gtest.h>

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

TEST_F(JournalWriterTest, StartTime_IsField22HoweverTheProcessIsCalled) {
    const QByteArray rest = " S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 123456 20 21";
    EXPECT_EQ(startTimeFromStat("42 (quorvane)" + rest), 123456);
    EXPECT_EQ(startTimeFromStat("42 (a) b ( c) R 1)" + rest), 123456);
}

TEST_F(JournalWriterTest, ProcessThatOnlyWaitsForItsParent_HasEnded) {
    const QByteArray rest = " 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 123456 20 21";
    EXPECT_FALSE(startTimeFromStat("42 (quorvane) Z" + rest));
    EXPECT_FALSE(startTimeFromStat("42 (quorvane) X" + rest));
}

TEST_F(JournalWriterTest, OtherTexts_GiveNoStartTime) {
    EXPECT_FALSE(startTimeFromStat(""));
    EXPECT_FALSE(startTimeFromStat("42 (quorvane)"));
    EXPECT_FALSE(startTimeFromStat("42 (quorvane) S 1 2"));
    EXPECT_FALSE(startTimeFromStat("42 (q) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 x 20"));
}

} // namespace
} // namespace quorvane::test
