#include "apps/quorvane/Resident.h"

#include "app/AppDelegate.h"
#include "core/SharedInstances.h"
#include "platform/MainQueue.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/PuttingBack.h"
#include "platform/linux/session/EndOfSession.h"
#include "platform/linux/session/QuitService.h"
#include "platform/linux/session/RunningCopies.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

namespace quorvane {

namespace {

int complain(const char* text) {
    std::fprintf(stderr, "quorvane: %s\n", text);
    return EXIT_FAILURE;
}

int complainAboutMissingSession() {
    return complain(
        "there is no session bus here, so this is not a desktop session. Start it from "
        "a terminal of your desktop (DBUS_SESSION_BUS_ADDRESS must be set), or see what "
        "it does with quorvane-demo.");
}

} // namespace

Resident::Resident(const QDBusConnection& sessionBus, const QDBusConnection& systemBus)
    : sessionBus_(sessionBus), systemBus_(systemBus) {}

int Resident::run() {
    if (!sessionBus_.isConnected()) {
        return complainAboutMissingSession();
    }
    const EndOfSession endOfSession(sessionBus_);
    const QuitService quitService(sessionBus_);
    RunningCopies copies(sessionBus_);
    auto puttingBack = std::make_unique<PuttingBack>([this] { return systemBus_; });
    if (copies.claim()) {
        puttingBack->putBack();
    }
    auto machine =
        std::make_unique<LinuxPlatform>(sessionBus_, systemBus_, std::move(puttingBack), &copies);
    LinuxPlatform& platform = *machine;
    SharedInstances::reset(std::move(machine));

    int status = EXIT_SUCCESS;
    {
        AppDelegate delegate([] { QCoreApplication::quit(); });
        QObject::connect(&quitService, &QuitService::quitRequested, &delegate, &AppDelegate::quit);
        QObject::connect(&endOfSession, &EndOfSession::ended, &delegate,
                         [] { QCoreApplication::quit(); });
        status = launch(delegate, copies);
        delegate.applicationWillTerminate();
    }
    // After a proper quit nothing is left to put back. After a signal the mode counts as on, for
    // the next start to decide on; the machine itself does not wait for that.
    platform.puttingBack().putBack();
    platform.finishPendingWork();
    SharedInstances::reset(nullptr);
    return status;
}

int Resident::launch(AppDelegate& delegate, RunningCopies& copies) {
    if (!delegate.applicationWillFinishLaunching()) {
        complain("Quorvane already running. Another version of Quorvane is already running. "
                 "Please quit it (quorvane --quit), then try again.");
        QCoreApplication::exec(); // until the user has read the same on the screen
        return EXIT_FAILURE;
    }
    delegate.applicationDidFinishLaunching();
    // Behind the controller's own queued start: whoever finds the name finds it bound to the
    // settings and its first decision made.
    queueOnMain(&delegate, [&copies] { copies.announce(RunningCopies::names().first()); });
    return QCoreApplication::exec();
}

int Resident::quitRunningCopy() {
    if (!sessionBus_.isConnected()) {
        return complainAboutMissingSession();
    }
    RunningCopies copies(sessionBus_);
    if (copies.running().isEmpty()) {
        return complain("no copy of Quorvane runs in this session.");
    }
    return copies.quitAll() ? EXIT_SUCCESS
                            : complain("the running copy did not quit within half a minute.");
}

int Resident::restore(const std::function<QDBusConnection()>& systemBus) {
    PuttingBack puttingBack(systemBus);
    puttingBack.putBack();
    puttingBack.finish();
    return EXIT_SUCCESS;
}

} // namespace quorvane
