#pragma once

#include "platform/linux/helperclient/HelperCall.h"
#include "platform/linux/helperclient/HelperWorker.h"

#include <QDBusConnection>
#include <QThread>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

namespace quorvane {

class CallsUnderWay;

/// The thread behind one connection to the helper. It starts with the first command and sleeps
/// while there is nothing to do. Main thread only.
class HelperSession final {
  public:
    HelperSession(const QDBusConnection& bus, QString service,
                  std::shared_ptr<CallsUnderWay> calls);
    ~HelperSession();
    HelperSession(const HelperSession&) = delete;
    HelperSession& operator=(const HelperSession&) = delete;

    /// Runs once, on the session's thread, when the helper has left, or by `invalidate`. Commands
    /// are sent on all the same: the bus starts a new helper for them. The handler before does not
    /// run any more when this returns.
    void setInvalidationHandler(std::function<void()> handler);
    void invalidate();

    [[nodiscard]] bool isInvalid() const { return isInvalid_; }

    /// Whether a command has no answer yet.
    [[nodiscard]] bool isWorking() const { return open_ > 0; }

    /// Counts as under way until one of its handlers has run.
    void send(HelperCall call);

    /// Runs the call's error handler, on the session's thread.
    void fail(HelperCall call, const QString& error);

    /// Ends the thread, at once but for a handler that runs right now. No handler runs afterwards,
    /// and nothing is sent.
    void end();

  private:
    void run(std::function<void(HelperWorker& worker)> block);
    void invalidated();

    QDBusConnection bus_;
    QString service_;
    std::shared_ptr<CallsUnderWay> calls_;
    std::recursive_mutex mutex_;    ///< held while the handler runs
    std::function<void()> handler_; ///< under the mutex
    std::atomic<bool> isInvalid_ = false;
    std::atomic<int> open_ = 0;
    bool hasEnded_ = false;
    QThread thread_;
    std::unique_ptr<HelperWorker> worker_; ///< null until the thread has started
};

} // namespace quorvane
