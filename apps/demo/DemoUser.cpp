#include "apps/demo/DemoUser.h"

#include "apps/demo/Laptop.h"
#include "battery/Battery.h"
#include "mode/BatterySaver.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <cmath>
#include <utility>

namespace quorvane {

namespace {

// Times of the day.
constexpr Seconds leavesTheDesk = std::chrono::hours(9) + std::chrono::minutes(15);
constexpr Seconds sunComesIn = std::chrono::hours(12) + std::chrono::minutes(30);
constexpr Seconds backAtTheDesk = std::chrono::hours(14) + std::chrono::minutes(30);

constexpr double brightEnoughInTheSun = 0.7;
constexpr Seconds readingTime{4.0};  // of a question
constexpr Seconds pointingTime{1.0}; // on the button, before the click
constexpr Seconds glancePeriod{60.0};
constexpr Seconds momentAfterPluggingIn{60.0};

} // namespace

DemoUser::DemoUser(const DayPlan& plan, SimulatedPlatform& platform, Laptop& laptop, Report report)
    : plan_(plan), platform_(platform), laptop_(laptop), report_(std::move(report)) {
    at(leavesTheDesk, [this] { unplug(); });
    at(sunComesIn, [this] { brightenScreen(); });
    at(backAtTheDesk, [this] { plugIn(); });
    if (plan_.mode == LaunchMode::Manual) {
        timers_.push_back(
            platform_.clock().schedule(glancePeriod, Repeats::Yes, [this] { lookAtBattery(); }));
    }
    connect(&platform_.userNotifications(), &SimulatedUserNotifications::shown, this,
            &DemoUser::answer);
}

DemoUser::~DemoUser() = default;

void DemoUser::at(Seconds timeOfDay, std::function<void()> action) {
    const std::chrono::milliseconds now(platform_.clock().now().time().msecsSinceStartOfDay());
    if (timeOfDay > now) {
        later(timeOfDay - now, std::move(action));
    }
}

void DemoUser::later(Seconds delay, std::function<void()> action) {
    timers_.push_back(platform_.clock().schedule(delay, Repeats::No, std::move(action)));
}

void DemoUser::unplug() {
    report_(DemoEvent::Kind::Hardware, QStringLiteral("unplugged, on battery"));
    laptop_.unplug();
}

void DemoUser::plugIn() {
    report_(DemoEvent::Kind::Hardware, QStringLiteral("plugged in"));
    laptop_.plugIn();
    if (plan_.mode == LaunchMode::Manual) {
        later(momentAfterPluggingIn, [this] { endModeByHand(); });
    }
}

void DemoUser::brightenScreen() {
    if (laptop_.brightness() < brightEnoughInTheSun) {
        report_(DemoEvent::Kind::User,
                QStringLiteral("presses the brightness key, the sun has come in"));
        platform_.displays().userSets(0, static_cast<float>(brightEnoughInTheSun));
    }
}

void DemoUser::lookAtBattery() {
    const Battery& battery = Battery::battery();
    if (hasStartedMode_ || battery.batteryCharging() ||
        battery.batteryPercent() > plan_.ownThreshold()) {
        return;
    }
    hasStartedMode_ = true;
    report_(DemoEvent::Kind::User, QStringLiteral("switches Low Power Mode on"));
    BatterySaver::batterySaver().toggleEnabled();
}

void DemoUser::endModeByHand() {
    BatterySaver& saver = BatterySaver::batterySaver();
    if (saver.enabled()) {
        report_(DemoEvent::Kind::User, QStringLiteral("switches Low Power Mode off"));
        saver.toggleEnabled();
    }
}

void DemoUser::answer(const UserNotification& notification) {
    const bool starts = plan_.answer == DayPlan::Answer::Start;
    const QString button = starts ? notification.actionButtonTitle : notification.otherButtonTitle;
    if (button.isEmpty()) {
        return;
    }
    later(readingTime, [this, button] { pointedButton_ = button; });
    later(readingTime + pointingTime,
          [this, notification, starts] { click(notification, starts); });
}

void DemoUser::click(const UserNotification& notification, bool starts) {
    report_(DemoEvent::Kind::User, QStringLiteral("clicks [%1]").arg(pointedButton_));
    pointedButton_.clear();
    if (starts) {
        platform_.userNotifications().click(notification.title);
    } else {
        platform_.userNotifications().dismiss(notification.title);
    }
}

} // namespace quorvane
