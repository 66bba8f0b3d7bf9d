#pragma once

#include <QString>

namespace quorvane {

/// The widest text that may be expected in place of `label`, a text with a percentage or a time in
/// hours and minutes ("…" stands for one that is not known yet). Hosts keep so much room, and the
/// icons beside it stay where they are while the numbers change.
[[nodiscard]] QString labelGuide(const QString& label);

} // namespace quorvane
