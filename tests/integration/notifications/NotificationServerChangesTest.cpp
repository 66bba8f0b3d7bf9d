#include "tests/integration/notifications/NotificationCenterFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace quorvane::test {

/// One server after another.
class NotificationServerChangesTest : public FakeServerFixture {
  protected:
    using Replies = FakeNotificationServer::Replies;
};

TEST_F(NotificationServerChangesTest, ServerThatRestarts_ShowsAgainWhatWasNotActedOn) {
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
    EXPECT_THAT(summaries(), ElementsAre(question().title));
    EXPECT_EQ(server_->requests().front().replacesId, 0U);
    EXPECT_THAT(log_.lines(), IsEmpty());

    activated_.clear();
    server_->invokeAction(1, QStringLiteral("action"));
    settle();
    EXPECT_THAT(activated_, ElementsAre(unanswered.identifier));
}

TEST_F(NotificationServerChangesTest, NumbersOfTheServerBefore_AreForgotten) {
    startServer();
    show(question());
    show(question());
    server_->sendClosed(2);
    settle();
    server_.reset();
    startServer();
    server_->setNextId(50);
    ASSERT_TRUE(waitForRequests(1));
    finishPending();
    server_->invokeAction(1, QStringLiteral("action"));
    server_->invokeAction(2, QStringLiteral("action"));
    settle();
    EXPECT_THAT(activated_, IsEmpty());
    center_->removeAllDelivered();
    settle();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(50U));
}

TEST_F(NotificationServerChangesTest, ServerThatDiesBeforeItAnswers_IsReplacedByTheNext) {
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

TEST_F(NotificationServerChangesTest, ServerThatIsReplacedBeforeItAnswers_ClosesWhatItShowsLate) {
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

TEST_F(NotificationServerChangesTest, ServersThatReplaceOneAnother_AreNoOutage) {
    std::vector<std::unique_ptr<FakeNotificationServer>> replaced;
    startServer();
    center_->deliver(question());
    for (int i = 0; i < 3; ++i) {
        server_->setNotifyReplies(Replies::Held);
        ASSERT_TRUE(waitForRequests(1));
        replaced.push_back(std::move(server_));
        startServer();
    }
    ASSERT_TRUE(waitForRequests(1));
    settle();
    EXPECT_EQ(requestCount(), 1U);
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(NotificationServerChangesTest, SameServerBackInCharge_ShowsInPlaceOfTheOldOne) {
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

TEST_F(NotificationServerChangesTest, ServerThatHangs_IsReplacedByTheNext) {
    startServer({QStringLiteral("body")});
    server_->setCapabilityReplies(Replies::Held);
    center_->deliver(question());
    ASSERT_TRUE(waitUntil([this] { return server_->capabilityRequests() == 1; }));
    const std::unique_ptr<FakeNotificationServer> hanging = std::move(server_);
    startServer();
    server_->setCapabilityReplies(Replies::Held);
    ASSERT_TRUE(waitUntil([this] { return server_->capabilityRequests() == 1; }));

    hanging->answerHeld();
    settle(*hanging);
    settle();
    EXPECT_THAT(server_->requests(), IsEmpty());
    server_->answerHeld();
    finishPending();
    EXPECT_THAT(hanging->requests(), IsEmpty());
    ASSERT_EQ(requestCount(), 1U);
    EXPECT_THAT(server_->requests().front().actions, SizeIs(6));
}

} // namespace quorvane::test
