#include "platform/linux/PuttingBack.h"

#include <utility>

namespace quorvane {

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
        displays_->waitForWrites(lastPatience);
    }
}

} // namespace quorvane
