#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/HelperNames.h"

#include <QCoreApplication>

#include <utility>

namespace quorvane {

namespace {

// A service that does not answer must not keep a user from logging out.
constexpr std::chrono::milliseconds lastPatience{2000};

LinuxHelperInstaller::Places helperPlaces(const LinuxBundle& bundle) {
    return {bundle.contentsFolder() + QStringLiteral("/Linux"), helpernames::packagedFolder,
            helpernames::installedFolder};
}

LinuxTasks::StandIns standIns(const LinuxBundle& bundle) {
    return {{QStringLiteral("/usr/sbin/kextstat"),
             bundle.contentsFolder() + QStringLiteral("/Linux/kextstat")}};
}

} // namespace

LinuxPlatform::LinuxPlatform(const QDBusConnection& sessionBus, const QDBusConnection& systemBus,
                             const RunningCopies* copies)
    : journal_(PuttingBackJournal::defaultPath(), log_),
      bundle_(LinuxBundle::contentsFolderOfThisProgram()), displays_(systemBus, journal_, log_),
      helperInstaller_(systemBus, helperPlaces(bundle_)), helperTransport_(systemBus),
      operatingSystem_(systemBus), powerSources_(systemBus, log_),
      processes_(journal_, log_, [this] { return mainProcesses(); }), settings_(log_),
      statusBar_(sessionBus, log_,
                 bundle_.contentsFolder() + QStringLiteral("/Resources/StatusImages")),
      tasks_(standIns(bundle_)), updates_(systemBus, QCoreApplication::applicationFilePath()),
      userNotifications_(sessionBus, log_), windows_(bundle_.contentsFolder(), log_),
      workspace_(copies, bundle_.identifier(), bundle_.contentsFolder(), log_),
      sleepWatch_(systemBus, log_, [this](std::function<void()> block) {
          helperTransport_.whenIdle(std::move(block));
      }) {
    QObject::connect(&helperInstaller_, &LinuxHelperInstaller::installationBegan, &helperTransport_,
                     &LinuxHelperTransport::holdCommands);
    QObject::connect(&helperInstaller_, &LinuxHelperInstaller::installationEnded, &helperTransport_,
                     &LinuxHelperTransport::releaseCommands);
    QObject::connect(&sleepWatch_, &SleepWatch::willSleep, &workspace_, &Workspace::willSleep);
    QObject::connect(&sleepWatch_, &SleepWatch::didWake, &workspace_, &Workspace::didWake);
}

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
    helperTransport_.waitForPending(lastPatience);
    helperTransport_.close();
}

} // namespace quorvane
