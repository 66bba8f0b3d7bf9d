#include "tests/integration/notifications/NotificationDesktopFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace quorvane::test {

/// xfce4-notifyd: tells every program about every notification, and has real buttons.
class XfceNotificationsTest : public NotificationDesktopFixture {
  protected:
    void SetUp() override {
        const QString lacking = missing({QStringLiteral("Xvfb"), QStringLiteral("xdotool")});
        if (!lacking.isEmpty()) {
            GTEST_SKIP() << "skipped: " << lacking.toStdString() << " is not installed";
        }
        if (server_.isEmpty() || !QFile::exists(xfconfService)) {
            GTEST_SKIP() << "skipped: xfce4-notifyd or xfconf is not installed";
        }
        ASSERT_TRUE(display_.isRunning());
        NotificationDesktopFixture::SetUp();
        ASSERT_TRUE(QFile::copy(xfconfService,
                                bus_.serviceFolder() + QStringLiteral("/org.xfce.Xfconf.service")));
        askBus(QStringLiteral("ReloadConfig"));
    }

    void startServer() {
        ASSERT_TRUE(daemon_.start(server_, {}, home_.filePath(QStringLiteral("notifyd.log"))));
        ASSERT_TRUE(waitForServer());
    }

    static QStringList windows() {
        return run(QStringLiteral("xdotool"),
                   {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                    QStringLiteral("--class"), QStringLiteral("xfce4-notifyd")})
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    [[nodiscard]] static bool waitForWindows(qsizetype count) {
        return waitUntil([count] { return windows().size() == count; }, std::chrono::seconds(30));
    }

    /// Clicks the only window, `right` and `bottom` pixels from that corner.
    static void click(int right, int bottom) {
        const QString window = windows().value(0);
        const QString geometry =
            run(QStringLiteral("xdotool"),
                {QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window});
        const auto value = [&geometry](const QString& name) {
            return geometry.section(name + QLatin1Char('='), 1)
                .section(QLatin1Char('\n'), 0, 0)
                .toInt();
        };
        run(QStringLiteral("xdotool"),
            {QStringLiteral("mousemove"),
             QString::number(value(QStringLiteral("X")) + value(QStringLiteral("WIDTH")) - right),
             QString::number(value(QStringLiteral("Y")) + value(QStringLiteral("HEIGHT")) - bottom),
             QStringLiteral("click"), QStringLiteral("1")});
    }

    /// The rightmost button is wide and high enough for a click this far from the corner.
    static void clickLastButton() { click(40, 30); }

    static QString installedServer() {
        const QDir libraries(QStringLiteral("/usr/lib"));
        for (const QString& folder : libraries.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QString path =
                libraries.filePath(folder + QStringLiteral("/xfce4/notifyd/xfce4-notifyd"));
            if (QFile::exists(path)) {
                return path;
            }
        }
        return {};
    }

    const QString server_ = installedServer();

  private:
    static inline const QString xfconfService =
        QStringLiteral("/usr/share/dbus-1/services/org.xfce.Xfconf.service");
};

TEST_F(XfceNotificationsTest, ActionButton_ActivatesAndClears) {
    startServer();
    UserNotification notification = question();
    notification.otherButtonTitle.clear();
    const UserNotification shown = center_->deliver(notification);
    ASSERT_TRUE(waitForWindows(1));
    clickLastButton();
    ASSERT_TRUE(waitUntil([this] { return !activated_.isEmpty(); }));
    EXPECT_TRUE(waitForWindows(0));
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(XfceNotificationsTest, OtherButton_OnlyDismisses) {
    startServer();
    center_->deliver(question());
    ASSERT_TRUE(waitForWindows(1));
    clickLastButton();
    ASSERT_TRUE(waitForWindows(0));
    EXPECT_THAT(activated_, IsEmpty());
}

// This server knows no click on the body; a label makes a button of it.
TEST_F(XfceNotificationsTest, UserInfoAlone_HasAButtonToActivate) {
    startServer();
    UserNotification notification = message(QStringLiteral("Chromium is using a lot of energy"));
    notification.userInfo.insert(QStringLiteral("pid"), 4711);
    const UserNotification shown = center_->deliver(notification);
    ASSERT_TRUE(waitForWindows(1));
    clickLastButton();
    ASSERT_TRUE(waitUntil([this] { return !activated_.isEmpty(); }));
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(XfceNotificationsTest, Dismissed_IsNotShownByTheNextServer) {
    startServer();
    center_->deliver(message(QStringLiteral("Low Power Mode is on")));
    ASSERT_TRUE(waitForWindows(1));
    click(100, 30);
    ASSERT_TRUE(waitForWindows(0));
    center_->deliver(question());
    ASSERT_TRUE(waitForWindows(1));
    daemon_.kill();
    startServer();
    ASSERT_TRUE(waitForWindows(1));
    center_->removeAllDelivered();
    EXPECT_TRUE(waitForWindows(0));
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(XfceNotificationsTest, Removed_Disappears) {
    startServer();
    const UserNotification first = center_->deliver(question());
    center_->deliver(question());
    ASSERT_TRUE(waitForWindows(2));
    center_->removeDelivered(first);
    EXPECT_TRUE(waitForWindows(1));
    center_->removeAllDelivered();
    EXPECT_TRUE(waitForWindows(0));
}

TEST_F(XfceNotificationsTest, ServerKilledAndRestarted_AsksAgain) {
    startServer();
    UserNotification notification = question();
    notification.otherButtonTitle.clear();
    const UserNotification shown = center_->deliver(notification);
    ASSERT_TRUE(waitForWindows(1));
    daemon_.kill();
    ASSERT_TRUE(waitForWindows(0));
    startServer();
    ASSERT_TRUE(waitForWindows(1));
    clickLastButton();
    ASSERT_TRUE(waitUntil([this] { return !activated_.isEmpty(); }));
    EXPECT_THAT(activated_, ElementsAre(shown.identifier));
}

TEST_F(XfceNotificationsTest, NoServer_IsStartedByTheBus) {
    installService(QStringLiteral("org.freedesktop.Notifications"), server_);
    center_->deliver(question());
    EXPECT_TRUE(waitForWindows(1));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(XfceNotificationsTest, OtherProgramsNotifications_AreIgnored) {
    startServer();
    center_->deliver(question());
    ASSERT_TRUE(waitForWindows(1));
    const QString otherName = QStringLiteral("other-program");
    {
        LinuxUserNotifications other(bus_.connection(otherName), log_);
        UserNotification notification = question();
        notification.otherButtonTitle.clear();
        bool activated = false;
        QObject::connect(&other, &UserNotificationCenter::activated, &other,
                         [&activated] { activated = true; });
        center_->removeAllDelivered();
        ASSERT_TRUE(waitForWindows(0));
        other.deliver(notification);
        ASSERT_TRUE(waitForWindows(1));
        clickLastButton();
        ASSERT_TRUE(waitUntil([&activated] { return activated; }));
    }
    QDBusConnection::disconnectFromBus(otherName);
    EXPECT_THAT(activated_, IsEmpty());
}

} // namespace quorvane::test
