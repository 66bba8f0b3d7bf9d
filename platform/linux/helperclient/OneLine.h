#pragma once

#include <QString>

namespace quorvane {

/// Words of another program as they may stand in a log or a window: one line, at most 200
/// characters, nothing in it that moves a cursor or reorders letters. Any thread.
[[nodiscard]] QString oneLine(const QString& text);

} // namespace quorvane
