#include "platform/linux/session/SleepWatch.h"

#include "platform/Log.h"

#include <QTimer>

#include <utility>

namespace quorvane {

namespace {

constexpr QLatin1String logind("org.freedesktop.login1");
constexpr QLatin1String logindPath("/org/freedesktop/login1");
constexpr QLatin1String logindManager("org.freedesktop.login1.Manager");

BusCall requestOfDelay() {
    return {.service = logind,
            .path = logindPath,
            .interface = logindManager,
            .method = QStringLiteral("Inhibit"),
            .arguments = {QStringLiteral("sleep"), QStringLiteral("Quorvane"),
                          QStringLiteral("Switching the processor's turbo back on"),
                          QStringLiteral("delay")},
            .limit = BusCall::usualLimit,
            // Where it does not run it does not put the machine to sleep either.
            .autostart = BusCall::Autostart::No};
}

} // namespace

SleepWatch::SleepWatch(const QDBusConnection& systemBus, LogSink& log, WhenIdle whenIdle)
    : bus_(systemBus), calls_(systemBus), log_(log), whenIdle_(std::move(whenIdle)) {
    QTimer::singleShot(0, this, &SleepWatch::begin);
}

void SleepWatch::begin() {
    if (!bus_.isConnected()) {
        return;
    }
    watcher_.emplace(logind, bus_, QDBusServiceWatcher::WatchForOwnerChange);
    connect(&*watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& /*oldOwner*/, const QString& newOwner) {
                ownerChanged(newOwner);
            });
    bus_.connect(logind, logindPath, logindManager, QStringLiteral("PrepareForSleep"), this,
                 SLOT(prepareForSleep(bool)));
    takeLock();
}

// The lock of a logind that has ended holds nothing any more, and one that ended while it put the
// machine to sleep will never tell of the waking.
void SleepWatch::ownerChanged(const QString& newOwner) {
    lock_ = {};
    if (!newOwner.isEmpty()) {
        takeLock();
    }
    if (phase_ != Phase::Awake) {
        wake();
    }
}

// The answer to an earlier request than the last is of no use.
void SleepWatch::takeLock() {
    calls_.forget();
    calls_.ask(requestOfDelay(), [this](const BusAnswer& answer) { lockAnswered(answer); });
}

void SleepWatch::lockAnswered(const BusAnswer& answer) {
    const auto lock = answer.value().value<QDBusUnixFileDescriptor>();
    if (lock.isValid()) {
        // Asleep means that everything has been done: nobody is to wait for this program.
        if (phase_ != Phase::Asleep) {
            lock_ = lock;
        }
    } else if (answer.isFromService()) {
        log_.write(QStringLiteral("The machine will not wait for Quorvane before it sleeps: %1")
                       .arg(answer.errorText()));
    }
}

void SleepWatch::prepareForSleep(bool begins) {
    if (!begins) {
        if (phase_ != Phase::Awake) {
            takeLock();
            wake();
        }
        return;
    }
    if (phase_ != Phase::Awake) {
        return;
    }
    phase_ = Phase::GoingToSleep;
    const quint64 sleep = ++sleeps_;
    Q_EMIT willSleep();
    whenIdle_([this, sleep] { releaseLock(sleep); });
}

// What was waited for may come long after logind has lost its patience: in a later sleep, or never.
void SleepWatch::releaseLock(quint64 sleep) {
    if (sleep == sleeps_ && phase_ == Phase::GoingToSleep) {
        phase_ = Phase::Asleep;
        lock_ = {};
    }
}

void SleepWatch::wake() {
    phase_ = Phase::Awake;
    Q_EMIT didWake();
}

} // namespace quorvane
