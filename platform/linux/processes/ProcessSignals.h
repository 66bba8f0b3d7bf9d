#pragma once

#include "platform/linux/processes/ProcessTable.h"

#include <cstdint>

namespace quorvane {

/// Sends the signal to this very process: never to a later one with its id, never to process 0 or
/// 1, never to this process itself. Returns whether it was sent.
bool sendSignal(const ProcessIdentity& process, int signal);

/// Sends the signal to all of the process group that this very process leads; never to the group
/// that this process is in. Returns whether it was sent.
bool sendSignalToGroupOf(const ProcessIdentity& leader, int signal);

} // namespace quorvane
