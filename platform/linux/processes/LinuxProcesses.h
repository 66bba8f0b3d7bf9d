#pragma once

#include "platform/Log.h"
#include "platform/Processes.h"
#include "platform/linux/common/PuttingBackJournal.h"
#include "platform/linux/processes/ApplicationProcesses.h"
#include "platform/linux/processes/RestoreGuard.h"
#include "platform/linux/processes/StoppedProcess.h"

#include <QString>

#include <functional>
#include <set>
#include <utility>
#include <vector>

namespace quorvane {

/// The processes of the user's applications.
///
/// Every process is written to the journal before it gets its signal. If the journal cannot be
/// written, or nobody can be found to put back after a crash, nothing is stopped. A process that
/// somebody else has stopped before is neither stopped nor resumed.
class LinuxProcesses final : public Processes {
  public:
    /// The main processes of all applications.
    using Applications = std::function<std::set<std::int32_t>()>;

    /// Journal and log have to outlive this. `guardProgram` is as RestoreGuard has it.
    LinuxProcesses(PuttingBackJournal& journal, LogSink& log,
                   const QString& guardProgram = QStringLiteral("/proc/self/exe"));

    /// Which applications are not part of one that is stopped, although it has started them. Until
    /// this is told they are not known; putting back does not ask.
    void setApplications(Applications applications) { applications_ = std::move(applications); }

    void stop(std::int32_t pid) override;
    void resume(std::int32_t pid) override;

    /// Resumes whatever the journal names that this process or a dead one has stopped.
    void putBack();

  private:
    enum class Step { Found, Waiting, Standstill, Failed };

    /// What is known of an application while it is being stopped.
    struct Stopping {
        ProcessIdentity main;
        std::set<ProcessIdentity> stoppedByOthers;
        bool asGroup = false; ///< its process group has got the signal
    };

    using Selection = std::function<bool(const StoppedProcess&)>;

    [[nodiscard]] Step stopWhatAppeared(std::int32_t pid, Stopping& stopping);
    [[nodiscard]] bool begin(const ApplicationProcesses& application, const ProcessTable& table,
                             std::int32_t pid, Stopping& stopping);
    [[nodiscard]] std::vector<StoppedProcess> appeared(const ApplicationProcesses& application,
                                                       Stopping& stopping, bool asGroup) const;
    [[nodiscard]] bool isOnRecord(const StoppedProcess& process) const;
    [[nodiscard]] bool isStoppedByUs(const ProcessIdentity& identity) const;
    [[nodiscard]] bool writeDown(const std::vector<StoppedProcess>& processes);
    void sendStop(const ApplicationProcesses& application,
                  const std::vector<StoppedProcess>& processes, bool asGroup);
    void refuse(std::int32_t pid, const QString& reason);

    void resumeAll(const Selection& isWanted);
    [[nodiscard]] std::vector<StoppedProcess> onRecord(std::vector<StoppedProcess>& ofOthers);
    void strikeOff(const Selection& isWanted);
    void dismissIdleGuard();

    PuttingBackJournal& journal_;
    LogSink& log_;
    Applications applications_;
    RestoreGuard guard_;
    std::vector<StoppedProcess> stopped_; ///< by this process, in the order in which they were
};

} // namespace quorvane
