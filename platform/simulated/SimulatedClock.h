#pragma once

#include "platform/Clock.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace quorvane {

/// Time that passes only when it is told to. Blocks of the main queue run before, between and
/// after the timers, as on a real event loop.
class SimulatedClock final : public Clock {
  public:
    SimulatedClock();

    [[nodiscard]] QDateTime now() const override;
    [[nodiscard]] Seconds monotonic() const override;
    [[nodiscard]] std::unique_ptr<Timer> schedule(Seconds interval, Repeats repeats,
                                                  std::function<void()> block) override;

    /// The caller's thread is held up, and so is the main loop: no timer fires meanwhile.
    void sleep(Seconds duration) override;
    [[nodiscard]] bool wait(QSemaphore& semaphore, Seconds timeout) override;

    /// What `wait` calls before it lets time pass: returns once the threads of the simulated
    /// services have done all that they were told to do.
    void setSettling(std::function<void()> settle) { settle_ = std::move(settle); }

    /// Lets this much time pass, firing every timer that falls due, in order.
    void advance(Seconds duration);

    /// Runs what has been queued on the main loop, until nothing is left.
    static void runMainQueue();

    [[nodiscard]] std::size_t timerCount() const { return due_.size(); }

    /// How many times a timer has fired so far: what would have woken a real machine.
    [[nodiscard]] std::int64_t firings() const { return firings_; }

    /// Of the repeating timers that are scheduled now; infinite while there is none.
    [[nodiscard]] Seconds shortestPeriod() const;

  private:
    class Handle;
    struct Entry;
    using DueOrder = std::pair<std::int64_t, std::uint64_t>; // microseconds, then order of setting
    using Entries = std::map<DueOrder, std::shared_ptr<Entry>>;

    void insert(const std::shared_ptr<Entry>& entry, std::int64_t due);
    void fire(Entries::iterator next);

    std::atomic<std::int64_t> microseconds_{0};
    std::uint64_t sequence_ = 0;
    std::int64_t firings_ = 0;
    std::function<void()> settle_;
    std::shared_ptr<Entries> entries_;
    Entries& due_;
};

} // namespace quorvane
