#include "modules/BrowserModule.h"

#include "core/QuorvanePrefs.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quorvane {

namespace {

constexpr Seconds frontPeriod{0.5};
constexpr Seconds pausePeriod{5.0};

const QString& safariKey() {
    static const QString key = QStringLiteral("controlSafari");
    return key;
}

const QString& chromeKey() {
    static const QString key = QStringLiteral("controlChrome");
    return key;
}

const QString& firefoxKey() {
    static const QString key = QStringLiteral("controlFirefox");
    return key;
}

const QString& operaKey() {
    static const QString key = QStringLiteral("controlOpera");
    return key;
}

bool isControlKey(const QString& key) {
    return key == safariKey() || key == chromeKey() || key == firefoxKey() || key == operaKey();
}

} // namespace

BrowserModule::BrowserModule()
    : timer_(frontPeriod, [this] { unpauseFrontApp(); }),
      timer2_(pausePeriod, [this] { pauseBrowsers(); }) {}

void BrowserModule::init() {
    QuorvaneModule::init();
    QuorvanePrefs::bindKey(chromeKey(), *this, QStringLiteral("BrowserModuleControlChrome"));
    QuorvanePrefs::bindKey(safariKey(), *this, QStringLiteral("BrowserModuleControlSafari"));
    QuorvanePrefs::bindKey(operaKey(), *this, QStringLiteral("BrowserModuleControlOpera"));
    QuorvanePrefs::bindKey(firefoxKey(), *this, QStringLiteral("BrowserModuleControlFirefox"));
}

QString BrowserModule::label() const {
    return QStringLiteral("Pause Web Browsers");
}

bool BrowserModule::activate() {
    isActive_ = true;
    timer2_.start();
    timer2_.fireTimer();
    return true;
}

bool BrowserModule::deactivate() {
    isActive_ = false;
    timer2_.stop();
    unpauseBrowsers();
    return true;
}

void BrowserModule::didChangeValueForKey(const QString& key) {
    if (isControlKey(key) && running()) {
        unpauseBrowsers();
        pauseBrowsers();
    }
    QuorvaneModule::didChangeValueForKey(key);
}

QStringList BrowserModule::chosenBrowsers() const {
    QStringList identifiers;
    if (controlSafari_) {
        identifiers += QStringLiteral("com.apple.Safari");
    }
    if (controlChrome_) {
        identifiers += QStringLiteral("com.google.Chrome");
    }
    if (controlFirefox_) {
        identifiers += QStringLiteral("org.mozilla.Firefox");
    }
    return identifiers;
}

void BrowserModule::pauseBrowsers() {
    for (const QString& identifier : chosenBrowsers()) {
        pauseAppsWithBundleID(identifier);
    }
}

void BrowserModule::pauseAppsWithBundleID(const QString& bundleIdentifier) {
    for (const RunningApplication& each :
         platform().workspace().runningApplicationsWithBundleIdentifier(bundleIdentifier)) {
        // What has windows and no process that is known cannot be stopped.
        if (!each.isActive && each.processIdentifier != 0) {
            pause(each.processIdentifier);
        }
    }
}

// A look that was under way when the module was switched off must not stop anything any more:
// nobody would resume it.
void BrowserModule::pause(std::int32_t pid) {
    const std::scoped_lock lock(mutex_);
    if (!isActive_ || std::find(pausedApps_.begin(), pausedApps_.end(), pid) != pausedApps_.end()) {
        return;
    }
    setAppPausedWithPID(true, pid);
    pausedApps_.push_back(pid);
    queueOnMain(this, [this] { watchTheFront(); });
}

void BrowserModule::unpauseBrowsers() {
    const std::scoped_lock lock(mutex_);
    for (const std::int32_t pid : std::exchange(pausedApps_, {})) {
        setAppPausedWithPID(false, pid);
    }
    timer_.stop();
}

void BrowserModule::unpauseFrontApp() {
    const auto front = platform().workspace().frontmostApplication();
    const std::scoped_lock lock(mutex_);
    const auto paused =
        front ? std::find(pausedApps_.begin(), pausedApps_.end(), front->processIdentifier)
              : pausedApps_.end();
    if (paused != pausedApps_.end()) {
        setAppPausedWithPID(false, *paused);
        pausedApps_.erase(paused);
        queueOnMain(this, [this] { watchTheFront(); });
    }
}

/// While nothing is stopped there is nothing to resume, and no reason to wake the machine twice a
/// second.
void BrowserModule::watchTheFront() {
    const bool isDue = !pausedApps().empty();
    if (isDue != timer_.isStarted()) {
        isDue ? timer_.start() : timer_.stop();
    }
}

void BrowserModule::waitForLooks() {
    timer_.waitForRuns();
    timer2_.waitForRuns();
}

std::vector<std::int32_t> BrowserModule::pausedApps() const {
    const std::scoped_lock lock(mutex_);
    return pausedApps_;
}

void BrowserModule::setControl(std::atomic<bool>& field, bool control, const QString& key) {
    willChangeValueForKey(key);
    field = control;
    didChangeValueForKey(key);
}

void BrowserModule::setControlSafari(bool control) {
    setControl(controlSafari_, control, safariKey());
}

void BrowserModule::setControlChrome(bool control) {
    setControl(controlChrome_, control, chromeKey());
}

void BrowserModule::setControlFirefox(bool control) {
    setControl(controlFirefox_, control, firefoxKey());
}

void BrowserModule::setControlOpera(bool control) {
    setControl(controlOpera_, control, operaKey());
}

} // namespace quorvane
