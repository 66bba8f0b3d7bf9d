#include "core/BackgroundTimer.h"

#include "platform/Platform.h"

#include <utility>

namespace quorvane {

namespace {

// As good as no limit: a run that hangs must not keep the next ones from starting.
constexpr int maximumRuns = 64;

} // namespace

BackgroundTimer::BackgroundTimer(Seconds timeInterval, Work work)
    : timeInterval_(timeInterval), work_(std::move(work)) {
    queue_.setMaxThreadCount(maximumRuns);
}

BackgroundTimer::~BackgroundTimer() {
    stop();
    queue_.clear();
    waitForRuns();
}

void BackgroundTimer::waitForRuns() {
    queue_.waitForDone();
    handOver();
}

void BackgroundTimer::start() {
    stop();
    timer_ = platform().clock().schedule(timeInterval_, Repeats::Yes, [this] { fireTimer(); });
}

void BackgroundTimer::stop() {
    timer_.reset();
}

void BackgroundTimer::fireTimer() {
    queue_.clear();
    handOver();
    queue_.start([this] {
        handOver();
        work_();
        handOver();
    });
}

/// Whoever comes through here sees what all who came before have done. The thread pool sees to that
/// too, but with locks of its own that ThreadSanitizer does not know.
void BackgroundTimer::handOver() {
    const std::scoped_lock lock(handOver_);
}

} // namespace quorvane
