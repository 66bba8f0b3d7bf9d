#pragma once

#include "platform/Clock.h"

namespace quorvane {

class Task;

/// Waits until the task has ended, looking once a second; a task that still runs at a look after
/// `limit` is terminated and reported in the log. Blocks the calling thread, for up to a second
/// even when the task ends at once. Returns whether it ended by itself; no task counts as ended.
bool runUntilTimeout(Task* task, Seconds limit);

} // namespace quorvane
