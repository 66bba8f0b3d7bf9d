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
    queue_.start(work_);
}

} // namespace quorvane
