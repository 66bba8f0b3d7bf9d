#include "apps/demo/DayPlan.h"

#include <algorithm>

namespace quorvane {

int DayPlan::ownThreshold() const {
    constexpr int below = 15;
    constexpr int lowest = 10; // leaves enough of the discharge for the mode to show
    return std::max(threshold - below, lowest);
}

QString launchModeName(LaunchMode mode) {
    switch (mode) {
    case LaunchMode::Automatic:
        return QStringLiteral("automatic");
    case LaunchMode::Manual:
        return QStringLiteral("manual");
    case LaunchMode::Ask:
        break;
    }
    return QStringLiteral("ask");
}

} // namespace quorvane
