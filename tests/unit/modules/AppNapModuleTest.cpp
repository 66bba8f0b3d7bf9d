#include "modules/AppNapModule.h"

#include "mode/BatterySaver.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

namespace quorvane::test {

namespace {

constexpr Seconds minute{60.0};

const QString editor = QStringLiteral("org.example.Editor");
const QString player = QStringLiteral("org.example.Player");
const QString viewer = QStringLiteral("org.example.Viewer");

class AppNapModuleTest : public SimulatedLaptopTest {
  protected:
    void startWithModule() {
        start();
        module().setEnabled(true);
        user().run(editor, 1001);
        user().run(player, 1002);
        user().run(viewer, 1003);
    }

    static quorvane::AppNapModule& module() { return quorvane::AppNapModule::sharedModule(); }

    static void switchMode(bool on) { BatterySaver::batterySaver().setEnabled(on); }

    void pass(Seconds duration) { laptop().clock().advance(duration); }

    SimulatedWorkspace& user() { return laptop().workspace(); }

    [[nodiscard]] const QStringList& hidden() { return laptop().workspace().hidden(); }
};

} // namespace

TEST_F(AppNapModuleTest, LeftSixMinutesAgo_IsHiddenAndFourMinutesAgoIsNot) {
    startWithModule();
    switchMode(true);
    user().activate(1001);
    pass(14 * minute);
    user().activate(1002); // the editor is left
    pass(2 * minute);
    user().activate(1003); // the player is left
    pass(4 * minute - Seconds(1));
    user().forgetHidden();
    pass(Seconds(1));
    EXPECT_EQ(module().timeSinceAppInForeground(editor), 360.0);
    EXPECT_EQ(module().timeSinceAppInForeground(player), 240.0);
    EXPECT_EQ(hidden(), QStringList{editor});
}

TEST_F(AppNapModuleTest, TheOneInFront_IsNeverHidden) {
    startWithModule();
    user().activate(1001);
    switchMode(true);
    pass(20 * minute);
    EXPECT_FALSE(hidden().contains(editor));
    EXPECT_TRUE(hidden().contains(player));
}

TEST_F(AppNapModuleTest, IntervalOfZero_HidesEverythingBehindAtEachPass) {
    store("AppNapModuleTimeInterval", 0);
    startWithModule();
    user().activate(1002);
    switchMode(true);
    pass(minute);
    EXPECT_EQ(hidden(), (QStringList{editor, viewer}));
    pass(minute);
    EXPECT_EQ(hidden(), (QStringList{editor, viewer, editor, viewer}));
}

TEST_F(AppNapModuleTest, NotRunning_HidesNothingButRemembersWhatWasLeft) {
    startWithModule();
    user().activate(1001);
    user().activate(1002);
    pass(20 * minute);
    module().fireTimer();
    EXPECT_TRUE(hidden().isEmpty());
    EXPECT_TRUE(module().recentApps().contains(editor));
    EXPECT_FALSE(module().recentApps().contains(player));
    EXPECT_EQ(module().timeSinceAppInForeground(editor), 1200.0);
}

TEST_F(AppNapModuleTest, IntervalChanged_TakesEffectAtTheNextPass) {
    startWithModule();
    switchMode(true);
    pass(2 * minute);
    EXPECT_TRUE(hidden().isEmpty());
    store("AppNapModuleTimeInterval", 1);
    EXPECT_TRUE(hidden().isEmpty());
    pass(minute);
    EXPECT_EQ(hidden(), (QStringList{editor, player, viewer}));
}

TEST_F(AppNapModuleTest, NeverLeft_CountsFromTheStart) {
    startWithModule();
    switchMode(true);
    pass(5 * minute);
    EXPECT_TRUE(hidden().isEmpty()) << "five minutes are not more than five";
    pass(minute);
    EXPECT_EQ(hidden(), (QStringList{editor, player, viewer}));
}

TEST_F(AppNapModuleTest, WithoutAnIdentifier_IsNeverHidden) {
    startWithModule();
    user().run(QString(), 1004);
    user().activate(1004);
    user().activate(1001);
    switchMode(true);
    pass(20 * minute);
    EXPECT_FALSE(hidden().contains(QString()));
    EXPECT_EQ(module().timeSinceAppInForeground(QString()), 0.0);
    EXPECT_FALSE(module().recentApps().contains(QString()));
}

TEST_F(AppNapModuleTest, AccessoryAndBackgroundPrograms_AreNeverHidden) {
    startWithModule();
    user().run(QStringLiteral("org.example.Tray"), 1005, ActivationPolicy::Accessory);
    user().run(QStringLiteral("org.example.Service"), 1006, ActivationPolicy::Prohibited);
    switchMode(true);
    pass(20 * minute);
    EXPECT_FALSE(hidden().contains(QStringLiteral("org.example.Tray")));
    EXPECT_FALSE(hidden().contains(QStringLiteral("org.example.Service")));
}

TEST_F(AppNapModuleTest, ModeOff_HoldsNoTimer) {
    startWithModule();
    const std::size_t before = laptop().clock().timerCount();
    switchMode(true);
    EXPECT_GT(laptop().clock().timerCount(), before);
    switchMode(false);
    EXPECT_EQ(laptop().clock().timerCount(), before);
    pass(20 * minute);
    EXPECT_TRUE(hidden().isEmpty());
}

TEST_F(AppNapModuleTest, ModeSwitchedOnWithinAMinute_PassesAtTheSameMomentsAsIfItHadBeenOn) {
    store("AppNapModuleTimeInterval", 0);
    startWithModule();
    pass(Seconds(45));
    switchMode(true);
    pass(Seconds(14));
    EXPECT_TRUE(hidden().isEmpty());
    pass(Seconds(1));
    EXPECT_EQ(hidden(), (QStringList{editor, player, viewer}));
}

TEST_F(AppNapModuleTest, SharedModule_IsTheOneInTheList) {
    start();
    EXPECT_EQ(BatterySaver::batterySaver().moduleWithIdentifier(QStringLiteral("AppNapModule")),
              &module());
    EXPECT_EQ(module().label(), QStringLiteral("Hiding Background Apps"));
    EXPECT_EQ(module().imageName(), QStringLiteral("icon-hide"));
    EXPECT_FALSE(module().enabled());
    EXPECT_EQ(module().appNapModuleTimeInterval(), 5.0);
}

} // namespace quorvane::test
