#include "modules/BrowserModule.h"

#include "mode/BatterySaver.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <set>
#include <vector>

namespace quorvane::test {

namespace {

using Pids = std::set<std::int32_t>;

constexpr std::int32_t safari = 101;
constexpr std::int32_t chrome = 102;
constexpr std::int32_t firefox = 103;

const QString safariIdentifier = QStringLiteral("com.apple.Safari");
const QString chromeIdentifier = QStringLiteral("com.google.Chrome");
const QString firefoxIdentifier = QStringLiteral("org.mozilla.Firefox");

class BrowserModuleTest : public SimulatedLaptopTest {
  protected:
    void startWithModule() {
        start();
        module().setEnabled(true);
    }

    static quorvane::BrowserModule& module() {
        return dynamic_cast<quorvane::BrowserModule&>(
            *BatterySaver::batterySaver().moduleWithIdentifier(QStringLiteral("BrowserModule")));
    }

    static void switchMode(bool on) {
        BatterySaver::batterySaver().setEnabled(on);
        settle();
    }

    /// Lets the looks at the applications end, and the signals of theirs be sent.
    static void settle() {
        module().waitForLooks();
        SimulatedClock::runMainQueue();
    }

    /// Time passes in steps, and the looks end in between as they do on a real machine.
    void pass(Seconds duration) {
        constexpr Seconds step{0.25};
        for (Seconds passed{0}; passed < duration; passed += step) {
            laptop().clock().advance(step);
            settle();
        }
    }

    SimulatedWorkspace& user() { return laptop().workspace(); }

    [[nodiscard]] const Pids& stopped() { return laptop().processes().stopped(); }
};

} // namespace

TEST_F(BrowserModuleTest, TwoBrowsers_TheOneInFrontRunsAndTheOtherIsStopped) {
    startWithModule();
    user().run(safariIdentifier, safari);
    user().run(chromeIdentifier, chrome);
    user().activate(safari);
    switchMode(true);
    EXPECT_EQ(stopped(), Pids{chrome});
}

TEST_F(BrowserModuleTest, ProcessThatIsNotKnown_IsNotAskedToStop) {
    startWithModule();
    user().run(chromeIdentifier, 0);
    switchMode(true);
    pass(Seconds(11));
    EXPECT_TRUE(laptop().processes().sentSignals().isEmpty());
    EXPECT_TRUE(module().pausedApps().empty());
}

TEST_F(BrowserModuleTest, BroughtToTheFront_RunsAgainWithinHalfASecond) {
    startWithModule();
    user().run(safariIdentifier, safari);
    user().run(chromeIdentifier, chrome);
    user().activate(safari);
    switchMode(true);
    user().activate(chrome);
    pass(Seconds(0.5));
    EXPECT_TRUE(stopped().empty());
}

TEST_F(BrowserModuleTest, LeftAgain_IsStoppedAtTheNextPass) {
    startWithModule();
    user().run(safariIdentifier, safari);
    user().run(chromeIdentifier, chrome);
    user().activate(safari);
    switchMode(true);
    user().activate(chrome);
    pass(Seconds(0.5));
    pass(Seconds(4.25));
    EXPECT_TRUE(stopped().empty()) << "the pass is not due yet";
    pass(Seconds(0.25));
    EXPECT_EQ(stopped(), Pids{safari});
}

TEST_F(BrowserModuleTest, OnlyOperaChosen_NothingIsEverStopped) {
    store("BrowserModuleControlSafari", false);
    store("BrowserModuleControlChrome", false);
    store("BrowserModuleControlFirefox", false);
    startWithModule();
    EXPECT_TRUE(module().controlOpera());
    user().run(safariIdentifier, safari);
    user().run(chromeIdentifier, chrome);
    user().run(firefoxIdentifier, firefox);
    user().run(QStringLiteral("com.operasoftware.Opera"), 104);
    switchMode(true);
    pass(Seconds(11));
    EXPECT_TRUE(laptop().processes().sentSignals().isEmpty());
}

TEST_F(BrowserModuleTest, SwitchedOff_ResumesEveryStoppedBrowser) {
    startWithModule();
    user().run(safariIdentifier, safari);
    user().run(chromeIdentifier, chrome);
    user().run(firefoxIdentifier, firefox);
    switchMode(true);
    EXPECT_EQ(stopped(), (Pids{safari, chrome, firefox}));
    switchMode(false);
    EXPECT_TRUE(stopped().empty());
    EXPECT_TRUE(module().pausedApps().empty());
}

TEST_F(BrowserModuleTest, SwitchedOffWithNothingStopped_SendsNothing) {
    startWithModule();
    user().run(safariIdentifier, safari);
    user().activate(safari);
    switchMode(true);
    switchMode(false);
    EXPECT_TRUE(laptop().processes().sentSignals().isEmpty());
    const std::size_t timers = laptop().clock().timerCount();
    switchMode(true);
    switchMode(false);
    EXPECT_EQ(laptop().clock().timerCount(), timers);
}

TEST_F(BrowserModuleTest, FirstPass_DoesNotWaitForThePeriod) {
    startWithModule();
    user().run(chromeIdentifier, chrome);
    const Seconds before = laptop().clock().monotonic();
    switchMode(true);
    EXPECT_EQ(stopped(), Pids{chrome});
    EXPECT_EQ(laptop().clock().monotonic(), before);
}

TEST_F(BrowserModuleTest, SafariIsVisitedFirstThenChromeThenFirefox) {
    startWithModule();
    user().run(firefoxIdentifier, firefox);
    user().run(chromeIdentifier, chrome);
    user().run(safariIdentifier, safari);
    switchMode(true);
    EXPECT_EQ(laptop().processes().sentSignals(),
              (QStringList{QStringLiteral("-STOP -101"), QStringLiteral("-STOP -102"),
                           QStringLiteral("-STOP -103")}));
}

TEST_F(BrowserModuleTest, StoppedBrowser_IsNotStoppedAgain) {
    startWithModule();
    user().run(chromeIdentifier, chrome);
    switchMode(true);
    pass(Seconds(16));
    EXPECT_EQ(laptop().processes().sentSignals(), QStringList{QStringLiteral("-STOP -102")});
}

TEST_F(BrowserModuleTest, SettingChangedWhileRunning_ResumesAllAndStopsTheChosenAtOnce) {
    startWithModule();
    user().run(chromeIdentifier, chrome);
    user().run(firefoxIdentifier, firefox);
    switchMode(true);
    laptop().processes().forgetSignals();
    module().setControlChrome(false);
    SimulatedClock::runMainQueue();
    EXPECT_EQ(laptop().processes().sentSignals(),
              (QStringList{QStringLiteral("-CONT -102"), QStringLiteral("-CONT -103"),
                           QStringLiteral("-STOP -103")}));
    EXPECT_EQ(stopped(), Pids{firefox});
}

TEST_F(BrowserModuleTest, SettingChangedWhileNotRunning_StopsNothing) {
    startWithModule();
    user().run(chromeIdentifier, chrome);
    module().setControlChrome(true);
    settle();
    EXPECT_TRUE(laptop().processes().sentSignals().isEmpty());
}

TEST_F(BrowserModuleTest, BrowserThatQuitsWhileStopped_StaysListedUntilItIsResumed) {
    startWithModule();
    user().run(chromeIdentifier, chrome);
    switchMode(true);
    user().quit(chrome);
    laptop().processes().end(chrome);
    pass(Seconds(6));
    EXPECT_EQ(module().pausedApps(), std::vector<std::int32_t>{chrome});
    switchMode(false);
    EXPECT_TRUE(module().pausedApps().empty());
}

TEST_F(BrowserModuleTest, BrowserStartedInTheMode_IsStoppedAtTheNextPass) {
    startWithModule();
    switchMode(true);
    user().run(firefoxIdentifier, firefox);
    EXPECT_TRUE(stopped().empty());
    pass(Seconds(5));
    EXPECT_EQ(stopped(), Pids{firefox});
}

TEST_F(BrowserModuleTest, NothingStopped_TheFrontIsNotLookedAt) {
    startWithModule();
    user().run(safariIdentifier, safari);
    user().activate(safari);
    const std::size_t before = laptop().clock().timerCount();
    switchMode(true);
    const std::size_t idle = laptop().clock().timerCount();
    user().run(chromeIdentifier, chrome);
    pass(Seconds(5));
    EXPECT_EQ(laptop().clock().timerCount(), idle + 1) << "one browser is stopped";
    user().activate(chrome);
    pass(Seconds(0.5));
    EXPECT_EQ(laptop().clock().timerCount(), idle) << "Chrome runs, and Safari still does";
    switchMode(false);
    EXPECT_EQ(laptop().clock().timerCount(), before);
}

TEST_F(BrowserModuleTest, WithoutAStoredSetting_IsOff) {
    start();
    EXPECT_FALSE(module().enabled());
    EXPECT_TRUE(module().controlSafari());
    EXPECT_TRUE(module().controlChrome());
    EXPECT_TRUE(module().controlFirefox());
    EXPECT_EQ(module().label(), QStringLiteral("Pause Web Browsers"));
    EXPECT_EQ(module().imageName(), QString());
}

TEST_F(BrowserModuleTest, LookThatOutlivesTheMode_StopsNothing) {
    startWithModule();
    user().run(chromeIdentifier, chrome);
    BatterySaver::batterySaver().setEnabled(true);
    BatterySaver::batterySaver().setEnabled(false);
    settle();
    EXPECT_TRUE(stopped().empty());
    module().pauseBrowsers();
    SimulatedClock::runMainQueue();
    EXPECT_TRUE(stopped().empty());
}

TEST_F(BrowserModuleTest, Quit_ResumesBeforeTheProgramEnds) {
    startWithModule();
    user().run(chromeIdentifier, chrome);
    switchMode(true);
    EXPECT_EQ(stopped(), Pids{chrome});
    EXPECT_TRUE(quit());
    EXPECT_TRUE(stopped().empty());
}

} // namespace quorvane::test
