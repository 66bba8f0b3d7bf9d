#pragma once

#include "platform/Workspace.h"
#include "platform/linux/ApplicationIdentity.h"
#include "platform/linux/SessionWindow.h"

#include <functional>
#include <optional>
#include <vector>

namespace quorvane {

/// The applications behind the windows: one for each process that has any, in the order in which
/// they came. An application is identified once, when its first window is seen; as long as that
/// does not tell, each further window is a new chance. One thread at a time.
class ApplicationList {
  public:
    /// What a process with such a window is; nothing when it is to be left out.
    using Identify = std::function<std::optional<ApplicationIdentity::Found>(
        std::int32_t pid, const WindowNames& window)>;

    /// Makes the list that of these windows. `activeWindow` is 0 when none is.
    void update(const std::vector<SessionWindow>& windows, std::uint32_t activeWindow,
                const Identify& identify);

    [[nodiscard]] std::vector<RunningApplication> applications() const;

    [[nodiscard]] std::optional<RunningApplication> front() const;

    /// Of a process, or only the ordinary ones.
    [[nodiscard]] std::vector<std::uint32_t> windowsOf(std::int32_t pid, bool onlyOrdinary) const;

  private:
    struct Member {
        RunningApplication application;
        std::vector<SessionWindow> windows;
    };

    static void identifyAnew(Member& member, const std::vector<SessionWindow>& windows,
                             const Identify& identify);

    std::vector<Member> members_;
};

} // namespace quorvane
