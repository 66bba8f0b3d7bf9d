#include "platform/linux/LinuxPlatform.h"

namespace quorvane {

namespace {

// A service that does not answer must not keep a user from logging out.
constexpr std::chrono::milliseconds lastPatience{2000};

} // namespace

LinuxPlatform::LinuxPlatform(const QDBusConnection& sessionBus, const QDBusConnection& systemBus)
    : journal_(PuttingBackJournal::defaultPath(), log_),
      bundle_(LinuxBundle::contentsFolderOfThisProgram()), displays_(systemBus, journal_, log_),
      powerSources_(systemBus, log_), settings_(log_), userNotifications_(sessionBus, log_) {}

void LinuxPlatform::finishPendingWork() {
    displays_.waitForWrites(lastPatience);
    userNotifications_.waitForPending(lastPatience);
}

} // namespace quorvane
