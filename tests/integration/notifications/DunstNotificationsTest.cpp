#include "tests/integration/notifications/NotificationDesktopFixture.h"

#include <QJsonDocument>
#include <QJsonValue>

#include <csignal>

using testing::ElementsAre;
using testing::IsEmpty;

namespace quorvane::test {

/// dunst: answers only the program that has sent a notification, knows clicks on the body, and
/// lists the actions in a menu.
class DunstNotificationsTest : public NotificationDesktopFixture {
  protected:
    void SetUp() override {
        const QString lacking =
            missing({QStringLiteral("Xvfb"), QStringLiteral("dunst"), QStringLiteral("dunstctl"),
                     QStringLiteral("dbus-send"), QStringLiteral("busctl")});
        if (!lacking.isEmpty()) {
            GTEST_SKIP() << "skipped: " << lacking.toStdString() << " is not installed";
        }
        ASSERT_TRUE(display_.isRunning());
        NotificationDesktopFixture::SetUp();
        configure();
    }

    // dunst hands the menu to a program, which prints the chosen line. Without `markup` it would
    // read markup while telling that it does not.
    void configure(const QString& markup = QStringLiteral("full")) {
        const QString menu = home_.filePath(QStringLiteral("menu"));
        write(menu, QStringLiteral("#!/bin/sh\ngrep -m1 -F \",$(cat '%1')]\"\n").arg(choice_));
        QFile::setPermissions(menu, QFile::ReadOwner | QFile::ExeOwner);
        write(configuration_, QStringLiteral("[global]\n    dmenu = %1\n    markup = %2\n"
                                             "    stack_duplicates = false\n")
                                  .arg(menu, markup));
    }

    void startServer() {
        ASSERT_TRUE(daemon_.start(QStringLiteral("dunst"),
                                  {QStringLiteral("-conf"), configuration_},
                                  home_.filePath(QStringLiteral("dunst.log"))));
        ASSERT_TRUE(waitForServer());
    }

    static int displayed() {
        return run(QStringLiteral("dunstctl"),
                   {QStringLiteral("count"), QStringLiteral("displayed")})
            .toInt();
    }

    [[nodiscard]] static bool waitForDisplayed(int count) {
        return waitUntil([count] { return displayed() == count; }, std::chrono::seconds(30));
    }

    void choose(const QString& action) {
        write(choice_, action);
        run(QStringLiteral("dunstctl"), {QStringLiteral("context")});
    }

    static void closeAll() { run(QStringLiteral("dunstctl"), {QStringLiteral("close-all")}); }

    /// A text of the notification that was closed last; "message" is the markup that was drawn.
    static QString lastClosed(QLatin1String field) {
        const QString json = run(QStringLiteral("dunstctl"), {QStringLiteral("history")});
        const QJsonValue last = QJsonDocument::fromJson(json.toUtf8())[QLatin1String("data")][0][0];
        return last[field][QLatin1String("data")].toString();
    }

    void expectShownAsItIs(const QString& text) {
        UserNotification notification = question();
        notification.informativeText = text;
        center_->deliver(notification);
        ASSERT_TRUE(waitForDisplayed(1));
        closeAll();
        ASSERT_TRUE(waitForDisplayed(0));
        EXPECT_EQ(lastClosed(QLatin1String("appname")), QLatin1String("Quorvane"));
        EXPECT_EQ(lastClosed(QLatin1String("summary")), notification.title);
        EXPECT_EQ(lastClosed(QLatin1String("message")),
                  QStringLiteral("<b>%1</b>\n%2").arg(notification.title, text.toHtmlEscaped()));
    }

    const QString choice_ = home_.filePath(QStringLiteral("choice"));
    const QString configuration_ = home_.filePath(QStringLiteral("dunstrc"));
};

TEST_F(DunstNotificationsTest, ServerWithMarkup_ShowsTheTextAsItIs) {
    startServer();
    expectShownAsItIs(QStringLiteral("<b>1</b> & \"2\""));
}

TEST_F(DunstNotificationsTest, ServerWithoutMarkup_ShowsTheTextAsItIs) {
    configure(QStringLiteral("no"));
    startServer();
    expectShownAsItIs(QStringLiteral("<b>1</b> & \"2\""));
}

TEST_F(DunstNotificationsTest, ActionButton_ActivatesAndClears) {
    startServer();
    const UserNotification shown = center_->deliver(question());
    ASSERT_TRUE(waitForDisplayed(1));
    choose(QStringLiteral("action"));
    ASSERT_TRUE(waitUntil([this] { return !activated_.isEmpty(); }));
    EXPECT_TRUE(waitForDisplayed(0));
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(DunstNotificationsTest, ClickOnTheBody_Activates) {
    startServer();
    const UserNotification shown = center_->deliver(question());
    ASSERT_TRUE(waitForDisplayed(1));
    run(QStringLiteral("dunstctl"), {QStringLiteral("action"), QStringLiteral("0")});
    ASSERT_TRUE(waitUntil([this] { return !activated_.isEmpty(); }));
    EXPECT_TRUE(waitForDisplayed(0));
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(DunstNotificationsTest, OtherButton_OnlyDismisses) {
    startServer();
    center_->deliver(question());
    ASSERT_TRUE(waitForDisplayed(1));
    choose(QStringLiteral("other"));
    ASSERT_TRUE(waitForDisplayed(0));
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(DunstNotificationsTest, Dismissed_IsNotShownByTheNextServer) {
    startServer();
    center_->deliver(question());
    ASSERT_TRUE(waitForDisplayed(1));
    closeAll();
    ASSERT_TRUE(waitForDisplayed(0));
    const UserNotification kept = center_->deliver(question());
    ASSERT_TRUE(waitForDisplayed(1));
    daemon_.kill();
    startServer();
    ASSERT_TRUE(waitForDisplayed(1));
    center_->removeDelivered(kept);
    EXPECT_TRUE(waitForDisplayed(0));
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(DunstNotificationsTest, Removed_Disappears) {
    startServer();
    const UserNotification first = center_->deliver(question());
    center_->deliver(question());
    ASSERT_TRUE(waitForDisplayed(2));
    center_->removeDelivered(first);
    EXPECT_TRUE(waitForDisplayed(1));
    center_->removeAllDelivered();
    EXPECT_TRUE(waitForDisplayed(0));
}

TEST_F(DunstNotificationsTest, ServerKilledAndRestarted_AsksAgain) {
    startServer();
    const UserNotification shown = center_->deliver(question());
    ASSERT_TRUE(waitForDisplayed(1));
    daemon_.kill();
    startServer();
    ASSERT_TRUE(waitForDisplayed(1));
    choose(QStringLiteral("action"));
    ASSERT_TRUE(waitUntil([this] { return !activated_.isEmpty(); }));
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(DunstNotificationsTest, ServerToldToEndAndRestarted_AsksAgain) {
    startServer();
    center_->deliver(question());
    ASSERT_TRUE(waitForDisplayed(1));
    daemon_.stop();
    startServer();
    EXPECT_TRUE(waitForDisplayed(1));
}

TEST_F(DunstNotificationsTest, ServerThatComesLate_ShowsWhatWaited) {
    center_->deliver(question());
    finishPending();
    startServer();
    EXPECT_TRUE(waitForDisplayed(1));
}

TEST_F(DunstNotificationsTest, NoServer_IsStartedByTheBus) {
    installService(QStringLiteral("org.freedesktop.Notifications"),
                   QStandardPaths::findExecutable(QStringLiteral("dunst")) +
                       QStringLiteral(" -conf ") + configuration_);
    center_->deliver(question());
    center_->deliver(question());
    EXPECT_TRUE(waitForDisplayed(2));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(DunstNotificationsTest, ServerThatIsHeldUp_ShowsItLater) {
    startServer();
    const auto server = static_cast<pid_t>(daemon_.processId());
    ASSERT_GT(server, 1); // others would be the test itself, or everybody
    ASSERT_EQ(::kill(server, SIGSTOP), 0);
    const UserNotification shown = center_->deliver(question());
    EXPECT_FALSE(center_->waitForPending(std::chrono::milliseconds(100)));
    ASSERT_EQ(::kill(server, SIGCONT), 0);
    ASSERT_TRUE(waitForDisplayed(1));
    center_->removeDelivered(shown);
    EXPECT_TRUE(waitForDisplayed(0));
}

TEST_F(DunstNotificationsTest, HostileTexts_AreShownAndTheServerStays) {
    startServer();
    UserNotification notification = question();
    notification.title = QString(1 << 20, QLatin1Char('<'));
    notification.informativeText =
        QString(1 << 20, QLatin1Char('&')) + QChar(0) + QChar(0xD800) + QLatin1Char('\n');
    center_->deliver(notification);
    ASSERT_TRUE(waitForDisplayed(1));
    center_->removeAllDelivered();
    EXPECT_TRUE(waitForDisplayed(0));
    EXPECT_TRUE(daemon_.isRunning());
}

} // namespace quorvane::test
