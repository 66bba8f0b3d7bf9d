#pragma once

#include "platform/linux/common/BusCalls.h"
#include "platform/linux/helperclient/HelperCall.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>
#include <memory>
#include <set>

namespace quorvane {

/// What a session with the helper does on its own thread: sends commands, hands out their answers,
/// and notices that the helper has left. Everything but the constructor and the destructor belongs
/// to that thread.
class HelperWorker final : public QObject {
    Q_OBJECT

  public:
    struct Listener {
        std::function<void()> callEnded;   ///< after the handler of each call
        std::function<void()> invalidated; ///< possibly more than once
    };

    /// `service` is the helper's name on the bus.
    HelperWorker(const QDBusConnection& bus, QString service, Listener listener);

    /// Begins to look whether the helper leaves. Before the first call.
    void watch();

    void send(HelperCall call);

    /// Runs the call's error handler instead of sending it.
    void fail(const HelperCall& call, const QString& error);

    /// The helper is another one from now on, or none.
    void invalidate() { listener_.invalidated(); }

  private:
    enum class Attempt { First, Second };

    void send(HelperCall call, Attempt attempt);
    void answered(const HelperCall& call, Attempt attempt, const BusAnswer& answer);
    void helperLeft();
    void invalidateIfDue();

    QDBusConnection bus_;
    BusCalls calls_; ///< a child, so that it goes to the thread too
    QString service_;
    Listener listener_;
    std::unique_ptr<QDBusServiceWatcher> watcher_;
    quint64 nextNumber_ = 1;
    std::set<quint64> open_;    ///< the numbers of the calls that have no answer yet
    quint64 invalidBefore_ = 0; ///< calls below are to have their answers first; 0: not due
};

} // namespace quorvane
