#pragma once

#include <QString>

namespace quorvane {

/// The block of text that a user adds to a report: versions, the helper, the machine. Asks the
/// helper for its version, which may take up to five seconds. Main thread only.
[[nodiscard]] QString debugInformation();

} // namespace quorvane
