#include "platform/simulated/SimulatedWorkspace.h"

#include <algorithm>
#include <iterator>

namespace quorvane {

std::vector<RunningApplication> SimulatedWorkspace::runningApplications() const {
    const std::scoped_lock lock(mutex_);
    return applications_;
}

std::optional<RunningApplication> SimulatedWorkspace::frontmostApplication() const {
    const std::scoped_lock lock(mutex_);
    const auto front = std::find_if(applications_.begin(), applications_.end(),
                                    [](const RunningApplication& each) { return each.isActive; });
    return front == applications_.end() ? std::nullopt : std::optional(*front);
}

void SimulatedWorkspace::hide(const RunningApplication& application) {
    hidden_.append(application.bundleIdentifier);
}

void SimulatedWorkspace::terminate(const RunningApplication& application) {
    terminated_.append(application.processIdentifier);
}

void SimulatedWorkspace::run(const QString& bundleIdentifier, std::int32_t pid,
                             ActivationPolicy policy) {
    const std::scoped_lock lock(mutex_);
    applications_.push_back({pid, bundleIdentifier, bundleIdentifier, policy, false});
}

void SimulatedWorkspace::activate(std::int32_t pid) {
    const std::optional<RunningApplication> before = frontmostApplication();
    if (before && before->processIdentifier == pid) {
        return;
    }
    {
        const std::scoped_lock lock(mutex_);
        for (RunningApplication& each : applications_) {
            each.isActive = each.processIdentifier == pid;
        }
    }
    if (before) {
        Q_EMIT didDeactivateApplication(*before);
    }
    if (const std::optional<RunningApplication> now = frontmostApplication()) {
        Q_EMIT didActivateApplication(*now);
    }
}

void SimulatedWorkspace::quit(std::int32_t pid) {
    const std::optional<RunningApplication> front = frontmostApplication();
    {
        const std::scoped_lock lock(mutex_);
        const auto gone = std::remove_if(
            applications_.begin(), applications_.end(),
            [pid](const RunningApplication& each) { return each.processIdentifier == pid; });
        applications_.erase(gone, applications_.end());
    }
    if (front && front->processIdentifier == pid) {
        Q_EMIT didDeactivateApplication(*front);
    }
}

} // namespace quorvane
