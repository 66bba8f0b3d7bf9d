#pragma once

namespace quorvane {

/// For a child process between fork and exec: lets all signals through again. This program holds
/// those that end it, and a child that inherited that could not be ended.
void releaseSignals();

} // namespace quorvane
