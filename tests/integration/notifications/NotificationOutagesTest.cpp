#include "tests/integration/notifications/NotificationCenterFixture.h"

#include <QFileInfo>
#include <QTimer>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace quorvane::test {

/// Servers that are not there, come late, end or hang.
class NotificationOutagesTest : public FakeServerFixture {
  protected:
    using Replies = FakeNotificationServer::Replies;

    /// Has the bus start a program that counts its starts and runs until the bus's folder is gone;
    /// the test takes the name in its place.
    void installStandIn() {
        installService(serverName_,
                       QStringLiteral("/bin/sh -c \"echo >>%1/starts; while [ -d %1 ]; "
                                      "do sleep 0.05; done\"")
                           .arg(bus_.folder()));
    }

    [[nodiscard]] qint64 starts() const {
        return QFileInfo(bus_.folder() + QLatin1String("/starts")).size();
    }

    [[nodiscard]] bool waitForStarts(int count) const {
        return waitUntil([&] { return starts() >= count; });
    }

    void expectOneLine(const QString& reason) {
        EXPECT_THAT(log_.lines(),
                    ElementsAre(QStringLiteral("No notification service answers (%1); "
                                               "notifications are shown as soon as one does.")
                                    .arg(reason)));
    }

    const QString serverName_ = QStringLiteral("org.freedesktop.Notifications");
    const QString serviceUnknown_ = QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown");
};

TEST_F(NotificationOutagesTest, NoServer_ShowsEverythingAsSoonAsThereIsOne) {
    center_->deliver(message(QStringLiteral("one")));
    finishPending();
    center_->deliver(message(QStringLiteral("two")));
    finishPending();
    expectOneLine(serviceUnknown_);

    startServer();
    ASSERT_TRUE(waitForRequests(2));
    settle();
    EXPECT_THAT(summaries(), ElementsAre(QLatin1String("one"), QLatin1String("two")));
    EXPECT_EQ(server_->capabilityRequests(), 1);
}

TEST_F(NotificationOutagesTest, NoBus_IsAnOutageLikeAnyOther) {
    const QString name = QStringLiteral("no-bus");
    {
        LinuxUserNotifications center(
            QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent"), name), log_);
        center.deliver(question());
        center.removeAllDelivered();
        center.deliver(question());
        EXPECT_TRUE(center.waitForPending(std::chrono::seconds(60)));
    }
    QDBusConnection::disconnectFromBus(name);
    expectOneLine(QStringLiteral("org.freedesktop.DBus.Error.Disconnected"));
}

TEST_F(NotificationOutagesTest, RemovedWhileThereIsNoServer_IsNeverShown) {
    const UserNotification removed = center_->deliver(message(QStringLiteral("removed")));
    center_->deliver(message(QStringLiteral("kept")));
    finishPending();
    center_->removeDelivered(removed);
    startServer();
    ASSERT_TRUE(waitForRequests(1));
    settle();
    EXPECT_THAT(summaries(), ElementsAre(QLatin1String("kept")));
    EXPECT_THAT(server_->closeRequests(), IsEmpty());
}

TEST_F(NotificationOutagesTest, AllRemovedWhileThereIsNoServer_LeavesTheNextOneAlone) {
    center_->deliver(question());
    finishPending();
    center_->removeAllDelivered();
    startServer();
    settle();
    EXPECT_EQ(server_->capabilityRequests(), 0);
    EXPECT_THAT(server_->requests(), IsEmpty());
}

TEST_F(NotificationOutagesTest, EveryOutage_IsLoggedOnce) {
    show(question());
    show(question());
    EXPECT_THAT(log_.lines(), SizeIs(1));
    startServer();
    ASSERT_TRUE(waitForRequests(2));
    finishPending();
    server_.reset();
    show(question());
    show(question());
    EXPECT_THAT(log_.lines(), SizeIs(2));
}

TEST_F(NotificationOutagesTest, ServerThatCameAndWentUnused_EndsTheOutage) {
    center_->removeDelivered(show(question()));
    startServer();
    settle();
    server_.reset();
    show(question());
    EXPECT_THAT(log_.lines(), SizeIs(2));
}

TEST_F(NotificationOutagesTest, ServerThatAnswersInTime_IsNotLogged) {
    constexpr std::chrono::milliseconds patience(50);
    startCenter({.patience = patience});
    startServer();
    show(question());
    bool hasPassed = false;
    QTimer::singleShot(2 * patience, center_.get(), [&hasPassed] { hasPassed = true; });
    ASSERT_TRUE(waitUntil([&hasPassed] { return hasPassed; }));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(NotificationOutagesTest, ServerThatHangsTwice_IsLoggedTwice) {
    startCenter({.patience = std::chrono::milliseconds(50)});
    startServer();
    show(question());
    for (const int line : {1, 2}) {
        server_->setNotifyReplies(Replies::Held);
        center_->deliver(question());
        ASSERT_TRUE(waitUntil([&] { return log_.lines().size() == line; }));
        server_->answerHeld();
        finishPending();
    }
}

TEST_F(NotificationOutagesTest, ServerThatCannotBeStarted_IsWaitedFor) {
    installService(serverName_, QStringLiteral("/bin/false"));
    show(question());
    expectOneLine(QStringLiteral("org.freedesktop.DBus.Error.Spawn.ChildExited"));
    startServer();
    EXPECT_TRUE(waitForRequests(1));
}

TEST_F(NotificationOutagesTest, ServerThatCanBeStartedByNow_IsStartedForTheNextNotification) {
    show(question());
    installStandIn();
    center_->deliver(question());
    ASSERT_TRUE(waitForStarts(1));
    startServer();
    EXPECT_TRUE(waitForRequests(2));
}

TEST_F(NotificationOutagesTest, ServerThatAppearsDuringTheSearch_IsAskedOnce) {
    startServer();
    show(question()); // the announcement and the answer to the search are both on their way
    settle();
    EXPECT_EQ(server_->capabilityRequests(), 1);
    EXPECT_EQ(requestCount(), 1U);
}

TEST_F(NotificationOutagesTest, ServerThatTheBusStarts_IsAskedOnce) {
    installStandIn();
    center_->deliver(question());
    center_->deliver(question());
    ASSERT_TRUE(waitForStarts(1));
    startServer();
    finishPending();
    settle();
    EXPECT_EQ(requestCount(), 2U);
    EXPECT_EQ(server_->capabilityRequests(), 1);
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(NotificationOutagesTest, ServerThatEndsWithoutAnAnswer_IsStartedOnceMoreOnly) {
    installStandIn();
    center_->deliver(question());
    for (const int start : {1, 2}) {
        ASSERT_TRUE(waitForStarts(start));
        startServer();
        server_->setNotifyReplies(Replies::Held);
        ASSERT_TRUE(waitForRequests(1));
        server_.reset();
    }
    ASSERT_TRUE(waitUntil([this] { return !log_.lines().isEmpty(); }));
    finishPending();
    expectOneLine(QStringLiteral("it ended without a reply"));
    EXPECT_EQ(starts(), 2);

    startServer();
    EXPECT_TRUE(waitForRequests(1));
}

TEST_F(NotificationOutagesTest, ServerThatEndsAfterAnAnswer_IsNotStartedAgain) {
    installStandIn();
    center_->deliver(question());
    ASSERT_TRUE(waitForStarts(1));
    startServer();
    finishPending();
    server_.reset();
    ASSERT_TRUE(waitUntil([this] { return !bus_.hasOwner(serverName_); }));
    FakeNotificationServer bystander(bus_);
    settle(bystander);
    finishPending();
    EXPECT_EQ(starts(), 1);
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(NotificationOutagesTest, LateAnswer_IsAsGoodAsAnEarlyOne) {
    startCenter({.patience = std::chrono::milliseconds(50)});
    startServer();
    server_->setNotifyReplies(Replies::Held);
    const UserNotification shown = center_->deliver(question());
    ASSERT_TRUE(waitForRequests(1));
    ASSERT_TRUE(waitUntil([this] { return !log_.lines().isEmpty(); }));
    center_->deliver(question());
    ASSERT_TRUE(waitForRequests(2));
    expectOneLine(QStringLiteral("no reply in time"));

    server_->answerHeld();
    finishPending();
    settle();
    EXPECT_EQ(requestCount(), 2U);
    server_->invokeAction(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(NotificationOutagesTest, CapabilitiesNeverTold_AssumesNone) {
    startCenter({.patience = std::chrono::milliseconds(50)});
    startServer();
    server_->setCapabilityReplies(Replies::Held);
    center_->deliver(question());
    ASSERT_TRUE(waitForRequests(1));
    EXPECT_THAT(server_->requests().front().actions, IsEmpty());
}

TEST_F(NotificationOutagesTest, RefusedNotification_IsTriedAgainWithTheNextOne) {
    startServer();
    server_->setNotifyReplies(Replies::Errors);
    show(message(QStringLiteral("refused")));
    expectOneLine(QStringLiteral("org.freedesktop.DBus.Error.Failed"));
    server_->setNotifyReplies(Replies::AtOnce);
    show(message(QStringLiteral("next")));
    EXPECT_THAT(summaries(), ElementsAre(QLatin1String("refused"), QLatin1String("refused"),
                                         QLatin1String("next")));
}

} // namespace quorvane::test
