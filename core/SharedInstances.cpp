#include "core/SharedInstances.h"

#include "platform/Platform.h"

#include <algorithm>

namespace quorvane {

SharedInstances& SharedInstances::instances() {
    static SharedInstances all;
    return all;
}

const SharedInstances::Entry* SharedInstances::find(std::type_index type) const {
    const auto entry = std::find_if(made_.begin(), made_.end(),
                                    [type](const Entry& each) { return each.type == type; });
    return entry == made_.end() ? nullptr : &*entry;
}

void SharedInstances::reset(std::unique_ptr<Platform> newPlatform) {
    SharedInstances& all = instances();
    // Outlives the lock as well: the old platform's end may wait for its threads.
    std::unique_ptr<Platform> oldPlatform;
    std::unique_lock lock(all.mutex_);
    while (!all.made_.empty()) {
        const std::type_index ending = all.made_.back().type;
        std::shared_ptr<void> owner = std::move(all.made_.back().owner);
        lock.unlock();
        owner.reset();
        lock.lock();
        std::erase_if(all.made_, [ending](const Entry& each) { return each.type == ending; });
    }
    oldPlatform = installPlatform(std::move(newPlatform));
}

} // namespace quorvane
