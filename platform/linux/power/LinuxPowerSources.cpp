#include "platform/linux/LinuxPowerSources.h"

#include "platform/linux/PowerSupplyMonitor.h"

#include <algorithm>

namespace quorvane {

bool LinuxPowerSources::Figures::operator==(const Figures& other) const {
    const auto sameSource = [](const PowerSource& one, const PowerSource& two) {
        return one.isPresent == two.isPresent && one.currentCapacity == two.currentCapacity &&
               one.maxCapacity == two.maxCapacity;
    };
    return timeRemaining == other.timeRemaining && batteries == other.batteries &&
           std::equal(sources.begin(), sources.end(), other.sources.begin(), other.sources.end(),
                      sameSource);
}

LinuxPowerSources::LinuxPowerSources(const QDBusConnection& systemBus, LogSink& log,
                                     const QString& sysfsRoot)
    : log_(log), supplies_(sysfsRoot), uPower_(systemBus) {
    connect(&uPower_, &UPowerSource::changed, this, &LinuxPowerSources::uPowerChanged);
    uPowerChanged();
    announced_ = figures();
}

LinuxPowerSources::~LinuxPowerSources() = default;

std::vector<PowerSource> LinuxPowerSources::list() const {
    return combinedSources(state());
}

double LinuxPowerSources::timeRemainingEstimate() const {
    return combinedTimeRemaining(state());
}

std::optional<QVariantMap> LinuxPowerSources::advancedBatteryInfo() const {
    return firstBatteryFacts(state());
}

PowerState LinuxPowerSources::state() const {
    if (uPower_.isReady()) {
        return lastFromUPower_;
    }
    PowerState direct = supplies_.read();
    const bool keepsLast = direct.batteries.empty() && !lastFromUPower_.batteries.empty();
    return keepsLast ? lastFromUPower_ : direct;
}

LinuxPowerSources::Figures LinuxPowerSources::figures() const {
    const PowerState now = state();
    return {combinedSources(now), combinedTimeRemaining(now), now.batteries.size()};
}

void LinuxPowerSources::uPowerChanged() {
    if (uPower_.isReady()) {
        lastFromUPower_ = uPower_.state();
    }
    watchSuppliesWhileNeeded();
    scheduleAnnouncement();
}

void LinuxPowerSources::watchSuppliesWhileNeeded() {
    if (uPower_.isReady()) {
        monitor_.reset();
        return;
    }
    if (monitor_) {
        return;
    }
    monitor_ = std::make_unique<PowerSupplyMonitor>();
    connect(monitor_.get(), &PowerSupplyMonitor::suppliesChanged, this,
            &LinuxPowerSources::scheduleAnnouncement);
    if (!monitor_->isListening()) {
        log_.write(QStringLiteral("UPower does not run and the kernel's announcements cannot be "
                                  "heard: changes of the battery are noticed with delay"));
    }
}

/// One event, such as pulling the plug, arrives as several signals. They are answered by one
/// announcement, after what has arrived of them has been taken in.
void LinuxPowerSources::scheduleAnnouncement() {
    if (announcementIsScheduled_) {
        return;
    }
    announcementIsScheduled_ = true;
    QMetaObject::invokeMethod(this, &LinuxPowerSources::announceIfChanged, Qt::QueuedConnection);
}

void LinuxPowerSources::announceIfChanged() {
    announcementIsScheduled_ = false;
    Figures now = figures();
    if (now == announced_) {
        return;
    }
    announced_ = std::move(now);
    Q_EMIT changed();
}

} // namespace quorvane
