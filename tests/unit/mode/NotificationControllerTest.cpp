#include "mode/NotificationController.h"

#include "battery/Battery.h"
#include "core/EventCenter.h"
#include "mode/BatterySaver.h"
#include "tests/unit/mode/TestModules.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

namespace quorvane::test {

namespace {

const QString question = QStringLiteral("Less Than 20% Battery Remaining");

class NotificationControllerTest : public SimulatedLaptopTest {
  protected:
    NotificationControllerTest() {
        useModules(completeModules);
        store("BatteryThreshold", 20);
    }

    void startDischarging(double percent) {
        laptop().powerSources().setPercent(percent);
        laptop().powerSources().setEstimate(3600.0);
        start();
    }

    static BatterySaver& saver() { return BatterySaver::batterySaver(); }

    static NotificationController& notifier() { return saver().notifier(); }

    SimulatedPowerSources& power() { return laptop().powerSources(); }

    [[nodiscard]] qsizetype questions() { return notificationTitles().count(question); }

    [[nodiscard]] UserNotification newest() {
        return laptop().userNotifications().history().last();
    }

    // Lets the mode save this many whole minutes: 1.4 in each.
    void saveMinutes(int minutes) {
        for (const auto& module : saver().modules()) {
            module->setEnabled(true);
        }
        saver().setEnabled(true);
        while (saver().minutesSaved() < static_cast<float>(minutes)) {
            saver().updateMinutesSaved();
        }
    }

    void activate(const QVariantMap& userInfo) {
        UserNotification notification;
        notification.userInfo = userInfo;
        Q_EMIT laptop().userNotifications().activated(notification);
    }
};

} // namespace

TEST_F(NotificationControllerTest, ThreeDropsAroundTheThreshold_AskExactlyOnceAtIt) {
    startDischarging(22);
    power().discharge(21);
    EXPECT_EQ(questions(), 0);
    power().discharge(20);
    EXPECT_EQ(questions(), 1);
    power().discharge(19);
    EXPECT_EQ(questions(), 1);
    EXPECT_TRUE(notifier().alreadyAsked());
}

TEST_F(NotificationControllerTest, ManualMode_NoEventHasAnyEffectNotEvenPluggingIn) {
    store("QuorvaneAutoStartSetting", 2);
    startDischarging(22);
    power().discharge(15);
    power().charge(15);
    power().discharge(14);
    EXPECT_TRUE(notificationTitles().isEmpty());
    EXPECT_FALSE(notifier().alreadyAsked());
    saver().setEnabled(true);
    power().charge(15);
    EXPECT_TRUE(saver().enabled());
}

TEST_F(NotificationControllerTest, UnpluggingBeneathTheThreshold_AsksAgainAndSoDoesTheNextDrop) {
    startDischarging(21);
    power().discharge(16);
    ASSERT_EQ(questions(), 1);
    power().charge(15);
    power().discharge(15);
    EXPECT_EQ(questions(), 2);
    EXPECT_FALSE(notifier().alreadyAsked());
    power().discharge(14);
    EXPECT_EQ(questions(), 3);
    power().discharge(13);
    EXPECT_EQ(questions(), 3);
}

TEST_F(NotificationControllerTest, UnpluggingAboveTheThreshold_AsksNothing) {
    startDischarging(80);
    power().charge(80);
    notifier().setAlreadyAsked(true);
    power().discharge(80);
    EXPECT_EQ(questions(), 0);
    EXPECT_FALSE(notifier().alreadyAsked());
}

TEST_F(NotificationControllerTest, PluggingInWithOneMinuteSaved_SaysThatTheModeStops) {
    startDischarging(80);
    saveMinutes(1);
    power().charge(80);
    EXPECT_FALSE(saver().enabled());
    EXPECT_EQ(newest().title, QStringLiteral("Stopping Low Power Mode"));
    EXPECT_EQ(newest().informativeText, QStringLiteral("Your computer is now plugged in."));
}

TEST_F(NotificationControllerTest, PluggingInWithFiveMinutesSaved_SaysHowMany) {
    startDischarging(80);
    saveMinutes(5);
    power().charge(80);
    EXPECT_EQ(newest().title, QStringLiteral("You saved 5 minutes of battery!"));
    EXPECT_EQ(newest().informativeText, QStringLiteral("Low power mode is now stopped."));
}

TEST_F(NotificationControllerTest, PluggingIn_ResetsTheFlag) {
    startDischarging(80);
    notifier().setAlreadyAsked(true);
    power().charge(80);
    EXPECT_FALSE(notifier().alreadyAsked());
}

TEST_F(NotificationControllerTest, ManualStopWithFewMinutes_ConsumesThemSilently) {
    startDischarging(80);
    saveMinutes(1);
    saver().setEnabled(false);
    EXPECT_TRUE(notificationTitles().isEmpty());
    EXPECT_EQ(saver().minutesSaved(), 0.0F);
}

TEST_F(NotificationControllerTest, ModuleAndTypeTogether_CountAsAModuleNotificationOnly) {
    startDischarging(80);
    activate({{QStringLiteral("Module"), QStringLiteral("TopAppsModule")},
              {QStringLiteral("NotificationType"), QStringLiteral("StartQuorvane")}});
    EXPECT_FALSE(saver().enabled());
    const auto* module =
        dynamic_cast<TopAppsModule*>(saver().moduleWithIdentifier(QStringLiteral("TopAppsModule")));
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module->received, 1);
}

TEST_F(NotificationControllerTest, NotificationOfAnUnknownModule_DoesNothing) {
    startDischarging(80);
    activate({{QStringLiteral("Module"), QStringLiteral("NoSuchModule")},
              {QStringLiteral("NotificationType"), QStringLiteral("StartQuorvane")}});
    EXPECT_FALSE(saver().enabled());
}

TEST_F(NotificationControllerTest, StartAnswer_StartsTheModeWithoutFurtherNotification) {
    startDischarging(21);
    power().discharge(20);
    ASSERT_TRUE(laptop().userNotifications().click(question));
    EXPECT_TRUE(saver().enabled());
    EXPECT_EQ(notificationTitles(), QStringList{question});
}

TEST_F(NotificationControllerTest, NotNowAnswer_ChangesNothing) {
    startDischarging(21);
    power().discharge(20);
    ASSERT_TRUE(laptop().userNotifications().dismiss(question));
    EXPECT_FALSE(saver().enabled());
}

TEST_F(NotificationControllerTest, DisableTurboAnswer_TogglesTheTurboModule) {
    startDischarging(80);
    const bool before = saver().turboModule()->enabled();
    activate({{QStringLiteral("NotificationType"), QStringLiteral("DisableTurbo")}});
    EXPECT_NE(saver().turboModule()->enabled(), before);
    EXPECT_FALSE(saver().enabled());
}

TEST_F(NotificationControllerTest, UnknownAnswer_DoesNothing) {
    startDischarging(80);
    activate({{QStringLiteral("NotificationType"), QStringLiteral("Other")}});
    activate({});
    EXPECT_FALSE(saver().enabled());
}

TEST_F(NotificationControllerTest, Question_HasItsTextsAndStays) {
    startDischarging(21);
    power().discharge(20);
    const UserNotification asked = newest();
    EXPECT_EQ(asked.title, question);
    EXPECT_EQ(asked.informativeText, QStringLiteral("Start Low Power Mode?"));
    EXPECT_EQ(asked.actionButtonTitle, QStringLiteral("Start"));
    EXPECT_EQ(asked.otherButtonTitle, QStringLiteral("Not Now"));
    EXPECT_EQ(asked.userInfo,
              (QVariantMap{{QStringLiteral("NotificationType"), QStringLiteral("StartQuorvane")}}));
    laptop().clock().advance(Seconds(86400));
    EXPECT_EQ(laptop().userNotifications().delivered().size(), 1);
}

TEST_F(NotificationControllerTest, TurboSuggestion_HasItsTextsAndLeavesAfterEightSeconds) {
    startDischarging(80);
    notifier().showTurboNotification();
    EXPECT_EQ(newest().title, QStringLiteral("Your Processor is Draining Battery"));
    EXPECT_EQ(newest().informativeText, QStringLiteral("Start Low Power Mode?"));
    EXPECT_EQ(newest().userInfo,
              (QVariantMap{{QStringLiteral("NotificationType"), QStringLiteral("DisableTurbo")}}));
    laptop().clock().advance(Seconds(7.9));
    EXPECT_EQ(laptop().userNotifications().delivered().size(), 1);
    laptop().clock().advance(Seconds(0.1));
    EXPECT_TRUE(laptop().userNotifications().delivered().isEmpty());
}

TEST_F(NotificationControllerTest, AutomaticStart_SaysSoForFiveSeconds) {
    store("QuorvaneAutoStartSetting", 0);
    startDischarging(21);
    power().discharge(20);
    EXPECT_TRUE(saver().enabled());
    EXPECT_EQ(newest().title, QStringLiteral("Low Power Mode is on"));
    EXPECT_EQ(newest().informativeText,
              QStringLiteral("(Automatically started because your battery is low)"));
    EXPECT_TRUE(newest().actionButtonTitle.isEmpty());
    EXPECT_TRUE(newest().userInfo.isEmpty());
    laptop().clock().advance(Seconds(5));
    EXPECT_TRUE(laptop().userNotifications().delivered().isEmpty());
}

TEST_F(NotificationControllerTest, EventOfAnotherSender_IsIgnored) {
    startDischarging(10);
    const qsizetype before = notificationTitles().size();
    notifier().setAlreadyAsked(false);
    EventCenter::defaultCenter().post(BatteryEvent::levelDecreased, nullptr);
    EventCenter::defaultCenter().post(BatteryEvent::levelDecreased, &notifier());
    EXPECT_EQ(notificationTitles().size(), before);
}

TEST_F(NotificationControllerTest, AlreadyAsked_IsNotStoredAcrossRuns) {
    startDischarging(80);
    EXPECT_FALSE(notifier().alreadyAsked());
}

} // namespace quorvane::test
