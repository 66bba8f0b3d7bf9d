#include "platform/linux/ApplicationList.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace quorvane {

namespace {

using WindowsByProcess = std::unordered_map<std::int32_t, std::vector<SessionWindow>>;

bool holds(const std::vector<SessionWindow>& windows, std::uint32_t id) {
    return std::any_of(windows.cbegin(), windows.cend(),
                       [id](const SessionWindow& window) { return window.id == id; });
}

} // namespace

void ApplicationList::update(const std::vector<SessionWindow>& windows, std::uint32_t activeWindow,
                             const Identify& identify) {
    WindowsByProcess byProcess;
    std::vector<std::int32_t> order;
    for (const SessionWindow& window : windows) {
        if (window.processIdentifier > 0) {
            std::vector<SessionWindow>& own = byProcess[window.processIdentifier];
            if (own.empty()) {
                order.push_back(window.processIdentifier);
            }
            own.push_back(window);
        }
    }
    std::erase_if(members_, [&byProcess](const Member& member) {
        return byProcess.count(member.application.processIdentifier) == 0;
    });
    for (Member& member : members_) {
        const auto own = byProcess.find(member.application.processIdentifier);
        identifyAnew(member, own->second, identify);
        member.windows = std::move(own->second);
        byProcess.erase(own);
    }
    for (const std::int32_t pid : order) {
        const auto own = byProcess.find(pid);
        const auto found =
            own == byProcess.end() ? std::nullopt : identify(pid, own->second.front().names);
        if (found) {
            Member& member = members_.emplace_back();
            member.application.processIdentifier = pid;
            member.application.bundleIdentifier = found->bundleIdentifier;
            member.application.localizedName = found->localizedName;
            member.windows.push_back(own->second.front());
            identifyAnew(member, own->second, identify);
            member.windows = std::move(own->second);
        }
    }
    for (Member& member : members_) {
        const bool isRegular =
            std::any_of(member.windows.cbegin(), member.windows.cend(),
                        [](const SessionWindow& window) { return window.isOrdinary; });
        member.application.activationPolicy =
            isRegular ? ActivationPolicy::Regular : ActivationPolicy::Accessory;
        member.application.isActive = activeWindow != 0 && holds(member.windows, activeWindow);
    }
}

void ApplicationList::identifyAnew(Member& member, const std::vector<SessionWindow>& windows,
                                   const Identify& identify) {
    for (const SessionWindow& window : windows) {
        if (!member.application.bundleIdentifier.isEmpty()) {
            return;
        }
        const auto found = holds(member.windows, window.id)
                               ? std::nullopt
                               : identify(member.application.processIdentifier, window.names);
        if (found && !found->bundleIdentifier.isEmpty()) {
            member.application.bundleIdentifier = found->bundleIdentifier;
            member.application.localizedName = found->localizedName;
        }
    }
}

std::vector<RunningApplication> ApplicationList::applications() const {
    std::vector<RunningApplication> applications;
    applications.reserve(members_.size());
    for (const Member& member : members_) {
        applications.push_back(member.application);
    }
    return applications;
}

std::optional<RunningApplication> ApplicationList::front() const {
    const auto front = std::find_if(members_.cbegin(), members_.cend(), [](const Member& member) {
        return member.application.isActive;
    });
    return front == members_.cend() ? std::nullopt : std::optional(front->application);
}

std::vector<std::uint32_t> ApplicationList::windowsOf(std::int32_t pid, bool onlyOrdinary) const {
    std::vector<std::uint32_t> ids;
    for (const Member& member : members_) {
        if (member.application.processIdentifier != pid) {
            continue;
        }
        for (const SessionWindow& window : member.windows) {
            if (window.isOrdinary || !onlyOrdinary) {
                ids.push_back(window.id);
            }
        }
    }
    return ids;
}

} // namespace quorvane
