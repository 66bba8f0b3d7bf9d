#include "platform/linux/displays/DisplayChange.h"

#include <QJsonArray>

#include <algorithm>

namespace quorvane {

namespace {

constexpr QLatin1String displayKind("display");

std::optional<int> rawValue(const QJsonValue& value) {
    constexpr int none = -1;
    const int raw = value.toInt(none);
    return raw >= 0 ? std::optional(raw) : std::nullopt;
}

} // namespace

bool DisplayChange::mayHaveSet(int raw) const {
    return std::find(set.begin(), set.end(), raw) != set.end();
}

void DisplayChange::addSet(int raw) {
    std::erase(set, raw);
    set.push_back(raw);
}

bool isDisplayEntry(const JournalEntry& entry) {
    return entry.kind == displayKind;
}

JournalEntry displayEntry(const QString& device, const DisplayChange& change,
                          const JournalWriter& writer) {
    QJsonArray set;
    for (const int raw : change.set) {
        set.append(raw);
    }
    return {displayKind, device, change.found, set, writer};
}

std::optional<DisplayChange> displayChange(const JournalEntry& entry) {
    const std::optional<int> found = rawValue(entry.found);
    const QJsonArray set = entry.set.toArray();
    if (!found || set.isEmpty()) {
        return std::nullopt;
    }
    DisplayChange change{*found, {}};
    for (const auto& value : set) {
        const std::optional<int> raw = rawValue(value);
        if (!raw) {
            return std::nullopt;
        }
        change.addSet(*raw);
    }
    return change;
}

DisplayChange tracedBack(int raw, std::vector<DisplayChange> changes) {
    DisplayChange trace{raw, {}};
    for (;;) {
        const auto step =
            std::find_if(changes.begin(), changes.end(), [&trace](const DisplayChange& change) {
                return change.mayHaveSet(trace.found);
            });
        if (step == changes.end()) {
            return trace;
        }
        trace.found = step->found;
        for (const int set : step->set) {
            trace.addSet(set);
        }
        changes.erase(step); // two runs may have set each other's values in turn
    }
}

} // namespace quorvane
