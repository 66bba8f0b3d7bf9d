#include "platform/simulated/SimulatedDisplays.h"

#include <algorithm>

namespace quorvane {

Displays::List SimulatedDisplays::activeDisplays(std::size_t capacity) const {
    List list{listStatus_, {}};
    if (listStatus_ == 0) {
        for (DisplayId id = 0; id < std::min(levels_.size(), capacity); ++id) {
            list.displays.push_back(id);
        }
    }
    return list;
}

Displays::Reading SimulatedDisplays::brightness(DisplayId display) const {
    return readStatus_ != 0 ? Reading{readStatus_, 0.0F} : Reading{0, levels_.at(display)};
}

int SimulatedDisplays::setBrightness(DisplayId display, float brightness) {
    if (writeStatus_ != 0) {
        return writeStatus_;
    }
    if (std::find(journal_.begin(), journal_.end(), display) == journal_.end()) {
        journal_.push_back(display);
    }
    levels_.at(display) = brightness;
    ++writes_;
    return 0;
}

} // namespace quorvane
