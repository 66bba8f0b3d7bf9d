#pragma once

#include "platform/Clock.h"

#include <QThreadPool>

#include <functional>
#include <memory>
#include <mutex>

namespace quorvane {

/// A repeating timer whose work runs on a thread pool of its own. Each firing drops work that has
/// not started yet and queues one new run; runs under way go on, so work that outlasts the period
/// runs more than once at a time. The work hops to the main thread where it touches shared state.
///
/// `start`, `stop` and `fireTimer` on the main thread only. The destructor waits for the runs that
/// are under way, since they may use whatever the timer's owner is about to destroy.
class BackgroundTimer {
  public:
    using Work = std::function<void()>;

    /// A stopped timer. `timeInterval` in seconds, above 0.
    BackgroundTimer(Seconds timeInterval, Work work);
    ~BackgroundTimer();

    BackgroundTimer(const BackgroundTimer&) = delete;
    BackgroundTimer& operator=(const BackgroundTimer&) = delete;

    /// Starts the period, anew when it was started already.
    void start();
    void stop();
    void fireTimer();

    /// Waits until no run is under way or queued.
    void waitForRuns();

    [[nodiscard]] bool isStarted() const { return timer_ != nullptr; }

    [[nodiscard]] Seconds timeInterval() const { return timeInterval_; }

    /// Counts from the next `start`.
    void setTimeInterval(Seconds interval) { timeInterval_ = interval; }

  private:
    void handOver();

    Seconds timeInterval_;
    Work work_;
    std::mutex handOver_;
    QThreadPool queue_;
    std::unique_ptr<Timer> timer_;
};

} // namespace quorvane
