#include "core/SharedInstances.h"

#include "platform/Platform.h"

#include <algorithm>

namespace quorvane {

SharedInstances& SharedInstances::instances() {
    static SharedInstances all;
    return all;
}

std::shared_ptr<void> SharedInstances::find(std::type_index type) const {
    const auto entry = std::find_if(made_.begin(), made_.end(),
                                    [type](const auto& each) { return each.first == type; });
    return entry == made_.end() ? nullptr : entry->second;
}

void SharedInstances::reset(std::unique_ptr<Platform> newPlatform) {
    SharedInstances& all = instances();
    const std::lock_guard lock(all.mutex_);
    while (!all.made_.empty()) {
        all.made_.pop_back();
    }
    installPlatform(std::move(newPlatform));
}

} // namespace quorvane
