#pragma once

namespace quorvane {

/// Ends the process, naming the failed condition, when `holds` is false: a programming error or a
/// broken system, never something that the user did.
void require(bool holds, const char* condition);

} // namespace quorvane
