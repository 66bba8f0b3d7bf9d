#include "platform/linux/power/LinuxPowerSources.h"

#include "platform/linux/power/PowerSupplyMonitor.h"

#include <utility>

namespace quorvane {

namespace {

PowerReading readingOf(const PowerState& state) {
    return {combinedSources(state), combinedTimeRemaining(state)};
}

} // namespace

LinuxPowerSources::LinuxPowerSources(const QDBusConnection& systemBus, LogSink& log,
                                     const QString& sysfsRoot)
    : log_(log), supplies_(sysfsRoot), uPower_(systemBus) {
    connect(&uPower_, &UPowerSource::changed, this, &LinuxPowerSources::uPowerChanged);
    takeUPowersState();
    announced_ = figures();
}

LinuxPowerSources::~LinuxPowerSources() = default;

PowerReading LinuxPowerSources::reading() const {
    return readingOf(state());
}

std::optional<QVariantMap> LinuxPowerSources::advancedBatteryInfo() const {
    return firstBatteryFacts(state());
}

/// Without UPower each call is a look at /sys.
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
    return {readingOf(now), now.batteries.size()};
}

void LinuxPowerSources::uPowerChanged() {
    takeUPowersState();
    scheduleAnnouncement();
}

void LinuxPowerSources::takeUPowersState() {
    if (uPower_.isReady()) {
        lastFromUPower_ = uPower_.state();
    }
    watchSuppliesWhileNeeded();
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
    // A copy: who is told may let the main loop run, and with it the next announcement.
    const PowerReading reading = announced_.reading;
    Q_EMIT changed(reading);
}

} // namespace quorvane
