#include "platform/linux/LinuxPlatform.h"

#include <QCoreApplication>

namespace quorvane {

namespace {

// A service that does not answer must not keep a user from logging out.
constexpr std::chrono::milliseconds lastPatience{2000};

} // namespace

LinuxPlatform::LinuxPlatform(const QDBusConnection& sessionBus, const QDBusConnection& systemBus,
                             const RunningCopies* copies)
    : journal_(PuttingBackJournal::defaultPath(), log_),
      bundle_(LinuxBundle::contentsFolderOfThisProgram()), displays_(systemBus, journal_, log_),
      powerSources_(systemBus, log_),
      processes_(journal_, log_, [this] { return mainProcesses(); }), settings_(log_),
      statusBar_(sessionBus, log_,
                 bundle_.contentsFolder() + QStringLiteral("/Resources/StatusImages")),
      updates_(systemBus, QCoreApplication::applicationFilePath()),
      userNotifications_(sessionBus, log_), windows_(bundle_.contentsFolder(), log_),
      workspace_(copies, bundle_.identifier(), bundle_.contentsFolder(), log_) {}

std::set<std::int32_t> LinuxPlatform::mainProcesses() const {
    std::set<std::int32_t> processes;
    for (const RunningApplication& each : workspace_.runningApplications()) {
        processes.insert(each.processIdentifier);
    }
    return processes;
}

void LinuxPlatform::finishPendingWork() {
    displays_.waitForWrites(lastPatience);
    userNotifications_.waitForPending(lastPatience);
}

} // namespace quorvane
