#pragma once

#include <QtGlobal>

namespace quorvane {

/// The process that wrote a journal entry. The kernel gives the id of an ended process to a later
/// one, but never together with the same start time.
struct JournalWriter {
    qint64 pid = 0;
    qint64 startTime = 0; ///< clock ticks from the machine's start to the process's

    [[nodiscard]] static JournalWriter self();

    /// Whether this very process still runs. One that has ended and only waits to be collected by
    /// its parent does not.
    [[nodiscard]] bool isAlive() const;

    [[nodiscard]] bool operator==(const JournalWriter&) const = default;
};

} // namespace quorvane
