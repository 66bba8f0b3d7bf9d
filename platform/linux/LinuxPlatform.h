#pragma once

#include "platform/Platform.h"
#include "platform/linux/PuttingBack.h"
#include "platform/linux/applications/LinuxWorkspace.h"
#include "platform/linux/basics/LinuxBundle.h"
#include "platform/linux/basics/LinuxClock.h"
#include "platform/linux/basics/LinuxFiles.h"
#include "platform/linux/helperclient/LinuxAuthorization.h"
#include "platform/linux/helperclient/LinuxHelperInstaller.h"
#include "platform/linux/helperclient/LinuxHelperTransport.h"
#include "platform/linux/helperclient/LinuxOperatingSystem.h"
#include "platform/linux/notifications/LinuxUserNotifications.h"
#include "platform/linux/power/LinuxPowerSources.h"
#include "platform/linux/processes/LinuxTasks.h"
#include "platform/linux/session/AbsentLoginItems.h"
#include "platform/linux/session/LinuxOpener.h"
#include "platform/linux/session/LinuxProgramCopies.h"
#include "platform/linux/session/SleepWatch.h"
#include "platform/linux/settings/LinuxSettings.h"
#include "platform/linux/statusitem/LinuxStatusBar.h"
#include "platform/linux/updates/PackageKitUpdates.h"
#include "platform/linux/windows/LinuxWindows.h"

#include <QDBusConnection>

#include <cstdint>
#include <memory>
#include <set>

namespace quorvane {

class RunningCopies;

/// The machine that the program runs on. A system bus that is not there is no error: what stands on
/// it then reads the kernel directly or does without.
class LinuxPlatform final : public Platform {
  public:
    /// `puttingBack` is not null. `copies`, where given, must outlive this.
    LinuxPlatform(const QDBusConnection& sessionBus, const QDBusConnection& systemBus,
                  std::unique_ptr<PuttingBack> puttingBack, const RunningCopies* copies = nullptr);

    Authorization& authorization() override { return authorization_; }

    Bundle& bundle() override { return bundle_; }

    Clock& clock() override { return clock_; }

    const DeviceInformation* deviceInformation() override { return nullptr; }

    LinuxDisplays& displays() override { return puttingBack_->displays(); }

    Files& files() override { return files_; }

    HelperInstaller& helperInstaller() override { return helperInstaller_; }

    HelperTransport& helperTransport() override { return helperTransport_; }

    LogSink& logSink() override { return log_; }

    LoginItems& loginItems() override { return loginItems_; }

    Opener& opener() override { return opener_; }

    OperatingSystem& operatingSystem() override { return operatingSystem_; }

    Pasteboard& pasteboard() override { return windows_; }

    PowerSources& powerSources() override { return powerSources_; }

    LinuxProcesses& processes() override { return puttingBack_->processes(); }

    ProgramCopies& programCopies() override { return programCopies_; }

    Settings& settings() override { return settings_; }

    SleepEvents& sleepEvents() override { return sleepWatch_; }

    StatusBar& statusBar() override { return statusBar_; }

    Tasks& tasks() override { return tasks_; }

    UpdateService& updateService() override { return updates_; }

    LinuxUserNotifications& userNotifications() override { return userNotifications_; }

    Windows& windows() override { return windows_; }

    Workspace& workspace() override { return workspace_; }

    [[nodiscard]] PuttingBack& puttingBack() { return *puttingBack_; }

    /// For the end of the program: what was asked of other services last still gets done. Bounded.
    /// The helper is not heard of any more afterwards.
    void finishPendingWork();

  private:
    [[nodiscard]] std::set<std::int32_t> mainProcesses() const;

    std::unique_ptr<PuttingBack> puttingBack_;
    LinuxLog& log_;
    LinuxAuthorization authorization_;
    LinuxBundle bundle_;
    LinuxClock clock_;
    LinuxFiles files_;
    LinuxHelperInstaller helperInstaller_;
    LinuxHelperTransport helperTransport_;
    AbsentLoginItems loginItems_;
    LinuxOpener opener_;
    LinuxOperatingSystem operatingSystem_;
    LinuxPowerSources powerSources_;
    LinuxProgramCopies programCopies_;
    LinuxSettings settings_;
    LinuxStatusBar statusBar_;
    LinuxTasks tasks_;
    PackageKitUpdates updates_;
    LinuxUserNotifications userNotifications_;
    LinuxWindows windows_;
    LinuxWorkspace workspace_;
    SleepWatch sleepWatch_;
};

} // namespace quorvane
