#include "platform/linux/LinuxDisplays.h"

#include "tests/support/FakeService.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/WaitUntil.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <cerrno>
#include <cmath>
#include <limits>
#include <memory>

/// The value of User.Display: id and path of a session.
struct SessionOfUser {
    QString id;
    QDBusObjectPath path;
};
Q_DECLARE_METATYPE(SessionOfUser)

QDBusArgument& operator<<(QDBusArgument& argument, const SessionOfUser& session) {
    argument.beginStructure();
    argument << session.id << session.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, SessionOfUser& session) {
    argument.beginStructure();
    argument >> session.id >> session.path;
    argument.endStructure();
    return argument;
}

namespace quorvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto limit = std::chrono::seconds(10);
constexpr QLatin1String logindName("org.freedesktop.login1");
constexpr QLatin1String ownSession("/org/freedesktop/login1/session/auto");

/// The port over backlight devices in a folder, with a logind of the test's own or none.
class LinuxDisplaysTest : public testing::Test {
  protected:
    void SetUp() override {
        qDBusRegisterMetaType<SessionOfUser>();
        addPanel("panel", "raw", 700, 1000);
        openDisplays();
    }

    void TearDown() override {
        displays.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    void openDisplays() {
        displays.reset();
        journal = std::make_unique<PuttingBackJournal>(journalPath(), log);
        displays = std::make_unique<LinuxDisplays>(bus.connection(connectionName), *journal, log,
                                                   folder.path());
    }

    [[nodiscard]] QString journalPath() const {
        return folder.filePath(QStringLiteral("run/quorvane/putting-back.journal"));
    }

    [[nodiscard]] QString panelFolder(const char* name) const {
        return folder.filePath(QStringLiteral("class/backlight/") + QLatin1String(name));
    }

    void setAttribute(const char* panel, const char* attribute, const QByteArray& value) const {
        QFile file(panelFolder(panel) + QLatin1Char('/') + QLatin1String(attribute));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(value + '\n');
    }

    void addPanel(const char* name, const char* type, int raw, int maximum) const {
        QDir().mkpath(panelFolder(name));
        setAttribute(name, "type", type);
        setAttribute(name, "brightness", QByteArray::number(raw));
        setAttribute(name, "max_brightness", QByteArray::number(maximum));
    }

    /// The device's file cannot be written any more; its brightness is read from the other one.
    void forbidWriting(const char* name, int raw) const {
        const QString file = panelFolder(name) + QStringLiteral("/brightness");
        ASSERT_TRUE(QFile::remove(file));
        ASSERT_TRUE(QDir().mkpath(file));
        setAttribute(name, "actual_brightness", QByteArray::number(raw));
    }

    [[nodiscard]] int raw(const char* name = "panel") const {
        return Backlights(folder.path()).raw(QLatin1String(name)).value_or(-1);
    }

    void setRaw(int value) const { setAttribute("panel", "brightness", QByteArray::number(value)); }

    /// A logind that sets what it is asked to. `sets` is the attribute that it writes.
    std::unique_ptr<FakeService> startLogind(const char* sets = "brightness") {
        return std::make_unique<FakeService>(
            bus, logindName, [this, sets](const QDBusMessage& call) {
                if (call.member() != QLatin1String("SetBrightness")) {
                    return call.createReply(QVariant::fromValue(
                        QDBusVariant(QVariant::fromValue(SessionOfUser{displayId, displayPath}))));
                }
                if (call.path() == ownSession && !refusal.isEmpty()) {
                    return call.createErrorReply(
                        QStringLiteral("org.freedesktop.login1.NoSessionForPID"), refusal);
                }
                setAttribute(call.arguments().at(1).toString().toUtf8().constData(), sets,
                             QByteArray::number(call.arguments().at(2).toUInt()));
                return call.createReply();
            });
    }

    /// The values that logind was asked to set, in their order.
    [[nodiscard]] static std::vector<uint> asked(const FakeService& logind) {
        std::vector<uint> values;
        for (const QDBusMessage& call : logind.calls()) {
            if (call.member() == QLatin1String("SetBrightness")) {
                values.push_back(call.arguments().at(2).toUInt());
            }
        }
        return values;
    }

    [[nodiscard]] DisplayId panel() const {
        const Displays::List list = displays->activeDisplays(16);
        return list.displays.empty() ? 0 : list.displays.front();
    }

    [[nodiscard]] float brightness() const { return displays->brightness(panel()).brightness; }

    void dim(float value) const { ASSERT_EQ(displays->setBrightness(panel(), value), 0); }

    [[nodiscard]] bool rawBecomes(int value) const {
        return waitUntil([&] { return raw() == value; });
    }

    /// Runs the event loop until nothing is under way.
    [[nodiscard]] bool settles() const {
        return waitUntil([this] { return displays->waitForWrites(std::chrono::milliseconds(0)); });
    }

    static void pass() {
        [[maybe_unused]] const bool never =
            waitUntil([] { return false; }, std::chrono::milliseconds(200));
    }

    [[nodiscard]] std::vector<DisplayChange> journalled() const {
        std::vector<DisplayChange> changes;
        for (const JournalEntry& entry :
             journal->entries().value_or(PuttingBackJournal::Entries())) {
            changes.push_back(displayChange(entry).value_or(DisplayChange{-1, {}}));
        }
        return changes;
    }

    void journalOf(const JournalWriter& writer, int found, std::vector<int> set,
                   const char* name = "panel") const {
        ASSERT_TRUE(journal->update([&](PuttingBackJournal::Entries& entries) {
            entries.push_back(displayEntry(QLatin1String(name), {found, std::move(set)}, writer));
        }));
    }

    /// Another run of the program that has dimmed the panel, and lives.
    std::unique_ptr<QProcess> startOtherRun(const char* value) const {
        auto process = std::make_unique<QProcess>();
        process->start(QStringLiteral(QUORVANE_DIMMING_PROCESS),
                       {bus.address(), folder.path(), journalPath(), QLatin1String(value)});
        EXPECT_TRUE(waitUntil([&] { return process->readAllStandardOutput().contains("dimmed"); }));
        return process;
    }

    const QString connectionName = QStringLiteral("displays");
    const JournalWriter dead{1LL << 40, 5};
    PrivateBus bus{PrivateBus::Type::System};
    QTemporaryDir folder;
    RecordingLog log;
    QString refusal; ///< what logind says to a caller's own session
    QString displayId = QStringLiteral("c7");
    QDBusObjectPath displayPath{QStringLiteral("/org/freedesktop/login1/session/c7")};
    std::unique_ptr<PuttingBackJournal> journal;
    std::unique_ptr<LinuxDisplays> displays;
};

TEST_F(LinuxDisplaysTest, List_IsInOrderAndIdsStayWithTheirDevices) {
    addPanel("acpi", "firmware", 5, 10);
    const auto both = displays->activeDisplays(16).displays;
    ASSERT_EQ(both.size(), 2U);
    EXPECT_FLOAT_EQ(displays->brightness(both[0]).brightness, 0.5F);
    EXPECT_FLOAT_EQ(displays->brightness(both[1]).brightness, 0.7F);
    EXPECT_THAT(displays->activeDisplays(1).displays, ElementsAre(both[0]));

    QDir(panelFolder("acpi")).removeRecursively();
    EXPECT_THAT(displays->activeDisplays(16).displays, ElementsAre(both[1]));
    EXPECT_EQ(displays->brightness(both[0]).status, ENODEV);
    EXPECT_EQ(displays->setBrightness(both[0], 0.5F), ENODEV);
    addPanel("acpi", "firmware", 5, 10);
    EXPECT_EQ(displays->activeDisplays(16).displays, both);
}

TEST_F(LinuxDisplaysTest, NoDisplay_EmptyListWithoutError) {
    QDir(panelFolder("panel")).removeRecursively();
    EXPECT_EQ(displays->activeDisplays(16).status, 0);
    EXPECT_THAT(displays->activeDisplays(16).displays, IsEmpty());
    EXPECT_EQ(displays->brightness(99).status, ENODEV);
    EXPECT_EQ(displays->setBrightness(99, 0.5F), ENODEV);
}

TEST_F(LinuxDisplaysTest, Set_GoesThroughLogindForTheCallersSession) {
    const auto logind = startLogind();
    dim(0.35F);
    ASSERT_TRUE(rawBecomes(350));
    const QDBusMessage call = logind->calls().constFirst();
    EXPECT_EQ(call.path(), ownSession);
    EXPECT_EQ(call.signature(), QStringLiteral("ssu"));
    EXPECT_EQ(call.arguments().at(0), QStringLiteral("backlight"));
    EXPECT_EQ(call.arguments().at(1), QStringLiteral("panel"));
}

TEST_F(LinuxDisplaysTest, SetOutOfRange_IsCutDown) {
    dim(1.5F);
    EXPECT_TRUE(rawBecomes(1000));
    dim(-3.0F);
    EXPECT_TRUE(rawBecomes(0));
    EXPECT_EQ(displays->setBrightness(panel(), std::numeric_limits<float>::quiet_NaN()), EINVAL);
    EXPECT_TRUE(settles());
    EXPECT_EQ(raw(), 0);
}

TEST_F(LinuxDisplaysTest, WhileSettingIsUnderWay_BrightnessIsTheOneSet) {
    const auto logind = startLogind();
    logind->hold();
    dim(0.1234F);
    EXPECT_EQ(brightness(), 0.1234F);
    ASSERT_TRUE(waitUntil([&] { return !logind->calls().isEmpty(); }));
    EXPECT_EQ(brightness(), 0.1234F);
    EXPECT_EQ(raw(), 700);
    logind->release();
    ASSERT_TRUE(settles());
    EXPECT_EQ(brightness(), 0.123F);
}

TEST_F(LinuxDisplaysTest, SeveralSetsInARow_StayInOrderAndTheLatestSupersedesThoseNotSent) {
    const auto logind = startLogind();
    logind->hold();
    for (const float value : {0.6F, 0.5F, 0.4F, 0.3F}) {
        dim(value);
    }
    EXPECT_EQ(brightness(), 0.3F);
    ASSERT_TRUE(waitUntil([&] { return !logind->calls().isEmpty(); }));
    logind->release();
    ASSERT_TRUE(settles());
    EXPECT_EQ(raw(), 300);
    EXPECT_THAT(asked(*logind), ElementsAre(600, 300));
}

TEST_F(LinuxDisplaysTest, ProgramWithoutSession_TakesTheOneOnTheUsersDisplay) {
    refusal = QStringLiteral("no session");
    const auto logind = startLogind();
    dim(0.35F);
    ASSERT_TRUE(rawBecomes(350));
    EXPECT_EQ(logind->calls().constLast().path(), displayPath.path());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LinuxDisplaysTest, UserWithoutSession_FileIsWritten) {
    refusal = QStringLiteral("no session");
    displayId.clear();
    displayPath.setPath(QStringLiteral("/"));
    const auto logind = startLogind();
    dim(0.35F);
    EXPECT_TRUE(rawBecomes(350));
    EXPECT_EQ(asked(*logind).size(), 1U);
}

TEST_F(LinuxDisplaysTest, NoLogind_FileIsWritten) {
    setRaw(1000);
    dim(0.055F);
    EXPECT_TRUE(rawBecomes(55));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LinuxDisplaysTest, NoBusAtAll_FileIsWritten) {
    displays = std::make_unique<LinuxDisplays>(QDBusConnection(QStringLiteral("no such bus")),
                                               *journal, log, folder.path());
    dim(0.35F);
    EXPECT_TRUE(rawBecomes(350));
}

TEST_F(LinuxDisplaysTest, NeitherLogindNorFile_OneLineSaysWhy) {
    forbidWriting("panel", 700);
    dim(0.35F);
    ASSERT_TRUE(settles());
    dim(0.30F);
    ASSERT_TRUE(settles());
    ASSERT_EQ(log.lines().size(), 1);
    for (const char* part : {"panel", "350", "directory", "org.freedesktop.login1", "session"}) {
        EXPECT_TRUE(log.contains(part)) << part;
    }
    EXPECT_FLOAT_EQ(brightness(), 0.7F);
}

TEST_F(LinuxDisplaysTest, LogindLeavesInTheMiddle_FileIsWritten) {
    auto logind = startLogind();
    logind->hold();
    dim(0.35F);
    ASSERT_TRUE(waitUntil([&] { return !logind->calls().isEmpty(); }));
    logind.reset();
    EXPECT_TRUE(rawBecomes(350));
}

TEST_F(LinuxDisplaysTest, LogindComesLate_WhatCouldNotBeSetIsSetThen) {
    forbidWriting("panel", 700);
    dim(0.35F);
    ASSERT_TRUE(settles());
    EXPECT_EQ(raw(), 700);
    const auto logind = startLogind("actual_brightness");
    EXPECT_TRUE(rawBecomes(350));
}

TEST_F(LinuxDisplaysTest, LogindComesLateAndTheUserWasFaster_TheUsersBrightnessStays) {
    forbidWriting("panel", 700);
    dim(0.35F);
    ASSERT_TRUE(settles());
    setAttribute("panel", "actual_brightness", "500");
    const auto logind = startLogind("actual_brightness");
    pass();
    EXPECT_EQ(raw(), 500);
    EXPECT_THAT(asked(*logind), IsEmpty());
}

TEST_F(LinuxDisplaysTest, WaitForWrites_FinishesThemWithoutAnEventLoop) {
    dim(0.5F);
    dim(0.35F);
    EXPECT_TRUE(displays->waitForWrites(limit));
    EXPECT_EQ(raw(), 350);
}

TEST_F(LinuxDisplaysTest, WaitForWrites_GivesUpOnALogindThatHangs) {
    const auto logind = startLogind();
    dim(0.35F); // the service lives in this thread and cannot answer now
    EXPECT_FALSE(displays->waitForWrites(std::chrono::milliseconds(50)));
}

TEST_F(LinuxDisplaysTest, Journal_HasTheChangeBeforeItIsMade) {
    const auto logind = startLogind();
    logind->hold();
    dim(0.35F);
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(raw(), 700);
    EXPECT_EQ(journalled()[0].found, 700);
    EXPECT_THAT(journalled()[0].set, ElementsAre(350));
}

TEST_F(LinuxDisplaysTest, Journal_KeepsWhatWasFoundFirstAndWhatWasSetLast) {
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

TEST_F(LinuxDisplaysTest, ChangesEnded_StrikesOffOnlyAfterTheLastWriteIsConfirmed) {
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

TEST_F(LinuxDisplaysTest, ChangesEndedWithNothingUnderWay_StrikesOffAtOnce) {
    dim(0.35F);
    ASSERT_TRUE(settles());
    displays->changesEnded();
    EXPECT_THAT(journalled(), IsEmpty());
    displays->changesEnded();
    EXPECT_THAT(journalled(), IsEmpty());
}

TEST_F(LinuxDisplaysTest, SetAfterChangesEnded_StartsAnew) {
    dim(0.35F);
    ASSERT_TRUE(settles());
    displays->changesEnded();
    setRaw(900);
    dim(0.2F);
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(journalled()[0].found, 900);
}

TEST_F(LinuxDisplaysTest, SetWhilePuttingBackIsUnderWay_FindsWhatIsBeingPutBack) {
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

TEST_F(LinuxDisplaysTest, RestoringFailed_EntryStaysUntilItSucceeds) {
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

TEST_F(LinuxDisplaysTest, JournalCannotBeWritten_BrightnessIsNotSet) {
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

TEST_F(LinuxDisplaysTest, PutBackOwn_RestoresWhatWasFound) {
    dim(0.5F);
    dim(0.35F);
    ASSERT_TRUE(settles());
    displays->putBack();
    EXPECT_TRUE(displays->waitForWrites(limit));
    EXPECT_EQ(raw(), 700);
    EXPECT_THAT(journalled(), IsEmpty());
}

TEST_F(LinuxDisplaysTest, PutBackWhileDimmingIsUnderWay_EndsBright) {
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

TEST_F(LinuxDisplaysTest, PutBackWhilePuttingBackIsUnderWay_ChangesNothing) {
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

TEST_F(LinuxDisplaysTest, RunThatWasKilled_NextRunPutsBack) {
    const auto other = startOtherRun("0.35");
    ASSERT_EQ(raw(), 350);
    other->kill();
    ASSERT_TRUE(other->waitForFinished());
    displays->putBack();
    EXPECT_TRUE(rawBecomes(700));
    EXPECT_TRUE(waitUntil([this] { return journalled().empty(); }));
}

TEST_F(LinuxDisplaysTest, RunThatLives_IsLeftAlone) {
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

TEST_F(LinuxDisplaysTest, UserChangedTheBrightnessAfterACrash_ItStays) {
    journalOf(dead, 700, {350});
    setRaw(500);
    displays->putBack();
    pass();
    EXPECT_EQ(raw(), 500);
    EXPECT_THAT(journalled(), IsEmpty());
}

TEST_F(LinuxDisplaysTest, CrashBeforeTheChangeWasMade_NothingToPutBack) {
    journalOf(dead, 700, {350});
    displays->putBack();
    pass();
    EXPECT_EQ(raw(), 700);
    EXPECT_THAT(journalled(), IsEmpty());
}

TEST_F(LinuxDisplaysTest, CrashBetweenTwoChanges_EitherValueIsPutBack) {
    journalOf(dead, 700, {500, 350});
    setRaw(500);
    displays->putBack();
    EXPECT_TRUE(rawBecomes(700));
}

TEST_F(LinuxDisplaysTest, TwoCrashesOnTopOfEachOther_TheFirstFindIsPutBack) {
    journalOf({dead.pid, 6}, 350, {200});
    journalOf(dead, 700, {350});
    setRaw(200);
    displays->putBack();
    EXPECT_TRUE(rawBecomes(700));
    EXPECT_TRUE(waitUntil([this] { return journalled().empty(); }));
}

TEST_F(LinuxDisplaysTest, NothingCanBeWrittenYet_EntryWaitsForLogind) {
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

TEST_F(LinuxDisplaysTest, NotPutBackYetAndSetAgain_TheOldestFindStays) {
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

TEST_F(LinuxDisplaysTest, SetWithoutPuttingBackFirst_TheOldestFindStays) {
    journalOf(dead, 700, {350});
    setRaw(350);
    dim(0.2F);
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(journalled()[0].found, 700);
}

TEST_F(LinuxDisplaysTest, SetAfterTheUserUndidADeadRunsDimming_TheUsersIsFound) {
    journalOf(dead, 700, {350});
    setRaw(600);
    dim(0.2F);
    ASSERT_EQ(journalled().size(), 1U);
    EXPECT_EQ(journalled()[0].found, 600);
}

TEST_F(LinuxDisplaysTest, DisplayIsGone_EntryWaitsForItsReturn) {
    journalOf(dead, 700, {350}, "dock");
    displays->putBack();
    pass();
    EXPECT_EQ(journalled().size(), 1U);
    EXPECT_TRUE(log.lines().isEmpty());

    addPanel("dock", "raw", 350, 1000);
    displays->putBack();
    EXPECT_TRUE(waitUntil([this] { return raw("dock") == 700 && journalled().empty(); }));
}

TEST_F(LinuxDisplaysTest, JournalSaysMoreThanTheDisplayCan_ItsMaximumIsSet) {
    journalOf(dead, 5000, {350});
    setRaw(350);
    displays->putBack();
    EXPECT_TRUE(rawBecomes(1000));
}

TEST_F(LinuxDisplaysTest, EntryWithoutBrightness_IsReportedAndStruckOff) {
    ASSERT_TRUE(journal->update([this](PuttingBackJournal::Entries& entries) {
        entries.push_back({QStringLiteral("display"), QStringLiteral("panel"),
                           QStringLiteral("bright"), QStringLiteral("dark"), dead});
    }));
    displays->putBack();
    EXPECT_TRUE(log.contains("\"bright\""));
    EXPECT_EQ(journal->entries(), PuttingBackJournal::Entries());
    EXPECT_EQ(raw(), 700);
}

TEST_F(LinuxDisplaysTest, UnreadableLine_OthersAreStillPutBack) {
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

TEST_F(LinuxDisplaysTest, EntriesOfOtherKinds_AreLeftAlone) {
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
