#include "core/AppDelegate.h"

#include "battery/Battery.h"
#include "core/BatterySaver.h"
#include "core/MainQueue.h"
#include "core/QuorvanePrefs.h"
#include "core/RegisteredDefaults.h"
#include "core/UserDefaults.h"
#include "platform/Log.h"
#include "platform/Platform.h"
#include "platform/UserNotifications.h"

#include <utility>

namespace quorvane {

AppDelegate::AppDelegate(std::function<void()> terminate) : terminate_(std::move(terminate)) {}

void AppDelegate::applicationWillFinishLaunching() {
    for (const QVariantMap& group : registeredDefaults()) {
        QuorvanePrefs::userDefaults().registerDefaults(group);
    }
}

void AppDelegate::applicationDidFinishLaunching() {
    BatterySaver& saver = BatterySaver::batterySaver();
    Battery::battery();
    // The controller binds itself to the settings only when this has returned. Until then it acts
    // as in the automatic launch mode, so that a nearly empty battery is met at once; the user's
    // launch mode then decides afresh.
    saver.checkThreshold();
}

void AppDelegate::quit() {
    platform().userNotifications().removeAllDelivered();
    BatterySaver::batterySaver().quit();
    // Queued, because the modules have queued work too (such as letting paused applications go on)
    // that has to be done before the end.
    queueOnMain(this, [this] {
        log(QStringLiteral("The main queue is finished!"));
        terminate_();
    });
}

} // namespace quorvane
