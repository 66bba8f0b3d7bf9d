#include "platform/linux/PuttingBack.h"

#include <chrono>
#include <utility>

namespace quorvane {

namespace {

// A service that does not answer must not keep a user from logging out.
constexpr std::chrono::milliseconds writePatience{2000};

} // namespace

PuttingBack::PuttingBack(Bus systemBus)
    : journal_(PuttingBackJournal::defaultPath(), log_), processes_(journal_, log_),
      systemBus_(std::move(systemBus)) {}

LinuxDisplays& PuttingBack::displays() {
    return displays_ ? *displays_ : displays_.emplace(systemBus_(), journal_, log_);
}

void PuttingBack::putBack() {
    processes_.putBack();
    displays().putBack();
}

void PuttingBack::finish() {
    if (displays_) {
        displays_->waitForWrites(writePatience);
    }
}

} // namespace quorvane
