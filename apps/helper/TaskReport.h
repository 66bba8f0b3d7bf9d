#pragma once

#include "apps/helper/TaskUse.h"

#include <QDateTime>
#include <QStringList>

#include <chrono>

namespace quorvane {

/// The report of what every process has used between two looks, line by line: titles that begin
/// with
/// "***", a row of column titles and a row for each process, cells at least two blanks apart. The
/// busiest come first. Names hold no two blanks in a row and nothing that is not printed, and none
/// looks like a title.
///
/// Columns: Name; ID; CPU ms/s, milliseconds of the processor in a second; User%, how much of that
/// in the program's own code; Wakeups, in a second.
[[nodiscard]] QStringList taskReport(const TaskUses& before, const TaskUses& after,
                                     std::chrono::milliseconds elapsed, const QDateTime& now);

} // namespace quorvane
