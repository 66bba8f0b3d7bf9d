#include "platform/linux/notifications/LinuxUserNotifications.h"

#include "tests/integration/notifications/NotificationCenterFixture.h"

#include <QSet>

#include <array>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;

namespace quorvane::test {

/// What becomes of notifications that are on the screen or on their way there.
class LinuxUserNotificationsTest : public FakeServerFixture {
  protected:
    void SetUp() override {
        FakeServerFixture::SetUp();
        startServer();
    }
};

TEST_F(LinuxUserNotificationsTest, ClickOnTheBody_ActivatesOnce) {
    const UserNotification shown = show(question());
    server_->invokeAction(1, QStringLiteral("default"));
    server_->invokeAction(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(LinuxUserNotificationsTest, ActionButton_Activates) {
    show(question());
    const UserNotification second = show(question());
    server_->invokeAction(2, QStringLiteral("action"), connection_.baseService());
    settle();
    EXPECT_THAT(activated_, ElementsAre(second.identifier));
}

TEST_F(LinuxUserNotificationsTest, Activation_CarriesTheWholeNotification) {
    UserNotification heard;
    QObject::connect(center_.get(), &UserNotificationCenter::activated, center_.get(),
                     [&heard](const UserNotification& notification) { heard = notification; });
    show(question());
    server_->invokeAction(1, QStringLiteral("action"));
    settle();
    EXPECT_EQ(heard.title, question().title);
    EXPECT_EQ(heard.userInfo, question().userInfo);
}

TEST_F(LinuxUserNotificationsTest, OtherButton_OnlyDismisses) {
    const UserNotification shown = show(question());
    server_->invokeAction(1, QStringLiteral("other"));
    server_->invokeAction(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(LinuxUserNotificationsTest, UnknownAction_ChangesNothing) {
    const UserNotification shown = show(question());
    server_->invokeAction(1, QStringLiteral("inline-reply"));
    settle();
    EXPECT_THAT(activated_, IsEmpty());
    server_->invokeAction(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

// Some servers leave a notification on the screen after a click.
TEST_F(LinuxUserNotificationsTest, ActedOn_IsTakenOffTheScreenAndOutOfTheList) {
    show(question());
    server_->invokeAction(1, QStringLiteral("action"));
    settle();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(1U));
    center_->removeAllDelivered();
    settle();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(1U));
}

TEST_F(LinuxUserNotificationsTest, ClosedAfterTheClick_ActivatesOnce) {
    const UserNotification shown = show(question());
    server_->invokeAction(1, QStringLiteral("action"));
    server_->sendClosed(1);
    settle();
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(LinuxUserNotificationsTest, ClosedBeforeTheClick_ActivatesOnce) {
    const UserNotification shown = show(question());
    server_->sendClosed(1);
    server_->invokeAction(1, QStringLiteral("action"));
    server_->invokeAction(1, QStringLiteral("action"));
    settle();
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(LinuxUserNotificationsTest, ClickLongAfterTheClosing_IsNoActivation) {
    startCenter({.lateAction = std::chrono::milliseconds(0)});
    show(question());
    server_->sendClosed(1);
    settle();
    server_->invokeAction(1, QStringLiteral("action"));
    settle();
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(LinuxUserNotificationsTest, Closed_LeavesTheList) {
    const UserNotification shown = show(question());
    server_->sendClosed(1);
    settle();
    center_->removeDelivered(shown);
    settle();
    EXPECT_THAT(server_->closeRequests(), IsEmpty());
}

TEST_F(LinuxUserNotificationsTest, SignalsBeforeTheAnswer_Count) {
    server_->setNotifyReplies(FakeNotificationServer::Replies::Held);
    const UserNotification first = center_->deliver(question());
    const UserNotification second = center_->deliver(question());
    ASSERT_TRUE(waitForRequests(2));
    server_->sendClosed(1);
    server_->invokeAction(2, QStringLiteral("action"));
    server_->sendClosed(2);
    settle();
    EXPECT_THAT(activated_, IsEmpty());
    server_->answerHeld();
    finishPending();
    EXPECT_THAT(activated_, ElementsAre(second.identifier));
    center_->removeDelivered(first);
    settle();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(2U));
}

TEST_F(LinuxUserNotificationsTest, OtherProgramsNumbers_AreIgnored) {
    const UserNotification shown = show(question());
    server_->invokeAction(2, QStringLiteral("default"));
    server_->sendClosed(3);
    server_->invokeAction(0, QStringLiteral("default"));
    settle();
    show(question());
    EXPECT_THAT(activated_, IsEmpty());
    center_->removeDelivered(shown);
    settle();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(1U));
}

TEST_F(LinuxUserNotificationsTest, OtherProgramsNumbersBeforeTheAnswer_AreIgnored) {
    server_->setNotifyReplies(FakeNotificationServer::Replies::Held);
    center_->deliver(question());
    ASSERT_TRUE(waitForRequests(1));
    constexpr uint foreign = 1000;
    for (uint id = foreign; id < foreign + 200; ++id) {
        server_->invokeAction(id, QStringLiteral("default"));
    }
    settle();
    server_->answerHeld();
    finishPending();
    server_->setNextId(foreign + 1);
    show(question());
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(LinuxUserNotificationsTest, ImitatedServer_IsIgnored) {
    const UserNotification shown = show(question());
    FakeNotificationServer imitation(bus_);
    imitation.invokeAction(1, QStringLiteral("default"));
    imitation.invokeAction(1, QStringLiteral("default"), connection_.baseService());
    imitation.sendClosed(1);
    imitation.sendClosed(1, connection_.baseService());
    settle(imitation);
    EXPECT_THAT(activated_, IsEmpty());
    center_->removeDelivered(shown);
    settle();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(1U));
}

TEST_F(LinuxUserNotificationsTest, MalformedSignals_AreIgnored) {
    const UserNotification shown = show(question());
    const QString action = QStringLiteral("ActionInvoked");
    server_->sendSignal(action, {});
    server_->sendSignal(action, {1U});
    server_->sendSignal(action, {QStringLiteral("1"), QStringLiteral("default")});
    server_->sendSignal(QStringLiteral("NotificationClosed"), {QStringLiteral("1")});
    settle();
    EXPECT_THAT(activated_, IsEmpty());
    server_->invokeAction(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(LinuxUserNotificationsTest, RemoveDelivered_ClosesIt) {
    show(question());
    const UserNotification second = show(question());
    center_->removeDelivered(second);
    center_->removeDelivered(second);
    settle();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(2U));
    server_->invokeAction(2, QStringLiteral("default"));
    settle();
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(LinuxUserNotificationsTest, RemoveOneThatWasNeverDelivered_IsNoError) {
    show(question());
    center_->removeDelivered(question());
    settle();
    EXPECT_THAT(server_->closeRequests(), IsEmpty());
}

TEST_F(LinuxUserNotificationsTest, RemovedBeforeTheAnswer_IsClosedAsSoonAsItsNumberIsKnown) {
    server_->setNotifyReplies(FakeNotificationServer::Replies::Held);
    const UserNotification first = center_->deliver(question());
    center_->deliver(question());
    ASSERT_TRUE(waitForRequests(2));
    center_->removeDelivered(first);
    server_->invokeAction(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(server_->closeRequests(), IsEmpty());
    server_->answerHeld();
    finishPending();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(1U));
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(LinuxUserNotificationsTest, RemovedJustAfterItWasClosed_IsNotActivatedAnyMore) {
    const UserNotification shown = show(question());
    server_->sendClosed(1);
    settle();
    center_->removeDelivered(shown);
    server_->invokeAction(1, QStringLiteral("default"));
    settle();
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(LinuxUserNotificationsTest, RemoveAllDelivered_ClosesThoseOnTheScreenAndThoseOnTheirWay) {
    show(question());
    show(question());
    server_->setNotifyReplies(FakeNotificationServer::Replies::Held);
    center_->deliver(question());
    ASSERT_TRUE(waitForRequests(3));
    center_->removeAllDelivered();
    server_->answerHeld();
    finishPending();
    EXPECT_THAT(server_->closeRequests(), ElementsAre(1U, 2U, 3U));
}

TEST_F(LinuxUserNotificationsTest, DeliveredAndRemovedWithinAnActivation_Works) {
    QObject::connect(center_.get(), &UserNotificationCenter::activated, center_.get(), [this] {
        center_->removeAllDelivered();
        center_->deliver(message(QStringLiteral("Low Power Mode is on")));
    });
    show(question());
    show(question());
    server_->invokeAction(1, QStringLiteral("action"));
    ASSERT_TRUE(waitForRequests(3));
    settle();
    EXPECT_EQ(server_->requests().back().summary, QLatin1String("Low Power Mode is on"));
    EXPECT_THAT(server_->closeRequests(), ElementsAre(1U, 2U));
}

TEST_F(LinuxUserNotificationsTest, WaitForPending_WithNothingPending_ReturnsTrue) {
    EXPECT_TRUE(center_->waitForPending(std::chrono::milliseconds(0)));
    show(question());
    EXPECT_TRUE(center_->waitForPending(std::chrono::milliseconds(0)));
}

TEST_F(LinuxUserNotificationsTest, WaitForPending_SeesTheLastRemovalThrough) {
    center_->deliver(question());
    center_->removeAllDelivered();
    center_->deliver(question());
    ASSERT_TRUE(waitForRequests(1));
    center_->removeAllDelivered();
    finishPending();
    center_.reset();
    EXPECT_EQ(server_->closeRequests().size(), requestCount());
}

TEST_F(LinuxUserNotificationsTest, WaitForPending_WithAServerThatHangs_GivesUp) {
    server_->setNotifyReplies(FakeNotificationServer::Replies::Held);
    center_->deliver(question());
    EXPECT_FALSE(center_->waitForPending(std::chrono::milliseconds(50)));
}

TEST_F(LinuxUserNotificationsTest, AnyThread_DeliversAndRemoves) {
    show(question());
    constexpr std::size_t perThread = 25;
    QMutex mutex;
    QSet<QString> identifiers;
    const auto work = [&] {
        for (std::size_t i = 0; i < perThread; ++i) {
            const UserNotification shown = center_->deliver(question());
            {
                const QMutexLocker lock(&mutex);
                identifiers.insert(shown.identifier);
            }
            center_->removeDelivered(shown);
        }
    };
    std::array<std::thread, 4> threads;
    for (std::thread& thread : threads) {
        thread = std::thread(work);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    finishPending();
    EXPECT_EQ(identifiers.size(), threads.size() * perThread);
    EXPECT_EQ(requestCount(), 1 + threads.size() * perThread);
    EXPECT_EQ(server_->closeRequests().size(), threads.size() * perThread);
}

TEST_F(LinuxUserNotificationsTest, RemoveAllOnTheMainThread_ReachesWhatAThreadDeliveredBefore) {
    show(question());
    std::thread([this] { center_->deliver(question()); }).join();
    center_->removeAllDelivered();
    finishPending();
    EXPECT_EQ(server_->closeRequests().size(), requestCount());
}

} // namespace quorvane::test
