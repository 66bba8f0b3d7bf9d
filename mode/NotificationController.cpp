#include "mode/NotificationController.h"

#include "battery/Battery.h"
#include "core/EventCenter.h"
#include "core/Localized.h"
#include "core/NotificationDelivery.h"
#include "mode/BatterySaver.h"
#include "platform/Platform.h"
#include "platform/UserNotifications.h"

namespace quorvane {

namespace {

constexpr Seconds turboInterval{8.0};
constexpr int fewestReportedMinutes = 2;

const QString notificationType = QStringLiteral("NotificationType");
const QString startQuorvane = QStringLiteral("StartQuorvane");
const QString disableTurbo = QStringLiteral("DisableTurbo");

UserNotification question(const QString& title, const QString& type) {
    UserNotification notification;
    notification.title = title;
    notification.informativeText = localized("Start Low Power Mode?");
    notification.actionButtonTitle = localized("Start");
    notification.otherButtonTitle = localized("Not Now");
    notification.userInfo = {{notificationType, type}};
    return notification;
}

} // namespace

NotificationController::NotificationController() {
    connect(&EventCenter::defaultCenter(), &EventCenter::posted, this,
            &NotificationController::batteryStatusChanged);
    connect(&platform().userNotifications(), &UserNotificationCenter::activated, this,
            &NotificationController::didActivateNotification);
}

void NotificationController::showNotificationWithTitle(const QString& title,
                                                       const QString& infoText) {
    UserNotification notification;
    notification.title = title;
    notification.informativeText = infoText;
    deliverShortNotification(notification);
}

void NotificationController::showLowPowerNotification() {
    const QString title = filledIn(localized("Less Than %d%% Battery Remaining"),
                                   BatterySaver::batterySaver().batteryThreshhold());
    platform().userNotifications().deliver(question(title, startQuorvane));
}

void NotificationController::showTurboNotification() {
    deliverNotification(question(localized("Your Processor is Draining Battery"), disableTurbo),
                        turboInterval);
}

void NotificationController::enabledNotification() {
    showNotificationWithTitle(localized("Low Power Mode is on"),
                              localized("(Automatically started because your battery is low)"));
}

void NotificationController::disabledNotificationAlwaysShow(bool alwaysShow) {
    const int minutes = BatterySaver::batterySaver().resetMinutesSaved();
    if (minutes >= fewestReportedMinutes) {
        showNotificationWithTitle(
            filledIn(localized("You saved %d minutes of battery!", minutes), minutes),
            localized("Low power mode is now stopped."));
    } else if (alwaysShow) {
        showNotificationWithTitle(localized("Stopping Low Power Mode"),
                                  localized("Your computer is now plugged in."));
    }
}

void NotificationController::didActivateNotification(const UserNotification& notification) {
    BatterySaver& saver = BatterySaver::batterySaver();
    const QString module = QStringLiteral("Module");
    if (notification.userInfo.contains(module)) {
        QuorvaneModule* poster =
            saver.moduleWithIdentifier(notification.userInfo.value(module).toString());
        if (poster != nullptr) {
            poster->recieveNotification(notification);
        }
        return;
    }
    const QString type = notification.userInfo.value(notificationType).toString();
    if (type == startQuorvane) {
        saver.enableWithNotification(false);
    } else if (type == disableTurbo) {
        saver.enableTurboModule();
    }
}

void NotificationController::batteryStatusChanged(const QString& event, QObject* sender) {
    BatterySaver& saver = BatterySaver::batterySaver();
    const auto* battery = qobject_cast<Battery*>(sender);
    if (battery == nullptr || saver.isLaunchMode(LaunchMode::Manual)) {
        return;
    }
    const bool low = battery->batteryPercent() <= saver.batteryThreshhold();
    if (event == BatteryEvent::levelDecreased) {
        if (low && !alreadyAsked_) {
            saver.askToEnablePowerSaving();
            alreadyAsked_ = true;
        }
    } else if (event == BatteryEvent::stoppedCharging) {
        if (low) {
            saver.askToEnablePowerSaving();
        }
        alreadyAsked_ = false;
    } else if (event == BatteryEvent::beganCharging) {
        saver.disableWithNotification(true);
        alreadyAsked_ = false;
    }
}

} // namespace quorvane
