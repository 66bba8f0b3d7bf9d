#pragma once

#include "platform/Platform.h"
#include "platform/linux/AbsentLoginItems.h"
#include "platform/linux/LinuxAuthorization.h"
#include "platform/linux/LinuxBundle.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxDisplays.h"
#include "platform/linux/LinuxFiles.h"
#include "platform/linux/LinuxHelperInstaller.h"
#include "platform/linux/LinuxHelperTransport.h"
#include "platform/linux/LinuxLog.h"
#include "platform/linux/LinuxOperatingSystem.h"
#include "platform/linux/LinuxPowerSources.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/LinuxSettings.h"
#include "platform/linux/LinuxStatusBar.h"
#include "platform/linux/LinuxTasks.h"
#include "platform/linux/LinuxUserNotifications.h"
#include "platform/linux/LinuxWindows.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/PackageKitUpdates.h"
#include "platform/linux/PuttingBackJournal.h"
#include "platform/linux/SleepWatch.h"

#include <QDBusConnection>

#include <cstdint>
#include <set>

namespace quorvane {

class RunningCopies;

/// The machine that the program runs on. A system bus that is not there is no error: what stands on
/// it then reads the kernel directly or does without.
class LinuxPlatform final : public Platform {
  public:
    /// `copies`, where given, must outlive this.
    LinuxPlatform(const QDBusConnection& sessionBus, const QDBusConnection& systemBus,
                  const RunningCopies* copies = nullptr);

    Authorization& authorization() override { return authorization_; }

    Bundle& bundle() override { return bundle_; }

    Clock& clock() override { return clock_; }

    const DeviceInformation* deviceInformation() override { return nullptr; }

    LinuxDisplays& displays() override { return displays_; }

    Files& files() override { return files_; }

    HelperInstaller& helperInstaller() override { return helperInstaller_; }

    HelperTransport& helperTransport() override { return helperTransport_; }

    LogSink& logSink() override { return log_; }

    LoginItems& loginItems() override { return loginItems_; }

    OperatingSystem& operatingSystem() override { return operatingSystem_; }

    Pasteboard& pasteboard() override { return windows_; }

    PowerSources& powerSources() override { return powerSources_; }

    LinuxProcesses& processes() override { return processes_; }

    Settings& settings() override { return settings_; }

    StatusBar& statusBar() override { return statusBar_; }

    Tasks& tasks() override { return tasks_; }

    UpdateService& updateService() override { return updates_; }

    LinuxUserNotifications& userNotifications() override { return userNotifications_; }

    Windows& windows() override { return windows_; }

    Workspace& workspace() override { return workspace_; }

    /// For the end of the program: what was asked of other services last still gets done. Bounded.
    /// The helper is not heard of any more afterwards.
    void finishPendingWork();

  private:
    [[nodiscard]] std::set<std::int32_t> mainProcesses() const;

    LinuxLog log_;
    PuttingBackJournal journal_;
    LinuxAuthorization authorization_;
    LinuxBundle bundle_;
    LinuxClock clock_;
    LinuxDisplays displays_;
    LinuxFiles files_;
    LinuxHelperInstaller helperInstaller_;
    LinuxHelperTransport helperTransport_;
    AbsentLoginItems loginItems_;
    LinuxOperatingSystem operatingSystem_;
    LinuxPowerSources powerSources_;
    LinuxProcesses processes_;
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
