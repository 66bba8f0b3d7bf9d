#include "core/GridTimer.h"

#include "platform/Platform.h"

#include <cmath>
#include <utility>

namespace quorvane {

GridTimer::GridTimer(Seconds period, std::function<void()> block)
    : period_(period), block_(std::move(block)), made_(platform().clock().monotonic()) {}

void GridTimer::start() {
    const auto passed = Seconds(platform().clock().monotonic() - made_);
    const auto begun = Seconds(std::fmod(passed.count(), period_.count()));
    timer_ = scheduledTimerWithTimeInterval(
        period_ - begun,
        [this] {
            timer_ = scheduledTimerWithTimeInterval(period_, block_, Repeats::Yes);
            block_();
        },
        Repeats::No);
}

void GridTimer::stop() {
    timer_.reset();
}

} // namespace quorvane
