#include "tests/integration/NotificationCenterFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace quorvane::test {

namespace {

QStringList summaries(const FakeNotificationServer& server) {
    QStringList list;
    for (const FakeNotificationServer::Request& request : server.requests()) {
        list.append(request.summary);
    }
    return list;
}

} // namespace

/// Servers that are not there, come late, hang, or are replaced.
class NotificationOutagesTest : public FakeServerFixture {
  protected:
    using Replies = FakeNotificationServer::Replies;

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
    EXPECT_THAT(summaries(*server_), ElementsAre(QLatin1String("one"), QLatin1String("two")));
    EXPECT_EQ(server_->capabilityRequests(), 1);
}

TEST_F(NotificationOutagesTest, RemovedWhileThereIsNoServer_IsNeverShown) {
    const UserNotification removed = center_->deliver(message(QStringLiteral("removed")));
    center_->deliver(message(QStringLiteral("kept")));
    finishPending();
    center_->removeDelivered(removed);
    startServer();
    ASSERT_TRUE(waitForRequests(1));
    settle();
    EXPECT_THAT(summaries(*server_), ElementsAre(QLatin1String("kept")));
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

TEST_F(NotificationOutagesTest, ServerThatCannotBeStarted_IsWaitedFor) {
    installService(serverName_, QStringLiteral("/bin/false"));
    show(question());
    expectOneLine(QStringLiteral("org.freedesktop.DBus.Error.Spawn.ChildExited"));
    startServer();
    EXPECT_TRUE(waitForRequests(1));
}

TEST_F(NotificationOutagesTest, ServerThatTheBusStarts_IsAskedOnce) {
    // Runs until the bus's folder is gone; the name is taken by the test in its place.
    installService(serverName_,
                   QStringLiteral("/bin/sh -c \"touch %1/started; while [ -d %1 ]; do sleep 0.05; "
                                  "done\"")
                       .arg(bus_.folder()));
    center_->deliver(question());
    center_->deliver(question());
    ASSERT_TRUE(
        waitUntil([this] { return QFile::exists(bus_.folder() + QLatin1String("/started")); }));
    startServer();
    finishPending();
    settle();
    EXPECT_EQ(requestCount(), 2U);
    EXPECT_EQ(server_->capabilityRequests(), 1);
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(NotificationOutagesTest, ServerThatRestarts_ShowsAgainWhatWasNotActedOn) {
    startServer();
    const UserNotification unanswered = show(question());
    show(message(QStringLiteral("acted on")));
    show(message(QStringLiteral("dismissed")));
    show(message(QStringLiteral("closed")));
    const UserNotification removed = show(message(QStringLiteral("removed")));
    server_->invokeAction(2, QStringLiteral("default"));
    server_->invokeAction(3, QStringLiteral("other"));
    server_->sendClosed(4);
    center_->removeDelivered(removed);
    settle();

    server_.reset();
    startServer();
    ASSERT_TRUE(waitForRequests(1));
    finishPending();
    settle();
    EXPECT_THAT(summaries(*server_), ElementsAre(question().title));
    EXPECT_EQ(server_->requests().front().replacesId, 0U);
    EXPECT_THAT(log_.lines(), IsEmpty());

    activated_.clear();
    server_->invokeAction(1, QStringLiteral("action"));
    settle();
    EXPECT_THAT(activated_, ElementsAre(unanswered.identifier));
}

TEST_F(NotificationOutagesTest, NumbersOfTheServerBefore_AreForgotten) {
    startServer();
    show(question());
    server_.reset();
    startServer();
    server_->setNextId(50);
    ASSERT_TRUE(waitForRequests(1));
    finishPending();
    server_->invokeAction(1, QStringLiteral("action"));
    settle();
    EXPECT_THAT(activated_, IsEmpty());
    center_->removeAllDelivered();
    settle();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(50U));
}

TEST_F(NotificationOutagesTest, ServerThatDiesBeforeItAnswers_IsReplacedByTheNext) {
    startServer();
    server_->setNotifyReplies(Replies::Held);
    const UserNotification shown = center_->deliver(question());
    ASSERT_TRUE(waitForRequests(1));
    server_.reset();
    startServer();
    ASSERT_TRUE(waitForRequests(1));
    finishPending();
    settle();
    EXPECT_EQ(requestCount(), 1U);
    server_->invokeAction(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(NotificationOutagesTest, ServerThatIsReplacedBeforeItAnswers_ClosesWhatItShowsLate) {
    startServer();
    server_->setNotifyReplies(Replies::Held);
    const UserNotification shown = center_->deliver(question());
    ASSERT_TRUE(waitForRequests(1));
    const std::unique_ptr<FakeNotificationServer> old = std::move(server_);
    startServer();
    server_->setNextId(9);
    ASSERT_TRUE(waitForRequests(1));

    old->answerHeld();
    finishPending();
    settle(*old);
    EXPECT_THAT(old->closeRequests(), ElementsAre(1U));
    EXPECT_THAT(server_->closeRequests(), IsEmpty());
    EXPECT_EQ(requestCount(), 1U);
    old->invokeAction(9, QStringLiteral("default"));
    settle(*old);
    EXPECT_THAT(activated_, IsEmpty());
    server_->invokeAction(9, QStringLiteral("default"));
    settle();
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(NotificationOutagesTest, SameServerBackInCharge_ShowsInPlaceOfTheOldOne) {
    startServer();
    server_->setNextId(7);
    show(question());
    server_->releaseName();
    settle();
    ASSERT_TRUE(server_->takeName());
    ASSERT_TRUE(waitForRequests(2));
    finishPending();
    settle();
    EXPECT_EQ(server_->requests().back().replacesId, 7U);
    EXPECT_EQ(requestCount(), 2U);
    center_->removeAllDelivered();
    settle();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(7U));
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

TEST_F(NotificationOutagesTest, ServerThatHangs_IsReplacedByTheNext) {
    startServer();
    server_->setCapabilityReplies(Replies::Held);
    center_->deliver(question());
    ASSERT_TRUE(waitUntil([this] { return server_->capabilityRequests() == 1; }));
    const std::unique_ptr<FakeNotificationServer> hanging = std::move(server_);
    startServer();
    ASSERT_TRUE(waitForRequests(1));
    hanging->answerHeld();
    settle(*hanging);
    settle();
    EXPECT_THAT(hanging->requests(), IsEmpty());
    EXPECT_EQ(requestCount(), 1U);
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
    EXPECT_THAT(summaries(*server_), ElementsAre(QLatin1String("refused"), QLatin1String("refused"),
                                                 QLatin1String("next")));
}

} // namespace quorvane::test
