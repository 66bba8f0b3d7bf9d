#include "modules/AppNapModule.h"

#include "core/QuorvanePrefs.h"
#include "core/SharedInstances.h"
#include "platform/Platform.h"

namespace quorvane {

namespace {

constexpr Seconds hidingPeriod{60.0};
constexpr double secondsPerMinute = 60.0;
constexpr double millisecondsPerSecond = 1000.0;

const QString& timeIntervalKey() {
    static const QString key = QStringLiteral("appNapModuleTimeInterval");
    return key;
}

} // namespace

AppNapModule::AppNapModule() : timer_(hidingPeriod, [this] { fireTimer(); }) {
    AppNapModule::init();
}

AppNapModule& AppNapModule::sharedModule() {
    return SharedInstances::get<AppNapModule>();
}

void AppNapModule::init() {
    QuorvaneModule::init();
    startDate_ = platform().clock().now();
    const Workspace& workspace = platform().workspace();
    connect(&workspace, &Workspace::didActivateApplication, this, &AppNapModule::didActivateApp);
    connect(&workspace, &Workspace::didDeactivateApplication, this,
            &AppNapModule::didDeactivateApp);
    QuorvanePrefs::bindKey(timeIntervalKey(), *this, QStringLiteral("AppNapModuleTimeInterval"));
}

QString AppNapModule::label() const {
    return QStringLiteral("Hiding Background Apps");
}

QString AppNapModule::imageName() const {
    return QStringLiteral("icon-hide");
}

bool AppNapModule::activate() {
    timer_.start();
    return true;
}

bool AppNapModule::deactivate() {
    timer_.stop();
    return true;
}

void AppNapModule::didActivateApp(const RunningApplication& /*application*/) {}

void AppNapModule::didDeactivateApp(const RunningApplication& application) {
    if (application.bundleIdentifier.isEmpty()) {
        return;
    }
    const std::scoped_lock lock(mutex_);
    recentApps_.insert(application.bundleIdentifier, platform().clock().now());
}

QHash<QString, QDateTime> AppNapModule::recentApps() const {
    const std::scoped_lock lock(mutex_);
    return recentApps_;
}

double AppNapModule::timeSinceAppInForeground(const QString& bundleIdentifier) const {
    if (bundleIdentifier.isEmpty()) {
        return 0.0;
    }
    const QDateTime left = recentApps().value(bundleIdentifier, startDate_);
    return static_cast<double>(left.msecsTo(platform().clock().now())) / millisecondsPerSecond;
}

void AppNapModule::fireTimer() {
    Workspace& workspace = platform().workspace();
    const auto front = workspace.frontmostApplication();
    if (!running()) {
        return;
    }
    const QString frontIdentifier = front ? front->bundleIdentifier : QString();
    const double limit = appNapModuleTimeInterval_ * secondsPerMinute;
    for (const RunningApplication& each : workspace.runningApplications()) {
        if (each.activationPolicy == ActivationPolicy::Regular &&
            each.bundleIdentifier != frontIdentifier &&
            timeSinceAppInForeground(each.bundleIdentifier) > limit) {
            workspace.hide(each);
        }
    }
}

void AppNapModule::setAppNapModuleTimeInterval(double minutes) {
    setObserved(appNapModuleTimeInterval_, minutes, timeIntervalKey());
}

} // namespace quorvane
