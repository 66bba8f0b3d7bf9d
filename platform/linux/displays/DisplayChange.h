#pragma once

#include "platform/linux/common/PuttingBackJournal.h"

#include <QString>

#include <optional>
#include <vector>

namespace quorvane {

/// One display that was dimmed, as the journal's entry of the kind "display" with the device's name
/// as key tells it. Brightnesses are raw values of the device.
struct DisplayChange {
    int found = 0;        ///< what the device held before
    std::vector<int> set; ///< what it may hold because of us: the value last set comes last; until
                          ///< that one is confirmed, those before it stand here too

    [[nodiscard]] bool mayHaveSet(int raw) const;
    void addSet(int raw);
};

[[nodiscard]] bool isDisplayEntry(const JournalEntry& entry);

[[nodiscard]] JournalEntry displayEntry(const QString& device, const DisplayChange& change,
                                        const JournalWriter& writer);

/// Nothing when found and set are not what an entry of this kind holds.
[[nodiscard]] std::optional<DisplayChange> displayChange(const JournalEntry& entry);

/// What the device held before all of `changes`, given that it holds `raw` now: follows the changes
/// back from one to the next, in whatever order they stand. `found` is `raw` itself when it was not
/// set by any of them, so that it belongs to somebody else; `set` lists every value that the
/// changes that were followed may have set.
[[nodiscard]] DisplayChange tracedBack(int raw, std::vector<DisplayChange> changes);

} // namespace quorvane
