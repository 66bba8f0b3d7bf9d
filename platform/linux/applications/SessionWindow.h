#pragma once

#include "platform/linux/ApplicationIdentity.h"

#include <cstdint>

namespace quorvane {

/// A window of the session, as far as it tells of its application.
struct SessionWindow {
    std::uint32_t id = 0;
    std::int32_t processIdentifier = 0; ///< of this machine; 0: none is known
    bool isOrdinary = true; ///< its user takes it for a window: no panel, desktop, splash or hint
    WindowNames names;

    [[nodiscard]] bool operator==(const SessionWindow&) const = default;
};

} // namespace quorvane
