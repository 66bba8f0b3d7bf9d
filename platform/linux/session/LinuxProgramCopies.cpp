#include "platform/linux/session/LinuxProgramCopies.h"

#include "platform/linux/session/RunningCopies.h"

#include <utility>

namespace quorvane {

LinuxProgramCopies::LinuxProgramCopies(const RunningCopies* copies, QString ownIdentifier)
    : copies_(copies), ownIdentifier_(std::move(ownIdentifier)) {}

int LinuxProgramCopies::running(const QString& bundleIdentifier) const {
    return copies_ == nullptr ? 0 : copies_->count(bundleIdentifier, ownIdentifier_);
}

} // namespace quorvane
