#include "platform/linux/processes/ApplicationProcesses.h"

#include <algorithm>

namespace quorvane {

ApplicationProcesses::ApplicationProcesses(const ProcessTable& table, std::int32_t main,
                                           const ProtectedProcesses& protectedOnes,
                                           const std::set<std::int32_t>& others)
    : table_(table), main_(main), protectedOnes_(protectedOnes), others_(others),
      unit_(table.applicationUnitOf(main)), refusal_(protectedOnes.reason(main, main)) {
    if (!refusal_.isEmpty()) {
        return;
    }
    others_.erase(main);
    std::map<std::int32_t, QByteArray> candidates = descendants();
    if (isUnitItsOwn()) {
        candidates.merge(membersOfUnit(unit_));
    }
    collect(candidates);
    hasGroup_ = isGroupItsOwn();
}

bool ApplicationProcesses::isExcluded(std::int32_t pid, const QByteArray& unit) const {
    const bool isElsewhere = !unit.isEmpty() && unit != unit_ && !runsTheSameProgram(pid);
    return others_.contains(pid) || isElsewhere || !protectedOnes_.reason(pid, main_).isEmpty();
}

/// Processes in a sandbox do not tell their program, only its name.
bool ApplicationProcesses::runsTheSameProgram(std::int32_t pid) const {
    const QString program = table_.programOf(pid);
    if (!program.isEmpty()) {
        return program == table_.programOf(main_);
    }
    const Process* const main = table_.find(main_);
    const Process* const process = table_.find(pid);
    return main != nullptr && process != nullptr && process->name == main->name;
}

/// A program that was started in a terminal is in the terminal's unit.
bool ApplicationProcesses::isUnitItsOwn() const {
    if (unit_.isEmpty()) {
        return false;
    }
    const std::vector<std::int32_t> ancestors = table_.ancestorsOf(main_);
    return std::none_of(ancestors.begin(), ancestors.end(), [this](std::int32_t pid) {
        return table_.applicationUnitOf(pid) == unit_ && isExcluded(pid, unit_);
    });
}

bool ApplicationProcesses::descendsFromOneOf(const std::set<std::int32_t>& excluded,
                                             const Process& process) const {
    const std::vector<std::int32_t> ancestors = table_.ancestorsOf(process.pid());
    return excluded.contains(process.session) ||
           std::any_of(ancestors.begin(), ancestors.end(),
                       [&](std::int32_t each) { return excluded.contains(each); });
}

/// With their units. What has gone on into another application's unit is not among them.
std::map<std::int32_t, QByteArray>
ApplicationProcesses::membersOfUnit(const QByteArray& unit) const {
    std::map<std::int32_t, QByteArray> members;
    for (const auto& [pid, process] : table_.all()) {
        if (table_.applicationUnitOf(pid) == unit) {
            members.emplace(pid, unit);
        }
    }
    return members;
}

/// The main process too. A session cannot be joined from outside: what is in one that a descendant
/// leads descends from that one, also when the parents in between have ended.
std::map<std::int32_t, QByteArray> ApplicationProcesses::descendants() const {
    std::set<std::int32_t> found{main_};
    for (bool isGrowing = true; isGrowing;) {
        isGrowing = false;
        for (const auto& [pid, process] : table_.all()) {
            const bool belongs = found.contains(process.parent) || found.contains(process.session);
            isGrowing = (belongs && found.insert(pid).second) || isGrowing;
        }
    }
    std::map<std::int32_t, QByteArray> all;
    for (const std::int32_t pid : found) {
        all.emplace(pid, table_.applicationUnitOf(pid));
    }
    return all;
}

void ApplicationProcesses::collect(const std::map<std::int32_t, QByteArray>& candidates) {
    std::set<std::int32_t> excluded;
    for (const auto& [pid, unit] : candidates) {
        if (isExcluded(pid, unit)) {
            excluded.insert(pid);
        }
    }
    std::vector<std::pair<std::size_t, Process>> byDepth;
    for (const auto& [pid, unit] : candidates) {
        const Process* const process = table_.find(pid);
        if (process != nullptr && !excluded.contains(pid) &&
            !descendsFromOneOf(excluded, *process)) {
            byDepth.emplace_back(table_.ancestorsOf(pid).size(), *process);
        }
    }
    std::stable_sort(byDepth.begin(), byDepth.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    for (const auto& [depth, process] : byDepth) {
        own_.push_back(process);
    }
}

bool ApplicationProcesses::isGroupItsOwn() const {
    const Process* const main = table_.find(main_);
    if (main == nullptr || main->group != main_) {
        return false;
    }
    const auto& all = table_.all();
    return std::all_of(all.begin(), all.end(), [this](const auto& entry) {
        return entry.second.group != main_ ||
               std::find(own_.begin(), own_.end(), entry.second) != own_.end();
    });
}

} // namespace quorvane
