#include "app/AppDelegate.h"

#include "core/QuorvanePrefs.h"
#include "core/UserDefaults.h"
#include "mode/BatterySaver.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

namespace quorvane::test {

namespace {

class AppDelegateTest : public SimulatedLaptopTest {
  protected:
    static BatterySaver& saver() { return BatterySaver::batterySaver(); }

    static QuorvaneModule& brightness() {
        return *saver().moduleWithIdentifier(QStringLiteral("BrightnessModule"));
    }
};

const QString lastLine = QStringLiteral("The main queue is finished!");

} // namespace

TEST_F(AppDelegateTest, QuitWithTheModeOn_RemembersItSwitchesOffAndThenLogsTheLastLine) {
    start();
    saver().setEnabled(true);
    ASSERT_TRUE(brightness().running());
    bool deactivatedBefore = false;
    laptop().logSink().setListener([&deactivatedBefore](const QString& line) {
        if (line == lastLine) {
            deactivatedBefore = !brightness().running();
        }
    });
    EXPECT_TRUE(quit());
    EXPECT_TRUE(stored("WasEnabledOnQuit").toBool());
    EXPECT_FALSE(stored("QuorvaneActive").toBool());
    EXPECT_TRUE(deactivatedBefore);
    EXPECT_EQ(laptop().displays().levels().front(), 1.0F);
    EXPECT_EQ(laptop().logSink().count(lastLine), 1);
}

TEST_F(AppDelegateTest, QuitWithTheModeOff_RemembersThat) {
    start();
    EXPECT_TRUE(quit());
    EXPECT_FALSE(stored("WasEnabledOnQuit").toBool());
    EXPECT_TRUE(QuorvanePrefs::userDefaults().isStored(QStringLiteral("WasEnabledOnQuit")));
}

TEST_F(AppDelegateTest, Quit_RemovesDeliveredNotificationsAndSavesTheHistory) {
    laptop().powerSources().setPercent(50);
    laptop().powerSources().setEstimate(3600);
    start();
    EXPECT_FALSE(laptop().userNotifications().delivered().isEmpty());
    EXPECT_TRUE(quit());
    EXPECT_TRUE(laptop().userNotifications().delivered().isEmpty());
    EXPECT_TRUE(laptop().files().files().contains(laptop().files().applicationSupportFolder() +
                                                  QStringLiteral("/Quorvane/Battery.plist")));
}

TEST_F(AppDelegateTest, Quit_LetsQueuedWorkRunBeforeTheEnd) {
    start();
    brightness().setAppPausedWithPID(false, 4321);
    EXPECT_TRUE(quit());
    ASSERT_EQ(laptop().processes().sentSignals().size(), 1);
    EXPECT_LT(logLines().indexOf(QStringLiteral("Finished with kill command")),
              logLines().indexOf(lastLine));
}

TEST_F(AppDelegateTest, Start_RegistersDefaultsBeforeAnybodyReadsThem) {
    start();
    EXPECT_EQ(saver().batteryThreshhold(), 70);
    EXPECT_TRUE(brightness().enabled());
    EXPECT_FALSE(stored("BatteryThreshold").isValid());
}

TEST_F(AppDelegateTest, OtherEditionRuns_AlertAndTheEnd) {
    laptop().programCopies().run(QStringLiteral("com.TarnwickStudios.quorvane"));
    laptop().programCopies().run(QStringLiteral("com.tarnwick.quorvane-setapp"));
    start();
    ASSERT_EQ(laptop().windows().alerts().size(), 1U);
    const Alert& alert = laptop().windows().alerts().front();
    EXPECT_EQ(alert.messageText, QStringLiteral("Quorvane already running"));
    EXPECT_EQ(alert.informativeText,
              QStringLiteral("Another version of Quorvane is already running. Please quit it, then "
                             "try again."));
    EXPECT_EQ(alert.buttons, QStringList{QStringLiteral("Quit")});
    EXPECT_FALSE(terminated()) << "the user has not read it yet";
    EXPECT_EQ(QuorvanePrefs::userDefaults().integerForKey(QStringLiteral("BatteryThreshold")), 0)
        << "no default is registered";
    EXPECT_EQ(laptop().statusBar().itemCount(), 0);
    EXPECT_TRUE(laptop().windows().press(0));
    EXPECT_TRUE(terminated());
}

TEST_F(AppDelegateTest, SecondCopyOfTheSameEdition_AlertAndTheEnd) {
    laptop().programCopies().run(QStringLiteral("com.TarnwickStudios.quorvane"));
    laptop().programCopies().run(QStringLiteral("com.TarnwickStudios.quorvane"));
    start();
    EXPECT_EQ(laptop().windows().alerts().size(), 1U);
}

TEST_F(AppDelegateTest, OnlyItselfRuns_Starts) {
    laptop().programCopies().run(QStringLiteral("com.TarnwickStudios.quorvane"));
    start();
    EXPECT_TRUE(laptop().windows().alerts().empty());
    EXPECT_EQ(laptop().statusBar().itemCount(), 1);
}

TEST_F(AppDelegateTest, LaunchAtLoginOff_IsSwitchedOnAtEachStart) {
    start();
    EXPECT_TRUE(laptop().loginItems().launchOnLogin());
    EXPECT_EQ(laptop().loginItems().writes(), 1);
    laptop().loginItems().setLaunchOnLogin(false);
    start();
    EXPECT_TRUE(laptop().loginItems().launchOnLogin());
}

TEST_F(AppDelegateTest, LaunchAtLoginOn_IsLeftAlone) {
    laptop().loginItems().setLaunchOnLogin(true);
    start();
    EXPECT_EQ(laptop().loginItems().writes(), 1);
}

TEST_F(AppDelegateTest, FirstStart_ShowsTheSplashAfterTheDefaultsAreThere) {
    start();
    ASSERT_EQ(laptop().windows().windows().size(), 1U);
    EXPECT_TRUE(laptop().windows().windows().front().isVisible);
    EXPECT_NE(delegate().windowController(), nullptr);
}

TEST_F(AppDelegateTest, WillTerminate_LeavesEverythingAsItIs) {
    start();
    saver().setEnabled(true);
    delegate().applicationWillTerminate();
    EXPECT_TRUE(saver().enabled());
    EXPECT_TRUE(stored("QuorvaneActive").toBool());
    EXPECT_FALSE(stored("WasEnabledOnQuit").isValid());
}

} // namespace quorvane::test
