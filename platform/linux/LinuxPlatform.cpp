#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/applications/X11WindowList.h"
#include "platform/linux/common/HelperNames.h"
#include "platform/linux/helperclient/ExtensionLister.h"
#include "platform/linux/helperclient/LoadedExtensions.h"

#include <QCoreApplication>

#include <memory>
#include <utility>

namespace quorvane {

namespace {

LinuxHelperInstaller::Places helperPlaces(const LinuxBundle& bundle) {
    return {bundle.contentsFolder() + QStringLiteral("/Linux"), helpernames::packagedFolder,
            helpernames::installedFolder};
}

// Asked at every start of the mode, by a main thread that would wait for a process.
LinuxTasks::StandIns standIns() {
    return {{QStringLiteral("/usr/sbin/kextstat"), [](const std::vector<std::string>& arguments) {
                 return answerOfLister(loadedExtensionsFile, arguments).output;
             }}};
}

} // namespace

LinuxPlatform::LinuxPlatform(const QDBusConnection& sessionBus, const QDBusConnection& systemBus,
                             std::unique_ptr<PuttingBack> puttingBack, const RunningCopies* copies)
    : puttingBack_(std::move(puttingBack)), log_(puttingBack_->log()),
      bundle_(LinuxBundle::contentsFolderOfThisProgram()),
      helperInstaller_(systemBus, helperPlaces(bundle_)), helperTransport_(systemBus),
      opener_(log_), operatingSystem_(systemBus), powerSources_(systemBus, log_),
      programCopies_(copies, bundle_.identifier()), settings_(log_),
      statusBar_(sessionBus, log_,
                 bundle_.contentsFolder() + QStringLiteral("/Resources/StatusImages")),
      tasks_(standIns()), updates_(systemBus, QCoreApplication::applicationFilePath()),
      userNotifications_(sessionBus, log_), windows_(bundle_.contentsFolder(), log_),
      workspace_(std::make_unique<X11WindowList>(), bundle_.identifier(),
                 {bundle_.contentsFolder()}, log_),
      sleepWatch_(systemBus, log_, [this](std::function<void()> block) {
          helperTransport_.whenIdle(std::move(block));
      }) {
    puttingBack_->processes().setApplications([this] { return mainProcesses(); });
    QObject::connect(&helperInstaller_, &LinuxHelperInstaller::installationBegan, &helperTransport_,
                     &LinuxHelperTransport::holdCommands);
    QObject::connect(&helperInstaller_, &LinuxHelperInstaller::installationEnded, &helperTransport_,
                     &LinuxHelperTransport::releaseCommands);
}

std::set<std::int32_t> LinuxPlatform::mainProcesses() const {
    std::set<std::int32_t> processes;
    for (const RunningApplication& each : workspace_.runningApplications()) {
        if (each.processIdentifier > 0) {
            processes.insert(each.processIdentifier);
        }
    }
    return processes;
}

void LinuxPlatform::finishPendingWork() {
    puttingBack_->finish();
    userNotifications_.waitForPending(PuttingBack::lastPatience);
    helperTransport_.waitForPending(PuttingBack::lastPatience);
    helperTransport_.close();
}

} // namespace quorvane
