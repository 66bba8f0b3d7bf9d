#include "apps/demo/Day.h"

#include "app/AppDelegate.h"
#include "apps/demo/DayWitness.h"
#include "apps/demo/DemoUser.h"
#include "apps/demo/Laptop.h"
#include "core/QuorvanePrefs.h"
#include "core/SharedInstances.h"
#include "mode/BatterySaver.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <QStringEncoder>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {

namespace {

constexpr Seconds endOfTheDay = std::chrono::hours(17);
constexpr Seconds lookPeriod{1.0};

} // namespace

Day::Day(const DayPlan& plan, EventSink sink) : plan_(plan), sink_(std::move(sink)) {
    auto simulated = std::make_unique<SimulatedPlatform>();
    platform_ = simulated.get();
    SharedInstances::reset(std::move(simulated));
    laptop_ = std::make_unique<Laptop>(*platform_);
    storeSettings();
    storeYesterdaysLog();
}

Day::~Day() {
    user_.reset();
    witness_.reset();
    program_.reset();
    laptop_.reset();
    SharedInstances::reset(nullptr);
}

void Day::storeSettings() const {
    SimulatedSettingsDomain& settings = platform_->settings().domain(QuorvanePrefs::domainName());
    settings.writeFromElsewhere(QStringLiteral("QuorvaneAutoStartSetting"),
                                static_cast<quint64>(plan_.mode));
    settings.writeFromElsewhere(QStringLiteral("BatteryThreshold"), plan_.threshold);
    // This laptop's power goes into its board and its screen: it has no turbo to save on, and what
    // that would save is not to be counted.
    settings.writeFromElsewhere(QStringLiteral("TurboModuleActivated"), false);
    // The user has seen the welcome long ago.
    settings.writeFromElsewhere(QStringLiteral("SplashWindowShown"), true);
}

void Day::storeYesterdaysLog() const {
    SimulatedFiles& files = platform_->files();
    QStringEncoder encoder(QStringConverter::Utf16, QStringConverter::Flag::WriteBom);
    files.put(files.applicationSupportFolder() + QStringLiteral("/Quorvane/Log.txt"),
              encoder.encode(QStringLiteral("Quorvane log file:\nPower saving is enabled\n"
                                            "Power saving is disabled")));
}

void Day::begin() {
    const Report reporting = [this](DemoEvent::Kind kind, const QString& text) {
        report(kind, text);
    };
    program_ = std::make_unique<AppDelegate>([this] { over_ = true; });
    if (program_->applicationWillFinishLaunching()) {
        program_->applicationDidFinishLaunching();
    }
    SimulatedClock::runMainQueue();

    const BatterySaver& saver = BatterySaver::batterySaver();
    report(DemoEvent::Kind::Settings,
           QStringLiteral("launch mode %1, threshold %2 %")
               .arg(launchModeName(static_cast<LaunchMode>(saver.launchMode())))
               .arg(saver.batteryThreshhold()));
    report(DemoEvent::Kind::Hardware, QStringLiteral("plugged in, on the desk"));
    witness_ = std::make_unique<DayWitness>(*platform_, *laptop_, reporting);
    user_ = std::make_unique<DemoUser>(plan_, *platform_, *laptop_, reporting);
    user_->at(endOfTheDay, [this] { quit(); });
}

void Day::advance(Seconds duration) {
    for (Seconds left = duration; left > Seconds::zero() && !over_; left -= lookPeriod) {
        platform_->clock().advance(std::min(lookPeriod, left));
        witness_->look();
    }
}

void Day::finish() {
    while (!over_) {
        advance(lookPeriod);
    }
}

void Day::quit() {
    report(DemoEvent::Kind::User, QStringLiteral("quits Quorvane"));
    program_->quit();
    witness_->lookAtFiles();
}

DayState Day::state() const {
    const Battery& battery = Battery::battery();
    const BatterySaver& saver = BatterySaver::batterySaver();
    const QList<UserNotification> notifications = platform_->userNotifications().delivered();
    DayState state;
    state.time = platform_->clock().now();
    state.plan = plan_;
    state.percent = battery.batteryPercent();
    state.percentColor = battery.batteryPercentColor();
    state.pluggedIn = laptop_->isPluggedIn();
    state.brightness = laptop_->brightness();
    state.watts = laptop_->watts();
    state.secondsLeft = battery.batteryTimeRemaining();
    state.modeOn = saver.enabled();
    state.minutesSaved = static_cast<double>(saver.minutesSaved());
    if (!notifications.isEmpty()) {
        state.notification = notifications.last();
    }
    state.pointedButton = user_->pointedButton();
    return state;
}

bool Day::showsNotification() const {
    return !platform_->userNotifications().delivered().isEmpty();
}

DayResult Day::result() const {
    return {modeWasOn_, lastNotice_, laptop_->lastDischarge()};
}

void Day::report(DemoEvent::Kind kind, const QString& text) {
    modeWasOn_ = modeWasOn_ || BatterySaver::batterySaver().enabled();
    if (kind == DemoEvent::Kind::Notice) {
        lastNotice_ = platform_->userNotifications().titles().last();
    }
    if (sink_) {
        sink_({kind, platform_->clock().now(), Battery::battery().batteryPercent(), text});
    }
}

} // namespace quorvane
