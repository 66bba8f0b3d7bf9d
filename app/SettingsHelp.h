#pragma once

#include <QString>

namespace quorvane {

/// The settings that users have, for the terminal: key, values, in brackets what holds without a
/// line, and what it does. At most 80 columns wide; the last line has no end.
[[nodiscard]] QString settingsHelp();

} // namespace quorvane
