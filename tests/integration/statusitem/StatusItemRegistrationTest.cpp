#include "tests/integration/statusitem/StatusItemFixture.h"

#include <QDBusConnectionInterface>

namespace quorvane::test {

namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr QLatin1String watcherName("org.kde.StatusNotifierWatcher");

QDBusMessage accept(const QDBusMessage& call) {
    return call.createReply();
}

QString conventionalName() {
    return QStringLiteral("org.kde.StatusNotifierItem-%1-1")
        .arg(QCoreApplication::applicationPid());
}

} // namespace

/// Each test begins without an item.
class StatusItemRegistrationTest : public StatusItemFixture {
  protected:
    void SetUp() override { ASSERT_TRUE(bus_.isRunning()); }

    void showItem() {
        item_ = bar_.statusItemWithLength(StatusItem::variableLength);
        item_->setMenu(menu_.root());
    }

    /// What the watcher was told so far.
    [[nodiscard]] static QStringList registered(const FakeService& watcher) {
        QStringList names;
        for (const QDBusMessage& call : watcher.calls()) {
            if (call.member() == QLatin1String("RegisterStatusNotifierItem")) {
                names.append(call.arguments().value(0).toString());
            }
        }
        return names;
    }

    [[nodiscard]] static bool waitForItem(const FakeService& watcher) {
        return waitUntil([&watcher] { return !registered(watcher).isEmpty(); });
    }

    [[nodiscard]] bool waitForLog(const char* text) {
        return waitUntil([this, text] { return log_.contains(text); });
    }
};

TEST_F(StatusItemRegistrationTest, WatcherIsThere_RegistersOnceByItsNameOnTheBus) {
    const FakeService watcher(bus_, watcherName, accept);
    showItem();
    ASSERT_TRUE(waitForItem(watcher));
    settle();
    EXPECT_EQ(registered(watcher), QStringList(conventionalName()));
    EXPECT_EQ(watcher.calls().at(0).path(), QLatin1String("/StatusNotifierWatcher"));
    EXPECT_TRUE(bus_.hasOwner(conventionalName()));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(StatusItemRegistrationTest, WatcherComesLater_RegistersThen) {
    showItem();
    ASSERT_TRUE(waitForLog("no bar for status items"));
    const FakeService watcher(bus_, watcherName, accept);
    EXPECT_TRUE(waitForItem(watcher));
}

TEST_F(StatusItemRegistrationTest, WatcherRestarts_RegistersWithEach) {
    showItem();
    for (int start = 0; start < 3; ++start) {
        const FakeService watcher(bus_, watcherName, accept);
        EXPECT_TRUE(waitForItem(watcher)) << start;
        EXPECT_THAT(registered(watcher), SizeIs(1));
    }
}

TEST_F(StatusItemRegistrationTest, NoWatcherAgainAndAgain_OneLogLine) {
    showItem();
    ASSERT_TRUE(waitForLog("no bar for status items"));
    for (int start = 0; start < 2; ++start) {
        const FakeService watcher(bus_, watcherName, accept);
        ASSERT_TRUE(waitForItem(watcher));
    }
    settle();
    EXPECT_THAT(log_.lines(), SizeIs(1));
}

TEST_F(StatusItemRegistrationTest, WatcherThatNeverAnswers_HoldsNothingUp) {
    FakeService watcher(bus_, watcherName, accept);
    watcher.hold();
    showItem();
    ASSERT_TRUE(waitForItem(watcher));
    EXPECT_EQ(property("Id").toString(), QLatin1String("quorvane"));
    item_.reset();
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(StatusItemRegistrationTest, WatcherRefuses_LogLineSaysWhy) {
    const FakeService watcher(bus_, watcherName, [](const QDBusMessage& call) {
        return call.createErrorReply(QStringLiteral("org.example.Full"), QStringLiteral("no room"));
    });
    showItem();
    ASSERT_TRUE(waitForLog("no room"));
    EXPECT_THAT(log_.lines(), SizeIs(1));
}

TEST_F(StatusItemRegistrationTest, WatcherDiesBeforeItAnswers_NoLogLine) {
    {
        FakeService watcher(bus_, watcherName, accept);
        watcher.hold();
        showItem();
        ASSERT_TRUE(waitForItem(watcher));
    }
    ASSERT_TRUE(waitUntil([this] { return !bus_.hasOwner(watcherName); }));
    const FakeService next(bus_, watcherName, accept);
    EXPECT_TRUE(waitForItem(next));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(StatusItemRegistrationTest, NameIsSomebodyElses_RegistersByTheConnectionsOwnName) {
    const FakeService other(bus_, conventionalName(), accept);
    const FakeService watcher(bus_, watcherName, accept);
    showItem();
    ASSERT_TRUE(waitForItem(watcher));
    EXPECT_EQ(registered(watcher), QStringList(program_.baseService()));
}

TEST_F(StatusItemRegistrationTest, ItemEndsWhileTheProgramRuns_ItsNameGoesSoThatHostsDropIt) {
    const FakeService watcher(bus_, watcherName, accept);
    showItem();
    ASSERT_TRUE(waitForItem(watcher));
    item_.reset();
    EXPECT_TRUE(waitUntil([this] { return !bus_.hasOwner(conventionalName()); }));
    showItem();
    EXPECT_TRUE(waitUntil([&watcher] { return registered(watcher).size() == 2; }));
}

TEST_F(StatusItemRegistrationTest, ItemEndsBeforeItHasRegistered_NothingHappens) {
    const FakeService watcher(bus_, watcherName, accept);
    showItem();
    item_.reset();
    showItem();
    EXPECT_TRUE(waitForItem(watcher));
    settle();
    EXPECT_THAT(registered(watcher), SizeIs(1));
}

} // namespace quorvane::test
