#include "platform/linux/LinuxWorkspace.h"

#include "platform/Log.h"
#include "platform/linux/ChildSignals.h"
#include "platform/linux/RunningCopies.h"

#include <QFile>
#include <QProcess>
#include <QTimer>

#include <utility>

namespace quorvane {

LinuxWorkspace::LinuxWorkspace(const RunningCopies* copies, QString ownIdentifier,
                               const QString& contentsFolder, LogSink& log)
    : copies_(copies), ownIdentifier_(std::move(ownIdentifier)),
      programFolder_(QFile::encodeName(contentsFolder + QStringLiteral("/Linux/"))), log_(log),
      entries_(DesktopEntries::foldersOfTheSession()),
      table_(contentsFolder + QStringLiteral("/Resources/ApplicationIdentifiers.tsv"),
             ApplicationTable::userFileOfTheSession(), log),
      identity_(entries_, table_), units_(UnitApplications::folderOfTheSession()) {
    connect(&session_, &X11Session::changed, this, &LinuxWorkspace::update);
    connect(&session_, &X11Session::unavailable, this, &LinuxWorkspace::complainAboutBlindness);
    // A timer of no time waits for everything that is queued at the program's start.
    QTimer::singleShot(0, this, &LinuxWorkspace::begin);
}

void LinuxWorkspace::begin() {
    session_.open();
    if (session_.isConnected() && qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) {
        log_.write(QStringLiteral(
            "This is a Wayland session: only the windows of applications that use Xwayland are "
            "seen."));
    }
}

void LinuxWorkspace::complainAboutBlindness() {
    if (!std::exchange(hasComplained_, true)) {
        log_.write(QStringLiteral("Applications cannot be seen here (no X server), so none is "
                                  "paused or hidden."));
    }
}

void LinuxWorkspace::update() {
    std::optional<RunningApplication> before;
    std::optional<RunningApplication> now;
    {
        const std::lock_guard lock(mutex_);
        before = applications_.front();
        applications_.update(
            session_.windows(), session_.activeWindow(),
            [this](std::int32_t pid, const WindowNames& window) { return identify(pid, window); });
        now = applications_.front();
    }
    const auto processOf = [](const std::optional<RunningApplication>& application) {
        return application ? application->processIdentifier : 0;
    };
    if (processOf(before) == processOf(now)) {
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

std::vector<RunningApplication> LinuxWorkspace::runningApplications() const {
    const std::lock_guard lock(mutex_);
    std::vector<RunningApplication> applications = applications_.applications();
    const std::vector<RunningApplication> others =
        units_.without(applications, [this](std::int32_t pid) { return identify(pid, {}); });
    applications.insert(applications.end(), others.cbegin(), others.cend());
    return applications;
}

std::optional<RunningApplication> LinuxWorkspace::frontmostApplication() const {
    const std::lock_guard lock(mutex_);
    return applications_.front();
}

void LinuxWorkspace::hide(const RunningApplication& application) {
    for (const std::uint32_t window :
         applications_.windowsOf(application.processIdentifier, true)) {
        session_.iconify(window);
    }
}

void LinuxWorkspace::terminate(const RunningApplication& application) {
    for (const std::uint32_t window :
         applications_.windowsOf(application.processIdentifier, false)) {
        session_.close(window);
    }
}

int LinuxWorkspace::runningCopies(const QString& bundleIdentifier) const {
    return copies_ == nullptr ? 0 : copies_->count(bundleIdentifier, ownIdentifier_);
}

void LinuxWorkspace::openURL(const QUrl& url) {
    const QString address = url.toString(QUrl::FullyEncoded);
    if (!url.isValid() || url.isRelative()) {
        complain(address, QStringLiteral("it is no address"));
        return;
    }
    auto* const process = new QProcess(&processes_);
    process->setChildProcessModifier(releaseSignals);
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    QObject::connect(process, &QProcess::errorOccurred, process,
                     [this, process, address] { complain(address, process->errorString()); });
    // In a session of its own: what it starts, a browser at times, must not end with this program.
    process->start(QStringLiteral("setsid"),
                   {QStringLiteral("--fork"), QStringLiteral("xdg-open"), address});
}

void LinuxWorkspace::complain(const QString& address, const QString& reason) {
    log_.write(QStringLiteral("The page \"%1\" cannot be opened: %2").arg(address, reason));
}

} // namespace quorvane
