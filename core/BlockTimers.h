#pragma once

#include "platform/Clock.h"

#include <functional>
#include <memory>

namespace quorvane {

/// A timer that runs a block at each firing. One that is not scheduled does nothing until
/// `schedule` is called. An empty block does nothing when it fires. Main thread only.
class BlockTimer {
  public:
    BlockTimer(Seconds interval, std::function<void()> block, Repeats repeats);

    void schedule();

    /// Stops it for good.
    void invalidate();

    /// Scheduled, and not a one-shot timer that has fired.
    [[nodiscard]] bool isValid() const { return timer_ != nullptr; }

  private:
    void fire();

    Seconds interval_;
    std::function<void()> block_;
    Repeats repeats_;
    std::unique_ptr<Timer> timer_;
};

[[nodiscard]] std::unique_ptr<BlockTimer>
scheduledTimerWithTimeInterval(Seconds interval, std::function<void()> block, Repeats repeats);

[[nodiscard]] std::unique_ptr<BlockTimer>
timerWithTimeInterval(Seconds interval, std::function<void()> block, Repeats repeats);

} // namespace quorvane
