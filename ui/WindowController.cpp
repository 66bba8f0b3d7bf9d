#include "ui/WindowController.h"

#include "core/QuorvanePrefs.h"
#include "core/UserDefaults.h"
#include "platform/Platform.h"
#include "platform/Windows.h"
#include "ui/EmailWindowController.h"

namespace quorvane {

namespace {

// One above the status bar, so that nothing ordinary covers the window.
constexpr int aboveTheStatusBar = 26;

const QString splashWindowShown = QStringLiteral("SplashWindowShown");

} // namespace

WindowController::WindowController() {
    configureSplashWindow();
    // The splash may be on the screen; the e-mail window may come all the same.
    delayEmailWindow_ = false;
}

WindowController::~WindowController() = default;

void WindowController::configureSplashWindow() {
    splashWindow_ = platform().windows().loadNibNamed(QStringLiteral("Splash"));
    if (splashWindow_) {
        splashWindow_->setCollectionBehavior(Window::canJoinAllSpaces);
    }
    // A stored "false" counts as shown too.
    UserDefaults& defaults = QuorvanePrefs::userDefaults();
    if (!defaults.objectForKey(splashWindowShown).isValid()) {
        showSplashWindow();
        defaults.setBool(true, splashWindowShown);
    }
}

void WindowController::showSplashWindow() {
    if (!splashWindow_) {
        return;
    }
    disconnect(splashClosing_);
    splashClosing_ = hearOfClosing(splashWindow_.get());
    delayEmailWindow_ = true;
    platform().windows().activateIgnoringOtherApps();
    splashWindow_->makeKeyAndOrderFront();
    splashWindow_->setLevel(aboveTheStatusBar);
}

void WindowController::configureEmailWindow() {
    emailWindowController_ = std::make_unique<EmailWindowController>();
    submitEmailWindow_ = emailWindowController_->window();
    if (submitEmailWindow_ != nullptr) {
        submitEmailWindow_->setCollectionBehavior(Window::canJoinAllSpaces);
    }
}

void WindowController::showEmailWindowIfAppropriate() {
    if (!delayEmailWindow_ &&
        !QuorvanePrefs::userDefaults().boolForKey(QStringLiteral("userDidSetEmail"))) {
        showEmailWindow();
    }
}

void WindowController::showEmailWindow() {
    if (submitEmailWindow_ == nullptr) {
        return;
    }
    disconnect(emailClosing_);
    emailClosing_ = hearOfClosing(submitEmailWindow_);
    platform().windows().activateIgnoringOtherApps();
    submitEmailWindow_->center();
    submitEmailWindow_->makeKeyAndOrderFront();
    submitEmailWindow_->setLevel(aboveTheStatusBar);
}

QMetaObject::Connection WindowController::hearOfClosing(const Window* window) {
    return connect(window, &Window::willClose, this, [this, window] { windowWillClose(window); });
}

void WindowController::windowWillClose(const Window* window) {
    if (window == nullptr) {
        return;
    }
    if (window == splashWindow_.get()) {
        disconnect(splashClosing_);
        delayEmailWindow_ = false;
        showEmailWindowIfAppropriate();
    } else if (window == submitEmailWindow_) {
        disconnect(emailClosing_);
    }
}

} // namespace quorvane
