#include "platform/Workspace.h"

#include <algorithm>
#include <iterator>

namespace quorvane {

std::vector<RunningApplication>
Workspace::runningApplicationsWithBundleIdentifier(const QString& bundleIdentifier) const {
    const std::vector<RunningApplication> all = runningApplications();
    std::vector<RunningApplication> found;
    std::copy_if(
        all.begin(), all.end(), std::back_inserter(found),
        [&](const RunningApplication& each) { return each.bundleIdentifier == bundleIdentifier; });
    return found;
}

} // namespace quorvane
