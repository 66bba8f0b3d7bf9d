#include "ui/MenuController.h"

#include "app/AppDelegate.h"
#include "battery/Battery.h"
#include "mode/BatterySaver.h"
#include "platform/Menu.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

namespace quorvane::test {

namespace {

class MenuControllerTest : public SimulatedLaptopTest {
  protected:
    MenuControllerTest() {
        laptop().powerSources().setPercent(90);
        laptop().powerSources().setEstimate(3600);
    }

    [[nodiscard]] MenuController& controller() { return *delegate().menuController(); }

    [[nodiscard]] QString description() {
        return controller().enableDescriptionItem()->attributedTitle().text;
    }

    [[nodiscard]] MenuItem& modeItem() { return *controller().quorvaneEnabledMenuItem(); }

    [[nodiscard]] const MenuItem& item(std::size_t index) {
        return *controller().menu()->items().at(index);
    }

    [[nodiscard]] MenuItem& settingsItem(std::size_t index) {
        return *item(5).submenu()->items().at(index);
    }

    [[nodiscard]] const SimulatedStatusBar::Look& look() { return laptop().statusBar().look(); }

    static BatterySaver& saver() { return BatterySaver::batterySaver(); }
};

} // namespace

TEST_F(MenuControllerTest, Menu_HasItsItemsInOrder) {
    laptop().bundle().info = {{QStringLiteral("CFBundleShortVersionString"), QStringLiteral("3.1")},
                              {QStringLiteral("CFBundleVersion"), QStringLiteral("412")}};
    start();
    ASSERT_EQ(controller().menu()->items().size(), 6U);
    EXPECT_EQ(item(0).title(), QStringLiteral("LOW POWER MODE STARTS AT 70%"));
    EXPECT_FALSE(item(0).isEnabled());
    EXPECT_EQ(item(1).title(), QStringLiteral("Start Low Power Mode Now"));
    EXPECT_EQ(item(1).state(), false);
    EXPECT_TRUE(item(2).isSeparatorItem());
    EXPECT_TRUE(item(3).isSeparatorItem());
    EXPECT_EQ(item(4).title(), QStringLiteral("Open Quorvane Preferences..."));
    EXPECT_EQ(item(5).title(), QStringLiteral("Quorvane 3.1 (r412)"));
    EXPECT_EQ(item(5).submenu()->title(), QStringLiteral("Settings"));
    ASSERT_EQ(item(5).submenu()->items().size(), 3U);
    EXPECT_EQ(settingsItem(0).title(), QStringLiteral("Send Feedback"));
    EXPECT_EQ(settingsItem(1).title(), QStringLiteral("Check For Updates"));
    EXPECT_EQ(settingsItem(2).title(), QStringLiteral("Quit Quorvane"));
}

TEST_F(MenuControllerTest, ManualLaunchMode_SaysSoWhateverTheThreshold) {
    store("QuorvaneAutoStartSetting", 2);
    start();
    EXPECT_EQ(description(), QStringLiteral("MANUAL START MODE"));
    store("BatteryThreshold", 25);
    EXPECT_EQ(description(), QStringLiteral("MANUAL START MODE"));
}

TEST_F(MenuControllerTest, LaunchModeChangedWhileRunning_ReplacesTheLineAtOnce) {
    store("QuorvaneAutoStartSetting", 2);
    store("BatteryThreshold", 40);
    start();
    store("QuorvaneAutoStartSetting", 0);
    EXPECT_EQ(description(), QStringLiteral("LOW POWER MODE STARTS AT 40%"));
    store("QuorvaneAutoStartSetting", 1);
    EXPECT_EQ(description(), QStringLiteral("LOW POWER MODE STARTS AT 40%"));
    store("QuorvaneAutoStartSetting", 2);
    EXPECT_EQ(description(), QStringLiteral("MANUAL START MODE"));
}

TEST_F(MenuControllerTest, ThresholdChangedFrom70To25_ChangesTheLine) {
    start();
    EXPECT_EQ(description(), QStringLiteral("LOW POWER MODE STARTS AT 70%"));
    store("BatteryThreshold", 25);
    EXPECT_EQ(description(), QStringLiteral("LOW POWER MODE STARTS AT 25%"));
}

TEST_F(MenuControllerTest, DescriptionLine_IsSmallGreyAndRaised) {
    start();
    const AttributedString line = controller().enabledDescription();
    EXPECT_EQ(line.fontSize, 12.0);
    EXPECT_EQ(line.baselineOffset, 4.0);
    ASSERT_TRUE(line.foreground);
    EXPECT_EQ(line.foreground->red, line.foreground->green);
    EXPECT_EQ(line.foreground->red, line.foreground->blue);
}

TEST_F(MenuControllerTest, ModeStartedFromElsewhere_TitleCheckMarkAndIconFollow) {
    start();
    EXPECT_EQ(look().image, QStringLiteral("icon-infinity-off"));
    saver().enableWithNotification(true);
    EXPECT_EQ(modeItem().title(), QStringLiteral("Low Power Mode is On"));
    EXPECT_EQ(modeItem().state(), true);
    EXPECT_EQ(look().image, QStringLiteral("icon-infinity-on"));
    saver().setEnabled(false);
    EXPECT_EQ(modeItem().title(), QStringLiteral("Start Low Power Mode Now"));
    EXPECT_EQ(modeItem().state(), false);
    EXPECT_EQ(look().image, QStringLiteral("icon-infinity-off"));
}

TEST_F(MenuControllerTest, ModeItemClicked_TogglesTheMode) {
    start();
    modeItem().performAction();
    EXPECT_TRUE(saver().enabled());
    modeItem().performAction();
    EXPECT_FALSE(saver().enabled());
}

TEST_F(MenuControllerTest, Start_RecordsWhereTheApplicationLies) {
    start();
    EXPECT_EQ(stored("AppLocation").toString(), QStringLiteral("file:///opt/Quorvane.app"));
}

TEST_F(MenuControllerTest, Start_TheFirstDecisionComesBeforeTheStatusItem) {
    laptop().powerSources().setPercent(50);
    startWithoutMainQueue();
    EXPECT_TRUE(saver().enabled());
    EXPECT_EQ(modeItem().title(), QStringLiteral("Low Power Mode is On"));
    EXPECT_EQ(modeItem().state(), true);
    EXPECT_EQ(look().image, QStringLiteral("icon-infinity-on"));
}

TEST_F(MenuControllerTest, Icon_IsSetInItsOrder) {
    start();
    laptop().statusBar().clearCalls();
    controller().updateIcon();
    EXPECT_EQ(laptop().statusBar().calls().join(QLatin1Char(' ')),
              QStringLiteral("title length image template position"));
    EXPECT_EQ(look().length, StatusItem::variableLength);
    EXPECT_TRUE(look().isTemplate);
}

TEST_F(MenuControllerTest, NewReading_RedrawsTheIcon) {
    store("MenuBarShowBatteryIcon", true);
    store("MenuBarDisplayMode", 1);
    start();
    EXPECT_EQ(look().image, QStringLiteral("battery-off-90"));
    EXPECT_EQ(look().title.text, QStringLiteral("90% "));
    laptop().powerSources().discharge(71);
    EXPECT_EQ(look().image, QStringLiteral("battery-off-80"));
    EXPECT_EQ(look().title.text, QStringLiteral("71% "));
    laptop().powerSources().charge(71);
    EXPECT_EQ(look().image, QStringLiteral("battery-charging"));
}

TEST_F(MenuControllerTest, DisplaySettingsChanged_RedrawTheIconAtOnce) {
    start();
    EXPECT_EQ(look().title.text, QString());
    store("MenuBarDisplayMode", 2);
    EXPECT_EQ(look().title.text, QStringLiteral("\u20091:00"));
    EXPECT_EQ(look().imagePosition, ImagePosition::Left);
    store("MenuBarShowBatteryIcon", true);
    EXPECT_EQ(look().image, QStringLiteral("battery-off-90"));
    store("MenuBarShowBatteryIcon", false);
    EXPECT_EQ(look().image, QStringLiteral("icon-infinity-off"));
}

TEST_F(MenuControllerTest, DisplayModeOf99OrNegative_ShowsNoText) {
    for (const int mode : {99, -7}) {
        store("MenuBarDisplayMode", mode);
        if (mode == 99) {
            start();
        }
        EXPECT_EQ(look().title.text, QString());
        EXPECT_EQ(controller().menuBarDisplayMode(), mode);
    }
}

TEST_F(MenuControllerTest, SendFeedback_OpensTheContactPage) {
    laptop().bundle().info.insert(QStringLiteral("QuorvaneContactPage"),
                                  QStringLiteral("https://quorvane.example/support?contact=1"));
    start();
    settingsItem(0).performAction();
    ASSERT_EQ(laptop().opener().openedURLs().size(), 1);
    EXPECT_EQ(laptop().opener().openedURLs().first().query(), QStringLiteral("contact=1"));
}

TEST_F(MenuControllerTest, QuitItem_Quits) {
    start();
    saver().setEnabled(true);
    settingsItem(2).performAction();
    SimulatedClock::runMainQueue();
    EXPECT_TRUE(terminated());
    EXPECT_TRUE(stored("WasEnabledOnQuit").toBool());
}

TEST_F(MenuControllerTest, PreferencesItem_ShowsWhereTheSettingsAre) {
    start();
    controller().menu()->items().at(4)->performAction();
    ASSERT_EQ(laptop().windows().alerts().size(), 1U);
    EXPECT_TRUE(laptop().windows().alerts().front().informativeText.contains(
        QStringLiteral("com.TarnwickStudios.quorvane.conf")));
}

TEST_F(MenuControllerTest, MenuAlignmentWithoutBatteryItem_ChangesNothing) {
    start();
    const QStringList before = logLines();
    controller().updateMenuAlignment();
    EXPECT_EQ(logLines(), before);
    for (const auto& each : controller().menu()->items()) {
        EXPECT_FALSE(each->view());
    }
}

TEST_F(MenuControllerTest, MenuAlignmentWithBatteryItem_IsAsWideAsTheMenu) {
    start();
    MenuItem batteryItem{QString()};
    batteryItem.setView({3, 4, 5, 22});
    controller().batteryMenuItem = &batteryItem;
    controller().menu()->setWidth(180);
    controller().updateMenuAlignment();
    EXPECT_EQ(batteryItem.view()->x, 0);
    EXPECT_EQ(batteryItem.view()->y, 0);
    EXPECT_EQ(batteryItem.view()->width, 180);
    EXPECT_EQ(batteryItem.view()->height, 22);
    controller().batteryMenuItem = nullptr;
}

TEST_F(MenuControllerTest, DebugInfoWithoutHelperAndDevice_SaysNoAndZeros) {
    laptop().bundle().info = {{QStringLiteral("CFBundleShortVersionString"), QStringLiteral("3.1")},
                              {QStringLiteral("CFBundleVersion"), QStringLiteral("412")}};
    laptop().helperInstaller().setInstalled(false);
    start();
    controller().copyDebugInfo();
    EXPECT_EQ(laptop().pasteboard().string(),
              QStringLiteral("Bundle ID: com.TarnwickStudios.quorvane\n"
                             "Quorvane version: 3.1 (r412)\n"
                             "Helper Tool installed: NO\n"
                             "Helper Tool version: (null)\n"
                             "Setapp version: NO\n"
                             "Device: (null)\n"
                             "OS: 0.0.0\n"
                             "RAM: 0.000 GB\n"
                             "CPU: 0.000 GHz (0 cores)"));
}

TEST_F(MenuControllerTest, DebugInfoWithDevice_HasItsFigures) {
    laptop().setDeviceInformation({QStringLiteral("Model 7"), {6, 1, 0}, 15.9994, 2.4, 8});
    start();
    controller().copyDebugInfo();
    const QStringList lines = laptop().pasteboard().string().split(QLatin1Char('\n'));
    EXPECT_EQ(lines.mid(4).join(QLatin1Char('|')),
              QStringLiteral("Setapp version: NO|Device: Model 7|OS: 6.1.0|RAM: 15.999 GB|"
                             "CPU: 2.400 GHz (8 cores)"));
}

TEST_F(MenuControllerTest, Uninstall_QuitsTheModeAndRemovesTheHelper) {
    start();
    saver().setEnabled(true);
    controller().uninstall();
    EXPECT_FALSE(saver().enabled());
    EXPECT_FALSE(laptop().helperInstaller().isInstalled(
        QStringLiteral("com.TarnwickStudios.quorvane.helper")));
}

TEST_F(MenuControllerTest, OtherKeys_ChangeNothing) {
    start();
    laptop().statusBar().clearCalls();
    controller().observeValue({QStringLiteral("batteryCharging"), false, true});
    EXPECT_TRUE(laptop().statusBar().calls().isEmpty());
}

} // namespace quorvane::test
