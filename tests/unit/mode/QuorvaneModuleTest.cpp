#include "mode/QuorvaneModule.h"

#include "mode/BatterySaver.h"
#include "platform/UserNotifications.h"
#include "tests/unit/mode/TestModules.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

namespace quorvane::test {

namespace {

class QuorvaneModuleTest : public SimulatedLaptopTest {
  protected:
    QuorvaneModuleTest() {
        useModules([] {
            ModuleList modules;
            modules.push_back(makeModule<BrowserModule>());
            return modules;
        });
        start();
    }

    static BrowserModule& module() {
        return dynamic_cast<BrowserModule&>(*BatterySaver::batterySaver().modules().front());
    }

    static void switchMode(bool on) { BatterySaver::batterySaver().setEnabled(on); }
};

} // namespace

TEST_F(QuorvaneModuleTest, SettingOnWhileTheModeIsOff_DoesNotRun) {
    module().setEnabled(true);
    EXPECT_FALSE(module().running());
    EXPECT_EQ(module().activations, 0);
}

TEST_F(QuorvaneModuleTest, SwitchingTheModeOn_ActivatesOnce) {
    module().setEnabled(true);
    switchMode(true);
    EXPECT_TRUE(module().running());
    BatterySaver::batterySaver().updateModules();
    EXPECT_EQ(module().activations, 1);
}

TEST_F(QuorvaneModuleTest, SwitchingTheSettingOffWhileTheModeIsOn_DeactivatesOnce) {
    module().setEnabled(true);
    switchMode(true);
    module().setEnabled(false);
    EXPECT_FALSE(module().running());
    switchMode(false);
    EXPECT_EQ(module().deactivations, 1);
}

TEST_F(QuorvaneModuleTest, TogglingTheSettingTwiceWhileTheModeIsOff_CallsNeither) {
    for (int i = 0; i < 4; ++i) {
        module().toggleEnabled();
    }
    EXPECT_EQ(module().activations, 0);
    EXPECT_EQ(module().deactivations, 0);
}

TEST_F(QuorvaneModuleTest, FailedActivation_IsLoggedAndTriedAgain) {
    module().succeeds = false;
    module().setEnabled(true);
    switchMode(true);
    EXPECT_FALSE(module().running());
    EXPECT_EQ(laptop().logSink().count(QStringLiteral("Failed to start BrowserModule")), 1);
    module().succeeds = true;
    BatterySaver::batterySaver().updateModules();
    EXPECT_TRUE(module().running());
    EXPECT_EQ(module().activations, 2);
}

TEST_F(QuorvaneModuleTest, FailedDeactivation_IsLoggedAndTheModuleStaysRunning) {
    module().setEnabled(true);
    switchMode(true);
    module().succeeds = false;
    switchMode(false);
    EXPECT_TRUE(module().running());
    EXPECT_EQ(laptop().logSink().count(QStringLiteral("Failed to stop BrowserModule")), 1);
    module().succeeds = true;
    BatterySaver::batterySaver().updateModules();
    EXPECT_FALSE(module().running());
    EXPECT_EQ(module().deactivations, 2);
}

TEST_F(QuorvaneModuleTest, SettingChangedByAnotherProcess_SwitchesTheModule) {
    switchMode(true);
    store("BrowserModuleActivated", true);
    EXPECT_TRUE(module().running());
    store("BrowserModuleActivated", false);
    EXPECT_FALSE(module().running());
}

TEST_F(QuorvaneModuleTest, ModuleOutsideTheList_IsNeverEvaluatedByTheMode) {
    store("FlashModuleActivated", true);
    const auto flash = makeModule<FlashModule>();
    switchMode(true);
    EXPECT_EQ(flash->activations, 0);
    EXPECT_FALSE(flash->running());
    flash->toggleEnabled();
    flash->toggleEnabled();
    EXPECT_EQ(flash->activations, 0) << "its setting alone does not make it run";
}

TEST_F(QuorvaneModuleTest, ModeAsToldByAnybody_IsWhatItsSettingGoesBy) {
    const auto flash = makeModule<FlashModule>();
    flash->updateRunning(true);
    EXPECT_EQ(flash->activations, 0) << "its setting is off";
    flash->setEnabled(true);
    EXPECT_TRUE(flash->running());
    flash->setEnabled(false);
    EXPECT_FALSE(flash->running());
    flash->updateRunning(false);
    flash->setEnabled(true);
    EXPECT_FALSE(flash->running());
    EXPECT_EQ(flash->activations, 1);
    EXPECT_EQ(flash->deactivations, 1);
}

TEST_F(QuorvaneModuleTest, Identifier_IsTheClassNameWithoutNamespace) {
    EXPECT_EQ(module().identifier(), QStringLiteral("BrowserModule"));
}

TEST_F(QuorvaneModuleTest, BaseClass_HasItsPlainTexts) {
    QuorvaneModule plain;
    EXPECT_EQ(plain.label(), QStringLiteral("Untitled"));
    EXPECT_TRUE(plain.imageName().isEmpty());
    EXPECT_TRUE(plain.activate());
    EXPECT_TRUE(plain.deactivate());
    plain.recieveNotification({});
}

TEST_F(QuorvaneModuleTest, Pausing_SendsStopToTheProcessGroupFromTheMainQueue) {
    EXPECT_TRUE(module().setAppPausedWithPID(true, 1234));
    EXPECT_TRUE(laptop().processes().sentSignals().isEmpty());
    SimulatedClock::runMainQueue();
    EXPECT_EQ(laptop().processes().sentSignals(), QStringList{QStringLiteral("-STOP -1234")});
    EXPECT_EQ(laptop().logSink().count(QStringLiteral("Finished with kill command")), 1);
}

TEST_F(QuorvaneModuleTest, Resuming_UsesTheContinueSignal) {
    EXPECT_TRUE(module().setAppPausedWithPID(false, 1234));
    SimulatedClock::runMainQueue();
    EXPECT_EQ(laptop().processes().sentSignals(), QStringList{QStringLiteral("-CONT -1234")});
    EXPECT_EQ(laptop().logSink().count(QStringLiteral("Finished with kill command")), 1);
}

TEST_F(QuorvaneModuleTest, PausingByIdentifier_TakesTheFirstRunningApplication) {
    const QString browser = QStringLiteral("org.mozilla.Firefox");
    EXPECT_FALSE(module().setAppPausedWithIdentifier(true, browser));
    laptop().workspace().run(browser, 77);
    laptop().workspace().run(browser, 78);
    EXPECT_TRUE(module().setAppPausedWithIdentifier(true, browser));
    SimulatedClock::runMainQueue();
    EXPECT_EQ(laptop().processes().sentSignals(), QStringList{QStringLiteral("-STOP -77")});
}

TEST_F(QuorvaneModuleTest, PausingEverythingOrOurOwnGroup_IsRefused) {
    for (const std::int32_t pid : {1, 0, -1, -1234}) {
        EXPECT_TRUE(module().setAppPausedWithPID(true, pid));
    }
    SimulatedClock::runMainQueue();
    EXPECT_TRUE(laptop().processes().sentSignals().isEmpty());
}

TEST_F(QuorvaneModuleTest, RunCommand_GivesTheOutputAsUtf8) {
    laptop().tasks().setBehaviour(QStringLiteral("/bin/tool"), {Seconds(0.2), "größe\n"});
    EXPECT_EQ(module().runCommand(QStringLiteral("/bin/tool"), {}), QStringLiteral("größe\n"));
}

TEST_F(QuorvaneModuleTest, RunCommandThatHangs_IsTerminatedAfterFifteenSeconds) {
    laptop().tasks().setBehaviour(QStringLiteral("/bin/tool"), {std::nullopt, "so far"});
    const Seconds before = laptop().clock().monotonic();
    EXPECT_EQ(module().runCommand(QStringLiteral("/bin/tool"), {}), QStringLiteral("so far"));
    const Seconds waited = laptop().clock().monotonic() - before;
    EXPECT_GE(waited, Seconds(15));
    EXPECT_LE(waited, Seconds(16));
    EXPECT_TRUE(laptop().tasks().runs().first().terminated);
}

} // namespace quorvane::test
