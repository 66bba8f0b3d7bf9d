#include "platform/linux/common/ProcessStat.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace quorvane::test {
namespace {

constexpr const char* afterName = " 1 2 3 34816 5 6 7 8 9 10 11 12 13 14 15 16 17 18 123456 20 21";

std::optional<ProcessStat> parsed(const QByteArray& beginning) {
    return ProcessStat::parse(beginning + afterName);
}

TEST(ProcessStatTest, EachField_IsReadFromItsPlace) {
    const auto stat = ProcessStat::parse("42 (browser) S 7 40 30 34816 -1 4194304 1 2 3 4 21 34 55 "
                                         "89 20 0 9 0 123456 4464640 746\n");
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->pid, 42);
    EXPECT_EQ(stat->name, "browser");
    EXPECT_EQ(stat->state, 'S');
    EXPECT_EQ(stat->parent, 7);
    EXPECT_EQ(stat->group, 40);
    EXPECT_EQ(stat->session, 30);
    EXPECT_EQ(stat->terminal, 34816);
    EXPECT_EQ(stat->userTicks, 21);
    EXPECT_EQ(stat->systemTicks, 34);
    EXPECT_EQ(stat->threads, 9);
    EXPECT_EQ(stat->startTime, 123456);
}

TEST(ProcessStatTest, NamesWithBlanksAndBrackets_DoNotShiftTheFields) {
    for (const char* name :
         {"Web Content", "a) S 1 (b", ") R 1 1 1", "(sd-pam)", "", "(", "a) b (c"}) {
        const auto stat = parsed(QByteArray("42 (") + name + ") S");
        ASSERT_TRUE(stat) << name;
        EXPECT_EQ(stat->name, name);
        EXPECT_EQ(stat->parent, 1) << name;
        EXPECT_EQ(stat->startTime, 123456) << name;
    }
}

TEST(ProcessStatTest, StoppedBySignalOrByDebugger_IsStopped) {
    EXPECT_TRUE(parsed("42 (a) T")->isStopped());
    EXPECT_TRUE(parsed("42 (a) t")->isStopped());
    EXPECT_FALSE(parsed("42 (a) D")->isStopped());
}

TEST(ProcessStatTest, ProcessThatOnlyWaitsForItsParent_HasEnded) {
    EXPECT_TRUE(parsed("42 (a) Z")->hasEnded());
    EXPECT_TRUE(parsed("42 (a) X")->hasEnded());
    EXPECT_FALSE(parsed("42 (a) S")->hasEnded());
}

TEST(ProcessStatTest, TextThatIsNoStat_IsNone) {
    EXPECT_FALSE(ProcessStat::parse(""));
    EXPECT_FALSE(ProcessStat::parse("42"));
    EXPECT_FALSE(ProcessStat::parse("42 (a"));
    EXPECT_FALSE(ProcessStat::parse("42 )a( S"));
    EXPECT_FALSE(ProcessStat::parse("42 (a)"));
    EXPECT_FALSE(ProcessStat::parse("42 (a) S 1 2 3"));
    EXPECT_FALSE(ProcessStat::parse("42 (a) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18"));
    EXPECT_FALSE(ProcessStat::parse("42 (a) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 x 20"));
    EXPECT_FALSE(ProcessStat::parse(QByteArray("42 a S") + afterName));
    EXPECT_FALSE(ProcessStat::parse(QByteArray("42 (a) S x") + afterName));
    EXPECT_FALSE(ProcessStat::parse(QByteArray("42 (a) ") + afterName));
    EXPECT_FALSE(parsed("4x2 (a) S"));
}

TEST(ProcessStatTest, ThisProcess_IsFound) {
    const auto stat = ProcessStat::read(::getpid());
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->pid, ::getpid());
    EXPECT_EQ(stat->parent, ::getppid());
    EXPECT_GE(stat->threads, 1);
}

TEST(ProcessStatTest, IdThatNobodyHas_IsNone) {
    EXPECT_FALSE(ProcessStat::read(0));
    EXPECT_FALSE(ProcessStat::read(-1));
    EXPECT_FALSE(ProcessStat::read(1LL << 40));
    EXPECT_FALSE(ProcessStat::read(50, QStringLiteral("/no/such/folder")));
}

} // namespace
} // namespace quorvane::test
