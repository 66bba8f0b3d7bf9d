#pragma once

#include "platform/StatusBar.h"

#include <QString>

#include <cstdint>

namespace quorvane {

/// What stands beside the image. The setting may hold any other number: nothing then.
enum class MenuBarDisplay : std::int32_t {
    Nothing = 0,
    Percent = 1,
    TimeRemaining = 2,
};

/// What the status item shows, as computed from the state of the program.
struct StatusIcon {
    struct State {
        bool modeIsOn = false;
        std::int64_t percent = 0;
        std::int64_t seconds = 0; ///< left; -1 unknown, -2 on external power
        double estimate = 0;      ///< the same, unrounded: exactly -2.0 on external power
        std::int32_t displayMode = 0;
        bool showsBattery = false;
    };

    explicit StatusIcon(const State& state);

    QString imageName;
    AttributedString title;
    ImagePosition imagePosition;
};

} // namespace quorvane
