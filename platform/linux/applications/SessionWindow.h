#pragma once

#include "platform/linux/applications/ApplicationIdentity.h"

#include <cstdint>

namespace quorvane {

/// Stands for a window as long as that is there. Only the `WindowList` that gave it knows what it
/// means.
enum class WindowId : std::uint64_t { None = 0 };

/// A window of the session, as far as it tells of its application.
struct SessionWindow {
    WindowId id = WindowId::None;
    /// Of this machine. 0: it is not told; then `names.applicationId` alone tells whose window it
    /// is, and one without is nobody's.
    std::int32_t processIdentifier = 0;
    bool isOrdinary = true; ///< its user takes it for a window: no panel, desktop, splash or hint
    WindowNames names;

    [[nodiscard]] bool operator==(const SessionWindow&) const = default;
};

} // namespace quorvane
