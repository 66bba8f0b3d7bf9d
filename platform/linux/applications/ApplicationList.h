#pragma once

#include "platform/Workspace.h"
#include "platform/linux/applications/ApplicationIdentity.h"
#include "platform/linux/applications/SessionWindow.h"

#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace quorvane {

/// The applications behind the windows: one for each process that has any, and one for each
/// application id of windows whose process is not told, in the order in which they came. An
/// application is identified once, when its first window is seen; as long as that does not tell,
/// each further window is a new chance. One thread at a time.
class ApplicationList {
  public:
    /// What a process with such a window is; nothing when it is to be left out. The process is 0
    /// when it is not known.
    using Identify = std::function<std::optional<ApplicationIdentity::Found>(
        std::int32_t pid, const WindowNames& window)>;

    /// Makes the list that of these windows.
    void update(const std::vector<SessionWindow>& windows, WindowId activeWindow,
                const Identify& identify);

    [[nodiscard]] std::vector<RunningApplication> applications() const;

    [[nodiscard]] std::optional<RunningApplication> front() const;

    /// All of them, or only the ordinary ones.
    [[nodiscard]] std::vector<WindowId> windowsOf(const RunningApplication& application,
                                                  bool onlyOrdinary) const;

  private:
    /// Whose windows belong together: those of one process, else those of one application id.
    using Owner = std::pair<std::int32_t, QByteArray>;
    using WindowsByOwner = std::map<Owner, std::vector<SessionWindow>>;

    struct Member {
        Owner owner;
        RunningApplication application;
        std::vector<SessionWindow> windows;
    };

    void forgetAllBut(const WindowsByOwner& windows);
    void add(const Owner& owner, std::vector<SessionWindow> windows, const Identify& identify);
    static Owner ownerOf(const SessionWindow& window);
    static void identifyAnew(Member& member, const std::vector<SessionWindow>& windows,
                             const Identify& identify);

    std::vector<Member> members_;
};

} // namespace quorvane
