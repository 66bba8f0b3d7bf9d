#include "apps/helper/CallLimits.h"

namespace quorvane {

bool CallLimits::take(const QString& caller) {
    if (all_ >= total || callers_.value(caller) >= perCaller) {
        return false;
    }
    ++callers_[caller];
    ++all_;
    return true;
}

void CallLimits::release(const QString& caller) {
    const auto found = callers_.find(caller);
    if (found == callers_.end()) {
        return;
    }
    --all_;
    if (--*found == 0) {
        callers_.erase(found);
    }
}

} // namespace quorvane
