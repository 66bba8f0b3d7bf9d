#pragma once

#include <memory>

namespace quorvane {

class Authorization;
class Bundle;
class Clock;
struct DeviceInformation;
class Displays;
class Files;
class HelperInstaller;
class HelperTransport;
class LogSink;
class LoginItems;
class Opener;
class OperatingSystem;
class Pasteboard;
class PowerSources;
class Processes;
class ProgramCopies;
class Settings;
class SleepEvents;
class StatusBar;
class Tasks;
class UpdateService;
class UserNotificationCenter;
class Windows;
class Workspace;

/// All ports of one machine. A program chooses one at start; every class reaches it through
/// `platform()`.
class Platform {
  public:
    virtual ~Platform() = default;

    virtual Authorization& authorization() = 0;
    virtual Bundle& bundle() = 0;
    virtual Clock& clock() = 0;
    /// Null while nothing is known of the machine.
    virtual const DeviceInformation* deviceInformation() = 0;
    virtual Displays& displays() = 0;
    virtual Files& files() = 0;
    virtual HelperInstaller& helperInstaller() = 0;
    virtual HelperTransport& helperTransport() = 0;
    virtual LogSink& logSink() = 0;
    virtual LoginItems& loginItems() = 0;
    virtual Opener& opener() = 0;
    virtual OperatingSystem& operatingSystem() = 0;
    virtual Pasteboard& pasteboard() = 0;
    virtual PowerSources& powerSources() = 0;
    virtual Processes& processes() = 0;
    virtual ProgramCopies& programCopies() = 0;
    virtual Settings& settings() = 0;
    virtual SleepEvents& sleepEvents() = 0;
    virtual StatusBar& statusBar() = 0;
    virtual Tasks& tasks() = 0;
    virtual UpdateService& updateService() = 0;
    virtual UserNotificationCenter& userNotifications() = 0;
    virtual Windows& windows() = 0;
    virtual Workspace& workspace() = 0;
};

/// The installed platform. Asking before one is installed is a programming error and ends the
/// process.
Platform& platform();

/// Makes `newPlatform` the one that `platform()` gives, or none, and hands out the one before. The
/// shared instances hold on to the old one's ports: `SharedInstances::reset` exchanges both
/// together.
[[nodiscard]] std::unique_ptr<Platform> installPlatform(std::unique_ptr<Platform> newPlatform);

} // namespace quorvane
