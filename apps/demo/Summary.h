#pragma once

#include "apps/demo/Day.h"

#include <QList>
#include <QStringList>

namespace quorvane {

/// "09:15   100 %  laptop: unplugged, on battery".
[[nodiscard]] QString eventLine(const DemoEvent& event);

/// The events that are worth telling again at the end, a line each.
[[nodiscard]] QStringList keyEvents(const QList<DemoEvent>& events);

/// What the day brought, in a few lines: what the program claims, what the simulated battery says,
/// and what that is worth.
[[nodiscard]] QStringList closingWords(const DayResult& result);

} // namespace quorvane
