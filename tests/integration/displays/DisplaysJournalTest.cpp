#include "tests/integration/displays/LinuxDisplaysFixture.h"

#include <QDir>
#include <QFile>
#include <gmock/gmock.h>

#include <cerrno>

namespace quorvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What stands in the journal while a brightness is not the one that was found.
class DisplaysJournalTest : public LinuxDisplaysFixture {};

TEST_F(DisplaysJournalTest, NoBusAtAll_FileIsWritten) {
    displays = std::make_unique<LinuxDisplays>(QDBusConnection(QStringLiteral("no such bus")),
                                               *journal, log, folder.path());
    dim(0.35F);
    EXPECT_TRUE(rawBecomes(350));
}

TEST_F(DisplaysJournalTest, Journal_HasTheChangeBeforeItIsMade) {
    const auto logind = startLogind();
    logind->hold();
    dim(0.35F);
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(raw(), 700);
    EXPECT_EQ(journalled()[0].found, 700);
    EXPECT_THAT(journalled()[0].set, ElementsAre(350));
}

TEST_F(DisplaysJournalTest, Journal_KeepsWhatWasFoundFirstAndWhatWasSetLast) {
    dim(0.5F);
    ASSERT_TRUE(settles());
    const auto logind = startLogind();
    logind->hold();
    dim(0.4F);
    EXPECT_THAT(journalled()[0].set, ElementsAre(500, 400)) << "either may be there after a crash";
    ASSERT_TRUE(waitUntil([&] { return !logind->calls().isEmpty(); }));
    logind->release();
    ASSERT_TRUE(settles());
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(journalled()[0].found, 700);
    EXPECT_THAT(journalled()[0].set, ElementsAre(400));
}

TEST_F(DisplaysJournalTest, ChangesEnded_StrikesOffOnlyAfterTheLastWriteIsConfirmed) {
    dim(0.35F);
    ASSERT_TRUE(settles());
    const auto logind = startLogind();
    logind->hold();
    dim(0.7F);
    displays->changesEnded();
    pass();
    EXPECT_EQ(journalled().size(), 1U);
    logind->release();
    ASSERT_TRUE(settles());
    EXPECT_THAT(journalled(), IsEmpty());
    EXPECT_EQ(raw(), 700);
}

TEST_F(DisplaysJournalTest, ChangesEndedWithNothingUnderWay_StrikesOffAtOnce) {
    dim(0.35F);
    ASSERT_TRUE(settles());
    displays->changesEnded();
    EXPECT_THAT(journalled(), IsEmpty());
    displays->changesEnded();
    EXPECT_THAT(journalled(), IsEmpty());
}

TEST_F(DisplaysJournalTest, SetAfterChangesEnded_StartsAnew) {
    dim(0.35F);
    ASSERT_TRUE(settles());
    displays->changesEnded();
    setRaw(900);
    dim(0.2F);
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(journalled()[0].found, 900);
}

TEST_F(DisplaysJournalTest, SetWhilePuttingBackIsUnderWay_FindsWhatIsBeingPutBack) {
    dim(0.35F);
    ASSERT_TRUE(settles());
    const auto logind = startLogind();
    logind->hold();
    dim(0.7F);
    displays->changesEnded();
    dim(0.2F);
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(journalled()[0].found, 700);
    EXPECT_TRUE(journalled()[0].mayHaveSet(350)) << "nothing has been written yet";
    ASSERT_TRUE(waitUntil([&] { return !logind->calls().isEmpty(); }));
    logind->release();
    ASSERT_TRUE(settles());
    EXPECT_THAT(journalled().at(0).set, ElementsAre(200));
}

TEST_F(DisplaysJournalTest, RestoringFailed_EntryStaysUntilItSucceeds) {
    auto logind = startLogind();
    dim(0.35F);
    ASSERT_TRUE(settles());
    logind.reset();
    forbidWriting("panel", 350);
    dim(0.7F);
    displays->changesEnded();
    ASSERT_TRUE(settles());
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(journalled()[0].found, 700);

    logind = startLogind("actual_brightness");
    EXPECT_TRUE(rawBecomes(700));
    EXPECT_TRUE(waitUntil([this] { return journalled().empty(); }));
}

TEST_F(DisplaysJournalTest, JournalCannotBeWritten_BrightnessIsNotSet) {
    QDir().mkpath(folder.filePath(QStringLiteral("run")));
    QFile obstacle(folder.filePath(QStringLiteral("run/quorvane")));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    EXPECT_EQ(displays->setBrightness(panel(), 0.35F), EIO);
    EXPECT_EQ(displays->setBrightness(panel(), 0.35F), EIO);
    pass();
    EXPECT_EQ(raw(), 700);
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.contains("putting-back.journal"));
}

} // namespace
} // namespace quorvane::test
