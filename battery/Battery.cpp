#include "battery/Battery.h"

#include "core/EventCenter.h"
#include "core/QuorvanePrefs.h"
#include "core/SharedInstances.h"
#include "core/UserDefaults.h"
#include "platform/Files.h"
#include "platform/Platform.h"
#include "platform/PowerSources.h"

#include <algorithm>
#include <cmath>

namespace quorvane {

namespace {

constexpr Seconds pollingPeriod{120.0};
constexpr int lowestGreenPercent = 51;
constexpr BatteryColor red{0.6, 0.0, 0.0, 1.0};
constexpr BatteryColor green{0.0, 0.6, 0.0, 1.0};

double levelOf(const PowerReading& reading) {
    const std::vector<PowerSource>& sources = reading.sources;
    const auto source = std::find_if(sources.begin(), sources.end(), [](const PowerSource& each) {
        return each.isPresent.value_or(true);
    });
    return source == sources.end() ? 0.0 : source->currentCapacity / source->maxCapacity;
}

int percentOf(const PowerReading& reading) {
    const double level = levelOf(reading);
    return std::isfinite(level) ? static_cast<int>(std::lround(level * 100.0)) : 0;
}

QString supportFile(const QString& name) {
    return platform().files().applicationSupportFolder() + QStringLiteral("/Quorvane/") + name;
}

} // namespace

Battery::Battery()
    : history_(supportFile(QStringLiteral("Battery.plist"))),
      log_(supportFile(QStringLiteral("Log.txt"))) {
    readData();
    timer_ = platform().clock().schedule(pollingPeriod, Repeats::Yes,
                                         [this] { sendBatteryNotifications(); });
    pollBattery();
    connect(&platform().powerSources(), &PowerSources::changed, this, &Battery::answer);
}

Battery::~Battery() = default;

Battery& Battery::battery() {
    return SharedInstances::get<Battery>();
}

void Battery::pollBattery() {
    take(platform().powerSources().reading());
}

void Battery::sendBatteryNotifications() {
    answer(platform().powerSources().reading());
}

void Battery::take(const PowerReading& reading) {
    const double estimate = reading.timeRemaining;
    setBatteryPercent(percentOf(reading));
    setBatteryTimeRemaining(estimate);
    setBatteryPercentNumber(batteryPercent());
    setBatteryTimeRemainingNumber(estimate);
    setBatteryPercentColor(batteryPercent() < lowestGreenPercent ? red : green);
    setBatteryCharging(estimate == timeRemainingUnlimited);
}

void Battery::answer(const PowerReading& reading) {
    const int oldPercent = batteryPercent();
    const double oldEstimate = batteryTimeRemaining();
    take(reading);
    recordSample();
    if (batteryPercent() != oldPercent) {
        noteChange(batteryPercent());
    }
    postEvents(oldPercent, oldEstimate);
}

void Battery::recordSample() {
    willChangeValueForKey(QStringLiteral("dataPoints"));
    willChangeValueForKey(QStringLiteral("dataTimes"));
    history_.append(batteryPercent(), platform().clock().now());
    didChangeValueForKey(QStringLiteral("dataTimes"));
    didChangeValueForKey(QStringLiteral("dataPoints"));
}

void Battery::noteChange(int newPercent) {
    const QDateTime now = platform().clock().now();
    if (lastIncreaseDecrease_.isValid()) {
        // Both percentages are the new one, so this is always 0. Whoever wants to use the rate has
        // to hand the old percentage in.
        const auto seconds = static_cast<float>(lastIncreaseDecrease_.msecsTo(now)) / 1000.0F;
        ratePerMinute_ = static_cast<float>(newPercent - batteryPercent()) / seconds * 60.0F;
    }
    setLastIncreaseDecrease(now);
}

void Battery::postEvents(int oldPercent, double oldEstimate) {
    const int percent = batteryPercent();
    const bool external = batteryTimeRemaining() == timeRemainingUnlimited;
    const bool wasExternal = oldEstimate == timeRemainingUnlimited;
    EventCenter& events = EventCenter::defaultCenter();
    if (percent < oldPercent && !external) {
        events.post(BatteryEvent::levelDecreased, this);
    }
    if (percent > oldPercent && external) {
        events.post(BatteryEvent::levelIncreased, this);
    }
    if (external && !wasExternal) {
        events.post(BatteryEvent::beganCharging, this);
    }
    if (!external && wasExternal) {
        events.post(BatteryEvent::stoppedCharging, this);
    }
    events.post(BatteryEvent::logChanged, this);
}

double Battery::getBatteryLevel() {
    return levelOf(platform().powerSources().reading());
}

int Battery::getBatteryPercent() {
    return percentOf(platform().powerSources().reading());
}

double Battery::getBatteryTimeRemaining() {
    return platform().powerSources().reading().timeRemaining;
}

std::optional<QVariantMap> Battery::getAdvancedBatteryInfo() {
    return platform().powerSources().advancedBatteryInfo();
}

bool Battery::beneathQuorvaneThreshhold() const {
    const int threshold =
        QuorvanePrefs::userDefaults().integerForKey(QStringLiteral("BatteryThreshold"));
    return !batteryCharging() && batteryPercent() <= threshold;
}

void Battery::writeToLog(const QString& message) {
    log_.write(message);
}

bool Battery::readData() {
    return history_.readData();
}

bool Battery::saveData() {
    return history_.saveData(platform().clock().now());
}

std::size_t Battery::findDate(const QDateTime& date) const {
    return history_.findDate(date);
}

std::int32_t Battery::percentAtTime(const QDateTime& date) const {
    return history_.percentAtTime(date);
}

void Battery::setBatteryPercent(int percent) {
    setObserved(batteryPercent_, percent, QStringLiteral("batteryPercent"));
}

void Battery::setBatteryPercentNumber(const QVariant& percent) {
    setObserved(batteryPercentNumber_, percent, QStringLiteral("batteryPercentNumber"));
}

void Battery::setBatteryPercentColor(const BatteryColor& color) {
    setObserved(batteryPercentColor_, color, QStringLiteral("batteryPercentColor"));
}

void Battery::setBatteryTimeRemaining(double seconds) {
    setObserved(batteryTimeRemaining_, seconds, QStringLiteral("batteryTimeRemaining"));
}

void Battery::setBatteryTimeRemainingNumber(const QVariant& seconds) {
    setObserved(batteryTimeRemainingNumber_, seconds, QStringLiteral("batteryTimeRemainingNumber"));
}

void Battery::setBatteryCharging(bool charging) {
    setObserved(batteryCharging_, charging, QStringLiteral("batteryCharging"));
}

void Battery::setLastIncreaseDecrease(const QDateTime& time) {
    setObserved(lastIncreaseDecrease_, time, QStringLiteral("lastIncreaseDecrease"));
}

void Battery::setDataPoints(const QList<int>& points) {
    willChangeValueForKey(QStringLiteral("dataPoints"));
    history_.setDataPoints(points);
    didChangeValueForKey(QStringLiteral("dataPoints"));
}

void Battery::setDataTimes(const QList<QDateTime>& times) {
    willChangeValueForKey(QStringLiteral("dataTimes"));
    history_.setDataTimes(times);
    didChangeValueForKey(QStringLiteral("dataTimes"));
}

} // namespace quorvane
