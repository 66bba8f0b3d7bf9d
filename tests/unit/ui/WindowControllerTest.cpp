#include "ui/WindowController.h"

#include "app/AppDelegate.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"
#include "ui/EmailWindowController.h"

namespace quorvane::test {

namespace {

class WindowControllerTest : public SimulatedLaptopTest {
  protected:
    [[nodiscard]] SimulatedWindows& windows() { return laptop().windows(); }

    [[nodiscard]] const SimulatedWindows::Look* window(const char* layout) {
        for (const SimulatedWindows::Look& look : windows().windows()) {
            if (look.layout == QLatin1String(layout)) {
                return &look;
            }
        }
        return nullptr;
    }
};

} // namespace

TEST_F(WindowControllerTest, FirstLaunch_SplashInFrontOnEveryDesktopAndRemembered) {
    registerDefaults();
    const WindowController controller;
    EXPECT_EQ(windows().calls().join(QLatin1Char(',')),
              QStringLiteral("load Splash,behavior Splash,activate,front Splash,level Splash"));
    ASSERT_NE(window("Splash"), nullptr);
    EXPECT_EQ(window("Splash")->collectionBehavior, Window::canJoinAllSpaces);
    EXPECT_EQ(window("Splash")->level, 26);
    EXPECT_TRUE(stored("SplashWindowShown").toBool());
}

TEST_F(WindowControllerTest, SecondLaunch_NoSplash) {
    store("SplashWindowShown", true);
    const WindowController controller;
    EXPECT_FALSE(window("Splash")->isVisible);
}

TEST_F(WindowControllerTest, StoredFalse_CountsAsShown) {
    store("SplashWindowShown", false);
    const WindowController controller;
    EXPECT_FALSE(window("Splash")->isVisible);
    EXPECT_FALSE(stored("SplashWindowShown").toBool());
}

TEST_F(WindowControllerTest, NoSplashLayout_NothingShownButRemembered) {
    windows().layouts.clear();
    const WindowController controller;
    EXPECT_EQ(controller.splashWindow(), nullptr);
    EXPECT_TRUE(windows().windows().empty());
    EXPECT_TRUE(stored("SplashWindowShown").toBool());
}

TEST_F(WindowControllerTest, SplashOnTheScreenAfterCreation_EmailWindowIsNotDelayed) {
    WindowController controller;
    EXPECT_TRUE(window("Splash")->isVisible);
    EXPECT_FALSE(controller.delayEmailWindow());
    controller.showSplashWindow();
    EXPECT_TRUE(controller.delayEmailWindow());
}

TEST_F(WindowControllerTest, SplashClosed_ReleasesTheEmailWindowWhichNobodyHasMade) {
    registerDefaults();
    WindowController controller;
    controller.setDelayEmailWindow(true);
    windows().close(QStringLiteral("Splash"));
    EXPECT_FALSE(controller.delayEmailWindow());
    EXPECT_EQ(controller.submitEmailWindow(), nullptr);
    EXPECT_EQ(windows().windows().size(), 1U);
}

TEST_F(WindowControllerTest, SplashClosedWithAnEmailWindow_ShowsItInTheMiddleAndInFront) {
    registerDefaults();
    windows().layouts.insert(QStringLiteral("CollectEmailWindow"));
    WindowController controller;
    controller.configureEmailWindow();
    ASSERT_NE(controller.submitEmailWindow(), nullptr);
    EXPECT_EQ(controller.submitEmailWindow(), controller.emailWindowController()->window());
    EXPECT_EQ(window("CollectEmailWindow")->collectionBehavior, Window::canJoinAllSpaces);
    windows().close(QStringLiteral("Splash"));
    EXPECT_TRUE(window("CollectEmailWindow")->isVisible);
    EXPECT_TRUE(window("CollectEmailWindow")->isCentered);
    EXPECT_EQ(window("CollectEmailWindow")->level, 26);
}

TEST_F(WindowControllerTest, EmailWindow_IsNotShownWhileDelayedOrWhenAnswered) {
    registerDefaults();
    windows().layouts.insert(QStringLiteral("CollectEmailWindow"));
    WindowController controller;
    controller.configureEmailWindow();
    controller.setDelayEmailWindow(true);
    controller.showEmailWindowIfAppropriate();
    EXPECT_FALSE(window("CollectEmailWindow")->isVisible);
    controller.setDelayEmailWindow(false);
    store("userDidSetEmail", true);
    controller.showEmailWindowIfAppropriate();
    EXPECT_FALSE(window("CollectEmailWindow")->isVisible);
    store("userDidSetEmail", false);
    controller.showEmailWindowIfAppropriate();
    EXPECT_TRUE(window("CollectEmailWindow")->isVisible);
}

TEST_F(WindowControllerTest, EmailWindowClosed_ChangesNoFlag) {
    registerDefaults();
    windows().layouts.insert(QStringLiteral("CollectEmailWindow"));
    WindowController controller;
    controller.configureEmailWindow();
    controller.showEmailWindow();
    controller.setDelayEmailWindow(true);
    windows().close(QStringLiteral("CollectEmailWindow"));
    EXPECT_TRUE(controller.delayEmailWindow());
}

TEST_F(WindowControllerTest, CloseOfAnyOtherWindow_ChangesNothing) {
    WindowController controller;
    controller.setDelayEmailWindow(true);
    const auto other = windows().loadNibNamed(QStringLiteral("Splash"));
    controller.windowWillClose(other.get());
    controller.windowWillClose(nullptr);
    EXPECT_TRUE(controller.delayEmailWindow());
}

} // namespace quorvane::test
