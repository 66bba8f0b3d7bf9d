#include "app/AppDelegate.h"

#include "app/ModuleList.h"
#include "core/Localized.h"
#include "core/QuorvanePrefs.h"
#include "core/SharedInstances.h"
#include "core/SoftwareUpdater.h"
#include "core/UserDefaults.h"
#include "mode/BatterySaver.h"
#include "mode/RegisteredDefaults.h"
#include "platform/Log.h"
#include "platform/LoginItems.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "platform/ProgramCopies.h"
#include "platform/UserNotifications.h"
#include "platform/Windows.h"
#include "ui/MenuController.h"
#include "ui/WindowController.h"

#include <utility>

namespace quorvane {

namespace {

constexpr Seconds updateCheckInterval{3600.0};

const QString otherEdition = QStringLiteral("com.tarnwick.quorvane-setapp");

} // namespace

AppDelegate::AppDelegate(std::function<void()> terminate) : terminate_(std::move(terminate)) {}

AppDelegate::~AppDelegate() = default;

bool AppDelegate::anotherCopyRuns() {
    const ProgramCopies& copies = platform().programCopies();
    // This copy counts itself.
    return copies.running(QuorvanePrefs::domainName()) + copies.running(otherEdition) >= 2;
}

void AppDelegate::refuse() {
    Alert alert;
    alert.messageText = localized("Quorvane already running");
    alert.informativeText = localized(
        "Another version of Quorvane is already running. Please quit it, then try again.");
    alert.buttons = {localized("Quit")};
    platform().windows().runModal(alert, [this](int) { terminate_(); });
}

bool AppDelegate::applicationWillFinishLaunching() {
    if (anotherCopyRuns()) {
        refuse();
        return false;
    }
    for (const QVariantMap& group : registeredDefaults()) {
        QuorvanePrefs::userDefaults().registerDefaults(group);
    }
    if (auto& factory = SharedInstances::get<ModuleFactory>(); !factory.makeModules) {
        factory.makeModules = makeModules;
    }
    windowController_ = std::make_unique<WindowController>();
    return true;
}

void AppDelegate::applicationDidFinishLaunching() {
    SoftwareUpdater& updater = SoftwareUpdater::sharedUpdater();
    updater.setAutomaticallyChecksForUpdates(true);
    updater.setAutomaticallyDownloadsUpdates(true);
    updater.setUpdateCheckInterval(updateCheckInterval);
    updater.checkForUpdatesInBackground();

    menuController_ = std::make_unique<MenuController>([this] { quit(); });

    LoginItems& loginItems = platform().loginItems();
    if (!loginItems.launchOnLogin()) {
        loginItems.setLaunchOnLogin(true);
    }
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
