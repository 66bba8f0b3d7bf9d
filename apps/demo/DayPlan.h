#pragma once

#include "mode/BatterySaver.h"

#include <QString>

namespace quorvane {

/// What the user of the simulated laptop has set and will do.
struct DayPlan {
    enum class Answer { Start, NotNow };

    LaunchMode mode = LaunchMode::Ask;
    int threshold = 70; ///< percent, 0 to 100
    Answer answer = Answer::Start;

    /// The charge in percent at which the user switches the mode on himself, in the manual launch
    /// mode: well below the threshold, so that one sees that nothing happened there.
    [[nodiscard]] int ownThreshold() const;
};

/// "automatic", "ask" or "manual".
[[nodiscard]] QString launchModeName(LaunchMode mode);

} // namespace quorvane
