#include "mode/BatterySaver.h"

#include "battery/Battery.h"
#include "mode/NotificationController.h"
#include "tests/unit/mode/TestModules.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <QStringDecoder>

#include <iterator>
#include <utility>

namespace quorvane::test {

namespace {

const QString modeIsOn = QStringLiteral("Low Power Mode is on");
const QString question = QStringLiteral("Less Than 70% Battery Remaining");
const QString pluggedIn = QStringLiteral("Stopping Low Power Mode");

class BatterySaverTest : public SimulatedLaptopTest {
  protected:
    BatterySaverTest() {
        useModules(completeModules);
        laptop().files().createFolder(laptop().files().applicationSupportFolder() +
                                      QStringLiteral("/Quorvane"));
    }

    static BatterySaver& saver() { return BatterySaver::batterySaver(); }

    // On battery with this much charge before the program starts.
    void dischargedTo(double percent) {
        laptop().powerSources().setPercent(percent);
        laptop().powerSources().setEstimate(3600.0);
    }

    void allSettingsOn() {
        for (const char* key :
             {"TurboModuleActivated", "AppNapModuleActivated", "BrightnessModuleActivated",
              "ServicesModuleActivated", "BrowserModuleActivated"}) {
            store(key, true);
        }
    }

    void onlyBrightnessOn() {
        for (const char* key : {"TurboModuleActivated", "AppNapModuleActivated",
                                "ServicesModuleActivated", "BrowserModuleActivated"}) {
            store(key, false);
        }
    }

    void passMinutes(int minutes) {
        for (int i = 0; i < minutes; ++i) {
            laptop().clock().advance(Seconds(60));
        }
    }

    [[nodiscard]] QString log() {
        QStringDecoder decoder(QStringConverter::Utf16);
        return decoder.decode(laptop().files().files().value(Battery::battery().logPath()));
    }
};

} // namespace

TEST_F(BatterySaverTest, AllFiveSettingsOn_EstimateIsTheSinglePrecisionValueNearestOnePointFour) {
    allSettingsOn();
    start();
    saver().setEnabled(true);
    EXPECT_EQ(saver().estimationForOneMinute(), 1.39999998F);
    passMinutes(10);
    EXPECT_EQ(saver().minutesSaved(), 13.999998F);
    saver().setEnabled(false);
    EXPECT_EQ(notificationTitles().last(), QStringLiteral("You saved 13 minutes of battery!"));
    EXPECT_EQ(saver().minutesSaved(), 0.0F);
}

TEST_F(BatterySaverTest, EverySetOfSettings_IsAddedUpInTheOrderOfTheSavings) {
    const std::pair<const char*, double> savings[] = {{"TurboModule", 0.75},
                                                      {"AppNapModule", 0.3},
                                                      {"BrightnessModule", 0.15},
                                                      {"ServicesModule", 0.1},
                                                      {"BrowserModule", 0.1}};
    start();
    saver().setEnabled(true);
    for (unsigned set = 0; set < 1U << std::size(savings); ++set) {
        float expected = 0.0F;
        for (std::size_t i = 0; i < std::size(savings); ++i) {
            const bool isOn = (set >> i & 1U) != 0;
            saver().moduleWithIdentifier(QLatin1String(savings[i].first))->setEnabled(isOn);
            if (isOn) {
                expected = static_cast<float>(expected + savings[i].second);
            }
        }
        EXPECT_EQ(saver().estimationForOneMinute(), expected) << set;
    }
}

TEST_F(BatterySaverTest, OnlyBrightnessOn_ThirteenMinutesTruncateToOneAndAManualStopSaysNothing) {
    onlyBrightnessOn();
    start();
    saver().setEnabled(true);
    passMinutes(13);
    EXPECT_EQ(saver().minutesSaved(), 1.9499998F);
    saver().setEnabled(false);
    EXPECT_TRUE(notificationTitles().isEmpty());
}

TEST_F(BatterySaverTest, OnlyBrightnessOn_ThirteenMinutesAndPluggingIn_SaysThatTheModeStops) {
    onlyBrightnessOn();
    dischargedTo(90);
    start();
    saver().setEnabled(true);
    passMinutes(13);
    laptop().powerSources().charge(90);
    EXPECT_EQ(notificationTitles(), QStringList{pluggedIn});
}

TEST_F(BatterySaverTest, ModeOff_EachFiringAddsNothing) {
    allSettingsOn();
    start();
    passMinutes(5);
    EXPECT_EQ(saver().minutesSaved(), 0.0F);
    EXPECT_EQ(saver().estimationForOneMinute(), 0.0F);
}

TEST_F(BatterySaverTest, ModeOff_HoldsNoTimerForTheSavings) {
    start();
    const std::size_t timers = laptop().clock().timerCount();
    saver().setEnabled(true);
    EXPECT_EQ(laptop().clock().timerCount(), timers + 1);
    saver().setEnabled(false);
    EXPECT_EQ(laptop().clock().timerCount(), timers);
}

TEST_F(BatterySaverTest, ModeSwitchedOnWithinAMinute_IsCountedAtTheFullMinutesSinceTheStart) {
    onlyBrightnessOn();
    start();
    laptop().clock().advance(Seconds(150));
    saver().setEnabled(true);
    laptop().clock().advance(Seconds(29));
    EXPECT_EQ(saver().minutesSaved(), 0.0F);
    laptop().clock().advance(Seconds(1));
    EXPECT_EQ(saver().minutesSaved(), 0.15F);
    laptop().clock().advance(Seconds(60));
    EXPECT_EQ(saver().minutesSaved(), 0.3F);
}

TEST_F(BatterySaverTest, ModeSwitchedOffAndOnBetweenTwoFullMinutes_LosesNoFiring) {
    onlyBrightnessOn();
    start();
    saver().setEnabled(true);
    laptop().clock().advance(Seconds(80));
    saver().setEnabled(false);
    laptop().clock().advance(Seconds(20));
    saver().setEnabled(true);
    laptop().clock().advance(Seconds(20));
    EXPECT_EQ(saver().minutesSaved(), 0.15F);
}

TEST_F(BatterySaverTest, TopAppsModule_ContributesNothing) {
    start();
    for (const auto& module : saver().modules()) {
        module->setEnabled(module->identifier() == QStringLiteral("TopAppsModule"));
    }
    saver().setEnabled(true);
    EXPECT_EQ(saver().estimationForOneMinute(), 0.0F);
}

TEST_F(BatterySaverTest, ManualModeAndEnabledOnQuit_ComesOnSilentlyAndModulesActivate) {
    store("QuorvaneAutoStartSetting", 2);
    store("WasEnabledOnQuit", true);
    start();
    EXPECT_TRUE(saver().enabled());
    EXPECT_TRUE(notificationTitles().isEmpty());
    EXPECT_TRUE(saver().moduleWithIdentifier(QStringLiteral("BrightnessModule"))->running());
    EXPECT_TRUE(stored("QuorvaneActive").toBool());
}

TEST_F(BatterySaverTest, AskModeBelowTheThreshold_StartsBrieflyThenStopsQuietlyThenAsks) {
    dischargedTo(50);
    store("QuorvaneActive", false);
    startWithoutMainQueue();
    EXPECT_TRUE(saver().enabled());
    EXPECT_EQ(notificationTitles(), QStringList{modeIsOn});
    SimulatedClock::runMainQueue();
    EXPECT_FALSE(saver().enabled());
    EXPECT_EQ(notificationTitles(), (QStringList{modeIsOn, question}));
    EXPECT_TRUE(saver().notifier().alreadyAsked());

    laptop().powerSources().discharge(49);
    EXPECT_EQ(notificationTitles().count(question), 1);
    laptop().powerSources().charge(49);
    laptop().powerSources().discharge(49);
    EXPECT_EQ(notificationTitles().count(question), 2);
}

TEST_F(BatterySaverTest, EarlyStart_WritesNothingToTheActiveSetting) {
    dischargedTo(50);
    startWithoutMainQueue();
    EXPECT_TRUE(saver().enabled());
    EXPECT_FALSE(stored("QuorvaneActive").isValid());
}

TEST_F(BatterySaverTest, AutomaticModeBelowTheThreshold_EndsUpOn) {
    dischargedTo(50);
    store("QuorvaneAutoStartSetting", 0);
    start();
    EXPECT_TRUE(saver().enabled());
    EXPECT_TRUE(stored("QuorvaneActive").toBool());
    EXPECT_EQ(notificationTitles().last(), modeIsOn);
}

TEST_F(BatterySaverTest, AutomaticModeAboveTheThreshold_StaysOffEvenAfterAnUncleanEnd) {
    dischargedTo(90);
    store("QuorvaneAutoStartSetting", 0);
    store("QuorvaneActive", true);
    start();
    EXPECT_FALSE(saver().enabled());
    EXPECT_FALSE(stored("QuorvaneActive").toBool());
    EXPECT_EQ(laptop().displays().levels().front(), 1.0F);
}

TEST_F(BatterySaverTest, EnablingAModeThatIsOn_DoesNothing) {
    start();
    saver().enableWithNotification(false);
    const QString before = log();
    saver().enableWithNotification(true);
    EXPECT_EQ(log(), before);
    EXPECT_EQ(laptop().helperInstaller().calls().count(QStringLiteral("install")), 1);
    EXPECT_TRUE(notificationTitles().isEmpty());
}

TEST_F(BatterySaverTest, DisablingAModeThatIsOff_DoesNothing) {
    start();
    saver().disableWithNotification(true);
    EXPECT_TRUE(log().isEmpty());
    EXPECT_TRUE(notificationTitles().isEmpty());
}

TEST_F(BatterySaverTest, EachSwitch_IsLogged) {
    start();
    saver().toggleEnabled();
    saver().toggleEnabled();
    EXPECT_EQ(log(), QStringLiteral(
                         "Quorvane log file:\nPower saving is enabled\nPower saving is disabled"));
}

TEST_F(BatterySaverTest, Modules_AreSwitchedInTheirFixedOrder) {
    allSettingsOn();
    start();
    QStringList identifiers;
    for (const auto& module : saver().modules()) {
        identifiers.append(module->identifier());
    }
    EXPECT_EQ(identifiers.join(QLatin1Char(' ')),
              QStringLiteral("BrightnessModule TopAppsModule ServicesModule BrowserModule "
                             "AppNapModule TurboModule"));
    CountingModule::order().clear();
    saver().setEnabled(true);
    saver().setEnabled(false);
    EXPECT_EQ(CountingModule::order().join(QLatin1Char(' ')),
              QStringLiteral("+TopAppsModule +ServicesModule +BrowserModule +AppNapModule "
                             "+TurboModule -TopAppsModule -ServicesModule -BrowserModule "
                             "-AppNapModule -TurboModule"));
}

TEST_F(BatterySaverTest, ActiveSettingChangedByAnotherProcess_SwitchesTheMode) {
    start();
    store("QuorvaneActive", true);
    EXPECT_TRUE(saver().enabled());
    store("QuorvaneActive", false);
    EXPECT_FALSE(saver().enabled());
}

TEST_F(BatterySaverTest, ModeSwitchedByHand_WritesTheActiveSettingBeforeTheModulesFollow) {
    start();
    bool storedAtActivation = false;
    saver().observe(QStringLiteral("enabled"), &saver(), [&](const auto& /*change*/) {
        storedAtActivation = stored("QuorvaneActive").toBool();
    });
    saver().toggleEnabled();
    EXPECT_TRUE(storedAtActivation);
}

TEST_F(BatterySaverTest, ChangeOfEnabled_IsAnnouncedWithOldAndNewValue) {
    start();
    std::vector<ObservableObject::Change> changes;
    saver().observe(QStringLiteral("enabled"), &saver(),
                    [&](const ObservableObject::Change& change) { changes.push_back(change); });
    saver().setEnabled(true);
    saver().setEnabled(true);
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes.front().oldValue, QVariant(false));
    EXPECT_EQ(changes.front().newValue, QVariant(true));
}

TEST_F(BatterySaverTest, UnknownIdentifier_GivesNoModule) {
    start();
    EXPECT_EQ(saver().moduleWithIdentifier(QStringLiteral("FlashModule")), nullptr);
}

TEST_F(BatterySaverTest, EnableTurboModule_TogglesIt) {
    start();
    EXPECT_TRUE(saver().turboModule()->enabled());
    saver().enableTurboModule();
    EXPECT_FALSE(saver().turboModule()->enabled());
    saver().enableTurboModule();
    EXPECT_TRUE(saver().turboModule()->enabled());
}

TEST_F(BatterySaverTest, TurboSuggestion_IsMadeOnlyInTheModeAndWithoutTheModule) {
    start();
    saver().askToEnableTurboModule();
    saver().setEnabled(true);
    saver().askToEnableTurboModule();
    EXPECT_TRUE(notificationTitles().isEmpty());
    saver().turboModule()->setEnabled(false);
    saver().askToEnableTurboModule();
    EXPECT_EQ(notificationTitles(),
              QStringList{QStringLiteral("Your Processor is Draining Battery")});
}

TEST_F(BatterySaverTest, ModuleListWithoutTurbo_IsNoHarm) {
    useModules([] { return ModuleList(); });
    start();
    saver().setEnabled(true);
    saver().enableTurboModule();
    saver().askToEnableTurboModule();
    EXPECT_EQ(saver().turboModule(), nullptr);
    EXPECT_EQ(saver().estimationForOneMinute(), 0.0F);
}

TEST_F(BatterySaverTest, Threshold_FollowsTheSetting) {
    start();
    EXPECT_EQ(saver().batteryThreshhold(), 70);
    store("BatteryThreshold", 20);
    EXPECT_EQ(saver().batteryThreshhold(), 20);
    EXPECT_EQ(saver().launchMode(), 1U);
}

TEST_F(BatterySaverTest, ChangesOfTheActiveSettingWhileTheDiskIsFull_DoNotSwitchTheModeBack) {
    start();
    settings().setFailing(true);
    saver().setEnabled(true);
    store("BatteryThreshold", 30);
    EXPECT_TRUE(saver().enabled());
}

} // namespace quorvane::test
