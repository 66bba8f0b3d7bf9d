#include "mode/BatterySaver.h"

#include "battery/Battery.h"
#include "core/QuorvanePrefs.h"
#include "core/SharedInstances.h"
#include "core/UserDefaults.h"
#include "helperclient/HelperTool.h"
#include "mode/NotificationController.h"
#include "mode/SettingsList.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

constexpr Seconds savingsPeriod{60.0};

const QString wasEnabledOnQuit = QStringLiteral("WasEnabledOnQuit");

ModuleList madeModules() {
    const ModuleFactory& factory = SharedInstances::get<ModuleFactory>();
    return factory.makeModules ? factory.makeModules() : ModuleList();
}

} // namespace

BatterySaver::BatterySaver()
    : notifier_(std::make_unique<NotificationController>()), modules_(madeModules()),
      turboModule_(moduleWithIdentifier(QStringLiteral("TurboModule"))),
      savingsTimer_(savingsPeriod, [this] { updateMinutesSaved(); }) {
    queueOnMain(this, [this] { bindSettings(); });
}

BatterySaver::~BatterySaver() = default;

BatterySaver& BatterySaver::batterySaver() {
    return SharedInstances::get<BatterySaver>();
}

void BatterySaver::bindSettings() {
    QuorvanePrefs::bindKey(QStringLiteral("enabled"), *this, QStringLiteral("QuorvaneActive"));
    QuorvanePrefs::bindKey(QStringLiteral("launchMode"), *this,
                           QStringLiteral("QuorvaneAutoStartSetting"));
    QuorvanePrefs::bindKey(QStringLiteral("batteryThreshhold"), *this,
                           QStringLiteral("BatteryThreshold"));
    checkThreshold();
    updateModules();
}

QuorvaneModule* BatterySaver::moduleWithIdentifier(const QString& identifier) const {
    const auto found = std::find_if(modules_.begin(), modules_.end(), [&](const auto& module) {
        return module->identifier() == identifier;
    });
    return found == modules_.end() ? nullptr : found->get();
}

void BatterySaver::toggleModule(QuorvaneModule& module) {
    module.toggleEnabled();
}

void BatterySaver::enableTurboModule() {
    if (turboModule_ != nullptr) {
        toggleModule(*turboModule_);
    }
}

void BatterySaver::checkThreshold() {
    if (Battery::battery().beneathQuorvaneThreshhold() && !isLaunchMode(LaunchMode::Manual)) {
        askToEnablePowerSaving();
        notifier_->setAlreadyAsked(true);
    } else if (QuorvanePrefs::userDefaults().boolForKey(wasEnabledOnQuit) &&
               isLaunchMode(LaunchMode::Manual)) {
        enableWithNotification(false);
    } else {
        disableWithNotification(false);
    }
}

void BatterySaver::askToEnablePowerSaving() {
    if (enabled_) {
        return;
    }
    if (isLaunchMode(LaunchMode::Automatic)) {
        enableWithNotification(true);
    } else {
        notifier_->showLowPowerNotification();
    }
}

void BatterySaver::askToEnableTurboModule() {
    if (enabled_ && turboModule_ != nullptr && !turboModule_->enabled()) {
        notifier_->showTurboNotification();
    }
}

void BatterySaver::updateModules() {
    for (const auto& module : modules_) {
        module->updateRunning(enabled_);
    }
}

void BatterySaver::enableWithNotification(bool show) {
    if (enabled_) {
        return;
    }
    HelperTool::helperTool().installLatestVersion();
    announceEnabled(true);
    updateModules();
    Battery::battery().writeToLog(QStringLiteral("Power saving is enabled"));
    if (show) {
        notifier_->enabledNotification();
    }
}

void BatterySaver::disableWithNotification(bool alwaysShow) {
    if (!enabled_) {
        return;
    }
    announceEnabled(false);
    updateModules();
    Battery::battery().writeToLog(QStringLiteral("Power saving is disabled"));
    notifier_->disabledNotificationAlwaysShow(alwaysShow);
}

void BatterySaver::announceEnabled(bool enabled) {
    enabled ? savingsTimer_.start() : savingsTimer_.stop();
    setObserved(enabled_, enabled, QStringLiteral("enabled"));
}

void BatterySaver::setEnabled(bool enabled) {
    if (enabled) {
        enableWithNotification(false);
    } else {
        disableWithNotification(false);
    }
}

void BatterySaver::toggleEnabled() {
    setEnabled(!enabled_);
}

void BatterySaver::quit() {
    QuorvanePrefs::userDefaults().setBool(enabled_, wasEnabledOnQuit);
    setEnabled(false);
    Battery::battery().saveData();
}

float BatterySaver::estimationForOneMinute() const {
    if (!enabled_) {
        return 0.0F;
    }
    float minutes = 0.0F;
    for (const Setting& setting : settingsList()) {
        if (setting.minutesSaved > 0.0 && isModuleOn(QLatin1String(setting.key))) {
            minutes = static_cast<float>(static_cast<double>(minutes) + setting.minutesSaved);
        }
    }
    return minutes;
}

bool BatterySaver::isModuleOn(QLatin1String setting) const {
    return std::any_of(modules_.begin(), modules_.end(), [&](const auto& module) {
        return module->enabled() && module->enabledSetting() == setting;
    });
}

std::int32_t BatterySaver::resetMinutesSaved() {
    return static_cast<std::int32_t>(std::exchange(minutesSaved_, 0.0F));
}

void BatterySaver::updateMinutesSaved() {
    minutesSaved_ += estimationForOneMinute();
}

void BatterySaver::setLaunchMode(quint64 mode) {
    setObserved(launchMode_, mode, QStringLiteral("launchMode"));
}

void BatterySaver::setBatteryThreshhold(int percent) {
    setObserved(batteryThreshhold_, percent, QStringLiteral("batteryThreshhold"));
}

} // namespace quorvane
