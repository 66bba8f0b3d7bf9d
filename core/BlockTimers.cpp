#include "core/BlockTimers.h"

#include "platform/Platform.h"

#include <utility>

namespace quorvane {

BlockTimer::BlockTimer(Seconds interval, std::function<void()> block, Repeats repeats)
    : interval_(interval), block_(std::move(block)), repeats_(repeats) {}

void BlockTimer::schedule() {
    timer_ = platform().clock().schedule(interval_, repeats_, [this] { fire(); });
}

void BlockTimer::invalidate() {
    timer_.reset();
}

void BlockTimer::fire() {
    // The block may destroy this object: nothing of it is touched afterwards.
    const std::function<void()> block = block_;
    if (repeats_ == Repeats::No) {
        timer_.reset();
    }
    if (block) {
        block();
    }
}

std::unique_ptr<BlockTimer>
scheduledTimerWithTimeInterval(Seconds interval, std::function<void()> block, Repeats repeats) {
    auto timer = timerWithTimeInterval(interval, std::move(block), repeats);
    timer->schedule();
    return timer;
}

std::unique_ptr<BlockTimer> timerWithTimeInterval(Seconds interval, std::function<void()> block,
                                                  Repeats repeats) {
    return std::make_unique<BlockTimer>(interval, std::move(block), repeats);
}

} // namespace quorvane
