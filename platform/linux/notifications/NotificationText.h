#pragma once

#include <QString>

namespace quorvane {

/// Whether line breaks stay or become spaces.
enum class Lines { One, Many };

/// `text` as any notification server takes it: well-formed Unicode without control characters, and
/// at most `limit` characters long, the last of them an ellipsis when something was cut off.
[[nodiscard]] QString notificationText(const QString& text, qsizetype limit, Lines lines);

} // namespace quorvane
