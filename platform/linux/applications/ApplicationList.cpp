#include "platform/linux/applications/ApplicationList.h"

#include <algorithm>

namespace quorvane {

namespace {

bool holds(const std::vector<SessionWindow>& windows, WindowId id) {
    return std::any_of(windows.cbegin(), windows.cend(),
                       [id](const SessionWindow& window) { return window.id == id; });
}

} // namespace

ApplicationList::Owner ApplicationList::ownerOf(const SessionWindow& window) {
    return window.processIdentifier > 0 ? Owner{window.processIdentifier, {}}
                                        : Owner{0, window.names.applicationId};
}

void ApplicationList::update(const std::vector<SessionWindow>& windows, WindowId activeWindow,
                             const Identify& identify) {
    WindowsByOwner byOwner;
    std::vector<Owner> order;
    for (const SessionWindow& window : windows) {
        const Owner owner = ownerOf(window);
        if (owner == Owner()) {
            continue;
        }
        std::vector<SessionWindow>& own = byOwner[owner];
        if (own.empty()) {
            order.push_back(owner);
        }
        own.push_back(window);
    }
    forgetAllBut(byOwner);
    for (Member& member : members_) {
        const auto own = byOwner.find(member.owner);
        identifyAnew(member, own->second, identify);
        member.windows = std::move(own->second);
        byOwner.erase(own);
    }
    for (const Owner& owner : order) {
        if (const auto own = byOwner.find(owner); own != byOwner.end()) {
            add(owner, std::move(own->second), identify);
        }
    }
    for (Member& member : members_) {
        const bool isRegular =
            std::any_of(member.windows.cbegin(), member.windows.cend(),
                        [](const SessionWindow& window) { return window.isOrdinary; });
        member.application.activationPolicy =
            isRegular ? ActivationPolicy::Regular : ActivationPolicy::Accessory;
        member.application.isActive =
            activeWindow != WindowId::None && holds(member.windows, activeWindow);
    }
}

void ApplicationList::forgetAllBut(const WindowsByOwner& windows) {
    std::erase_if(members_,
                  [&windows](const Member& member) { return !windows.contains(member.owner); });
}

void ApplicationList::add(const Owner& owner, std::vector<SessionWindow> windows,
                          const Identify& identify) {
    const auto found = identify(owner.first, windows.front().names);
    if (!found) {
        return;
    }
    Member& member = members_.emplace_back();
    member.owner = owner;
    member.application.processIdentifier = owner.first;
    member.application.bundleIdentifier = found->bundleIdentifier;
    member.application.localizedName = found->localizedName;
    member.windows.push_back(windows.front());
    identifyAnew(member, windows, identify);
    member.windows = std::move(windows);
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

std::vector<WindowId> ApplicationList::windowsOf(const RunningApplication& application,
                                                 bool onlyOrdinary) const {
    std::vector<WindowId> ids;
    for (const Member& member : members_) {
        if (!member.application.isSameAs(application)) {
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
