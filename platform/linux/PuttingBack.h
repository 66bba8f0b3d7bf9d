#pragma once

#include "platform/linux/common/LinuxLog.h"
#include "platform/linux/common/PuttingBackJournal.h"
#include "platform/linux/displays/LinuxDisplays.h"
#include "platform/linux/processes/LinuxProcesses.h"

#include <QDBusConnection>

#include <chrono>
#include <functional>
#include <optional>

namespace quorvane {

/// What it takes to undo the changes of a run that has ended, and no more: the log, the journal and
/// the ports that write to it. A user whose screen is dark or whose browser stands still waits for
/// this, so it asks nobody else: no battery, no settings, no session. Main thread only.
class PuttingBack {
  public:
    using Bus = std::function<QDBusConnection()>;

    /// How long the end of the program waits for each service that does not answer: none may keep
    /// a user from logging out.
    static constexpr std::chrono::milliseconds lastPatience{2000};

    /// `systemBus` is called once, when something is to be known of the displays: connecting takes
    /// as long as the bus pleases.
    explicit PuttingBack(Bus systemBus);

    [[nodiscard]] LinuxLog& log() { return log_; }

    [[nodiscard]] LinuxProcesses& processes() { return processes_; }

    [[nodiscard]] LinuxDisplays& displays();

    /// Puts back what this process, or one that is dead, has changed and not put back: processes
    /// first, because they need nobody's help. Returns before brightnesses are written.
    void putBack();

    /// For the end of the program: brightnesses that are being written still get there. Bounded;
    /// does not run the event loop.
    void finish();

  private:
    LinuxLog log_;
    PuttingBackJournal journal_;
    LinuxProcesses processes_;
    Bus systemBus_;
    std::optional<LinuxDisplays> displays_;
};

} // namespace quorvane
