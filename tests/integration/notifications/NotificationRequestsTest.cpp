#include "tests/integration/notifications/NotificationCenterFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace quorvane::test {

/// What a notification server is asked, depending on what it can do.
class NotificationRequestsTest : public FakeServerFixture {
  protected:
    void SetUp() override {
        FakeServerFixture::SetUp();
        startServer();
    }

    [[nodiscard]] const FakeNotificationServer::Request& lastRequest() const {
        return server_->requests().back();
    }
};

TEST_F(NotificationRequestsTest, Deliver_AsksTheServerAsAgreed) {
    show(question());

    ASSERT_EQ(requestCount(), 1U);
    const FakeNotificationServer::Request& request = lastRequest();
    EXPECT_EQ(request.signature, QLatin1String("susssasa{sv}i"));
    EXPECT_EQ(request.applicationName, QLatin1String("Quorvane"));
    EXPECT_EQ(request.replacesId, 0U);
    EXPECT_EQ(request.icon, QLatin1String("battery-low"));
    EXPECT_EQ(request.summary, QLatin1String("Less Than 70% Battery Remaining"));
    EXPECT_EQ(request.body, QLatin1String("Start Low Power Mode?"));
    EXPECT_EQ(request.expireTimeout, 0);
    EXPECT_EQ(request.hints.keys(),
              (QStringList{QStringLiteral("desktop-entry"), QStringLiteral("urgency")}));
    EXPECT_EQ(request.hints.value(QStringLiteral("desktop-entry")).toString(),
              QLatin1String("com.TarnwickStudios.quorvane"));
    EXPECT_EQ(request.hints.value(QStringLiteral("urgency")), QVariant::fromValue(uchar(1)));
}

TEST_F(NotificationRequestsTest, Deliver_GivesEveryNotificationANewIdentifierAndKeepsTheRest) {
    UserNotification original = question();
    original.identifier = QStringLiteral("mine");
    const UserNotification first = center_->deliver(original);
    const UserNotification second = center_->deliver(first);

    EXPECT_FALSE(first.identifier.isEmpty());
    EXPECT_NE(first.identifier, QLatin1String("mine"));
    EXPECT_NE(first.identifier, second.identifier);
    EXPECT_EQ(second.title, original.title);
    EXPECT_EQ(second.userInfo, original.userInfo);
    finishPending();
    EXPECT_EQ(requestCount(), 2U);
}

TEST_F(NotificationRequestsTest, Buttons_AreOfferedAfterTheClickOnTheBody) {
    show(question());
    EXPECT_EQ(lastRequest().actions.join(QLatin1Char('|')),
              QLatin1String("default||action|Start|other|Not Now"));
}

TEST_F(NotificationRequestsTest, OtherButtonAlone_StillOffersTheClickOnTheBody) {
    UserNotification notification = message(QStringLiteral("Low Power Mode"));
    notification.otherButtonTitle = QStringLiteral("Close");
    show(notification);
    EXPECT_EQ(lastRequest().actions.join(QLatin1Char('|')),
              QLatin1String("default|Quorvane|other|Close"));
}

TEST_F(NotificationRequestsTest, UserInfoAlone_OffersTheClickOnTheBody) {
    UserNotification notification = message(QStringLiteral("Chromium is using a lot of energy"));
    notification.userInfo.insert(QStringLiteral("pid"), 4711);
    show(notification);
    EXPECT_EQ(lastRequest().actions.join(QLatin1Char('|')), QLatin1String("default|Quorvane"));
}

TEST_F(NotificationRequestsTest, NeitherButtonNorUserInfo_OffersNothing) {
    show(message(QStringLiteral("Low Power Mode is on")));
    EXPECT_THAT(lastRequest().actions, IsEmpty());
}

TEST_F(NotificationRequestsTest, ServerWithoutActions_ShowsTheTextAlone) {
    startServer({QStringLiteral("body")});
    show(question());
    EXPECT_EQ(lastRequest().body, QLatin1String("Start Low Power Mode?"));
    EXPECT_THAT(lastRequest().actions, IsEmpty());
}

TEST_F(NotificationRequestsTest, ServerWithMarkup_GetsTheTextEscapedButNotTheTitle) {
    UserNotification notification = message(QStringLiteral("Tom & <i>Jerry</i>"));
    notification.informativeText = QStringLiteral("<b>1</b> & \"2\"");
    show(notification);
    EXPECT_EQ(lastRequest().summary, QLatin1String("Tom & <i>Jerry</i>"));
    EXPECT_EQ(lastRequest().body, QLatin1String("&lt;b&gt;1&lt;/b&gt; &amp; &quot;2&quot;"));
}

TEST_F(NotificationRequestsTest, ServerWithoutMarkup_GetsTheTextAsItIs) {
    startServer({QStringLiteral("actions"), QStringLiteral("body")});
    UserNotification notification = message(QStringLiteral("Title"));
    notification.informativeText = QStringLiteral("<b>1</b> & \"2\"");
    show(notification);
    EXPECT_EQ(lastRequest().body, QLatin1String("<b>1</b> & \"2\""));
}

TEST_F(NotificationRequestsTest, ServerThatRanBefore_IsFound) {
    startCenter();
    const UserNotification shown = show(question());
    ASSERT_EQ(requestCount(), 1U);
    server_->invokeAction(1, QStringLiteral("action"));
    settle();
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(NotificationRequestsTest, Capabilities_AreAskedOnceAServerAndNotBeforeTheyAreNeeded) {
    settle();
    EXPECT_EQ(server_->capabilityRequests(), 0);
    center_->deliver(question());
    center_->deliver(question());
    finishPending();
    show(question());
    EXPECT_EQ(server_->capabilityRequests(), 1);
    EXPECT_EQ(requestCount(), 3U);
}

TEST_F(NotificationRequestsTest, CapabilitiesRefused_AssumesNone) {
    server_->setCapabilityReplies(FakeNotificationServer::Replies::Errors);
    UserNotification notification = question();
    notification.informativeText = QStringLiteral("a & b");
    show(notification);
    EXPECT_EQ(lastRequest().body, QLatin1String("a & b"));
    EXPECT_THAT(lastRequest().actions, IsEmpty());
}

TEST_F(NotificationRequestsTest, HostileTexts_AreShownAndTheBusStays) {
    UserNotification notification = question();
    notification.title = QString(1 << 20, QLatin1Char('x'));
    notification.informativeText = QStringLiteral("a") + QChar(0) + QChar(0xD800) + QChar(0x1B) +
                                   QLatin1String("b\r\nc") + QChar(0xFFFF);
    notification.actionButtonTitle = QString(QChar(0xDC00)) + QLatin1Char('\n');
    show(notification);

    ASSERT_EQ(requestCount(), 1U);
    EXPECT_EQ(lastRequest().summary.size(), 250);
    EXPECT_EQ(lastRequest().body, QString::fromUtf8("a\uFFFDb\nc\uFFFD"));
    EXPECT_EQ(lastRequest().actions.value(3), QString::fromUtf8("\uFFFD "));
    EXPECT_TRUE(connection_.isConnected());
    EXPECT_THAT(log_.lines(), IsEmpty());
}

} // namespace quorvane::test
