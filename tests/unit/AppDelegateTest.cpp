#include "core/AppDelegate.h"

#include "core/BatterySaver.h"
#include "core/QuorvanePrefs.h"
#include "core/UserDefaults.h"
#include "tests/unit/SimulatedLaptopTest.h"

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
    ASSERT_EQ(laptop().tasks().runs().size(), 1);
    EXPECT_LT(logLines().indexOf(QStringLiteral("Finished with kill command")),
              logLines().indexOf(lastLine));
}

TEST_F(AppDelegateTest, Start_RegistersDefaultsBeforeAnybodyReadsThem) {
    start();
    EXPECT_EQ(saver().batteryThreshhold(), 70);
    EXPECT_TRUE(brightness().enabled());
    EXPECT_FALSE(stored("BatteryThreshold").isValid());
}

} // namespace quorvane::test
