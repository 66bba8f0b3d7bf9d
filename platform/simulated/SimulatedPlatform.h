#pragma once

#include "platform/DeviceInformation.h"
#include "platform/Platform.h"
#include "platform/simulated/SimulatedAuthorization.h"
#include "platform/simulated/SimulatedBundle.h"
#include "platform/simulated/SimulatedClock.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "platform/simulated/SimulatedDisplays.h"
#include "platform/simulated/SimulatedFiles.h"
#include "platform/simulated/SimulatedHelper.h"
#include "platform/simulated/SimulatedLog.h"
#include "platform/simulated/SimulatedOperatingSystem.h"
#include "platform/simulated/SimulatedPowerSources.h"
#include "platform/simulated/SimulatedProcesses.h"
#include "platform/simulated/SimulatedSettings.h"
#include "platform/simulated/SimulatedStatusBar.h"
#include "platform/simulated/SimulatedTasks.h"
#include "platform/simulated/SimulatedUpdates.h"
#include "platform/simulated/SimulatedUserNotifications.h"
#include "platform/simulated/SimulatedWindows.h"
#include "platform/simulated/SimulatedWorkspace.h"

#include <optional>

namespace quorvane {

/// A whole laptop in memory. Each port is given as what it really is, so that a test or the demo
/// can play the user and the hardware.
class SimulatedPlatform final : public Platform {
  public:
    SimulatedPlatform() : tasks_(clock_) {
        clock_.setSettling([this] { helper_.settle(); });
    }

    SimulatedAuthorization& authorization() override { return authorization_; }

    SimulatedBundle& bundle() override { return bundle_; }

    SimulatedClock& clock() override { return clock_; }

    const DeviceInformation* deviceInformation() override {
        return deviceInformation_ ? &*deviceInformation_ : nullptr;
    }

    void setDeviceInformation(const DeviceInformation& information) {
        deviceInformation_ = information;
    }

    SimulatedDisplays& displays() override { return displays_; }

    SimulatedFiles& files() override { return files_; }

    SimulatedHelper& helperInstaller() override { return helper_; }

    SimulatedHelper& helperTransport() override { return helper_; }

    SimulatedLog& logSink() override { return log_; }

    SimulatedLoginItems& loginItems() override { return loginItems_; }

    SimulatedOpener& opener() override { return opener_; }

    SimulatedOperatingSystem& operatingSystem() override { return operatingSystem_; }

    SimulatedPasteboard& pasteboard() override { return pasteboard_; }

    SimulatedPowerSources& powerSources() override { return powerSources_; }

    SimulatedProcesses& processes() override { return processes_; }

    SimulatedProgramCopies& programCopies() override { return programCopies_; }

    SimulatedSettings& settings() override { return settings_; }

    SimulatedSleepEvents& sleepEvents() override { return sleepEvents_; }

    SimulatedStatusBar& statusBar() override { return statusBar_; }

    SimulatedTasks& tasks() override { return tasks_; }

    SimulatedUpdates& updateService() override { return updateService_; }

    SimulatedUserNotifications& userNotifications() override { return userNotifications_; }

    SimulatedWindows& windows() override { return windows_; }

    SimulatedWorkspace& workspace() override { return workspace_; }

  private:
    SimulatedLog log_; // outlives everything that may still want to say something
    SimulatedAuthorization authorization_;
    SimulatedBundle bundle_;
    SimulatedClock clock_;
    std::optional<DeviceInformation> deviceInformation_;
    SimulatedDisplays displays_;
    SimulatedFiles files_;
    SimulatedHelper helper_;
    SimulatedLoginItems loginItems_;
    SimulatedOpener opener_;
    SimulatedOperatingSystem operatingSystem_;
    SimulatedPasteboard pasteboard_;
    SimulatedPowerSources powerSources_;
    SimulatedProcesses processes_;
    SimulatedProgramCopies programCopies_;
    SimulatedSettings settings_;
    SimulatedSleepEvents sleepEvents_;
    SimulatedStatusBar statusBar_;
    SimulatedTasks tasks_;
    SimulatedUpdates updateService_;
    SimulatedUserNotifications userNotifications_;
    SimulatedWindows windows_;
    SimulatedWorkspace workspace_;
};

} // namespace quorvane
