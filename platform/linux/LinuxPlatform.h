#pragma once

#include "platform/Platform.h"
#include "platform/linux/AbsentHelper.h"
#include "platform/linux/LinuxBundle.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxDisplays.h"
#include "platform/linux/LinuxFiles.h"
#include "platform/linux/LinuxLog.h"
#include "platform/linux/LinuxPowerSources.h"
#include "platform/linux/LinuxSettings.h"
#include "platform/linux/LinuxTasks.h"
#include "platform/linux/LinuxUserNotifications.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/PuttingBackJournal.h"

#include <QDBusConnection>

namespace quorvane {

/// The machine that the program runs on. A system bus that is not there is no error: what stands on
/// it then reads the kernel directly or does without.
class LinuxPlatform final : public Platform {
  public:
    LinuxPlatform(const QDBusConnection& sessionBus, const QDBusConnection& systemBus);

    Authorization& authorization() override { return helper_; }

    Bundle& bundle() override { return bundle_; }

    Clock& clock() override { return clock_; }

    LinuxDisplays& displays() override { return displays_; }

    Files& files() override { return files_; }

    HelperInstaller& helperInstaller() override { return helper_; }

    HelperTransport& helperTransport() override { return helper_; }

    LogSink& logSink() override { return log_; }

    PowerSources& powerSources() override { return powerSources_; }

    Settings& settings() override { return settings_; }

    Tasks& tasks() override { return tasks_; }

    LinuxUserNotifications& userNotifications() override { return userNotifications_; }

    Workspace& workspace() override { return workspace_; }

    /// For the end of the program: what was asked of other services last still gets done. Bounded.
    void finishPendingWork();

  private:
    LinuxLog log_;
    PuttingBackJournal journal_;
    AbsentHelper helper_;
    LinuxBundle bundle_;
    LinuxClock clock_;
    LinuxDisplays displays_;
    LinuxFiles files_;
    LinuxPowerSources powerSources_;
    LinuxSettings settings_;
    LinuxTasks tasks_;
    LinuxUserNotifications userNotifications_;
    LinuxWorkspace workspace_;
};

} // namespace quorvane
