#include "tests/integration/displays/LinuxDisplaysFixture.h"

#include <QFile>
#include <gmock/gmock.h>

namespace quorvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What a dead run of the program has left, and its own changes, are put back.
class DisplaysPuttingBackTest : public LinuxDisplaysFixture {};

TEST_F(DisplaysPuttingBackTest, PutBackOwn_RestoresWhatWasFound) {
    dim(0.5F);
    dim(0.35F);
    ASSERT_TRUE(settles());
    displays->putBack();
    EXPECT_TRUE(displays->waitForWrites(limit));
    EXPECT_EQ(raw(), 700);
    EXPECT_THAT(journalled(), IsEmpty());
}

TEST_F(DisplaysPuttingBackTest, PutBackWhileDimmingIsUnderWay_EndsBright) {
    const auto logind = startLogind();
    logind->hold();
    dim(0.35F);
    ASSERT_TRUE(waitUntil([&] { return !logind->calls().isEmpty(); }));
    displays->putBack();
    logind->release();
    ASSERT_TRUE(settles());
    EXPECT_EQ(raw(), 700);
    EXPECT_THAT(asked(*logind), ElementsAre(350, 700));
    EXPECT_THAT(journalled(), IsEmpty());
}

TEST_F(DisplaysPuttingBackTest, PutBackWhilePuttingBackIsUnderWay_ChangesNothing) {
    dim(0.35F);
    ASSERT_TRUE(settles());
    const auto logind = startLogind();
    logind->hold();
    displays->putBack();
    displays->putBack();
    EXPECT_EQ(journalled().size(), 1U);
    ASSERT_TRUE(waitUntil([&] { return !logind->calls().isEmpty(); }));
    logind->release();
    ASSERT_TRUE(settles());
    EXPECT_THAT(asked(*logind), ElementsAre(700));
    EXPECT_THAT(journalled(), IsEmpty());
}

TEST_F(DisplaysPuttingBackTest, RunThatWasKilled_NextRunPutsBack) {
    const auto other = startOtherRun("0.35");
    ASSERT_EQ(raw(), 350);
    other->kill();
    ASSERT_TRUE(other->waitForFinished());
    displays->putBack();
    EXPECT_TRUE(rawBecomes(700));
    EXPECT_TRUE(waitUntil([this] { return journalled().empty(); }));
}

TEST_F(DisplaysPuttingBackTest, RunThatLives_IsLeftAlone) {
    const auto other = startOtherRun("0.35");
    displays->putBack();
    displays->changesEnded();
    pass();
    EXPECT_EQ(raw(), 350);
    EXPECT_EQ(journalled().size(), 1U);

    dim(0.2F);
    ASSERT_TRUE(settles());
    displays->putBack();
    EXPECT_TRUE(rawBecomes(350)) << "what the living run has set";
    EXPECT_TRUE(waitUntil([this] { return journalled().size() == 1; }));

    other->kill();
    ASSERT_TRUE(other->waitForFinished());
    displays->putBack();
    EXPECT_TRUE(rawBecomes(700));
}

TEST_F(DisplaysPuttingBackTest, UserChangedTheBrightnessAfterACrash_ItStays) {
    journalOf(dead, 700, {350});
    setRaw(500);
    displays->putBack();
    pass();
    EXPECT_EQ(raw(), 500);
    EXPECT_THAT(journalled(), IsEmpty());
}

TEST_F(DisplaysPuttingBackTest, CrashBeforeTheChangeWasMade_NothingToPutBack) {
    journalOf(dead, 700, {350});
    displays->putBack();
    pass();
    EXPECT_EQ(raw(), 700);
    EXPECT_THAT(journalled(), IsEmpty());
}

TEST_F(DisplaysPuttingBackTest, CrashBetweenTwoChanges_EitherValueIsPutBack) {
    journalOf(dead, 700, {500, 350});
    setRaw(500);
    displays->putBack();
    EXPECT_TRUE(rawBecomes(700));
}

TEST_F(DisplaysPuttingBackTest, TwoCrashesOnTopOfEachOther_TheFirstFindIsPutBack) {
    journalOf({dead.pid, 6}, 350, {200});
    journalOf(dead, 700, {350});
    setRaw(200);
    displays->putBack();
    EXPECT_TRUE(rawBecomes(700));
    EXPECT_TRUE(waitUntil([this] { return journalled().empty(); }));
}

TEST_F(DisplaysPuttingBackTest, NothingCanBeWrittenYet_EntryWaitsForLogind) {
    forbidWriting("panel", 350);
    journalOf(dead, 700, {350});
    displays->putBack();
    ASSERT_TRUE(settles());
    displays->putBack();
    ASSERT_TRUE(settles());
    EXPECT_EQ(journalled().size(), 1U);
    EXPECT_EQ(log.lines().size(), 1) << "told once";

    const auto logind = startLogind("actual_brightness");
    EXPECT_TRUE(rawBecomes(700));
    EXPECT_TRUE(waitUntil([this] { return journalled().empty(); }));
}

TEST_F(DisplaysPuttingBackTest, NotPutBackYetAndSetAgain_TheOldestFindStays) {
    forbidWriting("panel", 350);
    journalOf(dead, 700, {350});
    displays->putBack();
    ASSERT_TRUE(settles());
    dim(0.2F);
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(journalled()[0].found, 700);
    EXPECT_TRUE(journalled()[0].mayHaveSet(350));
    EXPECT_TRUE(journalled()[0].mayHaveSet(200));
}

TEST_F(DisplaysPuttingBackTest, SetWithoutPuttingBackFirst_TheOldestFindStays) {
    journalOf(dead, 700, {350});
    setRaw(350);
    dim(0.2F);
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(journalled()[0].found, 700);
}

TEST_F(DisplaysPuttingBackTest, SetAfterTheUserUndidADeadRunsDimming_TheUsersIsFound) {
    journalOf(dead, 700, {350});
    setRaw(600);
    dim(0.2F);
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(journalled()[0].found, 600);
}

TEST_F(DisplaysPuttingBackTest, DisplayIsGone_EntryWaitsForItsReturn) {
    journalOf(dead, 700, {350}, "dock");
    displays->putBack();
    pass();
    EXPECT_EQ(journalled().size(), 1U);
    EXPECT_TRUE(log.lines().isEmpty());

    addPanel("dock", "raw", 350, 1000);
    displays->putBack();
    EXPECT_TRUE(waitUntil([this] { return raw("dock") == 700 && journalled().empty(); }));
}

TEST_F(DisplaysPuttingBackTest, JournalSaysMoreThanTheDisplayCan_ItsMaximumIsSet) {
    journalOf(dead, 5000, {350});
    setRaw(350);
    displays->putBack();
    EXPECT_TRUE(rawBecomes(1000));
}

TEST_F(DisplaysPuttingBackTest, EntryWithoutBrightness_IsReportedAndStruckOff) {
    ASSERT_TRUE(journal->update([this](PuttingBackJournal::Entries& entries) {
        entries.push_back({QStringLiteral("display"), QStringLiteral("panel"),
                           QStringLiteral("bright"), QStringLiteral("dark"), dead});
    }));
    displays->putBack();
    EXPECT_TRUE(log.contains("\"bright\""));
    EXPECT_EQ(journal->entries(), PuttingBackJournal::Entries());
    EXPECT_EQ(raw(), 700);
}

TEST_F(DisplaysPuttingBackTest, UnreadableLine_OthersAreStillPutBack) {
    journalOf(dead, 700, {350});
    setRaw(350);
    QFile file(journalPath());
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("{\"kind\":\"disp\n");
    file.close();
    displays->putBack();
    EXPECT_TRUE(rawBecomes(700));
    EXPECT_TRUE(log.contains("line 2"));
}

TEST_F(DisplaysPuttingBackTest, EntriesOfOtherKinds_AreLeftAlone) {
    const JournalEntry radio{QStringLiteral("radio"), QStringLiteral("panel"), true, false, dead};
    ASSERT_TRUE(
        journal->update([&](PuttingBackJournal::Entries& entries) { entries.push_back(radio); }));
    displays->putBack();
    dim(0.35F);
    ASSERT_TRUE(settles());
    displays->changesEnded();
    EXPECT_EQ(journal->entries(), PuttingBackJournal::Entries{radio});
}

} // namespace
} // namespace quorvane::test
