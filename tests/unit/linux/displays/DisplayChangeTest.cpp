#include "platform/linux/displays/DisplayChange.h"

#include <QJsonArray>
#include <gmock/gmock.h>

namespace quorvane::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class DisplayChangeTest : public testing::Test {
  protected:
    static std::optional<DisplayChange> parsed(const QJsonValue& found, const QJsonValue& set) {
        return displayChange({QStringLiteral("display"), QStringLiteral("panel"), found, set, {}});
    }
};

TEST_F(DisplayChangeTest, EntryAndBack) {
    const JournalEntry entry =
        displayEntry(QStringLiteral("panel"), {700, {350, 560}}, {811, 20410});
    EXPECT_TRUE(isDisplayEntry(entry));
    EXPECT_EQ(entry.key, QStringLiteral("panel"));
    const std::optional<DisplayChange> change = displayChange(entry);
    ASSERT_TRUE(change);
    EXPECT_EQ(change->found, 700);
    EXPECT_THAT(change->set, ElementsAre(350, 560));
}

TEST_F(DisplayChangeTest, AddedAgain_IsTheLatestOne) {
    DisplayChange change{700, {350, 560}};
    change.addSet(350);
    EXPECT_THAT(change.set, ElementsAre(560, 350));
}

TEST_F(DisplayChangeTest, ValuesThatAreNoBrightness_AreNoChange) {
    EXPECT_TRUE(parsed(700, QJsonArray{350}));
    EXPECT_FALSE(parsed(-1, QJsonArray{350}));
    EXPECT_FALSE(parsed(QStringLiteral("700"), QJsonArray{350}));
    EXPECT_FALSE(parsed(7.5, QJsonArray{350}));
    EXPECT_FALSE(parsed(700, 350));
    EXPECT_FALSE(parsed(700, QJsonArray()));
    EXPECT_FALSE(parsed(700, QJsonArray{350, -2}));
    EXPECT_FALSE(parsed(QJsonValue(), QJsonArray{350}));
}

TEST_F(DisplayChangeTest, ValueThatWasSet_LeadsToTheOneFound) {
    const DisplayChange trace = tracedBack(350, {{700, {560, 350}}});
    EXPECT_EQ(trace.found, 700);
    EXPECT_THAT(trace.set, UnorderedElementsAre(560, 350));
}

TEST_F(DisplayChangeTest, ValueOfSomebodyElse_LeadsNowhere) {
    const DisplayChange trace = tracedBack(500, {{700, {350}}});
    EXPECT_EQ(trace.found, 500);
    EXPECT_TRUE(trace.set.empty());
}

TEST_F(DisplayChangeTest, ChangesOnTopOfEachOther_LeadToTheFirst) {
    EXPECT_EQ(tracedBack(200, {{350, {200}}, {700, {350}}}).found, 700);
    EXPECT_EQ(tracedBack(200, {{700, {350}}, {350, {200}}}).found, 700);
}

TEST_F(DisplayChangeTest, ChangesInACircle_EndSomewhere) {
    EXPECT_EQ(tracedBack(350, {{700, {350}}, {350, {700}}}).found, 350);
}

} // namespace
} // namespace quorvane::test
