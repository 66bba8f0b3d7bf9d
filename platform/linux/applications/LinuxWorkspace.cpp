#include "platform/linux/applications/LinuxWorkspace.h"

#include "platform/Log.h"

#include <QFile>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace quorvane {

LinuxWorkspace::LinuxWorkspace(std::unique_ptr<WindowList> windows, QString ownIdentifier,
                               const Places& places, LogSink& log)
    : ownIdentifier_(std::move(ownIdentifier)),
      programFolder_(QFile::encodeName(places.contentsFolder + QStringLiteral("/Linux/"))),
      log_(log), entries_(places.entryFolders),
      table_(places.contentsFolder + QStringLiteral("/Resources/ApplicationIdentifiers.tsv"),
             places.userTable, log),
      identity_(entries_, table_), units_(places.unitsFolder), windows_(std::move(windows)) {
    connect(windows_.get(), &WindowList::changed, this, &LinuxWorkspace::update);
    connect(windows_.get(), &WindowList::unavailable, this,
            &LinuxWorkspace::complainAboutBlindness);
    // A timer of no time waits for everything that is queued at the program's start.
    QTimer::singleShot(0, this, &LinuxWorkspace::begin);
}

void LinuxWorkspace::begin() {
    windows_->open();
    if (const QString leftOut = windows_->leavesOut(); !leftOut.isEmpty()) {
        log_.write(leftOut);
    }
}

void LinuxWorkspace::complainAboutBlindness(const QString& why) {
    if (!std::exchange(hasComplained_, true)) {
        log_.write(QStringLiteral("Applications cannot be seen here (%1), so none is paused or "
                                  "hidden.")
                       .arg(why));
    }
}

void LinuxWorkspace::update() {
    std::optional<RunningApplication> before;
    std::optional<RunningApplication> now;
    {
        const std::lock_guard lock(mutex_);
        before = applications_.front();
        applications_.update(
            windows_->windows(), windows_->activeWindow(),
            [this](std::int32_t pid, const WindowNames& window) { return identify(pid, window); });
        now = applications_.front();
    }
    if (before ? now && before->isSameAs(*now) : !now) {
        return;
    }
    if (before) {
        before->isActive = false;
        Q_EMIT didDeactivateApplication(*before);
    }
    if (now) {
        Q_EMIT didActivateApplication(*now);
    }
}

std::optional<ApplicationIdentity::Found>
LinuxWorkspace::identify(std::int32_t pid, const WindowNames& window) const {
    if (pid == 0) {
        return identifyByWindow(window);
    }
    if (!ProcessFacts::exists(pid)) {
        return std::nullopt;
    }
    const ProcessFacts process = ProcessFacts::of(pid);
    ApplicationIdentity::Found found = identity_.find(process, window);
    if (process.executable.startsWith(programFolder_)) {
        found.bundleIdentifier = ownIdentifier_;
    }
    return found;
}

/// What the application calls itself is all that is known; not to be installed does not make it
/// nobody's.
ApplicationIdentity::Found LinuxWorkspace::identifyByWindow(const WindowNames& window) const {
    ApplicationIdentity::Found found = identity_.find({}, window);
    if (found.bundleIdentifier.isEmpty()) {
        found.bundleIdentifier = QString::fromUtf8(window.applicationId);
    }
    return found;
}

std::vector<RunningApplication> LinuxWorkspace::runningApplications() const {
    const std::lock_guard lock(mutex_);
    std::vector<RunningApplication> applications = applications_.applications();
    std::vector<RunningApplication> others =
        units_.without(applications, [this](std::int32_t pid) { return identify(pid, {}); });
    // A unit may hold the process of an application whose windows do not tell it: taken for one
    // without windows, it would be paused while its user works with it.
    std::erase_if(others, [&applications](const RunningApplication& other) {
        return std::any_of(applications.cbegin(), applications.cend(),
                           [&other](const RunningApplication& each) {
                               return each.processIdentifier == 0 &&
                                      each.bundleIdentifier == other.bundleIdentifier;
                           });
    });
    applications.insert(applications.end(), others.cbegin(), others.cend());
    return applications;
}

std::optional<RunningApplication> LinuxWorkspace::frontmostApplication() const {
    const std::lock_guard lock(mutex_);
    return applications_.front();
}

void LinuxWorkspace::hide(const RunningApplication& application) {
    for (const WindowId window : applications_.windowsOf(application, true)) {
        windows_->hide(window);
    }
}

void LinuxWorkspace::terminate(const RunningApplication& application) {
    for (const WindowId window : applications_.windowsOf(application, false)) {
        windows_->close(window);
    }
}

} // namespace quorvane
