#pragma once

#include "platform/linux/common/PuttingBackJournal.h"
#include "platform/linux/processes/ProcessTable.h"

#include <cstdint>
#include <optional>

namespace quorvane {

/// One process that was stopped, as the journal's entry of the kind "process" tells it: its id is
/// the key, its start time what was found, and set
/// {"application":811,"group":true}
struct StoppedProcess {
    ProcessIdentity identity;
    std::int32_t application =
        0;                ///< the id of the main process of the application that was stopped
    bool asGroup = false; ///< the process group that it leads got the signal

    /// Whether both are about the same process and the same application.
    [[nodiscard]] bool isSameAs(const StoppedProcess& other) const {
        return identity == other.identity && application == other.application;
    }

    [[nodiscard]] bool operator==(const StoppedProcess&) const = default;
};

[[nodiscard]] bool isProcessEntry(const JournalEntry& entry);

[[nodiscard]] JournalEntry processEntry(const StoppedProcess& process, const JournalWriter& writer);

/// Nothing when the entry is of another kind, or does not name a process that may be signalled.
[[nodiscard]] std::optional<StoppedProcess> stoppedProcess(const JournalEntry& entry);

} // namespace quorvane
