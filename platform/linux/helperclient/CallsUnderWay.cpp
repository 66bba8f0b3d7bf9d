#include "platform/linux/helperclient/CallsUnderWay.h"

#include <utility>

namespace quorvane {

CallsUnderWay::CallsUnderWay(std::function<void()> becameIdle)
    : becameIdle_(std::move(becameIdle)) {}

void CallsUnderWay::began() {
    const std::lock_guard lock(mutex_);
    ++count_;
}

void CallsUnderWay::ended(int count) {
    {
        const std::lock_guard lock(mutex_);
        count_ -= count;
        if (count_ > 0) {
            return;
        }
    }
    changed_.notify_all();
    becameIdle_();
}

bool CallsUnderWay::isIdle() const {
    const std::lock_guard lock(mutex_);
    return count_ == 0;
}

bool CallsUnderWay::waitUntilIdle(std::chrono::milliseconds limit) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [this] { return count_ == 0; });
}

} // namespace quorvane
