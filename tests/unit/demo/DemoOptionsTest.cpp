#include "apps/demo/DemoOptions.h"

#include <gtest/gtest.h>

namespace quorvane::test {

class DemoOptionsTest : public testing::Test {
  protected:
    static std::variant<DemoOptions, DemoOptions::Message> parse(const QStringList& arguments) {
        return DemoOptions::parse(QStringList{QStringLiteral("quorvane-demo")} + arguments,
                                  QStringLiteral("1.2.3"));
    }

    static DemoOptions options(const QStringList& arguments) {
        const auto parsed = parse(arguments);
        EXPECT_TRUE(std::holds_alternative<DemoOptions>(parsed));
        const auto* found = std::get_if<DemoOptions>(&parsed);
        return found != nullptr ? *found : DemoOptions{};
    }

    static DemoOptions::Message message(const QStringList& arguments) {
        const auto parsed = parse(arguments);
        EXPECT_TRUE(std::holds_alternative<DemoOptions::Message>(parsed));
        const auto* found = std::get_if<DemoOptions::Message>(&parsed);
        return found != nullptr ? *found : DemoOptions::Message{};
    }
};

TEST_F(DemoOptionsTest, NoArguments_AskAtSeventyAndStart) {
    const DemoOptions defaults = options({});

    EXPECT_EQ(defaults.plan.mode, LaunchMode::Ask);
    EXPECT_EQ(defaults.plan.threshold, 70);
    EXPECT_EQ(defaults.plan.answer, DayPlan::Answer::Start);
    EXPECT_EQ(defaults.speed, 1.0);
    EXPECT_FALSE(defaults.plain);
}

TEST_F(DemoOptionsTest, EveryOption_IsTaken) {
    const DemoOptions all = options({QStringLiteral("--mode"), QStringLiteral("manual"),
                                     QStringLiteral("--threshold=0"), QStringLiteral("--answer"),
                                     QStringLiteral("not-now"), QStringLiteral("--speed=2.5"),
                                     QStringLiteral("--plain")});

    EXPECT_EQ(all.plan.mode, LaunchMode::Manual);
    EXPECT_EQ(all.plan.threshold, 0);
    EXPECT_EQ(all.plan.answer, DayPlan::Answer::NotNow);
    EXPECT_EQ(all.speed, 2.5);
    EXPECT_TRUE(all.plain);
    EXPECT_EQ(options({QStringLiteral("--mode=automatic")}).plan.mode, LaunchMode::Automatic);
}

TEST_F(DemoOptionsTest, BadValue_MessageNamesItAndWhatIsAllowed) {
    struct Case {
        const char* argument;
        const char* expected;
    };

    for (const auto& [argument, expected] :
         {Case{"--mode=fast", "--mode cannot be \"fast\"; allowed are automatic, ask and manual."},
          Case{"--mode=Ask", "--mode cannot be \"Ask\""},
          Case{"--threshold=101",
               "--threshold cannot be \"101\"; allowed are whole numbers from 0 to 100."},
          Case{"--threshold=-1", "\"-1\""}, Case{"--threshold=", "--threshold cannot be \"\""},
          Case{"--threshold=7.5", "\"7.5\""}, Case{"--threshold=seventy", "\"seventy\""},
          Case{"--answer=yes", "--answer cannot be \"yes\"; allowed are start and not-now."},
          Case{"--speed=0", "--speed cannot be \"0\"; allowed are numbers from 0.1 to 100."},
          Case{"--speed=nan", "\"nan\""}, Case{"--speed=1e9", "\"1e9\""}, Case{"--bogus", "bogus"},
          Case{"--answer", "answer"}, Case{"noon", "\"noon\""}}) {
        const DemoOptions::Message complaint = message({QString::fromLatin1(argument)});
        EXPECT_TRUE(complaint.isError) << argument;
        EXPECT_TRUE(complaint.text.contains(QString::fromLatin1(expected)))
            << argument << ": " << complaint.text.toStdString();
    }
}

TEST_F(DemoOptionsTest, Help_NamesEveryOption) {
    const DemoOptions::Message help = message({QStringLiteral("--help")});

    EXPECT_FALSE(help.isError);
    for (const char* option :
         {"--mode", "--threshold", "--answer", "--speed", "--plain", "--version", "--help"}) {
        EXPECT_TRUE(help.text.contains(QString::fromLatin1(option))) << option;
    }
}

TEST_F(DemoOptionsTest, Version_IsTheGivenOne) {
    const DemoOptions::Message version = message({QStringLiteral("--version")});

    EXPECT_FALSE(version.isError);
    EXPECT_EQ(version.text, QStringLiteral("quorvane-demo 1.2.3\n"));
}

TEST_F(DemoOptionsTest, OwnThreshold_LiesBelowTheProgramsButNotTooLow) {
    EXPECT_EQ((DayPlan{LaunchMode::Manual, 70, {}}).ownThreshold(), 55);
    EXPECT_EQ((DayPlan{LaunchMode::Manual, 20, {}}).ownThreshold(), 10);
    EXPECT_EQ((DayPlan{LaunchMode::Manual, 0, {}}).ownThreshold(), 10);
}

} // namespace quorvane::test
