#pragma once

#include "platform/SleepEvents.h"
#include "platform/linux/common/BusCalls.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>

#include <functional>
#include <optional>

namespace quorvane {

class LogSink;

/// Tells when the machine is about to sleep and when it has woken up, through logind.
///
/// A delay lock of logind's keeps the machine awake until what is to be done before has been done;
/// logind itself limits that (5 seconds, unless an administrator says otherwise). Where logind does
/// not run nothing is told. Nothing here waits, and nothing wakes the program but logind. Main
/// thread only.
class SleepWatch final : public SleepEvents {
    Q_OBJECT

  public:
    /// Runs the block, on the main thread, once nothing is under way that has to be done before the
    /// machine sleeps; at once if nothing is.
    using WhenIdle = std::function<void(std::function<void()> block)>;

    /// `log` must outlive this. Turns to logind only when the main loop is idle.
    SleepWatch(const QDBusConnection& systemBus, LogSink& log, WhenIdle whenIdle);

    /// Whether the machine would wait for this program now.
    [[nodiscard]] bool holdsLock() const { return lock_.isValid(); }

  private:
    enum class Phase { Awake, GoingToSleep, Asleep };

    Q_SLOT void prepareForSleep(bool begins);

    void begin();
    void ownerChanged(const QString& newOwner);
    void takeLock();
    void lockAnswered(const BusAnswer& answer);
    void releaseLock(quint64 sleep);
    void wake();

    QDBusConnection bus_;
    BusCalls calls_;
    LogSink& log_;
    WhenIdle whenIdle_;
    std::optional<QDBusServiceWatcher> watcher_;
    QDBusUnixFileDescriptor lock_; ///< valid: logind waits for this program
    Phase phase_ = Phase::Awake;
    quint64 sleeps_ = 0; ///< how often the machine went to sleep
};

} // namespace quorvane
